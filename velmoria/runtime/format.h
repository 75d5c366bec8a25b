#pragma once

#include <string>
#include <string_view>

#include "velmoria/runtime/api.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The text of a value by a format pattern, the same in every locale, with Sunday as first day of the week and the week
/// of 1 January as the first of the year.
///
/// Named formats: General Number, Currency, Fixed, Standard, Percent, Scientific, Yes/No, True/False, On/Off, General
/// Date, Long Date, Medium Date, Short Date, Long Time, Medium Time, Short Time.
///
/// Anything else is a user pattern, whose kind its characters tell: @ or &, or < > ! in front, make it one for texts,
/// else 0 or # one for numbers, else a letter of the dates one for dates; other characters stand for themselves, as do
/// those between double quotes and behind a backslash.
/// - numbers: sections for positive, negative, zero and Null, by semicolons; 0 # . , % E+ E- (halves round away from 0)
/// - dates: d dd ddd dddd ddddd dddddd w ww m mm mmm mmmm q y yy yyyy h hh n nn s ss ttttt c AM/PM am/pm A/P a/p AMPM;
///   m and mm behind the hour are minutes
/// - texts: sections for a text and for an empty one or Null; placeholders fill from the right, with ! from the left
///
/// A text that is no number or date stays as it is under such a pattern. Null and Empty give an empty text where no
/// section is theirs. An empty pattern gives the string form. Raises 5 for a pattern that cannot be read: an open
/// quote, nothing behind a backslash, an exponent without digits, a fifth section; raises 13 for arrays, objects and
/// Missing.
VELMORIA_API std::string FormatText(const Variant& value, std::string_view pattern);

}  // namespace velmoria
