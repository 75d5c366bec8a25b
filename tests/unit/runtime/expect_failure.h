#pragma once

#include <string>

#include <gtest/gtest.h>

#include "velmoria/runtime/error.h"

namespace velmoria {

/// Runs an action that must raise a failure of the run-time with its usual text.
template <class Action>
void ExpectRuntimeFailure(RuntimeFailure failure, const std::string& text, Action action) {
  try {
    action();
    ADD_FAILURE() << "nothing was raised instead of " << static_cast<int>(failure);
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), static_cast<std::int32_t>(failure)) << error.what();
    EXPECT_EQ(error.Description(), text);
  }
}

template <class Action>
void ExpectTypeMismatch(Action action) {
  ExpectRuntimeFailure(RuntimeFailure::TypeMismatch, "Type mismatch", action);
}

template <class Action>
void ExpectOverflow(Action action) {
  ExpectRuntimeFailure(RuntimeFailure::Overflow, "Overflow", action);
}

template <class Action>
void ExpectInvalidArgument(Action action) {
  ExpectRuntimeFailure(RuntimeFailure::InvalidArgument, "Invalid procedure call or argument", action);
}

template <class Action>
void ExpectSubscriptOutOfRange(Action action) {
  ExpectRuntimeFailure(RuntimeFailure::SubscriptOutOfRange, "Subscript out of range", action);
}

}  // namespace velmoria
