#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "velmoria/core/enumerations.h"
#include "velmoria/design/design_kind.h"

namespace velmoria {

/// What a Source is made from; stNone stands for the machine's default type of the engine.
struct SourceFields {
  zEngines Engine;
  zSourceTypes SourceType = stNone;
  std::string SourceText{};
  std::int32_t KeysetSize = 0;
  std::int32_t RowsetSize = 0;
  zOptionFlags OptionFlags = ofNone;
  std::string Description{};
  bool Locked = false;
};

struct VELMORIA_API SourceKind : DesignKind {
  using KeyPolicy = KeyedByEngine;
  using Facade = Source;
  using Data = SourceData;
  using Fields = SourceFields;
  using Parent = ActionKind;
  using Children = std::tuple<PropertiesDataPtr>;  // the Parameters

  static constexpr auto KeyField = &SourceFields::Engine;
  static constexpr std::tuple StoredAlways{&SourceFields::SourceType, &SourceFields::KeysetSize,
                                           &SourceFields::RowsetSize, &SourceFields::OptionFlags};
  static constexpr bool CountNamesParent = false;
  static constexpr DesignNames Names{"Source", "SourceData", "Sources", "SourcesData"};
  static constexpr DesignNumbers Numbers{errAdd_Source, errItem_Source, errRemove_Source, errRename_Source};
  static constexpr CountTexts Counted{"Sources Count: "};
};

}  // namespace velmoria
