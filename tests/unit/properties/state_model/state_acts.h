#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/unit/properties/state_model/collection_model.h"
#include "tests/unit/properties/state_model/property_model.h"
#include "tests/unit/properties/state_model/state_values.h"
#include "velmoria/core/position.h"
#include "velmoria/fwd.h"
#include "velmoria/properties/property_fields.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::test {

template <class Model, class Handle>
struct Act;
using PropertyAct = Act<PropertyModel, PropertyPtr>;
using CollectionAct = Act<CollectionModel, PropertiesPtr>;

/// One step of a sequence: an act and its arguments. Members go round: the fifth of three is the second.
struct Operation {
  const PropertyAct* OnProperty = nullptr;  // of a collection: of the Member-th member
  const CollectionAct* OnCollection = nullptr;
  std::size_t Member = 0;
  Variant Value;
  std::int32_t Number = 0;
  std::string Text;
  Position Place;
  PropertyFields Fields;
};

/// What a sequence begins with.
struct StateSubject {
  const char* Called = "";
  zPropertyStyles Style = psNonPersistent;
  bool IsCollection = false;
  bool Defined = false;  // over definitions, not transient
  bool Routed = false;   // can be written; every value then has the storage of its data type
};

struct StateSequence {
  StateSubject Subject;
  zEditFlags EditFlags = efAll;
  std::vector<PropertyFields> Members;  // of a lone Property: itself
  std::vector<Operation> Operations;
};

/// The same for a seed everywhere.
StateSequence DrawnSequence(const StateSubject& subject, std::uint64_t seed);
/// One line for what it begins with and one for each operation.
std::string Shown(const StateSequence& sequence);

/// How an act draws and shows what it takes.
struct ActArgument {
  void (*Draw)(Operation& operation, Dice& dice, const StateSequence& sequence);
  std::string (*Show)(const Operation& operation);
};

/// What can be done to a Property or Properties, beside what is expected of it.
template <class Model, class Handle>
struct Act {
  const char* Name;
  std::size_t Weight;  // how often it is drawn
  const ActArgument& Takes;
  void (*Expect)(const Operation& operation, Model& model, Scene& scene);
  void (*Do)(const Operation& operation, Handle& handle);
  bool (*Suits)(const StateSubject& subject) = [](const StateSubject&) { return true; };
  bool Copies = false;  // the sequence goes on with the copy
};

}  // namespace velmoria::test
