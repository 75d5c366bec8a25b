#pragma once

#include "velmoria/design/design_collection_data.h"
#include "velmoria/design/link_kind.h"

namespace velmoria {

extern template class DesignCollectionData<LinkKind>;

class LinksData final : public DesignCollectionData<LinkKind> {
 public:
  LinksData();
  ~LinksData() override;
};

}  // namespace velmoria
