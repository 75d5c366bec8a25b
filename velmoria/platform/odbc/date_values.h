#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "velmoria/platform/odbc/calls.h"
#include "velmoria/runtime/date.h"

namespace velmoria::odbc {

/// Writes a date as the structure of the C type, which is that of a date, a time or a timestamp, and gives its size.
Length StoreDate(std::byte* place, Small cType, velmoria::Date date);

/// The text of a date for a parameter of the driver's type, to the millisecond.
std::string DateText(velmoria::Date date, Small type);

/// The date in the structure of a time or a timestamp; a time alone lies on day 0. Raises 5 for what no calendar has.
velmoria::Date LoadDate(const std::byte* place, Small cType);

/// The date that a driver gives as text: the forms of Date::Parse, and a zone behind a time of ISO form, which is left
/// away. Raises 5 for anything else.
velmoria::Date ReadDateText(std::string_view text);

}  // namespace velmoria::odbc
