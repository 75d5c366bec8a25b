#pragma once

#include <string_view>
#include <utility>

#include "velmoria/core/position.h"
#include "velmoria/runtime/keyed_list.h"

namespace velmoria {

/// Adds a member under a key ahead of or behind the member that the position names, else at the end. A position that
/// is not there raises 9 or 5, a key in use 457; Before wins if both are given.
template <class T>
void InsertAt(KeyedList<T>& list, T value, std::string_view key, const Position& position) {
  if (!position.IsGiven()) {
    list.Add(std::move(value), key);
    return;
  }
  const auto& index = position.Before.IsGiven() ? position.Before : position.After;
  static_cast<void>(list.At(index));
  const auto place = list.PositionOf(index) + (position.Before.IsGiven() ? 0 : 1);
  list.Insert(place, std::move(value), key);
}

}  // namespace velmoria
