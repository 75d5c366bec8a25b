#include "velmoria/design/actions_data.h"

#include "velmoria/design/action_data.h"
#include "velmoria/design/design_collection_data_impl.h"

namespace velmoria {

template class DesignCollectionData<ActionKind>;

ActionsData::ActionsData() = default;
ActionsData::~ActionsData() = default;

}  // namespace velmoria
