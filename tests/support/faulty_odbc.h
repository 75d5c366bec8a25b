#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/forwarding_odbc.h"

namespace velmoria::test {

/// How a call fails. Before: the driver never hears of it. After: the driver has done it, and only the answer is lost.
enum class FaultWay { RefusedBefore, RefusedAfter, LostBefore, LostAfter, NoData };

/// Refused is SQL_ERROR with a diagnostic, Lost is 08S01 with nothing but failures on that connection from there on.
std::string_view FaultWayName(FaultWay way);
bool IsLost(FaultWay way);
bool IsAfter(FaultWay way);
/// Whether a driver may answer the call in this way. No data is for what gives rows or values, and for a connection
/// that a user gives up.
bool CanFail(std::string_view call, FaultWay way);

/// Lets a single call to a driver fail, and keeps account of every handle. Freeing a handle and asking for diagnostics
/// never fail and are not counted.
///
/// A call is a misuse when its handle is not open or is busy on another thread, and when a handle is freed before what
/// hangs on it.
class FaultyOdbc final : public ForwardingOdbc {
 public:
  static constexpr const char* kText = "the call was made to fail";

  using ForwardingOdbc::ForwardingOdbc;

  /// Counts anew, from 1, and fails the call of that number; 0 fails none.
  void Arm(int call, FaultWay way = FaultWay::RefusedBefore);
  void Disarm() { Arm(0); }
  /// The names of the calls since Arm.
  std::vector<std::string> Names() const;
  /// Whether the call of the number was made, and could fail so.
  bool HasStruck() const;

  std::size_t OpenHandles() const;
  /// One line each.
  std::string Misuses() const;

  Code AllocHandle(Small kind, Handle parent, Handle* made) override;
  Code FreeHandle(Small kind, Handle handle) override;
  Code GetDiagRec(Small kind, Handle handle, Small record, Char* state, Number* native, Char* text, Small capacity,
                  Small* length) override;
  Code SetConnectAttr(Handle connection, Number attribute, Handle value, Number length) override;
  Code GetConnectAttr(Handle connection, Number attribute, Handle value, Number capacity, Number* length) override;
  Code DriverConnect(Handle connection, Handle window, Char* text, Small length, Char* completed, Small capacity,
                     Small* completedLength, Word completion) override;
  Code Disconnect(Handle connection) override;

 protected:
  Code Pass(std::string_view name, Handle handle, const Request& request) override;

 private:
  struct Entry {
    Small Kind = 0;
    Handle Parent = nullptr;
    bool IsConnected = false;
    bool IsDead = false;
    bool IsManual = false;  // commits when it is told to
    bool IsBusy = false;
  };
  struct Course {
    std::optional<Code> Instead{};  // the driver is not asked
    bool IsHidden = false;          // it is asked, and its answer is a failure
  };

  Course Enter(std::string_view name, Handle handle);
  Course Strike(std::string_view name, Handle handle);
  void Leave(Handle handle);
  Code Fail(Handle handle, const char* state);
  Entry* LinkOf(Handle handle);
  void Die(Handle handle);
  void Misuse(std::string_view name, std::string_view why);

  mutable std::mutex guard_;
  std::map<Handle, Entry> handles_;
  std::map<Handle, std::string> failed_;  // the SQLSTATE to be asked for
  std::vector<std::string> names_;
  std::string misuses_;
  int strikeAt_ = 0;
  FaultWay way_ = FaultWay::RefusedBefore;
  bool hasStruck_ = false;
};

}  // namespace velmoria::test
