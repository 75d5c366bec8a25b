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

std::string CheckRefusal(const Refusal& expected, const std::optional<Error>& error, CodePlace place);

/// Expects a catalogue error to the last field; the messages are cleared behind it. Gives back the state that the
/// message holds of the object, or "" without a message.
template <class Routine>
std::string ExpectRefusal(const Refusal& expected, Routine&& routine, const char* file = __builtin_FILE(),
                          int line = __builtin_LINE()) {
  return CheckRefusal(expected, Thrown(std::forward<Routine>(routine)), {file, line});
}

/// Whether such words, the driver's own for example, stand among the messages as a warning.
bool WarnedOf(const std::string& words);

}  // namespace velmoria::test
