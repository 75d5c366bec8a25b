#include <algorithm>
#include <optional>

#include "velmoria/runtime/date.h"
#include "velmoria/runtime/date_impl.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/number_text_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

// Reads a date from left to right. Each Take... leaves the text as it was when it returns false.
class DateReader {
 public:
  explicit DateReader(std::string_view text) : rest_(TrimBlanks(text)) {}

  std::optional<DateParts> Read() {
    const bool date = TakeIsoDate() || TakeUsDate();
    if (date && rest_.empty()) return parts_;
    if (date && !TakeSeparator()) return {};
    if (!TakeTime() || !rest_.empty()) return {};
    return parts_;
  }

 private:
  struct Number {
    int Value = 0;
    std::size_t Digits = 0;
  };

  bool TakeCharacter(char c) {
    if (rest_.empty() || rest_.front() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }
  bool TakeNumber(Number& number, std::size_t fewest, std::size_t most) {
    number = {};
    while (number.Digits < rest_.size() && rest_[number.Digits] >= '0' && rest_[number.Digits] <= '9') {
      if (number.Digits == most) return false;
      number.Value = number.Value * 10 + (rest_[number.Digits] - '0');
      ++number.Digits;
    }
    if (number.Digits < fewest) return false;
    rest_.remove_prefix(number.Digits);
    return true;
  }
  // Blanks may be repeated; the "T" is only for the form with the year first.
  bool TakeSeparator() {
    if (iso_ && TakeCharacter('T')) return true;
    if (!TakeCharacter(' ')) return false;
    while (TakeCharacter(' ')) {}
    return true;
  }
  bool TakeIsoDate() {
    const std::string_view before = rest_;
    Number year, month, day;
    iso_ = TakeNumber(year, 4, 4) && TakeCharacter('-') && TakeNumber(month, 2, 2) && TakeCharacter('-') &&
           TakeNumber(day, 2, 2);
    return Keep(iso_, before, year.Value, month.Value, day.Value);
  }
  bool TakeUsDate() {
    const std::string_view before = rest_;
    Number year, month, day;
    const bool taken = TakeNumber(month, 1, 2) && TakeCharacter('/') && TakeNumber(day, 1, 2) && TakeCharacter('/') &&
                       TakeNumber(year, 2, 4) && year.Digits != 3;
    if (year.Digits == 2) year.Value += year.Value < 30 ? 2000 : 1900;
    return Keep(taken, before, year.Value, month.Value, day.Value);
  }
  bool Keep(bool taken, std::string_view before, int year, int month, int day) {
    if (!taken) {
      rest_ = before;
      return false;
    }
    parts_.Year = year;
    parts_.Month = month;
    parts_.Day = day;
    return true;
  }
  bool TakeTime() {
    Number hour, minute, second;
    if (!TakeNumber(hour, 1, 2) || !TakeCharacter(':') || !TakeNumber(minute, 2, 2)) return false;
    if (TakeCharacter(':') && !(TakeNumber(second, 2, 2) && TakeFraction())) return false;
    parts_.Hour = hour.Value;
    parts_.Minute = minute.Value;
    parts_.Second = second.Value;
    return rest_.empty() || TakeHalfOfDay();
  }
  bool TakeFraction() {
    if (!TakeCharacter('.')) return true;
    Number fraction;
    if (!TakeNumber(fraction, 1, 9)) return false;
    for (; fraction.Digits > 3; --fraction.Digits) fraction.Value /= 10;
    for (; fraction.Digits < 3; ++fraction.Digits) fraction.Value *= 10;
    parts_.Millisecond = fraction.Value;
    return true;
  }
  bool TakeHalfOfDay() {
    TakeCharacter(' ');
    const bool afternoon = EqualFolded(rest_, "PM");
    if ((!afternoon && !EqualFolded(rest_, "AM")) || parts_.Hour < 1 || parts_.Hour > 12) return false;
    parts_.Hour = parts_.Hour % 12 + (afternoon ? 12 : 0);
    rest_ = {};
    return true;
  }

  std::string_view rest_;
  DateParts parts_;
  bool iso_ = false;
};

}  // namespace

std::optional<DateParts> ReadDate(std::string_view text) {
  const auto parts = DateReader(text).Read();
  return parts && Exists(*parts) ? parts : std::nullopt;
}

Date Date::Parse(std::string_view text) {
  if (const auto parts = ReadDate(text)) return From(*parts);
  Fail(RuntimeFailure::TypeMismatch);
}

}  // namespace velmoria
