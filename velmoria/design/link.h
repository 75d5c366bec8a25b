#pragma once

#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/design/design_object.h"
#include "velmoria/design/link_kind.h"

namespace velmoria {

extern template class VELMORIA_API DesignObject<LinkKind>;

/// One step from an object to its related ones: the Property of the object at hand whose value goes into the Parameter
/// of the related Action. No setter consults Locked.
class VELMORIA_API Link final : public DesignObject<LinkKind> {
 public:
  Link();
  ~Link() override;

  // Made when first asked for, without a name as long as the Link says nothing about that end.

  /// The end in the parent of the relationship, of style psLinkProperty.
  PropertyPtr Property();
  /// The end in the child, of style psLinkParameter.
  PropertyPtr Parameter();

  // Of the parents; empty without them.
  std::string ServerName() const;
  std::string ClassName() const;
  std::string RelationshipName() const;

  // Inside the library.

  zLinkTypes LinkType() const;

 private:
  void PassOn(const ParentChange& change) override;
  PropertyPtr End(const PropertyDataPtr& definition) const;

  PropertyPtr property_;
  PropertyPtr parameter_;
};

}  // namespace velmoria
