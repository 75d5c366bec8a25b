#pragma once

#include <ctime>

#include "velmoria/platform/posix/clock.h"
#include "velmoria/runtime/date.h"

namespace velmoria {

/// The machine's clock in the process's time zone, to the millisecond.
class SystemClock final : public Clock {
 public:
  Date Now() override;
  void Sleep(std::int32_t milliseconds) override;

 private:
  // The calendar is asked once a second and a Date made once a millisecond: every change of a value or a definition is
  // stamped with the time.
  std::time_t second_ = -1;
  long millisecond_ = 0;
  DateParts parts_;
  Date date_;
};

}  // namespace velmoria
