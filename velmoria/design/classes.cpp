#include "velmoria/design/classes.h"

#include "velmoria/design/class.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/design_collection_impl.h"
#include "velmoria/design/server_data.h"

namespace velmoria {

template class DesignCollection<ClassKind>;

Classes::Classes() = default;
Classes::~Classes() = default;

std::string Classes::ServerName() const { return NameOf(HeldParents().Server); }

}  // namespace velmoria
