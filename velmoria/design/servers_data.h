#pragma once

#include "velmoria/design/design_collection_data.h"
#include "velmoria/design/server_kind.h"

namespace velmoria {

extern template class DesignCollectionData<ServerKind>;

class ServersData final : public DesignCollectionData<ServerKind> {
 public:
  ServersData();
  ~ServersData() override;
};

}  // namespace velmoria
