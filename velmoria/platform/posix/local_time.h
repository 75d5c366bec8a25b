#pragma once

#include <ctime>

#include "velmoria/runtime/date.h"

namespace velmoria {

/// The calendar view of a second of the operating system in the process's time zone.
DateParts LocalParts(std::time_t second);

/// A time of the operating system in the process's time zone, to the millisecond.
Date LocalDate(const timespec& time);

/// The same, when the parts of its second are known.
Date LocalDate(DateParts second, long nanoseconds);

}  // namespace velmoria
