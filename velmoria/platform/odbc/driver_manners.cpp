#include "velmoria/platform/odbc/driver_manners.h"

#include <algorithm>
#include <array>

namespace velmoria::odbc {
namespace {

constexpr std::array kManners = {
    DriverManners{.Driver = "psqlodbc",
                  .Dates = {.Misreads = Misreading::AsToday, .TimesAsText = true},
                  .PreparesReturns = false,
                  .OutputsComeAsRow = true},
    DriverManners{.Driver = "maodbc",
                  .Dates = {.Misreads = Misreading::AsNull, .TimesAsText = true},
                  .RefusalKeepsThread = true,
                  .OutputsComeAsRow = true},
    // Any text can stand in a column of dates, and most are read as something.
    DriverManners{.Driver = "sqlite3odbc",
                  .Dates = {.DatesAsText = true, .TimesAsText = true},
                  .StatementsServeAgain = true,
                  .BeginEndsResults = true},
    DriverManners{.Driver = "tdsodbc", .MillisecondsToSend = 50},
};
constexpr DriverManners kPlain{};

}  // namespace

const DriverManners& DriverMannersOf(std::string_view driver) noexcept {
  const auto found = std::ranges::find_if(
      kManners, [&](const auto& manners) { return driver.find(manners.Driver) != std::string_view::npos; });
  return found == kManners.end() ? kPlain : *found;
}

}  // namespace velmoria::odbc
