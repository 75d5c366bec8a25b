#pragma once

#include <cstdint>
#include <string>

#include "velmoria/runtime/api.h"

namespace velmoria {

/// How the running program is called in the title of Messages.Details: for the whole process, from any thread. Without
/// it, or with an empty name, the name is that of the executable file; the version is 0, 0, 0.
VELMORIA_API void DescribeHost(std::string name, std::int32_t major = 0, std::int32_t minor = 0,
                               std::int32_t revision = 0);

}  // namespace velmoria
