#include "velmoria/design/servers.h"

#include "velmoria/design/design_collection_impl.h"
#include "velmoria/design/server.h"
#include "velmoria/design/server_data.h"

namespace velmoria {

template class DesignCollection<ServerKind>;

Servers::Servers() = default;
Servers::~Servers() = default;

bool Servers::Registered() const { return static_cast<bool>(Data()); }

}  // namespace velmoria
