#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmoria {

__extension__ typedef unsigned __int128 Wide;

inline constexpr Wide kLargest96 = (Wide{1} << 96U) - 1;
inline constexpr int kLargestScale = 28;

/// 10 to a power of 0 to 28.
Wide PowerOfTen(int power) noexcept;
/// The quotient, a half going to the even neighbour.
Wide DivideHalfEven(Wide value, Wide divisor) noexcept;
/// A value rounded to the whole, a half going to the even neighbour.
double RoundHalfEven(double value) noexcept;
/// The number magnitude / 10^scale without exponent; zero prints without sign.
std::string ScaledText(Wide magnitude, int scale, bool negative);
std::string_view TrimBlanks(std::string_view text) noexcept;

/// A decimal number as it stands in a text: blanks around, a sign, digits with a point, an exponent. No other form.
struct NumberInText {
  bool Negative = false;
  std::string_view Whole;
  std::string_view Fraction;
  int Exponent = 0;        // kept within +-1,000,000
  std::string_view Plain;  // the whole number without blanks and without a plus sign

  static std::optional<NumberInText> Read(std::string_view text) noexcept;

  /// The magnitude times 10^scale, rounded half to even; none when it does not fit in 96 bits.
  std::optional<Wide> Scaled(int scale) const noexcept;
  /// How many digits stand behind the point, the exponent counted in; negative when whole zeros are missing.
  long long FractionDigits() const noexcept { return static_cast<long long>(Fraction.size()) - Exponent; }

 private:
  int DigitAt(long long place) const noexcept;
  bool AnyDigitFrom(long long place) const noexcept;
};

/// Reads a number or raises 13.
NumberInText ReadNumber(std::string_view text);

}  // namespace velmoria
