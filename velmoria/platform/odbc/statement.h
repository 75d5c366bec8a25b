#pragma once

#include <memory>
#include <string>

#include "velmoria/platform/odbc/connection.h"
#include "velmoria/platform/odbc/execution.h"

namespace velmoria::odbc {

/// A statement handle. It ends with its owner or with its connection, whichever comes first, and what it runs is
/// stopped; after that IsOpen is false and every use raises 40071.
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

  /// A text with a character 0 is refused with 5, and one of 2 GB with 6, here and below.
  void Prepare(const std::string& text);
  /// Success without data is success, too.
  void Execute();
  void ExecuteDirect(const std::string& text);

  /// Prepares and executes, or executes directly, on a thread of its own. What is bound has to stay until
  /// FinishExecution, CancelExecution or Close. The connection does nothing else meanwhile: whatever needs it waits.
  void ExecuteInBackground(const std::string& text, bool prepared);
  /// Whether an execution was begun in the background and neither FinishExecution nor CancelExecution has been called.
  bool IsUnfinished() const noexcept { return execution_ != nullptr; }
  bool IsExecuting() const noexcept { return execution_ && execution_->IsRunning(); }
  /// Waits for an execution in the background and raises its failure; does nothing without one.
  void FinishExecution();
  /// Stops what runs in the background and waits for its end, which is then no failure.
  void CancelExecution() noexcept;

  /// Whoever fetches tells when the driver has said that nothing is left of the result.
  void NoteEnd() noexcept { isAtEnd_ = true; }
  /// Goes to the next result of the execution; false behind the last one, with the output parameters filled.
  bool MoreResults();
  /// Ends the result of the last execution, if there is one; false when the driver does not, true when this is closed.
  bool EndResult() noexcept;
  /// Raises what the driver refuses: it would go on writing where the columns were bound.
  void UnbindColumns();
  /// False when the driver does not, true when this is closed.
  bool UnbindParameters() noexcept;

  int Columns();
  /// Rows changed by the last execution; -1 when the driver cannot tell.
  Length RowsAffected();

  /// Waits for what the connection runs in the background.
  void AwaitTurn() const;

  /// How the dates of the driver have to be read.
  const DateManners& Dates() const;
  odbc::Calls& Calls() const;
  Handle Get() const;
  void Check(Code code) const;

 private:
  friend class Connection;
  /// The connection that it is open on.
  Connection& Open() const;
  void NoteRun(Code code);
  void EndExecution() noexcept;
  /// Takes back what was set and bound; false when it cannot be as a new one is.
  bool MakeLikeNew() noexcept;
  bool HasNothingLeft() noexcept;

  Connection* connection_;
  Handle handle_ = nullptr;
  std::unique_ptr<Execution> execution_;
  bool fetchesBlocks_ = false;
  bool isAtEnd_ = false;
  mutable bool isSpecial_ = false;  // something was done to it that is not taken back, or failed
};

}  // namespace velmoria::odbc
