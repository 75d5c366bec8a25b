#include "tests/support/counting_odbc.h"

#include <algorithm>

#include <sql.h>

namespace velmoria::test {

std::vector<std::string> CountingOdbc::Texts() const {
  const std::lock_guard lock(noting_);
  return texts_;
}

void CountingOdbc::Note(const Char* text) {
  const std::lock_guard lock(noting_);
  texts_.emplace_back(reinterpret_cast<const char*>(text));
}

CountingOdbc::Code CountingOdbc::AllocHandle(Small kind, Handle parent, Handle* made) {
  const Code code = ForwardingOdbc::AllocHandle(kind, parent, made);
  if (SQL_SUCCEEDED(code)) ++open_;
  return code;
}

CountingOdbc::Code CountingOdbc::FreeHandle(Small kind, Handle handle) {
  const Code code = ForwardingOdbc::FreeHandle(kind, handle);
  if (SQL_SUCCEEDED(code)) --open_;
  return code;
}

CountingOdbc::Code CountingOdbc::Prepare(Handle statement, Char* text, Number length) {
  Note(text);
  return ForwardingOdbc::Prepare(statement, text, length);
}

CountingOdbc::Code CountingOdbc::Execute(Handle statement) {
  ++executions_;
  return ForwardingOdbc::Execute(statement);
}

CountingOdbc::Code CountingOdbc::ExecDirect(Handle statement, Char* text, Number length) {
  Note(text);
  ++executions_;
  return ForwardingOdbc::ExecDirect(statement, text, length);
}

CountingOdbc::Code CountingOdbc::GetData(Handle statement, Word column, Small cType, Handle value, Length capacity,
                                         Length* indicator) {
  const Code code = ForwardingOdbc::GetData(statement, column, cType, value, capacity, indicator);
  if (SQL_SUCCEEDED(code) && *indicator != SQL_NULL_DATA)
    longBytes_ += *indicator < 0 ? capacity : std::min(*indicator, capacity);
  return code;
}

}  // namespace velmoria::test
