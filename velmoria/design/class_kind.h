#pragma once

#include <string>
#include <tuple>

#include "velmoria/design/design_kind.h"

namespace velmoria {

/// What a Class is made from.
struct ClassFields {
  std::string Name;
  std::string ActiveXClass{};
  std::string ActiveXCollection{};
  std::string Description{};
  std::string SingleActionName{};
  std::string NewActionName{};
  std::string DefaultActionName{};
  bool Locked = false;
};

struct VELMORIA_API ClassKind : DesignKind {
  using Facade = Class;
  using Data = ClassData;
  using Fields = ClassFields;
  using Parent = ServerKind;
  using Children = std::tuple<PropertiesDataPtr, ActionsDataPtr, RelationshipsDataPtr>;  // the first is the identifier

  static constexpr auto KeyField = &ClassFields::Name;
  static constexpr bool SettersObeyLocked = true;
  static constexpr std::string_view SetParentsRoutine = "SetParent";
  static constexpr DesignNames Names{"Class", "ClassData", "Classes", "ClassesData"};
  static constexpr DesignNumbers Numbers{errAdd_Class, errItem_Class, errRemove_Class, errRename_Class};
  static constexpr CountTexts Counted{"Classes Count "};
};

}  // namespace velmoria
