#pragma once

#include <string>
#include <string_view>

#include "velmoria/runtime/variant.h"

namespace velmoria {

/// Whether two values are the same: of one type and equal. Empty is the same only as Empty, Null only as Null; dates
/// are the same within one second; arrays by their bounds and elements.
VELMORIA_API bool VariantsEqual(const Variant& value1, const Variant& value2);

/// The text without any "[", "]" and "@".
VELMORIA_API std::string StripNameDelimiters(std::string_view text);

}  // namespace velmoria
