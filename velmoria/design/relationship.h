#pragma once

#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/design/design_object.h"
#include "velmoria/design/relationship_kind.h"

namespace velmoria {

extern template class VELMORIA_API DesignObject<RelationshipKind>;

/// How the business objects of one Class lead to those of another: the related Server, Class and Action, and through
/// Links what the Action's parameters take from the object at hand. The related names may be those of nothing; that
/// shows when the Relationship is followed. No setter consults Locked.
class VELMORIA_API Relationship final : public DesignObject<RelationshipKind> {
 public:
  Relationship();
  ~Relationship() override;

  zAssociations Association() const;
  void SetAssociation(zAssociations value);
  std::string AssociationName() const;
  /// Empty for whichever registered Server has the class.
  std::string RelatedServerName() const;
  void SetRelatedServerName(std::string value);
  std::string RelatedClassName() const;
  void SetRelatedClassName(std::string value);
  /// The Action that brings the related objects.
  std::string RelatedActionName() const;
  void SetRelatedActionName(std::string value);

  // Of the parents; empty without them.
  std::string ServerName() const;
  std::string ClassName() const;

  LinksPtr Links();

 private:
  void PassOn(const ParentChange& change) override;

  LinksPtr links_;
};

}  // namespace velmoria
