#pragma once

#include "velmoria/runtime/api.h"

namespace velmoria {

/// Whether an object is being asked for its state for a report: nothing must wait then.
VELMORIA_API bool IsAskingState() noexcept;

}  // namespace velmoria
