#pragma once

#include <memory>
#include <string>
#include <vector>

#include "velmoria/platform/engine_error.h"
#include "velmoria/platform/odbc/calls.h"

namespace velmoria::odbc {

using EngineErrors = std::vector<EngineError>;

/// What all handles of one engine share: the table of calls, and the list that a failure fills.
struct Driver {
  std::shared_ptr<odbc::Calls> Calls;
  std::shared_ptr<EngineErrors> Errors;
};

/// Success, with or without information.
constexpr bool Succeeded(Code code) noexcept { return code == 0 || code == 1; }

/// Every diagnostic record of a handle, in the driver's order, with passwords blotted out.
EngineErrors Diagnose(Calls& calls, Small kind, Handle handle);

/// Puts the handle's records into the driver's list and throws the first one: its native number and "SQLSTATE: text".
/// Without any record the number is 40002.
[[noreturn, gnu::cold]] void FailWithDiagnostics(const Driver& driver, Small kind, Handle handle);

/// Raises 40071: something was asked of a handle that is closed.
[[noreturn, gnu::cold]] void FailClosed(std::string description);

}  // namespace velmoria::odbc
