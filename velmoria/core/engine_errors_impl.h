#pragma once

#include <vector>

#include "velmoria/platform/engine_error.h"

namespace velmoria {

/// Empties the RDO engine's list of errors and gives what it held.
std::vector<EngineError> TakeRdoErrors();

}  // namespace velmoria
