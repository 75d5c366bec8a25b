#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "velmoria/core/enumerations.h"
#include "velmoria/design/design_kind.h"

namespace velmoria {

/// What an Action is made from.
struct ActionFields {
  std::string Name;
  std::string DatabaseName{};
  std::string ConnectionsName{};
  zUsageFlags UsageFlags = ufNone;
  zEditFlags EditFlags = efNone;
  std::string Description{};
  zCollectionTypes CollectionType = cltOptimized;
  zObjectTypes ObjectType = otBusiness;
  std::int32_t ObjectBuffer = 0;
  std::string BusinessObjectsName{};
  std::string PropertiesName{};
  bool Locked = false;
};

struct VELMORIA_API ActionKind : DesignKind {
  using Facade = Action;
  using Data = ActionData;
  using Fields = ActionFields;
  using Parent = ClassKind;
  using Children = std::tuple<SourcesDataPtr>;

  static constexpr auto KeyField = &ActionFields::Name;
  static constexpr bool SettersObeyLocked = true;
  static constexpr DesignNames Names{"Action", "ActionData", "Actions", "ActionsData"};
  static constexpr DesignNumbers Numbers{errAdd_Action, errItem_Action, errRemove_Action, errRename_Action};
  static constexpr CountTexts Counted{"Actions Count "};
};

}  // namespace velmoria
