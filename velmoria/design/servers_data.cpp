#include "velmoria/design/servers_data.h"

#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/server_data.h"

namespace velmoria {

template class DesignCollectionData<ServerKind>;

ServersData::ServersData() = default;
ServersData::~ServersData() = default;

}  // namespace velmoria
