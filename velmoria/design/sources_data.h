#pragma once

#include "velmoria/design/design_collection_data.h"
#include "velmoria/design/source_kind.h"

namespace velmoria {

extern template class DesignCollectionData<SourceKind>;

class SourcesData final : public DesignCollectionData<SourceKind> {
 public:
  SourcesData();
  ~SourcesData() override;
};

}  // namespace velmoria
