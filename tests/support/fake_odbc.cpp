#include "tests/support/fake_odbc.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <sql.h>
#include <sqlext.h>

namespace velmoria::test {
namespace {

std::string TextOf(const odbc::Char* text, odbc::Number length) {
  const auto* const begin = reinterpret_cast<const char*>(text);
  return length == SQL_NTS ? std::string(begin) : std::string(begin, static_cast<std::size_t>(length));
}

odbc::ULength NumberOf(void* value) { return reinterpret_cast<std::uintptr_t>(value); }

}  // namespace

bool FakeOdbc::Enter(std::string_view name, Handle handle) {
  const std::lock_guard lock(entering_);
  ++CallCount;
  const int ofName = ++CallsOf[std::string(name)];
  if (handle != nullptr && !handles_.contains(handle)) {
    ++Misuses;
    return false;
  }
  return CallCount != FailAt && !(name == FailName && ofName >= FailNameFrom);
}

FakeOdbc::Code FakeOdbc::AllocHandle(Small kind, Handle parent, Handle* made) {
  *made = nullptr;
  if (!Enter("AllocHandle", parent)) return SQL_ERROR;
  *made = reinterpret_cast<Handle>(++lastHandle_);
  FakeHandle& state = handles_[*made];
  state.Kind = kind;
  state.Parent = parent;
  if (kind == SQL_HANDLE_DBC) state.Number = ++connections_;
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::FreeHandle(Small, Handle handle) {
  const bool hasChildren =
      std::any_of(handles_.begin(), handles_.end(), [&](const auto& entry) { return entry.second.Parent == handle; });
  if (hasChildren || handles_.erase(handle) == 0) ++Misuses;
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::GetDiagRec(Small, Handle, Small record, Char* state, Number* native, Char* text,
                                    Small capacity, Small* length) {
  if (static_cast<std::size_t>(record) > Diagnostics.size()) return SQL_NO_DATA;
  const auto& diagnostic = Diagnostics[static_cast<std::size_t>(record) - 1];
  CopyText(diagnostic.State, state, 6);
  *native = diagnostic.Native;
  *length = CopyText(diagnostic.Text, text, capacity);
  return *length < capacity ? SQL_SUCCESS : SQL_SUCCESS_WITH_INFO;
}

FakeOdbc::Code FakeOdbc::SetEnvAttr(Handle environment, Number, Handle, Number) {
  return Enter("SetEnvAttr", environment) ? SQL_SUCCESS : SQL_ERROR;
}

FakeOdbc::Code FakeOdbc::SetConnectAttr(Handle connection, Number attribute, Handle value, Number) {
  if (!Enter("SetConnectAttr", connection)) return SQL_ERROR;
  if (attribute == SQL_ATTR_ACCESS_MODE) ReadOnly = NumberOf(value) == SQL_MODE_READ_ONLY;
  if (attribute == SQL_ATTR_AUTOCOMMIT && NumberOf(value) == SQL_AUTOCOMMIT_OFF) {
    Transactions.push_back("begin " + std::to_string(Of(connection).Number));
  }
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::DriverConnect(Handle connection, Handle, Char* text, Small length, Char*, Small, Small*,
                                       Word completion) {
  if (!Enter("DriverConnect", connection)) return SQL_ERROR;
  LinkLost = false;
  Connects.push_back(TextOf(text, length));
  Completions.push_back(completion);
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::Disconnect(Handle connection) {
  return Enter("Disconnect", connection) ? SQL_SUCCESS : SQL_ERROR;
}

FakeOdbc::Code FakeOdbc::GetInfo(Handle connection, Word information, Handle value, Small capacity, Small* length) {
  if (!Enter("GetInfo", connection)) return SQL_ERROR;
  const auto keeps = static_cast<Word>(TransactionKeepsResults ? SQL_CB_PRESERVE : SQL_CB_CLOSE);
  switch (information) {
    case SQL_TXN_CAPABLE: Put<Word>(value, 0, TransactionCapable); break;
    case SQL_MAX_CONCURRENT_ACTIVITIES: Put<Word>(value, 0, ActiveStatements); break;
    case SQL_CURSOR_COMMIT_BEHAVIOR:
    case SQL_CURSOR_ROLLBACK_BEHAVIOR: Put<Word>(value, 0, keeps); break;
    case SQL_DBMS_NAME: *length = CopyText(Server, value, capacity); break;
    case SQL_DRIVER_NAME: *length = CopyText(DriverName, value, capacity); break;
    default: *length = CopyText("\"", value, capacity);
  }
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::GetConnectAttr(Handle connection, Number, Handle value, Number, Number*) {
  if (!Enter("GetConnectAttr", connection)) return SQL_ERROR;
  Put<SQLUINTEGER>(value, 0, LinkLost ? SQL_CD_TRUE : SQL_CD_FALSE);
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::EndTran(Small, Handle handle, Small completion) {
  if (!Enter("EndTran", handle)) return SQL_ERROR;
  Transactions.push_back((completion == SQL_COMMIT ? "commit " : "rollback ") + std::to_string(Of(handle).Number));
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::SetStmtAttr(Handle statement, Number attribute, Handle value, Number) {
  if (!Enter("SetStmtAttr", statement)) return SQL_ERROR;
  FakeHandle& state = Of(statement);
  if (attribute == SQL_ATTR_CURSOR_TYPE) state.Scrolling = Scrolls && NumberOf(value) != SQL_CURSOR_FORWARD_ONLY;
  if (attribute == SQL_ATTR_ROW_ARRAY_SIZE) state.ArraySize = NumberOf(value);
  if (attribute == SQL_ATTR_ROW_STATUS_PTR) state.Status = static_cast<Word*>(value);
  if (attribute == SQL_ATTR_ROWS_FETCHED_PTR) state.Fetched = static_cast<ULength*>(value);
  LargestArray = std::max(LargestArray, state.ArraySize);
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::GetStmtAttr(Handle statement, Number, Handle value, Number, Number*) {
  if (!Enter("GetStmtAttr", statement)) return SQL_ERROR;
  Put<ULength>(value, 0, Of(statement).Scrolling ? SQL_CURSOR_STATIC : SQL_CURSOR_FORWARD_ONLY);
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::BindParameter(Handle statement, Word, Small direction, Small cType, Small type, ULength, Small,
                                       Handle value, Length capacity, Length* indicator) {
  if (!Enter("BindParameter", statement)) return SQL_ERROR;
  Of(statement).Bound.push_back({cType, type, value, indicator, direction, capacity});
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::Prepare(Handle statement, Char* text, Number length) {
  if (!Enter("Prepare", statement)) return SQL_ERROR;
  Texts.push_back(TextOf(text, length));
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::Execute(Handle statement) {
  return Enter("Execute", statement) ? Ran(statement) : Code{SQL_ERROR};
}

FakeOdbc::Code FakeOdbc::ExecDirect(Handle statement, Char* text, Number length) {
  if (!Enter("ExecDirect", statement)) return SQL_ERROR;
  Texts.push_back(TextOf(text, length));
  return Ran(statement);
}

void FakeOdbc::Hold() {
  const std::lock_guard lock(gate_);
  isHeld_ = true;
  hasHeld_ = isCancelled_ = false;
}

void FakeOdbc::Release() {
  const std::lock_guard lock(gate_);
  isHeld_ = false;
  opening_.notify_all();
}

void FakeOdbc::AwaitHeld() {
  std::unique_lock lock(gate_);
  opening_.wait(lock, [this] { return hasHeld_; });
}

bool FakeOdbc::PassGate() {
  std::unique_lock lock(gate_);
  hasHeld_ = isHeld_;
  opening_.notify_all();
  opening_.wait(lock, [this] { return !isHeld_ || isCancelled_; });
  return !isHeld_;
}

FakeOdbc::Code FakeOdbc::Cancel(Handle statement) {
  if (!Enter("Cancel", statement)) return SQL_ERROR;
  const std::lock_guard lock(gate_);
  if (LostCancels-- > 0) return SQL_SUCCESS;
  isCancelled_ = true;
  opening_.notify_all();
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::MoreResults(Handle statement) {
  if (!Enter("MoreResults", statement)) return SQL_ERROR;
  FakeHandle& state = Of(statement);
  if (state.Result++ < CountsBefore) return SQL_SUCCESS;
  state.Next = 0;
  if (!std::exchange(state.OfOutputs, true) && !OutputRows.empty()) return SQL_SUCCESS;
  std::size_t place = 0;
  for (const auto& bound : state.Bound) {
    if (bound.Direction == SQL_PARAM_INPUT || place == Outputs.size()) continue;
    Deliver(Outputs[place++], {bound.CType, bound.Value, bound.Capacity, bound.Indicator}, 0);
  }
  return SQL_NO_DATA;
}

FakeOdbc::Code FakeOdbc::ProcedureColumns(Handle statement, Char*, Small, Char*, Small, Char* procedure, Small length,
                                          Char*, Small) {
  if (!Enter("ProcedureColumns", statement)) return SQL_ERROR;
  Texts.push_back("procedure " + TextOf(procedure, length));
  Of(statement).OfCatalogue = true;
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::Ran(Handle statement) {
  if (!PassGate()) return SQL_ERROR;
  Parameters.clear();
  Of(statement).Result = 0;
  Of(statement).OfOutputs = false;
  for (const auto& bound : Of(statement).Bound) {
    const bool isNull = *bound.Indicator == SQL_NULL_DATA;
    const auto length = isNull ? std::size_t{0} : static_cast<std::size_t>(*bound.Indicator);
    Parameters.push_back(
        {bound.CType, bound.Type, isNull, std::string(static_cast<const char*>(bound.Value), length), bound.Value});
  }
  Of(statement).Next = 0;
  return NothingAffected ? SQL_NO_DATA : SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::RowCount(Handle statement, Length* rows) {
  if (!Enter("RowCount", statement)) return SQL_ERROR;
  *rows = static_cast<Length>(Rows.size());
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::FreeStmt(Handle statement, Word option) {
  if (!handles_.contains(statement)) {
    ++Misuses;
    return SQL_INVALID_HANDLE;
  }
  if (option == SQL_UNBIND) Of(statement).Bindings.clear();
  if (option == SQL_RESET_PARAMS) Of(statement).Bound.clear();
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::NumResultCols(Handle statement, Small* columns) {
  if (!Enter("NumResultCols", statement)) return SQL_ERROR;
  *columns = static_cast<Small>(Of(statement).Result < CountsBefore ? 0 : ColumnsOf(Of(statement)).size());
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::DescribeCol(Handle statement, Word column, Char* name, Small capacity, Small* nameLength,
                                     Small* type, ULength* size, Small* digits, Small* nullable) {
  if (!Enter("DescribeCol", statement)) return SQL_ERROR;
  const Column& described = ColumnsOf(Of(statement)).at(column - 1U);
  *nameLength = CopyText(described.Name, name, capacity);
  *type = described.Type;
  *size = described.Size;
  *digits = 0;
  *nullable = SQL_NULLABLE;
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::ColAttribute(Handle statement, Word column, Word field, Handle text, Small capacity, Small*,
                                      Length* number) {
  if (!Enter("ColAttribute", statement)) return SQL_ERROR;
  if (text != nullptr) CopyText("", text, capacity);
  const bool withoutSign = ColumnsOf(Of(statement)).at(column - 1U).WithoutSign;
  if (number != nullptr) *number = field == SQL_DESC_UNSIGNED && withoutSign ? SQL_TRUE : 0;
  if (number != nullptr && field == SQL_DESC_NULLABLE) *number = SQL_NULLABLE;
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::BindCol(Handle statement, Word column, Small cType, Handle value, Length capacity,
                                 Length* indicator) {
  if (!Enter("BindCol", statement)) return SQL_ERROR;
  Of(statement).Bindings[column] = {cType, value, capacity, indicator};
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::Fetch(Handle statement) {
  if (!Enter("Fetch", statement)) return SQL_ERROR;
  return Give(Of(statement), Of(statement).Next);
}

FakeOdbc::Code FakeOdbc::FetchScroll(Handle statement, Small direction, Length offset) {
  if (!Enter("FetchScroll", statement)) return SQL_ERROR;
  FakeHandle& state = Of(statement);
  if (direction == SQL_FETCH_NEXT) return Give(state, state.Next);
  return state.Scrolling ? Give(state, static_cast<std::size_t>(offset - 1)) : Code{SQL_ERROR};
}

FakeOdbc::Code FakeOdbc::Give(FakeHandle& statement, std::size_t first) {
  const auto& given = RowsOf(statement);
  if (statement.OfOutputs) NoteLeftOfRows(statement);
  const std::size_t rows = first >= given.size() ? 0 : std::min<std::size_t>(statement.ArraySize, given.size() - first);
  if (statement.Fetched != nullptr) *statement.Fetched = rows;
  statement.First = first;
  statement.Current = first;
  statement.Next = first + rows;
  statement.Given.clear();
  if (rows == 0) return SQL_NO_DATA;
  bool informed = false;
  for (std::size_t row = 0; row < rows; ++row) {
    const bool fails = FailingRow == first + row;
    if (statement.Status != nullptr) statement.Status[row] = fails ? SQL_ROW_ERROR : SQL_ROW_SUCCESS;
    informed = informed || fails;
    for (const auto& [column, binding] : statement.Bindings) {
      if (column > given[first + row].size()) continue;
      if (Deliver(given[first + row][column - 1U], binding, row) == SQL_SUCCESS_WITH_INFO) informed = true;
    }
  }
  return informed ? SQL_SUCCESS_WITH_INFO : SQL_SUCCESS;
}

void FakeOdbc::NoteLeftOfRows(const FakeHandle& statement) noexcept {
  LeftOfRows += static_cast<int>(statement.Bindings.size()) + (statement.Status != nullptr) +
                (statement.Fetched != nullptr) + (statement.ArraySize != 1);
}

FakeOdbc::Code FakeOdbc::SetPos(Handle statement, ULength row, Word, Word) {
  if (!Enter("SetPos", statement)) return SQL_ERROR;
  FakeHandle& state = Of(statement);
  state.Current = state.First + row - 1;
  state.Given.clear();
  return SQL_SUCCESS;
}

FakeOdbc::Code FakeOdbc::GetData(Handle statement, Word column, Small cType, Handle value, Length capacity,
                                 Length* indicator) {
  if (!Enter("GetData", statement)) return SQL_ERROR;
  FakeHandle& state = Of(statement);
  const auto& whole = RowsOf(state).at(state.Current).at(column - 1U);
  std::size_t& given = state.Given[column];
  if (!whole || (cType != SQL_C_CHAR && cType != SQL_C_BINARY))
    return Deliver(whole, {cType, value, capacity, indicator}, 0);
  if (given == 0 && capacity > 0) LongPlace = value;
  const std::string rest = whole->substr(given);
  // A text ends in a zero.
  const auto room = static_cast<std::size_t>(cType == SQL_C_CHAR ? std::max<Length>(capacity, 1) - 1 : capacity);
  given += std::min(rest.size(), room);
  *indicator = static_cast<Length>(rest.size());
  if (cType == SQL_C_CHAR) {
    CopyText(rest, value, capacity);
  } else {
    std::memcpy(value, rest.data(), std::min(rest.size(), room));
  }
  if (rest.size() <= room) return SQL_SUCCESS;
  if (!(cType == SQL_C_CHAR ? TellsTextLengths : TellsLengths)) *indicator = SQL_NO_TOTAL;
  return SQL_SUCCESS_WITH_INFO;
}

FakeOdbc::Code FakeOdbc::Deliver(const std::optional<std::string>& value, const FakeBinding& binding,
                                 std::size_t row) const {
  const bool isStamp = value && binding.CType == SQL_C_TYPE_TIMESTAMP;
  const auto misread = isStamp ? MisreadAs.find(*value) : MisreadAs.end();
  if (misread == MisreadAs.end()) return PutValue(value, binding, row);
  PutValue(misread->second, binding, row);
  if (misread->second.empty()) binding.Indicator[row] = SQL_NULL_DATA;
  return SQL_SUCCESS;
}

}  // namespace velmoria::test
