#pragma once

#include <string_view>
#include <tuple>
#include <type_traits>

#include "velmoria/core/catalogue.h"
#include "velmoria/core/enumerations.h"
#include "velmoria/design/design_key.h"
#include "velmoria/fwd.h"

namespace velmoria {

/// The four classes of one kind of design object, as messages show them.
struct DesignNames {
  std::string_view Facade;
  std::string_view Data;
  std::string_view Collection;
  std::string_view CollectionData;
};

/// What one kind of design object raises in its collection.
struct DesignNumbers {
  zErrors Adding;
  zErrors Finding;
  zErrors Removing;
  zErrors Rekeying;
};

/// What the root of a definition file raises when it cannot be set up: without a Name and a FileName, and for a file
/// that cannot be read.
struct RootNumbers {
  zErrors MissingInfo;
  zErrors CannotRead;
};

/// The texts before the number of members in Details: of a transient collection, of a bound one, of the definitions.
struct CountTexts {
  std::string_view Transient;
  std::string_view Bound;
  std::string_view Data;

  constexpr explicit CountTexts(std::string_view all) : Transient(all), Bound(all), Data(all) {}
  constexpr CountTexts(std::string_view transient, std::string_view bound, std::string_view data)
      : Transient(transient), Bound(bound), Data(data) {}
};

/// Whether a kind's list of fields has this one.
template <class... Listed, class Field>
constexpr bool Lists(const std::tuple<Listed...>& fields, Field field) {
  const auto is = [field](auto listed) {
    if constexpr (std::is_same_v<decltype(listed), Field>) {
      return listed == field;
    } else {
      return false;
    }
  };
  return std::apply([&](auto... listed) { return (is(listed) || ...); }, fields);
}

/// The rules that most kinds of design object share. A kind derives from this, states its types, names and numbers, and
/// states anew what is different with it.
struct VELMORIA_API DesignKind {
  using KeyPolicy = KeyedByName;
  /// The kind of object below which a collection of this kind stands; none above the root of a definition file.
  using Parent = void;
  /// What stands below one object, beside its user properties. A child is made when it is first asked for, brought in
  /// by LoadAllDetail, copied by a recursive Copy, and makes the object dirty; a Data overrides what is different.
  using Children = std::tuple<>;

  /// Whether Locked makes the setters refuse with 15002; Locked itself can always be set.
  static constexpr bool SettersObeyLocked = false;
  /// The fields that are set all the same.
  static constexpr std::tuple<> SetWhileLocked{};
  /// The fields that are stored, and make the object dirty, even when the value is the one that is there. Locked is
  /// such a field of every kind.
  static constexpr std::tuple<> StoredAlways{};
  /// Whether the count line of a bound collection names the parent.
  static constexpr bool CountNamesParent = true;
  /// Whether adding to and removing from a collection makes its definitions Dirty.
  static constexpr bool CollectionIsStamped = true;
  /// Whether everything below an object is brought into memory before it leaves its collection.
  static constexpr bool LoadsDetailToRemove = true;
  /// The routine that "Object already has" errors name.
  static constexpr std::string_view SetParentsRoutine = "SetParents";
};

}  // namespace velmoria
