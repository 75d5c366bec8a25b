#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "velmoria/runtime/keyed_list.h"
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

/// The 1-based place that a single position means in a list; a member that is not there raises the list's failure.
template <class T>
std::size_t PlaceOf(const KeyedList<T>& list, const Position& position) {
  if (!position.IsGiven()) return list.Count() + 1;
  const Variant& index = position.Before.IsGiven() ? position.Before : position.After;
  const std::size_t place = list.PositionOf(index);
  if (place == 0) list.At(index);
  return position.Before.IsGiven() ? place : place + 1;
}

}  // namespace velmoria
