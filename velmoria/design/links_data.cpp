#include "velmoria/design/links_data.h"

#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/link_data.h"

namespace velmoria {

template class DesignCollectionData<LinkKind>;

LinksData::LinksData() = default;
LinksData::~LinksData() = default;

}  // namespace velmoria
