#pragma once

#include "velmoria/core/reporting.h"
#include "velmoria/properties/property_key.h"

namespace velmoria {

/// The placeholders of "Problem finding Property" and "Problem removing Property". A number shows plain, a text in
/// single quotes, any other index as the name of its type in single quotes.
Replacements PropertyKeyTexts(const PropertyKey& key);

}  // namespace velmoria
