#pragma once

#include <string>

#include "velmoria/design/design_kind.h"

namespace velmoria {

/// What a Link is made from.
struct LinkFields {
  std::string Name;
  std::string Description{};
  bool Locked = false;
};

struct VELMORIA_API LinkKind : DesignKind {
  using Facade = Link;
  using Data = LinkData;
  using Fields = LinkFields;
  using Parent = RelationshipKind;

  static constexpr auto KeyField = &LinkFields::Name;
  static constexpr DesignNames Names{"Link", "LinkData", "Links", "LinksData"};
  static constexpr DesignNumbers Numbers{errAdd_Link, errItem_Link, errRemove_Link, errRename_Link};
  static constexpr CountTexts Counted{"Links Count "};
};

}  // namespace velmoria
