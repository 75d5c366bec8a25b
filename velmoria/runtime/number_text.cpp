#include <algorithm>
#include <array>
#include <cmath>

#include "velmoria/runtime/error.h"
#include "velmoria/runtime/number_text_impl.h"

namespace velmoria {

namespace {

constexpr int kLargestExponent = 1'000'000;

constexpr std::array<Wide, kLargestScale + 1> kPowers = [] {
  std::array<Wide, kLargestScale + 1> powers{};
  Wide power = 1;
  for (Wide& entry : powers) {
    entry = power;
    power *= 10;
  }
  return powers;
}();

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

std::string_view TakeDigits(std::string_view& text) noexcept {
  const auto end = std::find_if_not(text.begin(), text.end(), IsDigit);
  const std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(digits.size());
  return digits;
}

bool TakeOneOf(std::string_view& text, std::string_view characters) noexcept {
  if (text.empty() || characters.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

// The exponent behind the digits, if there is one; false for an "e" without digits.
bool TakeExponent(std::string_view& text, int& exponent) noexcept {
  if (!TakeOneOf(text, "eE")) return true;
  const bool negative = !text.empty() && text.front() == '-';
  TakeOneOf(text, "+-");
  const std::string_view digits = TakeDigits(text);
  for (const char digit : digits) exponent = std::min(exponent * 10 + (digit - '0'), kLargestExponent);
  if (negative) exponent = -exponent;
  return !digits.empty();
}

}  // namespace

Wide PowerOfTen(int power) noexcept { return kPowers[static_cast<std::size_t>(power)]; }

Wide DivideHalfEven(Wide value, Wide divisor) noexcept {
  const Wide quotient = value / divisor;
  const Wide rest = value % divisor;
  const Wide other = divisor - rest;
  return rest > other || (rest == other && quotient % 2 != 0) ? quotient + 1 : quotient;
}

double RoundHalfEven(double value) noexcept {
  const double lower = std::floor(value);
  const double rest = value - lower;
  if (rest != 0.5) return rest > 0.5 ? lower + 1 : lower;
  return std::fmod(lower, 2) == 0 ? lower : lower + 1;
}

std::string ScaledText(Wide magnitude, int scale, bool negative) {
  char buffer[48];
  char* const end = buffer + sizeof buffer;
  char* at = end;
  const bool zero = magnitude == 0;
  int digits = 0;
  for (; magnitude != 0 || digits <= scale; ++digits) {
    if (digits == scale && scale > 0) *--at = '.';
    *--at = static_cast<char>('0' + static_cast<int>(magnitude % 10));
    magnitude /= 10;
  }
  if (negative && !zero) *--at = '-';
  return {at, end};
}

std::string_view TrimBlanks(std::string_view text) noexcept {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<NumberInText> NumberInText::Read(std::string_view text) noexcept {
  NumberInText number;
  text = TrimBlanks(text);
  number.Negative = !text.empty() && text.front() == '-';
  number.Plain = text;
  if (TakeOneOf(text, "+-") && !number.Negative) number.Plain = text;
  number.Whole = TakeDigits(text);
  if (TakeOneOf(text, ".")) number.Fraction = TakeDigits(text);
  if (number.Whole.empty() && number.Fraction.empty()) return {};
  if (!TakeExponent(text, number.Exponent) || !text.empty()) return {};
  return number;
}

int NumberInText::DigitAt(long long place) const noexcept {
  const auto at = static_cast<std::size_t>(place);
  if (at < Whole.size()) return Whole[at] - '0';
  return at - Whole.size() < Fraction.size() ? Fraction[at - Whole.size()] - '0' : 0;
}

bool NumberInText::AnyDigitFrom(long long place) const noexcept {
  const auto count = static_cast<long long>(Whole.size()) + static_cast<long long>(Fraction.size());
  for (; place < count; ++place) {
    if (DigitAt(place) != 0) return true;
  }
  return false;
}

std::optional<Wide> NumberInText::Scaled(int scale) const noexcept {
  const long long kept = static_cast<long long>(Whole.size()) + Exponent + scale;
  if (kept < 0 || !AnyDigitFrom(0)) return Wide{0};
  Wide magnitude = 0;
  for (long long place = 0; place < kept; ++place) {
    magnitude = magnitude * 10 + static_cast<unsigned>(DigitAt(place));
    if (magnitude > kLargest96) return {};
  }
  const int next = DigitAt(kept);
  const bool up = next > 5 || (next == 5 && (magnitude % 2 != 0 || AnyDigitFrom(kept + 1)));
  if (up) ++magnitude;
  if (magnitude > kLargest96) return {};
  return magnitude;
}

NumberInText ReadNumber(std::string_view text) {
  if (const auto number = NumberInText::Read(text)) return *number;
  Fail(RuntimeFailure::TypeMismatch);
}

}  // namespace velmoria
