#pragma once

#include <cstdint>

#include "velmoria/runtime/variant.h"

namespace velmoria::odbc {

/// The whole number that a value is. Raises 6 for one with decimals and for one that 64 bits do not hold, and what its
/// conversion raises.
std::int64_t WholeOf(const Variant& value);

}  // namespace velmoria::odbc
