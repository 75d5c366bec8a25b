#pragma once

#include <string>
#include <string_view>

#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The text of a value by a format pattern, the same in every locale, with Sunday as first day of the week and the week
/// of 1 January as the first of the year. Named formats: General Number, Currency, Fixed, Standard, Percent,
/// Scientific, Yes/No, True/False, On/Off, General Date, Long Date, Medium Date, Short Date, Long Time, Medium Time,
/// Short Time. Else a user pattern: numbers in up to four sections (0 # . , % E+ E- and literals), dates (d dd ddd dddd
/// ddddd dddddd w ww m mm mmm mmmm q y yy yyyy h hh n nn s ss ttttt AM/PM am/pm A/P a/p AMPM c / :), texts (@ & < > !).
/// An empty pattern gives the string form. Raises 5 for a pattern that cannot be read.
VELMORIA_API std::string FormatText(const Variant& value, std::string_view pattern);

}  // namespace velmoria
