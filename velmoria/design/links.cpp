#include "velmoria/design/links.h"

#include "velmoria/design/design_collection_impl.h"
#include "velmoria/design/link.h"
#include "velmoria/design/link_data.h"
#include "velmoria/design/relationship_data.h"

namespace velmoria {

template class DesignCollection<LinkKind>;

Links::Links() = default;
Links::~Links() = default;

}  // namespace velmoria
