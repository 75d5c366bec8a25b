#include "velmoria/design/relationship_data.h"

#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/design_data_impl.h"
#include "velmoria/design/link_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

template class DesignData<RelationshipKind>;
template class DesignCollectionData<RelationshipKind>;

RelationshipData::RelationshipData() = default;
RelationshipData::~RelationshipData() = default;

std::string RelationshipData::Details() const {
  return "Association: " + Quoted(AssociationName(Fields().Association)) +
         " Related Server: " + Quoted(Fields().RelatedServerName) +
         " Related Class: " + Quoted(Fields().RelatedClassName) +
         " Related Action: " + Quoted(Fields().RelatedActionName);
}

LinksDataPtr RelationshipData::LinksData() { return Child<velmoria::LinksData>(); }

}  // namespace velmoria
