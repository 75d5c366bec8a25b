#pragma once

#include <string>

#include "velmoria/design/design_collection_data.h"
#include "velmoria/design/design_data.h"
#include "velmoria/design/relationship_kind.h"

namespace velmoria {

extern template class DesignData<RelationshipKind>;
extern template class DesignCollectionData<RelationshipKind>;

class RelationshipData final : public DesignData<RelationshipKind> {
 public:
  RelationshipData();
  ~RelationshipData() override;

  std::string Details() const override;
  LinksDataPtr LinksData();
};

}  // namespace velmoria
