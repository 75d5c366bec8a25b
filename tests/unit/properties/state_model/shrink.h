#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace velmoria::test {

/// Leaves out what a failure does not need: halves first, then smaller and smaller runs, until no single step can go.
/// `fails` says whether the rest still fails.
template <class T, class Fails>
std::vector<T> Shrunk(std::vector<T> steps, Fails fails) {
  for (auto length = std::max<std::size_t>(steps.size() / 2, 1); !steps.empty();) {
    bool shorter = false;
    for (std::size_t from = 0; from < steps.size();) {
      auto rest = steps;
      const auto first = rest.begin() + static_cast<std::ptrdiff_t>(from);
      rest.erase(first, first + static_cast<std::ptrdiff_t>(std::min(length, steps.size() - from)));
      if (fails(std::as_const(rest))) {
        steps = std::move(rest);
        shorter = true;
      } else {
        from += length;
      }
    }
    if (length == 1 && !shorter) break;
    if (length > 1) length /= 2;
  }
  return steps;
}

}  // namespace velmoria::test
