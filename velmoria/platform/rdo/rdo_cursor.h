#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "velmoria/platform/odbc/call_outputs.h"
#include "velmoria/platform/odbc/parameters.h"
#include "velmoria/platform/rdo/fetched_rows.h"
#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/platform/rdo/result_source.h"
#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/row_block.h"

namespace velmoria {

/// The rows of an open result that have been fetched so far, and the place in them: what a result and its columns
/// share. Positions count from 1; 0 is before the first row, one more than the number of rows is after the last.
///
/// It owns where the rows come from, and keeps the connection alive while it needs the driver: until the last row has
/// been fetched, or until Close where there are long columns, which are not fetched with their row.
///
/// A position is the same row for as long as the result is open, whatever the database has by then. Rows more than
/// about 4 MB behind the position may lie in a temporary file of the process, which nobody else can open and which ends
/// with the result.
class RdoCursor : public Object {
 public:
  /// Takes over a statement that has been executed, or that is being executed in the background, and what is bound to
  /// it.
  RdoCursor(rdoConnectionPtr connection, std::unique_ptr<odbc::Statement> statement,
            std::unique_ptr<odbc::ParameterValues> values, bool forwardOnly);
  ~RdoCursor() override;
  /// The text only reads: where a value turns out longer than the driver said, it may be run again, row by row. Reading
  /// on raises 40071 when the rows before that one are not the same any more.
  void LetRunAgain(std::string sql, bool prepared);
  /// What the connection knows of the columns by this name is compared first, and kept; before Open.
  void SetShape(std::string shape) { shape_ = std::move(shape); }

  /// What the call gives back is these parameters', one for each marker, once the results have been read; before Open.
  void LetTakeOutputs(std::vector<rdoParameterPtr> parameters);
  /// Gives the parameters what came back, once, when the last row has been fetched, or passed where there are long
  /// columns, which cannot be read afterwards; false before that and where nothing comes back. Raises what the driver
  /// refused behind the rows, and 6 for a value that is too long.
  bool TakeOutputs();

  /// Whether the execution in the background goes on; a flag is looked at.
  bool IsExecuting() const noexcept { return source_ && source_->IsExecuting(); }
  /// Whether it was begun in the background and has not been opened: a failure is the caller's who looks at the result.
  bool IsUnfinished() const noexcept { return source_ && source_->IsUnfinished(); }
  /// Waits for the execution, then opens its first result that has columns; a second time it gives the same. A failure
  /// is raised once, and the cursor is closed by it.
  const odbc::Columns& Open();
  /// Stops the execution of a cursor that has not been opened, and closes it.
  void Cancel() noexcept;
  /// Fetches what is left, so that the driver is free. What fails is raised when the rows are asked for.
  void FetchRest() noexcept;

  long long Position() const noexcept { return position_; }
  bool HasRow() const noexcept { return position_ >= 1 && position_ <= rows_.Count(); }
  bool AtBOF() const noexcept;
  bool AtEOF() const noexcept;
  /// -1 until the end has been reached.
  long long RowCount() const noexcept;
  /// Goes to a position, fetching up to it; beyond the ends to the ends. Raises 40088 for going back in a forward-only
  /// result, 40071 after Close. Take and Value raise 40071 when rows cannot be read back from the file.
  void GoTo(long long position);
  /// Fetches everything, and keeps it in memory until the next GoTo or Take.
  void GoToLast();
  RowBlock Take(long long rows);
  Variant Value(std::size_t column) const;
  /// A long column in the current row: a byte array, or Null. Kept until another one is asked for.
  const Variant& LongValue(std::size_t column);
  void Close() noexcept;
  void RequireOpen() const;

 private:
  struct Long {
    long long Position = 0;
    std::size_t Column = 0;
    Variant Bytes{};
  };

  struct Outputs {
    odbc::CallOutputs Call;
    std::vector<rdoParameterPtr> Takers;  // one for each marker
  };

  bool FetchMore();
  std::shared_ptr<const RowChunk> NextChunk();
  odbc::Columns Describe();
  void RequireSameRows();
  FetchedRows::Behind WhatIsBehind() const noexcept;
  /// Fetches until the position is known to exist or the end is reached.
  bool Reach(long long position);
  void RequireRow() const;
  void NoteFirstRow();
  void EndResults() noexcept;
  void EndSource() noexcept;

  rdoEnginePtr engine_;
  // Both none once the statement has ended.
  rdoConnectionPtr connection_;
  std::optional<ResultSource> source_;
  std::optional<Outputs> outputs_;
  std::string shape_;
  odbc::Columns columns_ = std::make_shared<const std::vector<odbc::ColumnInfo>>();
  std::exception_ptr failure_;  // of FetchRest
  FetchedRows rows_;
  std::unique_ptr<Long> long_;
  long long position_ = 1;
  bool forwardOnly_;
  bool opened_ = false;
  bool ended_ = false;  // the last row has been fetched
  bool closed_ = false;
  bool brokeOff_ = false;  // a fetch was begun and has not succeeded
};

}  // namespace velmoria
