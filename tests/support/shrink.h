#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
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

/// The first of so many sequences, each drawn from a seed, in which `play` finds a difference: cut down to what it
/// takes, behind that difference.
template <class Draw, class Play>
std::optional<std::string> FirstDifference(std::uint64_t seed, std::uint64_t count, Draw draw, Play play) {
  for (const auto last = seed + count; seed < last; ++seed) {
    const auto steps = draw(seed);
    if (play(steps).empty()) continue;
    const auto shorter = Shrunk(steps, [&](const auto& rest) { return !play(rest).empty(); });
    return play(shorter) + "\n" + Shown(shorter);
  }
  return std::nullopt;
}

}  // namespace velmoria::test
