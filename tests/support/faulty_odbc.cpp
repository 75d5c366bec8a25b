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
  if (link->IsManual) Driver().EndTran(SQL_HANDLE_DBC, connection, SQL_ROLLBACK);
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

FaultyOdbc::Code FaultyOdbc::Pass(std::string_view name, Handle handle, const Request& request) {
  const Course course = Enter(name, handle);
  const Code code = course.Instead ? *course.Instead : request();
  const std::lock_guard lock(guard_);
  if (name != "Cancel") Leave(handle);
  if (!course.IsHidden) return code;
  if (IsLost(way_)) Die(handle);
  return Fail(handle, IsLost(way_) ? kLost : kRefused);
}

FaultyOdbc::Code FaultyOdbc::AllocHandle(Small kind, Handle parent, Handle* made) {
  *made = nullptr;
  const Code code = ForwardingOdbc::AllocHandle(kind, parent, made);
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
  return ForwardingOdbc::FreeHandle(kind, handle);
}

FaultyOdbc::Code FaultyOdbc::GetDiagRec(Small kind, Handle handle, Small record, Char* state, Number* native,
                                        Char* text, Small capacity, Small* length) {
  std::string failed;
  {
    const std::lock_guard lock(guard_);
    const auto found = failed_.find(handle);
    if (found != failed_.end()) failed = found->second;
  }
  if (failed.empty()) return ForwardingOdbc::GetDiagRec(kind, handle, record, state, native, text, capacity, length);
  if (record != 1) return SQL_NO_DATA;
  std::memcpy(state, failed.c_str(), failed.size() + 1);
  *native = 7;
  std::snprintf(reinterpret_cast<char*>(text), static_cast<std::size_t>(capacity), "%s", kText);
  *length = static_cast<Small>(std::strlen(kText));
  return SQL_SUCCESS;
}

FaultyOdbc::Code FaultyOdbc::SetConnectAttr(Handle connection, Number attribute, Handle value, Number length) {
  return Pass("SetConnectAttr", connection, [&] {
    const Code code = Driver().SetConnectAttr(connection, attribute, value, length);
    const std::lock_guard lock(guard_);
    if (odbc::Succeeded(code) && attribute == SQL_ATTR_AUTOCOMMIT)
      handles_[connection].IsManual = reinterpret_cast<std::uintptr_t>(value) == SQL_AUTOCOMMIT_OFF;
    return code;
  });
}

FaultyOdbc::Code FaultyOdbc::GetConnectAttr(Handle connection, Number attribute, Handle value, Number capacity,
                                            Number* length) {
  return Pass("GetConnectAttr", connection, [&]() -> Code {
    std::unique_lock lock(guard_);
    const bool isDead = handles_[connection].IsDead;
    lock.unlock();
    if (!isDead || attribute != SQL_ATTR_CONNECTION_DEAD)
      return Driver().GetConnectAttr(connection, attribute, value, capacity, length);
    const SQLUINTEGER dead = SQL_CD_TRUE;
    std::memcpy(value, &dead, sizeof dead);
    return SQL_SUCCESS;
  });
}

FaultyOdbc::Code FaultyOdbc::DriverConnect(Handle connection, Handle window, Char* text, Small length, Char* completed,
                                           Small capacity, Small* completedLength, Word completion) {
  const auto connect = [&] {
    return Driver().DriverConnect(connection, window, text, length, completed, capacity, completedLength, completion);
  };
  bool isThere = false;
  const Code code = Pass("DriverConnect", connection, [&] {
    const Code made = connect();
    isThere = odbc::Succeeded(made);
    return made;
  });
  if (isThere && !odbc::Succeeded(code)) Driver().Disconnect(connection);
  const std::lock_guard lock(guard_);
  if (odbc::Succeeded(code)) handles_[connection].IsConnected = true;
  return code;
}

FaultyOdbc::Code FaultyOdbc::Disconnect(Handle connection) {
  return Pass("Disconnect", connection, [&] {
    const Code code = Driver().Disconnect(connection);
    const std::lock_guard lock(guard_);
    if (odbc::Succeeded(code)) handles_[connection].IsConnected = false;
    return code;
  });
}

}  // namespace velmoria::test
