#pragma once

#include <string>
#include <string_view>

#include "velmoria/core/reporting.h"
#include "velmoria/properties/property_key.h"

namespace velmoria {

/// What stands before each member in the Details of a collection.
inline constexpr std::string_view kDetailsIndent = "\r\n    ";

/// The placeholders of "Problem finding Property" and "Problem removing Property". A number shows plain, a text in
/// single quotes, any other index as the name of its type in single quotes.
Replacements PropertyKeyTexts(const PropertyKey& key);

}  // namespace velmoria
