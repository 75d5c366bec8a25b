#pragma once

#include "velmoria/design/connector_kind.h"
#include "velmoria/design/design_collection_data.h"

namespace velmoria {

extern template class DesignCollectionData<ConnectorKind>;

class ConnectorsData final : public DesignCollectionData<ConnectorKind> {
 public:
  ConnectorsData();
  ~ConnectorsData() override;
};

}  // namespace velmoria
