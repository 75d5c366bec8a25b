#include "velmoria/design/actions.h"

#include "velmoria/design/action.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/design_collection_impl.h"
#include "velmoria/design/server_data.h"

namespace velmoria {

template class DesignCollection<ActionKind>;

Actions::Actions() = default;
Actions::~Actions() = default;

std::string Actions::ServerName() const { return NameOf(HeldParents().Server); }
std::string Actions::ClassName() const { return NameOf(HeldParents().Class); }

}  // namespace velmoria
