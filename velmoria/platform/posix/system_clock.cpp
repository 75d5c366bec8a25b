#include "velmoria/platform/posix/system_clock.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <thread>

namespace velmoria {

Date SystemClock::Now() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm local{};
  localtime_r(&now.tv_sec, &local);
  return Date::From(DateParts{.Year = local.tm_year + 1900,
                              .Month = local.tm_mon + 1,
                              .Day = local.tm_mday,
                              .Hour = local.tm_hour,
                              .Minute = local.tm_min,
                              .Second = std::min(local.tm_sec, 59),  // a leap second has no form of its own
                              .Millisecond = static_cast<int>(now.tv_nsec / 1'000'000)});
}

void SystemClock::Sleep(std::int32_t milliseconds) {
  if (milliseconds > 0) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace velmoria
