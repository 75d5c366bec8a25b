#include "velmoria/runtime/currency.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "velmoria/runtime/error.h"
#include "velmoria/runtime/number_text_impl.h"

namespace velmoria {

namespace {

constexpr int kCurrencyScale = 4;

std::uint64_t Magnitude(std::int64_t value) noexcept {
  return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

Currency Read(const NumberInText& number) {
  const auto scaled = number.Scaled(kCurrencyScale);
  const Wide limit = Wide{std::numeric_limits<std::int64_t>::max()} + (number.Negative ? 1 : 0);
  if (!scaled || *scaled > limit) Fail(RuntimeFailure::Overflow);
  const auto magnitude = static_cast<std::uint64_t>(*scaled);
  return {static_cast<std::int64_t>(number.Negative ? 0 - magnitude : magnitude)};
}

}  // namespace

Currency Currency::From(double value) {
  if (!std::isfinite(value)) Fail(RuntimeFailure::Overflow);
  // Away from halves and within 40 bits the product cannot be misjudged; all else is rounded in decimal digits.
  const double product = value * 10000.0;
  const double rounded = std::round(product);
  constexpr double kSure = 1099511627776.0;
  if (std::fabs(product) < kSure && std::fabs(product - rounded) < 0.499) return {static_cast<std::int64_t>(rounded)};
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return Parse({buffer, result.ptr});
}

Currency Currency::Parse(std::string_view text) { return Read(ReadNumber(text)); }

std::string Currency::AsText() const {
  std::uint64_t magnitude = Magnitude(TenThousandths);
  int scale = kCurrencyScale;
  for (; scale > 0 && magnitude % 10 == 0; --scale) magnitude /= 10;
  return ScaledText(magnitude, scale, TenThousandths < 0);
}

}  // namespace velmoria
