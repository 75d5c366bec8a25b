#include "velmoria/platform/posix/system_clock.h"

#include <chrono>
#include <ctime>
#include <thread>

#include "velmoria/platform/posix/local_time.h"

namespace velmoria {

Date SystemClock::Now() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const long millisecond = now.tv_nsec / 1'000'000;
  if (now.tv_sec == second_ && millisecond == millisecond_) return date_;
  if (now.tv_sec != second_) parts_ = LocalParts(now.tv_sec);
  second_ = now.tv_sec;
  millisecond_ = millisecond;
  return date_ = LocalDate(parts_, now.tv_nsec);
}

void SystemClock::Sleep(std::int32_t milliseconds) {
  if (milliseconds > 0) std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace velmoria
