#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "velmoria/runtime/date.h"

namespace velmoria {

inline constexpr std::int64_t kMillisecondsInDay = 86'400'000;

/// Days since 1 January of year 1, which is 1, for a date that exists.
int DayOfEra(int year, int month, int day) noexcept;
int DaysInMonth(int year, int month) noexcept;
bool IsLeapYear(int year) noexcept;
/// Whether a calendar and a clock have such a moment, within the years of a Date.
bool Exists(const DateParts& parts) noexcept;
/// Whether the day is 30 December 1899, which a time of day without a date has.
bool IsOnDayZero(const DateParts& parts) noexcept;
/// The calendar view of a text in one of the forms of Date::Parse, if it is such a moment.
std::optional<DateParts> ReadDate(std::string_view text);
/// Milliseconds since 30 December 1899 in the order of time; what lies far out of bounds stops at an end.
std::int64_t MillisecondLine(Date date) noexcept;

/// A year as US forms show it: two digits from 1930 to 2029, else four.
std::string ShortYear(int year);
/// A whole number with zeros in front.
std::string Padded(int value, int digits);
/// "9:14:02 AM"
std::string LongTime(const DateParts& parts);
/// "6/1/98"
std::string ShortDate(const DateParts& parts);

}  // namespace velmoria
