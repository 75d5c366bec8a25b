#include "velmoria/platform/posix/local_time.h"

#include <algorithm>

namespace velmoria {

Date LocalDate(const timespec& time) {
  tm local{};
  localtime_r(&time.tv_sec, &local);
  return Date::From(DateParts{.Year = local.tm_year + 1900,
                              .Month = local.tm_mon + 1,
                              .Day = local.tm_mday,
                              .Hour = local.tm_hour,
                              .Minute = local.tm_min,
                              .Second = std::min(local.tm_sec, 59),  // a leap second has no form of its own
                              .Millisecond = static_cast<int>(time.tv_nsec / 1'000'000)});
}

}  // namespace velmoria
