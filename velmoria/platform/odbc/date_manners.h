#pragma once

#include <cstdint>
#include <string_view>

namespace velmoria::odbc {

/// What a driver makes of a date that it does not understand, or that its structure cannot hold.
enum class Misreading : std::uint8_t {
  None,
  /// What is missing is today's, and a timestamp without end is the last second of year 9999.
  AsToday,
  /// A Null whose structure has been written all the same.
  AsNull
};

/// How the dates of a driver have to be read, so that none of them is taken for another one.
struct DateManners {
  std::string_view Driver{};  // part of the name that the driver gives itself
  Misreading Dates = Misreading::None;
  bool DatesAsText = false;
  bool TimesAsText = false;  // the structure of a time has no fraction, no sign and no hour beyond the day
};

/// Those of a driver that is not known are those of one that reads right.
const DateManners& DateMannersOf(std::string_view driver) noexcept;

}  // namespace velmoria::odbc
