#include "velmoria/platform/posix/system_clock.h"

#include <ctime>

#include <gtest/gtest.h>

namespace velmoria {
namespace {

TEST(SystemClockTest, GivesLocalTime) {
  const auto before = std::time(nullptr);
  const auto now = SystemClock().Now();
  const auto after = std::time(nullptr);
  tm from{};
  tm to{};
  localtime_r(&before, &from);
  localtime_r(&after, &to);
  const auto dateOf = [](const tm& time) {
    return Date::From(time.tm_year + 1900, time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
  };
  EXPECT_GE(SecondsBetween(dateOf(from), now), 0);
  EXPECT_GE(SecondsBetween(now, dateOf(to)), 0);
}

TEST(SystemClockTest, NoSleepForNothing) {
  SystemClock clock;
  EXPECT_NO_THROW(clock.Sleep(0));
  EXPECT_NO_THROW(clock.Sleep(-1));
}

}  // namespace
}  // namespace velmoria
