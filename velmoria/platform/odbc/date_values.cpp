#include "velmoria/platform/odbc/date_values.h"

#include <optional>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/raw_values.h"
#include "velmoria/runtime/date_impl.h"
#include "velmoria/runtime/error.h"

namespace velmoria::odbc {
namespace {

SQL_DATE_STRUCT DateOf(const DateParts& parts) noexcept {
  SQL_DATE_STRUCT date{};
  date.year = static_cast<SQLSMALLINT>(parts.Year);
  date.month = static_cast<SQLUSMALLINT>(parts.Month);
  date.day = static_cast<SQLUSMALLINT>(parts.Day);
  return date;
}

SQL_TIME_STRUCT TimeOf(const DateParts& parts) noexcept {
  SQL_TIME_STRUCT time{};
  time.hour = static_cast<SQLUSMALLINT>(parts.Hour);
  time.minute = static_cast<SQLUSMALLINT>(parts.Minute);
  time.second = static_cast<SQLUSMALLINT>(parts.Second);
  return time;
}

SQL_TIMESTAMP_STRUCT StampOf(const DateParts& parts) noexcept {
  const auto date = DateOf(parts);
  const auto time = TimeOf(parts);
  const auto fraction = static_cast<SQLUINTEGER>(parts.Millisecond) * 1000000U;
  return {date.year, date.month, date.day, time.hour, time.minute, time.second, fraction};
}

constexpr std::size_t kIsoDate = 10;    // yyyy-mm-dd
constexpr std::size_t kTime = 8;        // hh:mm:ss
constexpr std::size_t kIsoMinute = 16;  // yyyy-mm-dd hh:mm

// Reads digits at their places, as servers write them. A text of any other form leaves IsRead false.
struct PlacedDigits {
  std::string_view Text;
  bool IsRead = true;

  int Number(std::size_t place, std::size_t digits) {
    int number = 0;
    for (std::size_t end = place + digits; place < end; ++place) {
      const int digit = Text[place] - '0';
      IsRead = IsRead && digit >= 0 && digit <= 9;
      number = number * 10 + digit;
    }
    return number;
  }
  void Mark(std::size_t place, char mark) { IsRead = IsRead && Text[place] == mark; }
};

void ReadFraction(PlacedDigits& digits, std::size_t place, DateParts& parts) {
  digits.Mark(place, '.');
  const std::size_t count = digits.Text.size() - place - 1;
  digits.IsRead = digits.IsRead && count >= 1 && count <= 9;
  for (std::size_t digit = 1; digits.IsRead && digit <= count; ++digit) {
    const int value = digits.Number(place + digit, 1);
    if (digit <= 3) parts.Millisecond = parts.Millisecond * 10 + value;
  }
  for (std::size_t digit = count; digit < 3; ++digit) parts.Millisecond *= 10;
}

void ReadTime(PlacedDigits& digits, std::size_t place, DateParts& parts) {
  if (digits.Text.size() < place + kTime) {
    digits.IsRead = false;
    return;
  }
  parts.Hour = digits.Number(place, 2);
  digits.Mark(place + 2, ':');
  parts.Minute = digits.Number(place + 3, 2);
  digits.Mark(place + 5, ':');
  parts.Second = digits.Number(place + 6, 2);
  if (digits.Text.size() > place + kTime) ReadFraction(digits, place + kTime, parts);
}

std::optional<DateParts> ReadPlaced(std::string_view text) {
  PlacedDigits digits{text};
  DateParts parts;
  if (text.size() >= kIsoDate && text[4] == '-') {
    parts.Year = digits.Number(0, 4);
    parts.Month = digits.Number(5, 2);
    digits.Mark(7, '-');
    parts.Day = digits.Number(8, 2);
    if (text.size() > kIsoDate) {
      digits.IsRead = digits.IsRead && (text[kIsoDate] == ' ' || text[kIsoDate] == 'T');
      ReadTime(digits, kIsoDate + 1, parts);
    }
  } else {
    ReadTime(digits, 0, parts);
  }
  return digits.IsRead ? std::optional(parts) : std::nullopt;
}

bool IsOffset(std::string_view text) noexcept {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  const bool hasColon = text.size() == 6 && text[3] == ':';
  if (text.size() != 3 && text.size() != 5 && !hasColon) return false;
  return isDigit(text[1]) && isDigit(text[2]) && isDigit(text[text.size() - 2]) && isDigit(text.back());
}

// "Z", "+hh", "+hhmm" and "+hh:mm", with a minus as well.
std::string_view WithoutZone(std::string_view text) noexcept {
  if (text.size() <= kIsoMinute || text[4] != '-') return text;
  if (text.back() == 'Z') return text.substr(0, text.size() - 1);
  const std::size_t sign = text.find_last_of("+-");
  return sign >= kIsoMinute && IsOffset(text.substr(sign)) ? text.substr(0, sign) : text;
}

}  // namespace

Length StoreDate(std::byte* place, Small cType, velmoria::Date date) {
  const DateParts parts = date.Parts();
  switch (cType) {
    case SQL_C_TYPE_DATE: return Store(place, DateOf(parts));
    case SQL_C_TYPE_TIME: return Store(place, TimeOf(parts));
    default: return Store(place, StampOf(parts));
  }
}

std::string DateText(velmoria::Date date, Small type) {
  const DateParts parts = date.Parts();
  const std::string day = Padded(parts.Year, 4) + "-" + Padded(parts.Month, 2) + "-" + Padded(parts.Day, 2);
  const std::string time = Padded(parts.Hour, 2) + ":" + Padded(parts.Minute, 2) + ":" + Padded(parts.Second, 2) + "." +
                           Padded(parts.Millisecond, 3);
  if (type == SQL_TYPE_DATE) return day;
  return type == SQL_TYPE_TIME ? time : day + " " + time;
}

velmoria::Date LoadDate(const std::byte* place, Small cType) {
  if (cType == SQL_C_TYPE_TIME) {
    const auto time = Load<SQL_TIME_STRUCT>(place);
    return Date::From({.Hour = time.hour, .Minute = time.minute, .Second = time.second});
  }
  const auto stamp = Load<SQL_TIMESTAMP_STRUCT>(place);
  return Date::From({.Year = stamp.year,
                     .Month = stamp.month,
                     .Day = stamp.day,
                     .Hour = stamp.hour,
                     .Minute = stamp.minute,
                     .Second = stamp.second,
                     .Millisecond = static_cast<int>(stamp.fraction / 1000000)});
}

velmoria::Date ReadDateText(std::string_view text) {
  auto parts = ReadPlaced(text);
  if (!parts) parts = ReadDate(WithoutZone(text));
  if (!parts) Fail(RuntimeFailure::InvalidArgument);
  return Date::From(*parts);
}

}  // namespace velmoria::odbc
