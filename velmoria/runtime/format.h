#pragma once

#include <string>
#include <string_view>

#include "velmoria/runtime/api.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The text of a value by a format pattern, the same in every locale: a point before decimals, commas between
/// thousands, "$", English names, month before day. Weeks begin on Sunday, and the week of 1 January is the first of
/// its year.
///
/// # Named formats, in any case
///
///   General Number   the digits as they are                  1234.5
///   Currency         $#,##0.00;($#,##0.00)                   $1,234.50    ($1,234.50)
///   Fixed            0.00                                    1234.50
///   Standard         #,##0.00                                1,234.50
///   Percent          0.00%                                   12.00%
///   Scientific       0.00E+00                                1.23E+03
///   Yes/No, True/False, On/Off                               the second word for 0, the first for any other number
///   General Date     c                                       6/1/98 9:04:02 AM
///   Long Date        dddddd                                  Monday, June 1, 1998
///   Medium Date      dd-mmm-yy                               01-Jun-98
///   Short Date       ddddd                                   6/1/98
///   Long Time        ttttt                                   9:04:02 AM
///   Medium Time      hh:nn AM/PM                             09:04 AM
///   Short Time       hh:nn                                   09:04
///
/// Anything else is a user pattern. Its kind is told by the characters in it that are not literal: @ or & anywhere, or
/// < > ! in front, make it one for texts; else 0 or # one for numbers; else a letter of the dates (c d h m n q s t w y,
/// or A/P) one for dates; else it is one for numbers that shows literals only.
///
/// # Literals, in every kind
///
///   "text"      the text, without the quotes; a backslash in it is a character like any other. Without text it shows
///               nothing, but the section that holds it is not empty
///   \c          the character c; \" is a quote and \\ a backslash
///   any other   a character without meaning in the pattern's kind stands for itself: $ - + ( ) and blanks always do
///
/// # Numbers: one to four sections, by semicolons
///
///   first       positive numbers, and all that have no section of their own; an empty one is General Number
///   second      negative numbers, shown without sign: what tells them stands in the section
///   third       zero, and what becomes zero by rounding
///   fourth      Null
///
/// An empty second or third section leaves its numbers to the first; an empty fourth shows nothing. Null is shown in
/// its section as zero would be. A negative number in the first section has its sign in front of everything.
///
///   0           a digit, or 0 where the number has none
///   #           a digit, or nothing where the number has none; digits before the leftmost place are always shown
///   .           the decimal point; a second one stands for itself. Places behind it round, halves away from zero
///   ,           between two places before the point: commas between thousands. Behind the last place before the
///               point: each divides by a thousand. Anywhere else it is left out
///   %           itself, and multiplies by a hundred
///   E+ E- e+ e- with places behind: an exponent of so many digits or more. The places in front say how many digits
///               stand before the point. After + a positive exponent has its sign too
///
/// # Dates: one section; letters in any case, the longest run that has a meaning first
///
///   d dd        day of the month, 1 or 01             ddd dddd    its name, Sun or Sunday
///   ddddd       short date, 6/1/98; a year outside 1930 to 2029 has four digits
///   dddddd      long date, Monday, June 1, 1998
///   w           day of the week, 1 for Sunday         ww          week of the year, 1 to 54
///   m mm        month, 6 or 06; minutes where the part before is h or hh
///   mmm mmmm    its name, Jun or June                 q           quarter, 1 to 4
///   y           day of the year, 1 to 366             yy yyyy     year, 98 or 1998
///   h hh        hour, 9 or 09                         n nn        minute, 4 or 04
///   s ss        second, 2 or 02                       ttttt       long time, 9:04:02 AM
///   c           ddddd ttttt; without the time at midnight, without the date on day 0
///   AM/PM A/P   the half of the day: AM or A before noon, else PM or P, small where the pattern begins small
///   AMPM        the same as AM/PM, always capital
///   : /         themselves
///
/// With a half of the day anywhere in the pattern, hours run from 1 to 12; else from 0 to 23.
///
/// # Texts: one or two sections
///
///   first       texts; without a second section also the empty one
///   second      the empty text, Empty and Null
///
///   @           a character, or a blank where the text has none
///   &           a character, or nothing where the text has none
///   < >         all characters small, or all capital; the last of them counts
///   !           places fill from the left; else they fill from the right
///
/// A text longer than its places goes on before the first of them, with ! behind the last part of the pattern.
///
/// # Which value goes with which pattern
///
///   numbers     any number; Boolean as -1 and 0, Date as its days; a text that reads as a number. Every other text
///               stays as it is, and so does a real number that is not finite
///   dates       Date; any number as days; a text in one of the forms of Date::Parse. Every other text stays as it is
///   texts       the string form of any value
///   no pattern  the string form
///
/// Null and Empty give an empty text where no section is theirs.
///
/// Raises 5 for a bad pattern, whatever the value: a quote that is not closed, nothing behind the last backslash, too
/// many sections, an exponent without places before or behind it, places behind an exponent. Raises 6 for a number
/// that is no date under a pattern for dates, 13 for arrays, objects and Missing.
VELMORIA_API std::string FormatText(const Variant& value, std::string_view pattern);

}  // namespace velmoria
