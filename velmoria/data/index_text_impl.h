#pragma once

#include <string>

#include "velmoria/runtime/variant.h"

namespace velmoria {

/// How a message of this room shows an index: a number plain, a String in single quotes, anything else by its type.
std::string DataIndexText(const Variant& index);

}  // namespace velmoria
