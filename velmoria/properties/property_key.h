#pragma once

#include <string>

#include "velmoria/fwd.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// What a member of Properties is found by. With a Parameter the search goes by that Property's identity and the other
/// three are not looked at. Otherwise: the Index, a 1-based position or a name, then the names of the source.
struct PropertyKey {
  Variant Index = Variant::Missing();
  std::string SourceName{};
  std::string SourceKey{};
  PropertyPtr Parameter{};
};

}  // namespace velmoria
