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
  // The calendar is asked once a second: every change of a value or a definition is stamped with the time.
  std::time_t second_ = -1;
  DateParts parts_;
};

}  // namespace velmoria
