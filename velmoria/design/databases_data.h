#pragma once

#include "velmoria/design/database_kind.h"
#include "velmoria/design/design_collection_data.h"

namespace velmoria {

extern template class DesignCollectionData<DatabaseKind>;

class DatabasesData final : public DesignCollectionData<DatabaseKind> {
 public:
  DatabasesData();
  ~DatabasesData() override;
};

}  // namespace velmoria
