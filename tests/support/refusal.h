#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/expect_raised.h"

namespace velmoria::test {

/// A failure as the host meets it, and as Messages holds it.
struct Refusal {
  zErrors Number;
  std::string Place;                    // class and routine, with "." between
  std::string Text;                     // all of it, the values filled in
  std::vector<std::string> Replaces{};  // the first so many; the rest are empty
  std::string ExtraText{};
};

void CheckRefusal(const Refusal& expected, const std::optional<Error>& error, CodePlace place);

/// Expects a catalogue error to the last field; the messages are cleared behind it.
template <class Routine>
void ExpectRefusal(const Refusal& expected, Routine&& routine, const char* file = __builtin_FILE(),
                   int line = __builtin_LINE()) {
  CheckRefusal(expected, Thrown(std::forward<Routine>(routine)), {file, line});
}

}  // namespace velmoria::test
