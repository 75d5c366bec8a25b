#pragma once

#include <cstdint>
#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The settings of a context of one's own, Framework.CreateBusinessContext. Empty names select nothing; -1 takes the
/// type from the Action. A RelationshipName is for the context of a Model alone: on any other it raises 15093.
struct BusinessContextFields {
  bool SupportsAdd = true;
  bool SupportsRemove = true;
  bool SupportsLoad = true;
  std::string ServerName{};
  bool ServerLocked = false;
  std::string ClassName{};
  bool ClassLocked = false;
  std::string ActionName{};
  bool ActionLocked = false;
  std::string RelationshipName{};
  bool RelationshipLocked = false;
  zCollectionTypes CollectionType = cltDefault;
  zObjectTypes ObjectType = otDefault;
  bool Locked = false;
};

/// What is asked for: a class by name with key values, an Identifier, or an Action with Parameters. An empty name is
/// taken from the selection that the context holds; a KeyValue that is Missing was not given, and the later ones count
/// only behind the earlier.
struct GetBusinessObjectArguments {
  std::string ClassName{};
  Variant KeyValue1 = Variant::Missing();
  Variant KeyValue2 = Variant::Missing();
  Variant KeyValue3 = Variant::Missing();
  Variant KeyValue4 = Variant::Missing();
  IdentifierPtr Identifier{};
  zObjectTypes ObjectType = otDefault;
  std::string ActionName{};
  std::string ServerName{};
  PropertiesPtr Parameters{};
  bool AsyncFlag = false;  // accepted, and without effect: a single object is fetched at once
};

/// A RelationshipName is for the context of a Model alone and passes over the names of server, class and action.
struct GetBusinessObjectsArguments {
  std::string ClassName{};
  std::string ActionName{};
  PropertiesPtr Parameters{};
  std::string RelationshipName{};
  std::string ServerName{};
  zObjectTypes ObjectType = otDefault;
  zCollectionTypes CollectionType = cltDefault;
  std::int32_t ObjectBuffer = -1;  // accepted, and without effect: Action.ObjectBuffer rules
  /// The result is opened while the caller goes on, where the database can. What needs rows first waits for it, and
  /// meets the failure of the opening unless the request has met it already.
  bool AsyncFlag = false;
  KeyFormatPtr KeyFormat{};
  std::string Name{};
};

struct CreateBusinessObjectArguments {
  std::string ClassName{};
  std::string ActionName{};
  std::string ServerName{};
  zObjectTypes ObjectType = otDefault;
};

struct ExecuteArguments {
  std::string ClassName{};
  std::string ActionName{};
  PropertiesPtr Parameters{};
  std::string ServerName{};
  bool AsyncFlag = false;  // accepted, and without effect: the call returns when the operation is done
};

}  // namespace velmoria
