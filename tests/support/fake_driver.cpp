#include "tests/support/fake_driver.h"

#include <algorithm>
#include <cstring>

#include <sql.h>
#include <sqlext.h>

namespace velmoria::test {

namespace {

std::string TextOf(const odbc::Char* text, odbc::Number length) {
  const auto* first = reinterpret_cast<const char*>(text);
  return length == SQL_NTS ? std::string(first) : std::string(first, static_cast<std::size_t>(length));
}

void PutText(odbc::Char* place, odbc::Small capacity, odbc::Small* length, const std::string& text) {
  if (length) *length = static_cast<odbc::Small>(text.size());
  if (!place || capacity <= 0) return;
  const auto size = std::min(text.size(), static_cast<std::size_t>(capacity - 1));
  std::memcpy(place, text.data(), size);
  place[size] = 0;
}

}  // namespace

odbc::Code FakeDriver::AllocHandle(odbc::Small kind, odbc::Handle /*parent*/, odbc::Handle* made) {
  *made = reinterpret_cast<odbc::Handle>(++handles_);
  if (kind == SQL_HANDLE_ENV) ++Environments;
  return 0;
}

odbc::Code FakeDriver::GetDiagRec(odbc::Small /*kind*/, odbc::Handle /*handle*/, odbc::Small record, odbc::Char* state,
                                  odbc::Number* native, odbc::Char* text, odbc::Small capacity, odbc::Small* length) {
  if (record != 1 || Why.State.empty()) return SQL_NO_DATA;
  PutText(state, 6, nullptr, Why.State);
  *native = Why.Native;
  PutText(text, capacity, length, Why.Text);
  return 0;
}

odbc::Code FakeDriver::SetEnvAttr(odbc::Handle, odbc::Number, odbc::Handle, odbc::Number) {
  return FailEnvironment ? odbc::Code{-1} : odbc::Code{0};
}

odbc::Code FakeDriver::DriverConnect(odbc::Handle /*connection*/, odbc::Handle /*window*/, odbc::Char* text,
                                     odbc::Small length, odbc::Char* /*completed*/, odbc::Small /*capacity*/,
                                     odbc::Small* /*completedLength*/, odbc::Word completion) {
  Connects.push_back(TextOf(text, length));
  Completions.push_back(completion);
  return FailConnect ? odbc::Code{-1} : odbc::Code{0};
}

odbc::Code FakeDriver::GetInfo(odbc::Handle /*connection*/, odbc::Word information, odbc::Handle value,
                               odbc::Small capacity, odbc::Small* length) {
  if (information == SQL_TXN_CAPABLE)
    *static_cast<odbc::Word*>(value) = TransactionCapable;
  else if (information == SQL_DBMS_NAME)
    PutText(static_cast<odbc::Char*>(value), capacity, length, ServerName);
  else
    return -1;
  return 0;
}

odbc::Code FakeDriver::EndTran(odbc::Small /*kind*/, odbc::Handle /*handle*/, odbc::Small completion) {
  if (FailEnd) return -1;
  Ends.emplace_back(completion == SQL_COMMIT ? "commit" : "rollback");
  return 0;
}

odbc::Code FakeDriver::Prepare(odbc::Handle /*statement*/, odbc::Char* text, odbc::Number length) {
  ++Prepared;
  Statements.push_back(TextOf(text, length));
  return Outcome();
}

odbc::Code FakeDriver::ExecDirect(odbc::Handle /*statement*/, odbc::Char* text, odbc::Number length) {
  Statements.push_back(TextOf(text, length));
  return Outcome();
}

odbc::Code FakeDriver::RowCount(odbc::Handle /*statement*/, odbc::Length* rows) {
  *rows = 1;
  return 0;
}

odbc::Code FakeDriver::NumResultCols(odbc::Handle /*statement*/, odbc::Small* columns) {
  *columns = 0;
  return 0;
}

}  // namespace velmoria::test
