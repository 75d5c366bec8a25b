#pragma once

#include "velmoria/runtime/date.h"

namespace velmoria {

/// The present local date and time by the apartment's clock.
VELMORIA_API Date Now();

}  // namespace velmoria
