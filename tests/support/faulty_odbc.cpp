#include "tests/support/faulty_odbc.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/diagnostics.h"

namespace velmoria::test {
namespace {

constexpr std::array kNoDataCalls = {"Execute",     "ExecDirect", "Fetch",         "FetchScroll",
                                     "MoreResults", "GetData",    "DriverConnect", "GetConnectAttr"};

// What a program still calls on a dead link, and gets an answer to.
constexpr std::array kAnsweredDead = {"Disconnect", "GetConnectAttr", "FreeStmt", "Cancel"};

constexpr const char* kRefused = "HY000";
constexpr const char* kLost = "08S01";

template <class List>
bool Contains(const List& list, std::string_view name) {
  return std::find(list.begin(), list.end(), name) != list.end();
}

}  // namespace

std::string_view FaultWayName(FaultWay way) {
  constexpr std::array kNames = {"refused before", "refused after", "link lost before", "link lost after", "no data"};
  return kNames[static_cast<std::size_t>(way)];
}

bool IsLost(FaultWay way) { return way == FaultWay::LostBefore || way == FaultWay::LostAfter; }

bool IsAfter(FaultWay way) { return way == FaultWay::RefusedAfter || way == FaultWay::LostAfter; }

bool CanFail(std::string_view call, FaultWay way) {
  if (way == FaultWay::NoData) return Contains(kNoDataCalls, call);
  if (call == "AllocHandle") return !IsAfter(way);                  // without an answer there is no handle
  if (call == "Disconnect") return way != FaultWay::RefusedBefore;  // nothing else could end the connection
  return true;
}

void FaultyOdbc::Arm(int call, FaultWay way) {
  const std::lock_guard lock(guard_);
  names_.clear();
  strikeAt_ = call;
  way_ = way;
  hasStruck_ = false;
}

std::vector<std::string> FaultyOdbc::Names() const {
  const std::lock_guard lock(guard_);
  return names_;
}

bool FaultyOdbc::HasStruck() const {
  const std::lock_guard lock(guard_);
  return hasStruck_;
}

std::size_t FaultyOdbc::OpenHandles() const {
  const std::lock_guard lock(guard_);
  return handles_.size();
}

std::string FaultyOdbc::Misuses() const {
  const std::lock_guard lock(guard_);
  return misuses_;
}

void FaultyOdbc::Misuse(std::string_view name, std::string_view why) {
  misuses_.append(name).append(": ").append(why).append("\n");
}

FaultyOdbc::Code FaultyOdbc::Fail(Handle handle, const char* state) {
  failed_[handle] = state;
  return SQL_ERROR;
}

FaultyOdbc::Entry* FaultyOdbc::LinkOf(Handle handle) {
  auto found = handles_.find(handle);
  if (found != handles_.end() && found->second.Kind == SQL_HANDLE_STMT) found = handles_.find(found->second.Parent);
  return found != handles_.end() && found->second.Kind == SQL_HANDLE_DBC ? &found->second : nullptr;
}

// The server takes back what a client that is gone had begun.
void FaultyOdbc::Die(Handle handle) {
  const auto found = handles_.find(handle);
  const bool isStatement = found != handles_.end() && found->second.Kind == SQL_HANDLE_STMT;
  const Handle connection = isStatement ? found->second.Parent : handle;
  Entry* const link = LinkOf(handle);
  if (link == nullptr || !link->IsConnected || link->IsDead) return;
  link->IsDead = true;
  if (link->IsManual) driver_->EndTran(SQL_HANDLE_DBC, connection, SQL_ROLLBACK);
}

FaultyOdbc::Course FaultyOdbc::Strike(std::string_view name, Handle handle) {
  if (static_cast<int>(names_.size()) != strikeAt_ || !CanFail(name, way_)) return {};
  hasStruck_ = true;
  if (way_ == FaultWay::NoData) return {.Instead = Code{SQL_NO_DATA}};
  if (IsAfter(way_) || name == "Disconnect") return {.IsHidden = true};
  if (IsLost(way_)) Die(handle);
  return {.Instead = Fail(handle, IsLost(way_) ? kLost : kRefused)};
}

FaultyOdbc::Course FaultyOdbc::Enter(std::string_view name, Handle handle) {
  const std::lock_guard lock(guard_);
  names_.emplace_back(name);
  failed_.erase(handle);
  const auto found = handles_.find(handle);
  if (handle != nullptr && found == handles_.end()) {
    Misuse(name, "the handle is not open");
    return {.Instead = Code{SQL_INVALID_HANDLE}};
  }
  if (found != handles_.end() && name != "Cancel") {
    if (found->second.IsBusy) Misuse(name, "the handle is busy on another thread");
    found->second.IsBusy = true;
  }
  const Entry* const link = LinkOf(handle);
  if (link != nullptr && link->IsDead && !Contains(kAnsweredDead, name)) return {.Instead = Fail(handle, kLost)};
  return Strike(name, handle);
}

void FaultyOdbc::Leave(Handle handle) {
  const auto found = handles_.find(handle);
  if (found != handles_.end()) found->second.IsBusy = false;
}

template <class Pass>
FaultyOdbc::Code FaultyOdbc::Run(std::string_view name, Handle handle, Pass pass) {
  const Course course = Enter(name, handle);
  const Code code = course.Instead ? *course.Instead : pass();
  const std::lock_guard lock(guard_);
  if (name != "Cancel") Leave(handle);
  if (!course.IsHidden) return code;
  if (IsLost(way_)) Die(handle);
  return Fail(handle, IsLost(way_) ? kLost : kRefused);
}

FaultyOdbc::Code FaultyOdbc::AllocHandle(Small kind, Handle parent, Handle* made) {
  *made = nullptr;
  const Code code = Run("AllocHandle", parent, [&] { return driver_->AllocHandle(kind, parent, made); });
  if (!odbc::Succeeded(code)) return code;
  const std::lock_guard lock(guard_);
  handles_[*made] = {.Kind = kind, .Parent = parent};
  return code;
}

FaultyOdbc::Code FaultyOdbc::FreeHandle(Small kind, Handle handle) {
  {
    const std::lock_guard lock(guard_);
    const auto found = handles_.find(handle);
    if (found == handles_.end()) {
      Misuse("FreeHandle", "the handle is not open");
      return SQL_INVALID_HANDLE;
    }
    if (found->second.IsBusy) Misuse("FreeHandle", "the handle is busy on another thread");
    if (found->second.IsConnected) Misuse("FreeHandle", "the connection has not ended");
    for (const auto& [child, entry] : handles_)
      if (entry.Parent == handle) Misuse("FreeHandle", "something hangs on the handle");
    handles_.erase(found);
    failed_.erase(handle);
  }
  return driver_->FreeHandle(kind, handle);
}

FaultyOdbc::Code FaultyOdbc::GetDiagRec(Small kind, Handle handle, Small record, Char* state, Number* native,
                                        Char* text, Small capacity, Small* length) {
  std::string failed;
  {
    const std::lock_guard lock(guard_);
    const auto found = failed_.find(handle);
    if (found != failed_.end()) failed = found->second;
  }
  if (failed.empty()) return driver_->GetDiagRec(kind, handle, record, state, native, text, capacity, length);
  if (record != 1) return SQL_NO_DATA;
  std::memcpy(state, failed.c_str(), failed.size() + 1);
  *native = 7;
  std::snprintf(reinterpret_cast<char*>(text), static_cast<std::size_t>(capacity), "%s", kText);
  *length = static_cast<Small>(std::strlen(kText));
  return SQL_SUCCESS;
}

FaultyOdbc::Code FaultyOdbc::SetEnvAttr(Handle environment, Number attribute, Handle value, Number length) {
  return Run("SetEnvAttr", environment, [&] { return driver_->SetEnvAttr(environment, attribute, value, length); });
}

FaultyOdbc::Code FaultyOdbc::SetConnectAttr(Handle connection, Number attribute, Handle value, Number length) {
  return Run("SetConnectAttr", connection, [&] {
    const Code code = driver_->SetConnectAttr(connection, attribute, value, length);
    const std::lock_guard lock(guard_);
    if (odbc::Succeeded(code) && attribute == SQL_ATTR_AUTOCOMMIT)
      handles_[connection].IsManual = reinterpret_cast<std::uintptr_t>(value) == SQL_AUTOCOMMIT_OFF;
    return code;
  });
}

FaultyOdbc::Code FaultyOdbc::GetConnectAttr(Handle connection, Number attribute, Handle value, Number capacity,
                                            Number* length) {
  return Run("GetConnectAttr", connection, [&]() -> Code {
    std::unique_lock lock(guard_);
    const bool isDead = handles_[connection].IsDead;
    lock.unlock();
    if (!isDead || attribute != SQL_ATTR_CONNECTION_DEAD)
      return driver_->GetConnectAttr(connection, attribute, value, capacity, length);
    const SQLUINTEGER dead = SQL_CD_TRUE;
    std::memcpy(value, &dead, sizeof dead);
    return SQL_SUCCESS;
  });
}

FaultyOdbc::Code FaultyOdbc::DriverConnect(Handle connection, Handle window, Char* text, Small length, Char* completed,
                                           Small capacity, Small* completedLength, Word completion) {
  const auto connect = [&] {
    return driver_->DriverConnect(connection, window, text, length, completed, capacity, completedLength, completion);
  };
  bool isThere = false;
  const Code code = Run("DriverConnect", connection, [&] {
    const Code made = connect();
    isThere = odbc::Succeeded(made);
    return made;
  });
  if (isThere && !odbc::Succeeded(code)) driver_->Disconnect(connection);
  const std::lock_guard lock(guard_);
  if (odbc::Succeeded(code)) handles_[connection].IsConnected = true;
  return code;
}

FaultyOdbc::Code FaultyOdbc::Disconnect(Handle connection) {
  return Run("Disconnect", connection, [&] {
    const Code code = driver_->Disconnect(connection);
    const std::lock_guard lock(guard_);
    if (odbc::Succeeded(code)) handles_[connection].IsConnected = false;
    return code;
  });
}

FaultyOdbc::Code FaultyOdbc::GetInfo(Handle connection, Word information, Handle value, Small capacity, Small* length) {
  return Run("GetInfo", connection, [&] { return driver_->GetInfo(connection, information, value, capacity, length); });
}

FaultyOdbc::Code FaultyOdbc::EndTran(Small kind, Handle handle, Small completion) {
  return Run("EndTran", handle, [&] { return driver_->EndTran(kind, handle, completion); });
}

FaultyOdbc::Code FaultyOdbc::SetStmtAttr(Handle statement, Number attribute, Handle value, Number length) {
  return Run("SetStmtAttr", statement, [&] { return driver_->SetStmtAttr(statement, attribute, value, length); });
}

FaultyOdbc::Code FaultyOdbc::GetStmtAttr(Handle statement, Number attribute, Handle value, Number capacity,
                                         Number* length) {
  return Run("GetStmtAttr", statement,
             [&] { return driver_->GetStmtAttr(statement, attribute, value, capacity, length); });
}

FaultyOdbc::Code FaultyOdbc::BindParameter(Handle statement, Word number, Small direction, Small cType, Small type,
                                           ULength size, Small digits, Handle value, Length capacity,
                                           Length* indicator) {
  return Run("BindParameter", statement, [&] {
    return driver_->BindParameter(statement, number, direction, cType, type, size, digits, value, capacity, indicator);
  });
}

FaultyOdbc::Code FaultyOdbc::Prepare(Handle statement, Char* text, Number length) {
  return Run("Prepare", statement, [&] { return driver_->Prepare(statement, text, length); });
}

FaultyOdbc::Code FaultyOdbc::Execute(Handle statement) {
  return Run("Execute", statement, [&] { return driver_->Execute(statement); });
}

FaultyOdbc::Code FaultyOdbc::ExecDirect(Handle statement, Char* text, Number length) {
  return Run("ExecDirect", statement, [&] { return driver_->ExecDirect(statement, text, length); });
}

FaultyOdbc::Code FaultyOdbc::RowCount(Handle statement, Length* rows) {
  return Run("RowCount", statement, [&] { return driver_->RowCount(statement, rows); });
}

FaultyOdbc::Code FaultyOdbc::MoreResults(Handle statement) {
  return Run("MoreResults", statement, [&] { return driver_->MoreResults(statement); });
}

FaultyOdbc::Code FaultyOdbc::Cancel(Handle statement) {
  return Run("Cancel", statement, [&] { return driver_->Cancel(statement); });
}

FaultyOdbc::Code FaultyOdbc::FreeStmt(Handle statement, Word option) {
  return Run("FreeStmt", statement, [&] { return driver_->FreeStmt(statement, option); });
}

FaultyOdbc::Code FaultyOdbc::ProcedureColumns(Handle statement, Char* catalog, Small catalogLength, Char* schema,
                                              Small schemaLength, Char* procedure, Small procedureLength, Char* column,
                                              Small columnLength) {
  return Run("ProcedureColumns", statement, [&] {
    return driver_->ProcedureColumns(statement, catalog, catalogLength, schema, schemaLength, procedure,
                                     procedureLength, column, columnLength);
  });
}

FaultyOdbc::Code FaultyOdbc::NumResultCols(Handle statement, Small* columns) {
  return Run("NumResultCols", statement, [&] { return driver_->NumResultCols(statement, columns); });
}

FaultyOdbc::Code FaultyOdbc::DescribeCol(Handle statement, Word column, Char* name, Small capacity, Small* nameLength,
                                         Small* type, ULength* size, Small* digits, Small* nullable) {
  return Run("DescribeCol", statement, [&] {
    return driver_->DescribeCol(statement, column, name, capacity, nameLength, type, size, digits, nullable);
  });
}

FaultyOdbc::Code FaultyOdbc::ColAttribute(Handle statement, Word column, Word field, Handle text, Small capacity,
                                          Small* textLength, Length* number) {
  return Run("ColAttribute", statement,
             [&] { return driver_->ColAttribute(statement, column, field, text, capacity, textLength, number); });
}

FaultyOdbc::Code FaultyOdbc::BindCol(Handle statement, Word column, Small cType, Handle value, Length capacity,
                                     Length* indicator) {
  return Run("BindCol", statement,
             [&] { return driver_->BindCol(statement, column, cType, value, capacity, indicator); });
}

FaultyOdbc::Code FaultyOdbc::Fetch(Handle statement) {
  return Run("Fetch", statement, [&] { return driver_->Fetch(statement); });
}

FaultyOdbc::Code FaultyOdbc::FetchScroll(Handle statement, Small direction, Length offset) {
  return Run("FetchScroll", statement, [&] { return driver_->FetchScroll(statement, direction, offset); });
}

FaultyOdbc::Code FaultyOdbc::SetPos(Handle statement, ULength row, Word operation, Word lock) {
  return Run("SetPos", statement, [&] { return driver_->SetPos(statement, row, operation, lock); });
}

FaultyOdbc::Code FaultyOdbc::GetData(Handle statement, Word column, Small cType, Handle value, Length capacity,
                                     Length* indicator) {
  return Run("GetData", statement,
             [&] { return driver_->GetData(statement, column, cType, value, capacity, indicator); });
}

}  // namespace velmoria::test
