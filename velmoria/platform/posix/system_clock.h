#pragma once

#include "velmoria/platform/posix/clock.h"

namespace velmoria {

/// The machine's clock in the process's time zone, to the millisecond.
class SystemClock final : public Clock {
 public:
  Date Now() override;
  void Sleep(std::int32_t milliseconds) override;
};

}  // namespace velmoria
