#include "velmoria/design/connectors_data.h"

#include "velmoria/design/connector_data.h"
#include "velmoria/design/design_collection_data_impl.h"

namespace velmoria {

template class DesignCollectionData<ConnectorKind>;

ConnectorsData::ConnectorsData() = default;
ConnectorsData::~ConnectorsData() = default;

}  // namespace velmoria
