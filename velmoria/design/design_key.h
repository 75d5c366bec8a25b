#pragma once

#include <string>
#include <string_view>
#include <type_traits>

#include "velmoria/core/catalogue.h"
#include "velmoria/core/enumerations.h"
#include "velmoria/core/position.h"
#include "velmoria/core/reporting.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// How design objects that go by their Name are found in a collection: by 1-based position or by the name, in any case.
struct VELMORIA_API KeyedByName {
  using Key = std::string;
  using Index = Variant;

  static constexpr std::string_view RekeyRoutine = "RenameItem";
  static constexpr zErrors TransientRefusal = errNotSupported_Rename;

  /// The key of the lists.
  static std::string Text(const Key& name) { return name; }
  static Variant ListIndex(const Index& index) { return index; }
  static Position ListPosition(const Position& position) { return position; }
  /// What a "Problem finding" or "Problem removing" text shows.
  static Replacements Shown(const Index& resolved, const Index& given);
};

/// How Source and Connector are found: by their engine alone, never by position; the key is its decimal text. In
/// Before and After, too, a number means an engine.
struct VELMORIA_API KeyedByEngine {
  using Key = zEngines;
  using Index = zEngines;

  static constexpr std::string_view RekeyRoutine = "ChangeItemEngine";
  static constexpr zErrors TransientRefusal = errNotSupported_EngineChange;

  static std::string Text(Key engine);
  static Variant ListIndex(Index engine) { return Variant(Text(engine)); }
  static Position ListPosition(const Position& position);
  static Replacements Shown(Index resolved, Index given);
};

template <class Kind>
concept NamedKind = std::is_same_v<typename Kind::KeyPolicy, KeyedByName>;

template <class Kind>
concept EngineKind = std::is_same_v<typename Kind::KeyPolicy, KeyedByEngine>;

}  // namespace velmoria
