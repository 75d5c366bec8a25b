#pragma once

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// Whether the Profile lets databases of the engine be used; the setting is made with its default when it is asked for
/// the first time. engUnknown and what lies outside the engines never is. Raises 15000 or 13 for a setting that is no
/// Boolean, 91 when the apartment has no Profile.
VELMORIA_API bool SupportsDatabaseEngine(zEngines engine);

/// The supported engines in ascending order, an array of 16-bit integers from 0; Empty when there is none.
VELMORIA_API Variant SupportedEnginesList();

}  // namespace velmoria
