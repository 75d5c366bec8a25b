#pragma once

#include <string>
#include <vector>

#include "velmoria/platform/odbc/driver_manners.h"
#include "velmoria/platform/odbc/environment.h"

namespace velmoria::odbc {

class Statement;

/// A connection handle and the statements made on it, which end with it. The environment has to outlive it.
class Connection {
 public:
  explicit Connection(Environment& environment) : environment_(environment) {}
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() { Close(); }

  /// Connects by a complete connect string; `prompting` lets the driver ask for what is missing.
  void Open(const std::string& connect, bool prompting, bool readOnly);
  bool IsOpen() const noexcept { return connected_; }
  /// Whether the driver says that the link to the server is gone; it is asked only behind a failure.
  bool IsLost() noexcept;
  /// Ends the statements, then the connection; what is not committed is rolled back. Never fails.
  void Close() noexcept;

  void SetAutoCommit(bool value);
  /// A commit of what went with a lost link is refused.
  void EndTransaction(bool commit);
  [[noreturn, gnu::cold]] static void FailWithLostTransaction();
  /// A text or small number about the server, by the number of SQLGetInfo; empty or 0 when the driver does not know.
  std::string InfoText(Word information);
  Word InfoNumber(Word information);

  /// Those of the driver of the last Open.
  const DriverManners& Manners() const noexcept { return *manners_; }
  const odbc::Driver& Driver() const noexcept { return environment_.Driver(); }
  odbc::Calls& Calls() const noexcept { return *Driver().Calls; }
  /// Waits for what runs in the background. A driver does one thing at a time for a connection.
  void AwaitExecution() const noexcept;
  /// Throws what the driver says when the code is a failure.
  void Check(Code code);

 private:
  friend class Statement;
  void Connect(const std::string& connect, bool prompting, bool readOnly);
  void RequireOpen() const;
  /// Of a call whose failure is nobody's: it may still tell of a lost link.
  bool NoteAnswer(Code code) noexcept;
  void Enter(Statement* statement);
  void Leave(Statement* statement) noexcept;
  /// A statement handle, perhaps one that was used before and is like new.
  Handle TakeHandle();
  Handle MakeHandle();
  void GiveBack(Handle statement, bool likeNew) noexcept;

  Environment& environment_;
  Handle handle_ = nullptr;
  Handle spare_ = nullptr;  // a statement to be used again
  const DriverManners* manners_ = &DriverMannersOf({});
  bool connected_ = false;
  bool autoCommit_ = true;
  bool inDoubt_ = false;  // something failed, the link perhaps
  std::vector<Statement*> statements_;
  Statement* executing_ = nullptr;  // in the background
};

}  // namespace velmoria::odbc
