#pragma once

#include <utility>

namespace velmoria {

/// Runs a step whose failure is passed over: what it had not done yet stays undone. For the routines that report
/// failures and so have nobody to report their own to.
template <class Step>
void WithErrorsIgnored(Step&& step) noexcept {
  try {
    std::forward<Step>(step)();
  } catch (...) {  // there is nobody to tell
  }
}

/// The same for a text: "" when it cannot be built.
template <class Step>
auto TextOrNone(Step&& step) noexcept {
  decltype(std::forward<Step>(step)()) text{};
  WithErrorsIgnored([&] { text = std::forward<Step>(step)(); });
  return text;
}

}  // namespace velmoria
