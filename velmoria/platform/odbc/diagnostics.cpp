#include "velmoria/platform/odbc/diagnostics.h"

#include <algorithm>
#include <array>
#include <cctype>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/rdo/constants.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria::odbc {
namespace {

constexpr Small kMostRecords = 100;  // a driver that never says "no more" must not hold us for ever
constexpr std::array<std::string_view, 2> kSecretKeys = {"PWD", "PASSWORD"};

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
    whole.assign(static_cast<std::size_t>(length) + 1, '\0');
    calls.GetDiagRec(kind, handle, number, state.data(), &native, reinterpret_cast<Char*>(whole.data()),
                     static_cast<Small>(std::min<int>(length + 1, SHRT_MAX)), &length);
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

bool IsWordCharacter(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// Where the value of a key that starts at `at` begins; npos when no such key starts there.
std::size_t SecretValueAt(std::string_view text, std::size_t at) {
  if (at > 0 && IsWordCharacter(text[at - 1])) return std::string_view::npos;
  for (const auto key : kSecretKeys) {
    if (!EqualFolded(text.substr(at, key.size()), key)) continue;
    std::size_t place = at + key.size();
    while (place < text.size() && text[place] == ' ') ++place;
    if (place < text.size() && text[place] == '=') return place + 1;
  }
  return std::string_view::npos;
}

// A value in braces ends with its brace (two of them stand for one), any other before the next ";".
std::size_t EndOfValue(std::string_view text, std::size_t at) {
  if (at >= text.size() || text[at] != '{') return std::min(text.find(';', at), text.size());
  for (std::size_t place = at + 1; place < text.size(); ++place) {
    if (text[place] != '}') continue;
    if (place + 1 < text.size() && text[place + 1] == '}') {
      ++place;
    } else {
      return place + 1;
    }
  }
  return text.size();
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

std::string WithoutPasswords(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t value = SecretValueAt(text, at);
    if (value == std::string_view::npos) {
      result += text[at++];
    } else {
      result.append(text.substr(at, value - at)).append("***");
      at = EndOfValue(text, value);
    }
  }
  return result;
}

}  // namespace velmoria::odbc
