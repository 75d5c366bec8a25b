#pragma once

#include <cstddef>

#include "velmoria/platform/odbc/calls.h"
#include "velmoria/runtime/date.h"

namespace velmoria::odbc {

/// Writes a date as the structure of the C type, which is that of a date, a time or a timestamp, and gives its size.
Length StoreDate(std::byte* place, Small cType, velmoria::Date date);

}  // namespace velmoria::odbc
