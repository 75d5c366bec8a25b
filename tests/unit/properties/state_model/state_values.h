#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::test {

/// The raw numbers of a seeded engine, so that a seed means the same everywhere.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine_(seed) {}
  std::size_t Below(std::size_t count) { return static_cast<std::size_t>(engine_() % count); }
  bool OneIn(std::size_t count) { return Below(count) == 0; }
  template <class Choices>
  auto Of(const Choices& choices) {
    return choices[Below(choices.size())];
  }

 private:
  std::mt19937_64 engine_;
};

/// A value of any storage, more often one that goes into the data type.
Variant AnyValue(Dice& dice, zDataTypes dataType);
/// A value in the very storage of the data type, or Missing.
Variant OwnValue(Dice& dice, zDataTypes dataType);

/// Equal to the last bit: two dates in one second are not.
bool Identical(const Variant& left, const Variant& right);
/// The type and the value for the eye.
std::string Shown(const Variant& value);

}  // namespace velmoria::test
