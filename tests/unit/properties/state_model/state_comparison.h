#pragma once

#include <string>
#include <string_view>
#include <type_traits>

#include "tests/unit/properties/state_model/state_scene.h"
#include "tests/unit/properties/state_model/state_values.h"
#include "velmoria/core/messages.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria::test {

/// A value, or the catalogue number that was raised in its place.
struct StateReading {
  Variant Value;
  std::int32_t Number = 0;
};

template <class Read>
StateReading ExpectedReading(Read read) {
  try {
    return {read()};
  } catch (const Refused& refused) { return {{}, static_cast<std::int32_t>(refused.Number)}; }
}

template <class Read>
StateReading FoundReading(Messages& messages, Read read) {
  try {
    return {read()};
  } catch (const Error& error) {
    messages.Clear();
    return {{}, error.CatalogueNumber()};
  }
}

inline bool Identical(const StateReading& left, const StateReading& right) {
  return left.Number == right.Number && Identical(left.Value, right.Value);
}

inline std::string Shown(const StateReading& reading) {
  return reading.Number != 0 ? "error " + NumberText(reading.Number) : Shown(reading.Value);
}

/// Keeps the first difference that it meets.
class StateComparison {
 public:
  template <class T>
  void Expect(std::string_view owner, const char* what, const T& expected, const T& found) {
    if (!first_.empty() || AreEqual(expected, found)) return;
    first_ =
        (owner.empty() ? "" : std::string(owner) + ".") + what + " is " + Text(found) + ", expected " + Text(expected);
  }
  const std::string& First() const { return first_; }

 private:
  template <class T>
  static bool AreEqual(const T& expected, const T& found) {
    if constexpr (std::is_same_v<T, StateReading> || std::is_same_v<T, Variant>) {
      return Identical(expected, found);
    } else {
      return expected == found;
    }
  }
  template <class T>
  static std::string Text(const T& value) {
    if constexpr (std::is_same_v<T, StateReading> || std::is_same_v<T, Variant>) {
      return Shown(value);
    } else if constexpr (std::is_same_v<T, std::string>) {
      return Quoted(value);
    } else if constexpr (std::is_same_v<T, bool>) {
      return value ? "True" : "False";
    } else {
      return NumberText(static_cast<long long>(value));
    }
  }

  std::string first_;
};

}  // namespace velmoria::test
