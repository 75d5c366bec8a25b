#pragma once

#include <cstdint>
#include <vector>

#include "velmoria/platform/engine_error.h"

namespace velmoria {

/// What the DAO engine's list of errors holds if its last entry has this number, else nothing. The list stays as it is.
std::vector<EngineError> DaoErrorsOf(std::int32_t number);

/// Empties the RDO engine's list of errors and gives what it held.
std::vector<EngineError> TakeRdoErrors();

}  // namespace velmoria
