#pragma once

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// Whether the Profile lets databases of the engine be used; the setting is made with its default when it is asked for
/// the first time. engUnknown and what lies outside the engines never is. A setting that is no Boolean is a failure.
VELMORIA_API bool SupportsDatabaseEngine(zEngines engine);

/// The supported engines in ascending order, an array of 16-bit integers from 0; Empty when there is none.
VELMORIA_API Variant SupportedEnginesList();

}  // namespace velmoria
