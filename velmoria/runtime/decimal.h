#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/runtime/api.h"
#include "velmoria/runtime/currency.h"

namespace velmoria {

/// An exact decimal number: a sign, a 96-bit integer and a scale of 0 to 28 digits behind the point.
struct VELMORIA_API Decimal {
  std::uint64_t Low = 0;
  std::uint32_t High = 0;
  std::uint8_t Scale = 0;
  bool Negative = false;

  static Decimal From(std::int64_t value) noexcept;
  static Decimal From(Currency value) noexcept;
  /// The shortest decimal that reads back as the same double, at most 28 digits. Raises 6 when it does not fit.
  static Decimal From(double value);
  /// Reads digits with an optional sign, point and exponent; more than 28 digits are rounded half to even.
  /// Raises 13 for anything else and 6 when the number does not fit in 96 bits.
  static Decimal Parse(std::string_view text);

  bool IsZero() const noexcept { return Low == 0 && High == 0; }
  /// Rounded half to even; raises 6 when it does not fit.
  std::int64_t AsInt64() const;
  Currency AsCurrency() const;
  double AsDouble() const;
  /// Exact, without exponent; the scale is kept, so 1.50 prints "1.50".
  std::string AsText() const;

  /// By value: 1.5 equals 1.50, and zero has no sign.
  friend VELMORIA_API bool operator==(const Decimal& left, const Decimal& right) noexcept;
  friend VELMORIA_API std::strong_ordering operator<=>(const Decimal& left, const Decimal& right) noexcept;
};

}  // namespace velmoria
