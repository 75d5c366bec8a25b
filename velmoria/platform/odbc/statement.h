#pragma once

#include <string>

#include "velmoria/platform/odbc/connection.h"

namespace velmoria::odbc {

/// A statement handle. It ends with its owner or with its connection, whichever comes first; after that IsOpen is false
/// and every use raises 40071.
class Statement {
 public:
  explicit Statement(Connection& connection);
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { Close(); }

  bool IsOpen() const noexcept { return handle_ != nullptr; }
  void Close() noexcept;

  /// Asks for a cursor that can go back to a row. A driver may give another; Scrolls tells what the last execution got.
  void AskForScrolling();
  bool Scrolls() const;
  void SetAttribute(Number attribute, ULength value);
  void SetPointer(Number attribute, Handle value);

  void Prepare(const std::string& text);
  /// Success without data is success, too.
  void Execute();
  void ExecuteDirect(const std::string& text);
  /// Ends the result of the last execution, if there is one.
  void EndResult() noexcept;
  void UnbindColumns() noexcept;
  void UnbindParameters() noexcept;

  int Columns();
  /// Rows changed by the last execution; -1 when the driver cannot tell.
  Length RowsAffected();

  odbc::Calls& Calls() const;
  Handle Get() const;
  void Check(Code code) const;

 private:
  friend class Connection;

  Connection* connection_;
  Handle handle_ = nullptr;
};

}  // namespace velmoria::odbc
