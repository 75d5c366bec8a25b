#include "velmoria/design/relationships.h"

#include "velmoria/design/class_data.h"
#include "velmoria/design/design_collection_impl.h"
#include "velmoria/design/relationship.h"
#include "velmoria/design/relationship_data.h"
#include "velmoria/design/server_data.h"

namespace velmoria {

template class DesignCollection<RelationshipKind>;

Relationships::Relationships() = default;
Relationships::~Relationships() = default;

std::string Relationships::ServerName() const { return NameOf(HeldParents().Server); }
std::string Relationships::ClassName() const { return NameOf(HeldParents().Class); }

}  // namespace velmoria
