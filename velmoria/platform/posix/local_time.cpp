#include "velmoria/platform/posix/local_time.h"

#include <algorithm>

namespace velmoria {

DateParts LocalParts(std::time_t second) {
  tm local{};
  localtime_r(&second, &local);
  return {.Year = local.tm_year + 1900,
          .Month = local.tm_mon + 1,
          .Day = local.tm_mday,
          .Hour = local.tm_hour,
          .Minute = local.tm_min,
          .Second = std::min(local.tm_sec, 59)};  // a leap second has no form of its own
}

Date LocalDate(const timespec& time) { return LocalDate(LocalParts(time.tv_sec), time.tv_nsec); }

Date LocalDate(DateParts second, long nanoseconds) {
  second.Millisecond = static_cast<int>(nanoseconds / 1'000'000);
  return Date::From(second);
}

}  // namespace velmoria
