#include "velmoria/design/relationships_data.h"

#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/relationship_data.h"

namespace velmoria {

template class DesignCollectionData<RelationshipKind>;

RelationshipsData::RelationshipsData() = default;
RelationshipsData::~RelationshipsData() = default;

}  // namespace velmoria
