#pragma once

#include <optional>
#include <string>
#include <utility>

#include "velmoria/core/catalogue.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {

struct RaisedExpectation {
  std::string Text{};  // a part of the raised text, with the values filled in; without it the catalogue's own words
  int Count = -1;      // Messages.Count behind the failure; without it at least 1
};

struct CodePlace {
  const char* File;
  int Line;
};

/// What a routine threw: none if nothing. Anything but an Error fails the test.
template <class Routine>
std::optional<Error> Thrown(Routine&& routine) {
  try {
    std::forward<Routine>(routine)();
  } catch (const Error& error) { return error; }
  return std::nullopt;
}

void CheckRaised(zErrors number, const std::optional<Error>& error, const RaisedExpectation& expected, CodePlace place);
void CheckReported(RuntimeFailure failure, const std::optional<Error>& error, CodePlace place);

/// Expects a catalogue error: its number, its text, the messages held; the messages are cleared behind it.
///   ExpectRaised(errItem_Class, [&] { servers->Item("x"); }, {.Text = "Index: 'x'", .Count = 1});
template <class Routine>
void ExpectRaised(zErrors number, Routine&& routine, const RaisedExpectation& expected = {},
                  const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  CheckRaised(number, Thrown(std::forward<Routine>(routine)), expected, {file, line});
}

/// Expects a failure of the run-time that passed a handler: raised as 15000 with the text of the failure, and held
/// under its own number; the messages are cleared behind it.
template <class Routine>
void ExpectReported(RuntimeFailure failure, Routine&& routine, const char* file = __builtin_FILE(),
                    int line = __builtin_LINE()) {
  CheckReported(failure, Thrown(std::forward<Routine>(routine)), {file, line});
}

}  // namespace velmoria::test
