#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "velmoria/core/position.h"
#include "velmoria/runtime/keyed_list.h"

namespace velmoria {

/// The 1-based place that a position means in a list, the end when it is not given; Before wins if both are. A member
/// that is not there raises 9 or 5.
template <class T>
std::size_t PlaceOf(const KeyedList<T>& list, const Position& position) {
  if (!position.IsGiven()) return list.Count() + 1;
  const Variant& index = position.Before.IsGiven() ? position.Before : position.After;
  static_cast<void>(list.At(index));
  return list.PositionOf(index) + (position.Before.IsGiven() ? 0 : 1);
}

/// Adds a member under a key where a position says. Raises as PlaceOf, and 457 for a key in use.
template <class T>
void InsertAt(KeyedList<T>& list, T value, std::string_view key, const Position& position) {
  list.Insert(PlaceOf(list, position), std::move(value), key);
}

}  // namespace velmoria
