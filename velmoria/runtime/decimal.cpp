#include "velmoria/runtime/decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "velmoria/runtime/error.h"
#include "velmoria/runtime/number_text_impl.h"

namespace velmoria {

namespace {

Wide MagnitudeOf(const Decimal& value) noexcept { return Wide{value.High} << 64U | value.Low; }

Decimal FromMagnitude(Wide magnitude, int scale, bool negative) noexcept {
  return {static_cast<std::uint64_t>(magnitude), static_cast<std::uint32_t>(magnitude >> 64U),
          static_cast<std::uint8_t>(scale), negative && magnitude != 0};
}

Decimal FromSigned(std::int64_t value, int scale) noexcept {
  const auto bits = static_cast<std::uint64_t>(value);
  return FromMagnitude(value < 0 ? 0 - bits : bits, scale, value < 0);
}

std::int64_t SignedFrom(Wide magnitude, bool negative) {
  const Wide limit = Wide{std::numeric_limits<std::int64_t>::max()} + (negative ? 1 : 0);
  if (magnitude > limit) Fail(RuntimeFailure::Overflow);
  const auto bits = static_cast<std::uint64_t>(magnitude);
  return static_cast<std::int64_t>(negative ? 0 - bits : bits);
}

// Below 0, 0 or above, without regard to the signs.
int CompareMagnitudes(const Decimal& left, const Decimal& right) noexcept {
  const Wide leftUnit = PowerOfTen(left.Scale);
  const Wide rightUnit = PowerOfTen(right.Scale);
  const Wide leftWhole = MagnitudeOf(left) / leftUnit;
  const Wide rightWhole = MagnitudeOf(right) / rightUnit;
  if (leftWhole != rightWhole) return leftWhole < rightWhole ? -1 : 1;
  const Wide leftRest = MagnitudeOf(left) % leftUnit * PowerOfTen(kLargestScale - left.Scale);
  const Wide rightRest = MagnitudeOf(right) % rightUnit * PowerOfTen(kLargestScale - right.Scale);
  return leftRest == rightRest ? 0 : leftRest < rightRest ? -1 : 1;
}

int CompareDecimals(const Decimal& left, const Decimal& right) noexcept {
  const bool leftNegative = left.Negative && !left.IsZero();
  const bool rightNegative = right.Negative && !right.IsZero();
  if (leftNegative != rightNegative) return leftNegative ? -1 : 1;
  const int order = CompareMagnitudes(left, right);
  return leftNegative ? -order : order;
}

constexpr std::size_t kShortNumber = 19;  // so many digits fit in 64 bits, whatever they are

// Digits with at most a minus sign and a point, as databases write nearly every number; none for any other form.
std::optional<Decimal> ReadShort(std::string_view text) noexcept {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  if (text.size() > kShortNumber) return {};
  std::uint64_t magnitude = 0;
  std::size_t point = text.size();
  for (std::size_t place = 0; place < text.size(); ++place) {
    const auto digit = static_cast<unsigned>(text[place] - '0');
    if (digit <= 9) {
      magnitude = magnitude * 10 + digit;
    } else if (text[place] == '.' && point == text.size()) {
      point = place;
    } else {
      return {};
    }
  }
  const bool hasPoint = point < text.size();
  if (text.size() == (hasPoint ? 1 : 0)) return {};
  return FromMagnitude(magnitude, hasPoint ? static_cast<int>(text.size() - point - 1) : 0, negative);
}

}  // namespace

Decimal Decimal::From(std::int64_t value) noexcept { return FromSigned(value, 0); }

Decimal Decimal::From(Currency value) noexcept {
  std::int64_t amount = value.TenThousandths;
  int scale = 4;
  for (; scale > 0 && amount % 10 == 0; --scale) amount /= 10;
  return FromSigned(amount, scale);
}

Decimal Decimal::From(double value) {
  if (!std::isfinite(value)) Fail(RuntimeFailure::Overflow);
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
  return Parse({buffer, result.ptr});
}

Decimal Decimal::Parse(std::string_view text) {
  if (const auto plain = ReadShort(text)) return *plain;
  const NumberInText number = ReadNumber(text);
  const auto wanted = std::max(number.FractionDigits(), 0LL);
  for (int scale = static_cast<int>(std::min<long long>(wanted, kLargestScale)); scale >= 0; --scale) {
    const auto magnitude = number.Scaled(scale);
    if (!magnitude) continue;
    // What is too small for any digit is a plain zero.
    return *magnitude == 0 && wanted > kLargestScale ? Decimal{} : FromMagnitude(*magnitude, scale, number.Negative);
  }
  Fail(RuntimeFailure::Overflow);
}

std::int64_t Decimal::AsInt64() const {
  return SignedFrom(DivideHalfEven(MagnitudeOf(*this), PowerOfTen(Scale)), Negative);
}

Currency Decimal::AsCurrency() const {
  const Wide magnitude = MagnitudeOf(*this);
  const Wide scaled = Scale <= 4 ? magnitude * PowerOfTen(4 - Scale) : DivideHalfEven(magnitude, PowerOfTen(Scale - 4));
  return {SignedFrom(scaled, Negative)};
}

double Decimal::AsDouble() const {
  // A quotient of two exact doubles is rounded once; beyond them the decimal text decides.
  constexpr std::uint64_t kExact = 1ULL << 53U;
  constexpr int kExactPower = 22;
  if (High == 0 && Low <= kExact && Scale <= kExactPower) {
    const double value = static_cast<double>(Low) / static_cast<double>(PowerOfTen(Scale));
    return Negative ? -value : value;
  }
  const std::string text = AsText();
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::string Decimal::AsText() const { return ScaledText(MagnitudeOf(*this), Scale, Negative); }

bool operator==(const Decimal& left, const Decimal& right) noexcept { return CompareDecimals(left, right) == 0; }

std::strong_ordering operator<=>(const Decimal& left, const Decimal& right) noexcept {
  return CompareDecimals(left, right) <=> 0;
}

}  // namespace velmoria
