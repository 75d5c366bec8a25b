#include "velmoria/platform/odbc/date_manners.h"

#include <algorithm>
#include <array>

namespace velmoria::odbc {
namespace {

constexpr std::array kManners = {
    DateManners{.Driver = "psqlodbc", .Dates = Misreading::AsToday, .TimesAsText = true},
    DateManners{.Driver = "maodbc", .Dates = Misreading::AsNull, .TimesAsText = true},
    // Any text can stand in a column of dates, and most are read as something.
    DateManners{.Driver = "sqlite3odbc", .DatesAsText = true, .TimesAsText = true},
};
constexpr DateManners kPlain{};

}  // namespace

const DateManners& DateMannersOf(std::string_view driver) noexcept {
  const auto found = std::ranges::find_if(
      kManners, [&](const auto& manners) { return driver.find(manners.Driver) != std::string_view::npos; });
  return found == kManners.end() ? kPlain : *found;
}

}  // namespace velmoria::odbc
