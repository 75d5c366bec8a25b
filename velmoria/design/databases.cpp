#include "velmoria/design/databases.h"

#include "velmoria/design/database.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/design_collection_impl.h"

namespace velmoria {

template class DesignCollection<DatabaseKind>;

Databases::Databases() = default;
Databases::~Databases() = default;

bool Databases::Registered() const { return static_cast<bool>(Data()); }

}  // namespace velmoria
