#include "velmoria/design/sources_data.h"

#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/source_data.h"

namespace velmoria {

template class DesignCollectionData<SourceKind>;

SourcesData::SourcesData() = default;
SourcesData::~SourcesData() = default;

}  // namespace velmoria
