#pragma once

#include <optional>
#include <string>
#include <tuple>

#include "velmoria/core/catalogue.h"
#include "velmoria/fwd.h"

namespace velmoria {

/// Which parents ClearParents empties.
struct ParentSlots {
  bool Server = false;
  bool Class = false;
  bool Action = false;
  bool Source = false;
  bool Relationship = false;
  bool Link = false;
  bool Database = false;
  bool Connector = false;
  bool KeyFormat = false;

  static constexpr ParentSlots All() { return {true, true, true, true, true, true, true, true, true}; }
};

/// A parent that cannot be taken because its slot is filled: the number to raise and the name of the one that is there,
/// which is the engine's for a Source or Connector and the Details for a Link.
struct ParentConflict {
  zErrors Number;
  std::string Name;
};

/// The parents of an object, each an optional reference to a definition. A child holds its parents, never the other way
/// round.
struct Parents {
  Parents();
  Parents(const Parents& other);
  Parents(Parents&& other) noexcept;
  Parents& operator=(const Parents& other);
  Parents& operator=(Parents&& other) noexcept;
  ~Parents();

  ServerDataPtr Server;
  ClassDataPtr Class;
  ActionDataPtr Action;
  SourceDataPtr Source;
  RelationshipDataPtr Relationship;
  LinkDataPtr Link;
  DatabaseDataPtr Database;
  ConnectorDataPtr Connector;
  KeyFormatDataPtr KeyFormat;

  /// Takes each parent given. A parent is given once: when any slot is already filled, even with the same parent, it
  /// tells the first such one and takes nothing.
  std::optional<ParentConflict> Take(const Parents& given);
  /// The same, but slot by slot: what was taken ahead of the first filled slot stays.
  std::optional<ParentConflict> TakeInTurn(const Parents& given);
  void Clear(const ParentSlots& slots);
  /// Whether no slot is filled.
  bool IsEmpty() const noexcept;
  /// The slots that hold a parent.
  ParentSlots Filled() const noexcept;

  /// Those of an object that has none.
  static const Parents& None() noexcept;
};

/// The slot of parents of this class.
template <class Data>
inline constexpr auto SlotOf = std::get<Ref<Data> Parents::*>(
    std::tuple{&Parents::Server, &Parents::Class, &Parents::Action, &Parents::Source, &Parents::Relationship,
               &Parents::Link, &Parents::Database, &Parents::Connector, &Parents::KeyFormat});

/// The name of a parent, empty without one.
template <class Data>
std::string NameOf(const Ref<Data>& parent) {
  return parent ? parent->Name() : std::string();
}

}  // namespace velmoria
