#include "velmoria/design/relationship.h"

#include "velmoria/core/display.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/design_object_impl.h"
#include "velmoria/design/links.h"
#include "velmoria/design/relationship_data.h"
#include "velmoria/design/server_data.h"

namespace velmoria {

template class DesignObject<RelationshipKind>;

Relationship::Relationship() = default;
Relationship::~Relationship() = default;

zAssociations Relationship::Association() const { return Get(&RelationshipFields::Association); }
void Relationship::SetAssociation(zAssociations value) {
  Let("Association (Let)", &RelationshipFields::Association, value);
}
std::string Relationship::AssociationName() const { return velmoria::AssociationName(Association()); }

std::string Relationship::RelatedServerName() const { return Get(&RelationshipFields::RelatedServerName); }
void Relationship::SetRelatedServerName(std::string value) {
  Let("RelatedServerName (Let)", &RelationshipFields::RelatedServerName, std::move(value));
}

std::string Relationship::RelatedClassName() const { return Get(&RelationshipFields::RelatedClassName); }
void Relationship::SetRelatedClassName(std::string value) {
  Let("RelatedClassName (Let)", &RelationshipFields::RelatedClassName, std::move(value));
}

std::string Relationship::RelatedActionName() const { return Get(&RelationshipFields::RelatedActionName); }
void Relationship::SetRelatedActionName(std::string value) {
  Let("RelatedActionName (Let)", &RelationshipFields::RelatedActionName, std::move(value));
}

std::string Relationship::ServerName() const { return NameOf(HeldParents().Server); }
std::string Relationship::ClassName() const { return NameOf(HeldParents().Class); }

LinksPtr Relationship::Links() { return Child(links_); }

void Relationship::PassOn(const ParentChange& change) {
  change.To(links_);
  DesignObject::PassOn(change);
}

}  // namespace velmoria
