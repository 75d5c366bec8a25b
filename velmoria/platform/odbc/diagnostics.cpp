#include "velmoria/platform/odbc/diagnostics.h"

#include <algorithm>
#include <array>
#include <limits>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/passwords.h"
#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/error.h"

namespace velmoria::odbc {
namespace {

constexpr Small kMostRecords = 100;  // a driver that never says "no more" must not hold us for ever

bool ReadRecord(Calls& calls, Small kind, Handle handle, Small number, EngineError& error) {
  std::array<Char, 6> state{};
  std::array<Char, SQL_MAX_MESSAGE_LENGTH + 1> text{};
  Number native = 0;
  Small length = 0;
  const auto capacity = static_cast<Small>(text.size());
  const Code code = calls.GetDiagRec(kind, handle, number, state.data(), &native, text.data(), capacity, &length);
  if (!Succeeded(code)) return false;

  error.Number = native;
  error.SQLState = reinterpret_cast<const char*>(state.data());
  std::string whole(reinterpret_cast<const char*>(text.data()));
  if (length >= capacity) {
    whole.resize(static_cast<std::size_t>(length) + 1);
    calls.GetDiagRec(kind, handle, number, state.data(), &native, reinterpret_cast<Char*>(whole.data()),
                     static_cast<Small>(std::min<int>(length + 1, std::numeric_limits<Small>::max())), &length);
    whole.resize(std::min(whole.find('\0'), whole.size()));
  }
  error.Description = WithoutPasswords(whole);
  return true;
}

// Line breaks become blanks: a description is one line.
std::string OneLine(std::string text) {
  for (char& c : text) {
    if (c == '\n' || c == '\r') c = ' ';
  }
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

}  // namespace

EngineErrors Diagnose(Calls& calls, Small kind, Handle handle) {
  EngineErrors errors;
  if (handle == nullptr) return errors;
  for (Small number = 1; number <= kMostRecords; ++number) {
    EngineError error;
    if (!ReadRecord(calls, kind, handle, number, error)) break;
    errors.push_back(std::move(error));
  }
  return errors;
}

void FailWithDiagnostics(const Driver& driver, Small kind, Handle handle) {
  EngineErrors errors = Diagnose(*driver.Calls, kind, handle);
  if (errors.empty()) {
    errors.push_back({.Number = static_cast<std::int32_t>(RuntimeFailure::DriverFailure),
                      .Description = "The driver reported a failure and gave no reason.",
                      .SQLState = "HY000"});
  }
  *driver.Errors = std::move(errors);
  const EngineError& first = driver.Errors->front();
  throw Error(first.Number, first.SQLState + ": " + OneLine(first.Description));
}

void FailClosed(std::string description) { throw Error(rdErrClosed, std::move(description)); }

}  // namespace velmoria::odbc
