#include "velmoria/design/databases_data.h"

#include "velmoria/design/database_data.h"
#include "velmoria/design/design_collection_data_impl.h"

namespace velmoria {

template class DesignCollectionData<DatabaseKind>;

DatabasesData::DatabasesData() = default;
DatabasesData::~DatabasesData() = default;

}  // namespace velmoria
