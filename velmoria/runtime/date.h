#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/runtime/api.h"

namespace velmoria {

/// The calendar view of a Date.
struct DateParts {
  int Year = 1899;
  int Month = 12;
  int Day = 30;
  int Hour = 0;
  int Minute = 0;
  int Second = 0;
  int Millisecond = 0;
};

/// A point in time without zone: days since 30 December 1899 and the fraction of the day, years 100 to 9999.
/// Before day 0 the fraction still counts forwards within its day, as OLE dates do: -1.25 is 6:00 of the day before.
struct VELMORIA_API Date {
  /// The bounds of Days: the first moment of year 100, and the first that lies beyond year 9999.
  static constexpr double FirstDay = -657434;
  static constexpr double EndOfDays = 2958466;

  double Days = 0;

  /// Raises 5 for a part out of range.
  static Date From(const DateParts& parts);
  static Date From(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
  /// Reads the forms of AsText, "YYYY-MM-DD", "hh:mm[:ss[.fff]]" or both, also with a "T" between, and the US form
  /// "M/D/YYYY h:mm:ss AM", also in parts; a year of two digits counts from 1930 to 2029, digits of the second beyond
  /// the third are dropped. Raises 13 for anything else.
  static Date Parse(std::string_view text);

  /// Rounded to the millisecond. Raises 6 when Days lies out of bounds.
  DateParts Parts() const;
  /// "YYYY-MM-DD hh:mm:ss", the date alone at midnight, the time alone on day 0 ("00:00:00" for day 0 itself). The
  /// second is the one that has begun.
  std::string AsText() const;
  /// The US form of message headings, "6/1/98 9:14:02 AM"; the time is left out at midnight, the date on day 0. A year
  /// outside 1930 to 2029 has four digits.
  std::string AsGeneralDate() const;

  /// The order of time, which before day 0 is not the order of Days.
  friend bool operator==(const Date& left, const Date& right) noexcept { return left.Line() == right.Line(); }
  friend auto operator<=>(const Date& left, const Date& right) noexcept { return left.Line() <=> right.Line(); }

 private:
  double Line() const noexcept { return Days >= 0 ? Days : LineBeforeDayZero(); }
  double LineBeforeDayZero() const noexcept;
};

/// The count of whole-second boundaries from one date to the other, negative when `to` is the earlier.
VELMORIA_API std::int64_t SecondsBetween(Date from, Date to) noexcept;

}  // namespace velmoria
