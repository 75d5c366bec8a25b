#include "velmoria/platform/posix/system_clock.h"

#include <ctime>

#include <gtest/gtest.h>

namespace velmoria {
namespace {

// By the clock's own source: time(2) may still tell the second before.
Date LocalSecond() {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  tm local{};
  localtime_r(&time.tv_sec, &local);
  return Date::From(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
}

void ExpectLocalTime(SystemClock& clock) {
  const auto before = LocalSecond();
  const auto now = clock.Now();
  EXPECT_GE(SecondsBetween(before, now), 0);
  EXPECT_GE(SecondsBetween(now, LocalSecond()), 0);
}

TEST(SystemClockTest, GivesLocalTime) {
  SystemClock clock;
  ExpectLocalTime(clock);
  clock.Sleep(1001);
  ExpectLocalTime(clock);
}

TEST(SystemClockTest, TimeGoesOnWithinASecond) {
  SystemClock clock;
  const auto start = clock.Now();
  clock.Sleep(5);
  EXPECT_GT(clock.Now(), start);
}

TEST(SystemClockTest, SleepForNothingOrLessIsNoFailure) {
  SystemClock clock;
  EXPECT_NO_THROW(clock.Sleep(0));
  EXPECT_NO_THROW(clock.Sleep(-1));
}

}  // namespace
}  // namespace velmoria
