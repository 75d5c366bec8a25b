#pragma once

#include <array>
#include <cstddef>
#include <cstring>

#include "velmoria/platform/odbc/calls.h"

namespace velmoria::odbc {

/// Writes a value of fixed size where a driver takes it, whatever the place's alignment, and gives its size.
template <class T>
Length Store(std::byte* place, const T& value) noexcept {
  std::memcpy(place, &value, sizeof value);
  return sizeof value;
}

template <class T, std::size_t Size>
Length Store(std::array<std::byte, Size>& place, const T& value) noexcept {
  static_assert(sizeof(T) <= Size);
  return Store(place.data(), value);
}

/// Reads a value of fixed size where a driver has put it.
template <class T>
T Load(const std::byte* place) noexcept {
  T value;
  std::memcpy(&value, place, sizeof value);
  return value;
}

}  // namespace velmoria::odbc
