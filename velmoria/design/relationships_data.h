#pragma once

#include "velmoria/design/design_collection_data.h"
#include "velmoria/design/relationship_kind.h"

namespace velmoria {

extern template class DesignCollectionData<RelationshipKind>;

class RelationshipsData final : public DesignCollectionData<RelationshipKind> {
 public:
  RelationshipsData();
  ~RelationshipsData() override;
};

}  // namespace velmoria
