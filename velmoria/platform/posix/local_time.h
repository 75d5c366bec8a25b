#pragma once

#include <ctime>

#include "velmoria/runtime/date.h"

namespace velmoria {

/// A time of the operating system in the process's time zone, to the millisecond.
Date LocalDate(const timespec& time);

}  // namespace velmoria
