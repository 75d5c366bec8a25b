#pragma once

#include <string_view>

#include "velmoria/runtime/variant.h"

namespace velmoria {

/// Where a collection inserts: ahead of or behind a member given by 1-based position or key. Missing and Empty mean not
/// given; neither given appends, both given is refused by every collection with its own "Problem adding" number.
struct Position {
  Variant Before = Variant::Missing();
  Variant After = Variant::Missing();

  bool IsGiven() const noexcept { return Before.IsGiven() || After.IsGiven(); }
  bool IsBoth() const noexcept { return Before.IsGiven() && After.IsGiven(); }
};

/// What every collection adds to its refusal of a Position with both places given.
inline constexpr std::string_view BothPositionsText = "Passing both Before and After arguments is not allowed.";

}  // namespace velmoria
