#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/runtime/api.h"

namespace velmoria {

/// An exact amount with four decimals, from -922337203685477.5808 to 922337203685477.5807.
struct VELMORIA_API Currency {
  std::int64_t TenThousandths = 0;

  /// The amount nearest to the digits that the value prints with, a half going to the even neighbour. Raises 6 when it
  /// does not fit.
  static Currency From(double value);
  /// Reads "12.5", "-0.0001"; digits beyond the fourth are rounded half to even. Raises 13, or 6 when it does not fit.
  static Currency Parse(std::string_view text);

  double AsDouble() const noexcept { return static_cast<double>(TenThousandths) / 10000.0; }
  /// Exact, without exponent and without trailing zeros: "12.5".
  std::string AsText() const;

  friend auto operator<=>(const Currency&, const Currency&) = default;
};

}  // namespace velmoria
