#include "velmoria/runtime/date.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "velmoria/runtime/date_impl.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

constexpr int kDayZero = 693594;  // 30 December 1899
constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;
constexpr std::array<int, 13> kDaysBeforeMonth{0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};

int DaysBeforeYear(int year) noexcept {
  const int past = year - 1;
  return past * 365 + past / 4 - past / 100 + past / 400;
}

int DaysBeforeMonth(int year, int month) noexcept {
  return kDaysBeforeMonth[static_cast<std::size_t>(month) - 1] + (month > 2 && IsLeapYear(year) ? 1 : 0);
}

void SetCalendar(DateParts& parts, int dayOfEra) noexcept {
  parts.Year = static_cast<int>(dayOfEra / 365.2425) + 1;
  while (DaysBeforeYear(parts.Year) >= dayOfEra) --parts.Year;
  while (DaysBeforeYear(parts.Year + 1) < dayOfEra) ++parts.Year;
  const int dayOfYear = dayOfEra - DaysBeforeYear(parts.Year);
  parts.Month = 12;
  while (DaysBeforeMonth(parts.Year, parts.Month) >= dayOfYear) --parts.Month;
  parts.Day = dayOfYear - DaysBeforeMonth(parts.Year, parts.Month);
}

void SetClock(DateParts& parts, int milliseconds) noexcept {
  parts.Millisecond = milliseconds % 1000;
  parts.Second = milliseconds / 1000 % 60;
  parts.Minute = milliseconds / 60'000 % 60;
  parts.Hour = milliseconds / 3'600'000;
}

std::int64_t FloorDivide(std::int64_t value, std::int64_t divisor) noexcept {
  const std::int64_t quotient = value / divisor;
  return value % divisor < 0 ? quotient - 1 : quotient;
}

bool AtMidnight(const DateParts& parts) noexcept { return parts.Hour == 0 && parts.Minute == 0 && parts.Second == 0; }

// Both string forms show the date, the time or both by these rules.
bool ShowsDate(const DateParts& parts) noexcept { return !IsOnDayZero(parts); }
bool ShowsTime(const DateParts& parts) noexcept { return IsOnDayZero(parts) || !AtMidnight(parts); }

/// Writes into a buffer that is long enough.
class DigitWriter {
 public:
  explicit DigitWriter(char* at) : at_(at) {}
  DigitWriter& Digits(int value, int count) noexcept {
    for (int place = count; place-- > 0; value /= 10) at_[place] = static_cast<char>('0' + value % 10);
    at_ += count;
    return *this;
  }
  DigitWriter& Character(char character) noexcept { return *at_++ = character, *this; }
  char* End() const noexcept { return at_; }

 private:
  char* at_;
};

}  // namespace

bool IsLeapYear(int year) noexcept { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

bool IsOnDayZero(const DateParts& parts) noexcept { return parts.Year == 1899 && parts.Month == 12 && parts.Day == 30; }

int DaysInMonth(int year, int month) noexcept {
  const auto place = static_cast<std::size_t>(month);
  return kDaysBeforeMonth[place] - kDaysBeforeMonth[place - 1] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

int DayOfEra(int year, int month, int day) noexcept {
  return DaysBeforeYear(year) + DaysBeforeMonth(year, month) + day;
}

bool Exists(const DateParts& parts) noexcept {
  const auto within = [](int value, int first, int last) { return value >= first && value <= last; };
  return within(parts.Year, kFirstYear, kLastYear) && within(parts.Month, 1, 12) &&
         within(parts.Day, 1, DaysInMonth(parts.Year, parts.Month)) && within(parts.Hour, 0, 23) &&
         within(parts.Minute, 0, 59) && within(parts.Second, 0, 59) && within(parts.Millisecond, 0, 999);
}

std::int64_t MillisecondLine(Date date) noexcept {
  constexpr double kFarthest = 1e9;
  const double days = std::isnan(date.Days) ? 0.0 : std::clamp(date.Days, -kFarthest, kFarthest);
  const double whole = std::trunc(days);
  const double milliseconds = std::round(std::fabs(days - whole) * static_cast<double>(kMillisecondsInDay));
  return static_cast<std::int64_t>(whole) * kMillisecondsInDay + static_cast<std::int64_t>(milliseconds);
}

Date Date::From(const DateParts& parts) {
  if (!Exists(parts)) Fail(RuntimeFailure::InvalidArgument);
  const int day = DayOfEra(parts.Year, parts.Month, parts.Day) - kDayZero;
  const int seconds = (parts.Hour * 60 + parts.Minute) * 60 + parts.Second;
  const double fraction = (seconds * 1000.0 + parts.Millisecond) / static_cast<double>(kMillisecondsInDay);
  return {day >= 0 ? day + fraction : day - fraction};
}

Date Date::From(int year, int month, int day, int hour, int minute, int second) {
  return From(DateParts{year, month, day, hour, minute, second, 0});
}

DateParts Date::Parts() const {
  if (!(Days > FirstDay - 1 && Days < EndOfDays)) Fail(RuntimeFailure::Overflow);
  const std::int64_t line = MillisecondLine(*this);
  const std::int64_t day = FloorDivide(line, kMillisecondsInDay);
  const auto dayOfEra = static_cast<int>(day) + kDayZero;
  if (dayOfEra > DaysBeforeYear(kLastYear + 1)) Fail(RuntimeFailure::Overflow);
  DateParts parts;
  SetCalendar(parts, dayOfEra);
  SetClock(parts, static_cast<int>(line - day * kMillisecondsInDay));
  return parts;
}

double Date::LineBeforeDayZero() const noexcept {
  const double whole = std::trunc(Days);
  return whole + (whole - Days);
}

std::string Padded(int value, int digits) {
  std::string text = NumberText(value);
  if (text.size() < static_cast<std::size_t>(digits))
    text.insert(0, static_cast<std::size_t>(digits) - text.size(), '0');
  return text;
}

std::string ShortYear(int year) { return year >= 1930 && year <= 2029 ? Padded(year % 100, 2) : Padded(year, 4); }

std::string ShortDate(const DateParts& parts) {
  return NumberText(parts.Month) + "/" + NumberText(parts.Day) + "/" + ShortYear(parts.Year);
}

std::string LongTime(const DateParts& parts) {
  return NumberText((parts.Hour + 11) % 12 + 1) + ":" + Padded(parts.Minute, 2) + ":" + Padded(parts.Second, 2) +
         (parts.Hour < 12 ? " AM" : " PM");
}

std::string Date::AsText() const {
  const DateParts parts = Parts();
  std::array<char, sizeof("YYYY-MM-DD HH:MM:SS")> text;
  DigitWriter to(text.data());
  if (ShowsDate(parts))
    to.Digits(parts.Year, 4).Character('-').Digits(parts.Month, 2).Character('-').Digits(parts.Day, 2);
  if (ShowsDate(parts) && ShowsTime(parts)) to.Character(' ');
  if (ShowsTime(parts))
    to.Digits(parts.Hour, 2).Character(':').Digits(parts.Minute, 2).Character(':').Digits(parts.Second, 2);
  return {text.data(), to.End()};
}

std::string Date::AsGeneralDate() const {
  const DateParts parts = Parts();
  if (!ShowsDate(parts)) return LongTime(parts);
  return ShowsTime(parts) ? ShortDate(parts) + " " + LongTime(parts) : ShortDate(parts);
}

std::int64_t SecondsBetween(Date from, Date to) noexcept {
  return FloorDivide(MillisecondLine(to), 1000) - FloorDivide(MillisecondLine(from), 1000);
}

}  // namespace velmoria
