#include "velmoria/platform/odbc/connection.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/arguments.h"
#include "velmoria/platform/odbc/statement.h"

namespace velmoria::odbc {
namespace {

Handle AttributeValue(ULength value) { return reinterpret_cast<Handle>(std::uintptr_t{value}); }

}  // namespace

void Connection::Open(const std::string& connect, bool prompting, bool readOnly) {
  Close();
  try {
    Connect(connect, prompting, readOnly);
  } catch (...) {
    Close();
    throw;
  }
}

void Connection::Connect(const std::string& connect, bool prompting, bool readOnly) {
  const Handle environment = environment_.Get();
  Handle made = nullptr;
  if (!Succeeded(Calls().AllocHandle(SQL_HANDLE_DBC, environment, &made))) {
    FailWithDiagnostics(Driver(), SQL_HANDLE_ENV, environment);
  }
  handle_ = made;
  if (readOnly) Check(Calls().SetConnectAttr(handle_, SQL_ATTR_ACCESS_MODE, AttributeValue(SQL_MODE_READ_ONLY), 0));
  // Some drivers write the completed text whether it is wanted or not.
  std::array<Char, 4096> completed{};
  Small length = 0;
  Check(Calls().DriverConnect(handle_, nullptr, MutableText(connect), SQL_NTS, completed.data(),
                              static_cast<Small>(completed.size()), &length,
                              prompting ? SQL_DRIVER_COMPLETE : SQL_DRIVER_NOPROMPT));
  connected_ = true;
  manners_ = &DriverMannersOf(InfoText(SQL_DRIVER_NAME));
}

void Connection::Close() noexcept {
  while (!statements_.empty()) statements_.back()->Close();
  if (spare_ != nullptr) Calls().FreeHandle(SQL_HANDLE_STMT, std::exchange(spare_, nullptr));
  if (connected_) {
    // A connection with an open transaction refuses to end.
    if (!autoCommit_) Calls().EndTran(SQL_HANDLE_DBC, handle_, SQL_ROLLBACK);
    if (!Succeeded(Calls().Disconnect(handle_))) {
      // Nothing else lets go of the link: what is still open is taken back once more.
      Calls().EndTran(SQL_HANDLE_DBC, handle_, SQL_ROLLBACK);
      Calls().Disconnect(handle_);
    }
  }
  connected_ = false;
  autoCommit_ = true;
  inDoubt_ = false;
  if (handle_ != nullptr) Calls().FreeHandle(SQL_HANDLE_DBC, handle_);
  handle_ = nullptr;
}

bool Connection::IsLost() noexcept {
  if (!connected_ || !inDoubt_) return false;
  AwaitExecution();
  SQLUINTEGER dead = SQL_CD_FALSE;
  const Code code = Calls().GetConnectAttr(handle_, SQL_ATTR_CONNECTION_DEAD, &dead, SQL_IS_UINTEGER, nullptr);
  inDoubt_ = Succeeded(code) && dead == SQL_CD_TRUE;
  return inDoubt_;
}

void Connection::SetAutoCommit(bool value) {
  RequireOpen();
  const auto set = [this](ULength mode) {
    return Calls().SetConnectAttr(handle_, SQL_ATTR_AUTOCOMMIT, AttributeValue(mode), SQL_IS_UINTEGER);
  };
  try {
    Check(set(value ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF));
  } catch (...) {
    // A driver that failed behind the change would keep back all that is written from here on.
    if (!value) autoCommit_ = Succeeded(set(SQL_AUTOCOMMIT_ON));
    throw;
  }
  autoCommit_ = value;
}

void Connection::EndTransaction(bool commit) {
  RequireOpen();
  // Some drivers commit without a word what went with the link.
  if (commit && IsLost()) FailWithLostTransaction();
  Check(Calls().EndTran(SQL_HANDLE_DBC, handle_, commit ? SQL_COMMIT : SQL_ROLLBACK));
}

void Connection::FailWithLostTransaction() {
  FailClosed("The link to the server was lost, and the transaction with it. Roll it back to work on over a new link.");
}

std::string Connection::InfoText(Word information) {
  RequireOpen();
  std::array<char, 256> text{};
  Small length = 0;
  const Code code = Calls().GetInfo(handle_, information, text.data(), static_cast<Small>(text.size() - 1), &length);
  return NoteAnswer(code) ? std::string(text.data()) : std::string();
}

Word Connection::InfoNumber(Word information) {
  RequireOpen();
  Word number = 0;
  const Code code = Calls().GetInfo(handle_, information, &number, sizeof number, nullptr);
  return NoteAnswer(code) ? number : Word{0};
}

bool Connection::NoteAnswer(Code code) noexcept {
  if (!Succeeded(code)) inDoubt_ = true;
  return Succeeded(code);
}

void Connection::Check(Code code) {
  if (Succeeded(code)) return;
  inDoubt_ = true;
  FailWithDiagnostics(Driver(), SQL_HANDLE_DBC, handle_);
}

void Connection::RequireOpen() const {
  if (!connected_) FailClosed("The connection is closed.");
  AwaitExecution();
}

void Connection::AwaitExecution() const noexcept {
  if (executing_ != nullptr) executing_->execution_->Wait();
}

void Connection::Enter(Statement* statement) { statements_.push_back(statement); }

void Connection::Leave(Statement* statement) noexcept {
  const auto place = std::find(statements_.rbegin(), statements_.rend(), statement);
  if (place != statements_.rend()) statements_.erase(std::next(place).base());
}

Handle Connection::TakeHandle() { return spare_ != nullptr ? std::exchange(spare_, nullptr) : MakeHandle(); }

Handle Connection::MakeHandle() {
  Handle made = nullptr;
  Check(Calls().AllocHandle(SQL_HANDLE_STMT, handle_, &made));
  return made;
}

void Connection::GiveBack(Handle statement, bool likeNew) noexcept {
  if (likeNew && spare_ == nullptr)
    spare_ = statement;
  else
    Calls().FreeHandle(SQL_HANDLE_STMT, statement);
}

}  // namespace velmoria::odbc
