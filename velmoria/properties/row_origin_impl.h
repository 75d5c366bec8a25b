#pragma once

#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/fwd.h"

namespace velmoria {

// Where a row comes from, as its DatabaseAgent knows it; "" or 0 where there is none.

ActionPtr ActionOf(const Recordset& recordset);
std::string ServerNameOf(const Recordset& recordset);
std::string ClassNameOf(const Recordset& recordset);
std::string ActionNameOf(const Recordset& recordset);
zEditFlags EditFlagsOf(const Recordset& recordset);

}  // namespace velmoria
