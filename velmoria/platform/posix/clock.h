#pragma once

#include <cstdint>

#include "velmoria/runtime/date.h"

namespace velmoria {

/// Local time, and waiting.
class Clock {
 public:
  virtual ~Clock() = default;

  virtual Date Now() = 0;
  /// Waits on the caller's thread; 0 and less return at once.
  virtual void Sleep(std::int32_t milliseconds) = 0;

 protected:
  Clock() = default;
  Clock(const Clock&) = default;
  Clock& operator=(const Clock&) = default;
};

}  // namespace velmoria
