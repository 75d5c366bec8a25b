#pragma once

#include <cstdint>

namespace velmoria {

// The ways of reaching databases, by number.
inline constexpr std::int32_t kNoAccess = 0;
inline constexpr std::int32_t kRdo = 1;  // of engines 2 to 5
inline constexpr std::int32_t kDao = 2;  // of Access

}  // namespace velmoria
