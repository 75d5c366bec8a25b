#pragma once

#include <string>
#include <tuple>

#include "velmoria/core/enumerations.h"
#include "velmoria/design/design_kind.h"

namespace velmoria {

/// What a Relationship is made from.
struct RelationshipFields {
  std::string Name;
  zAssociations Association = raOneToMany;
  std::string RelatedServerName{};
  std::string RelatedClassName{};
  std::string RelatedActionName{};
  std::string Description{};
  bool Locked = false;
};

struct VELMORIA_API RelationshipKind : DesignKind {
  using Facade = Relationship;
  using Data = RelationshipData;
  using Fields = RelationshipFields;
  using Parent = ClassKind;
  using Children = std::tuple<LinksDataPtr>;

  static constexpr auto KeyField = &RelationshipFields::Name;
  static constexpr DesignNames Names{"Relationship", "RelationshipData", "Relationships", "RelationshipsData"};
  static constexpr DesignNumbers Numbers{errAdd_Relationship, errItem_Relationship, errRemove_Relationship,
                                         errRename_Relationship};
  static constexpr CountTexts Counted{"Relationships Count "};
};

}  // namespace velmoria
