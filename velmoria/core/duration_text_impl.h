#pragma once

#include <cstdint>
#include <string>

namespace velmoria {

/// "2 minutes and 1 second"; "" for a negative number of seconds.
std::string DurationText(std::int64_t seconds);

}  // namespace velmoria
