#include "velmoria/platform/odbc/statement.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/arguments.h"

namespace velmoria::odbc {
namespace {

struct BlockAttribute {
  odbc::Number Number;
  Handle New;  // what a new statement has
};

const std::array kBlockAttributes = {
    BlockAttribute{SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<Handle>(std::uintptr_t{1})},
    BlockAttribute{SQL_ATTR_ROW_STATUS_PTR, nullptr},
    BlockAttribute{SQL_ATTR_ROWS_FETCHED_PTR, nullptr},
};

}  // namespace

Statement::Statement(Connection& connection) : connection_(&connection) {
  connection.RequireOpen();
  connection.Enter(this);
  try {
    handle_ = connection.TakeHandle();
  } catch (...) {
    connection.Leave(this);
    throw;
  }
}

void Statement::Close() noexcept {
  if (connection_ == nullptr) return;
  CancelExecution();
  if (handle_ != nullptr) connection_->GiveBack(handle_, connection_->Manners().StatementsServeAgain && MakeLikeNew());
  connection_->Leave(this);
  handle_ = nullptr;
  connection_ = nullptr;
}

bool Statement::MakeLikeNew() noexcept {
  const auto unset = [this](const auto& attribute) {
    return connection_->NoteAnswer(Calls().SetStmtAttr(handle_, attribute.Number, attribute.New, 0));
  };
  if (isSpecial_ || !UnbindParameters()) return false;
  if (!connection_->NoteAnswer(Calls().FreeStmt(handle_, SQL_UNBIND))) return false;
  if (fetchesBlocks_ && !std::ranges::all_of(kBlockAttributes, unset)) return false;
  return (isAtEnd_ || HasNothingLeft()) && EndResult();
}

// The driver holds what is left of a result, and its lock of the file, behind the end of the result.
bool Statement::HasNothingLeft() noexcept {
  Small columns = 0;
  if (!connection_->NoteAnswer(Calls().NumResultCols(handle_, &columns))) return false;
  if (columns == 0) return true;
  const Code code = Calls().Fetch(handle_);
  if (code != SQL_NO_DATA) connection_->NoteAnswer(code);
  return code == SQL_NO_DATA;
}

void Statement::AskForScrolling() {
  isSpecial_ = true;
  const auto type = reinterpret_cast<Handle>(std::uintptr_t{SQL_CURSOR_STATIC});
  const auto ask = [&] { return Calls().SetStmtAttr(Get(), SQL_ATTR_CURSOR_TYPE, type, 0); };
  Code code = ask();
  if (!Succeeded(code) && connection_->Manners().StatementsServeAgain) {
    // One that has been prepared before keeps the type that it had.
    connection_->GiveBack(std::exchange(handle_, nullptr), false);
    handle_ = connection_->MakeHandle();
    code = ask();
  }
  // A refusal is no failure: Scrolls tells what there is.
  connection_->NoteAnswer(code);
}

bool Statement::Scrolls() const {
  ULength type = SQL_CURSOR_FORWARD_ONLY;
  const Code code = Calls().GetStmtAttr(Get(), SQL_ATTR_CURSOR_TYPE, &type, sizeof type, nullptr);
  return Succeeded(code) && type != SQL_CURSOR_FORWARD_ONLY;
}

void Statement::SetAttribute(Number attribute, ULength value) {
  SetPointer(attribute, reinterpret_cast<Handle>(std::uintptr_t{value}));
}

void Statement::SetPointer(Number attribute, Handle value) {
  const auto isOfBlocks = [=](const auto& each) { return each.Number == attribute; };
  (std::ranges::any_of(kBlockAttributes, isOfBlocks) ? fetchesBlocks_ : isSpecial_) = true;
  Check(Calls().SetStmtAttr(Get(), attribute, value, 0));
}

void Statement::Prepare(const std::string& text) {
  const Number length = LengthOfStatement(text);
  AwaitTurn();
  Check(Calls().Prepare(Get(), MutableText(text), length));
}

void Statement::Execute() {
  AwaitTurn();
  NoteRun(Calls().Execute(Get()));
}

void Statement::ExecuteDirect(const std::string& text) {
  const Number length = LengthOfStatement(text);
  AwaitTurn();
  NoteRun(Calls().ExecDirect(Get(), MutableText(text), length));
}

void Statement::NoteRun(Code code) {
  isAtEnd_ = false;
  if (code != SQL_NO_DATA) Check(code);
}

void Statement::ExecuteInBackground(const std::string& text, bool prepared) {
  AwaitTurn();
  isSpecial_ = true;
  execution_ = std::make_unique<Execution>(connection_->Driver().Calls, Get(), text, prepared,
                                           connection_->Manners().MillisecondsToSend);
  connection_->executing_ = this;
}

void Statement::FinishExecution() {
  if (!execution_) return;
  const Code code = execution_->Wait();
  EndExecution();
  NoteRun(code);
}

void Statement::CancelExecution() noexcept {
  if (!execution_) return;
  // A request that is refused, and not the execution, may be the first to meet a link that is lost.
  if (!execution_->Cancel()) connection_->NoteAnswer(SQL_ERROR);
  connection_->NoteAnswer(execution_->Wait());
  EndExecution();
}

void Statement::EndExecution() noexcept {
  execution_.reset();
  if (connection_->executing_ == this) connection_->executing_ = nullptr;
}

void Statement::AwaitTurn() const {
  if (connection_ != nullptr) connection_->AwaitExecution();
}

bool Statement::MoreResults() {
  isAtEnd_ = false;
  const Code code = Calls().MoreResults(Get());
  if (code == SQL_NO_DATA) return false;
  Check(code);
  return true;
}

bool Statement::EndResult() noexcept {
  return handle_ == nullptr || connection_->NoteAnswer(connection_->Calls().FreeStmt(handle_, SQL_CLOSE));
}

void Statement::UnbindColumns() { Check(Calls().FreeStmt(Get(), SQL_UNBIND)); }

bool Statement::UnbindParameters() noexcept {
  return handle_ == nullptr || connection_->NoteAnswer(connection_->Calls().FreeStmt(handle_, SQL_RESET_PARAMS));
}

int Statement::Columns() {
  Small columns = 0;
  Check(Calls().NumResultCols(Get(), &columns));
  return columns;
}

Length Statement::RowsAffected() {
  Length rows = -1;
  return connection_->NoteAnswer(Calls().RowCount(Get(), &rows)) ? rows : -1;
}

Connection& Statement::Open() const {
  if (handle_ == nullptr) FailClosed("The connection of the statement is closed.");
  return *connection_;
}

Handle Statement::Get() const {
  Open();
  return handle_;
}

const DateManners& Statement::Dates() const { return Open().Manners().Dates; }

Calls& Statement::Calls() const { return Open().Calls(); }

void Statement::Check(Code code) const {
  if (Succeeded(code)) return;
  isSpecial_ = true;
  connection_->inDoubt_ = true;
  FailWithDiagnostics(connection_->Driver(), SQL_HANDLE_STMT, handle_);
}

}  // namespace velmoria::odbc
