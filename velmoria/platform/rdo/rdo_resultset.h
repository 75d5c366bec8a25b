#pragma once

#include <string_view>
#include <vector>

#include "velmoria/platform/odbc/columns.h"
#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/row_block.h"

namespace velmoria {

/// An open, read-only result. It keeps the rows that it has fetched, so every move is arithmetic, reading everything is
/// one forward pass, and a position is the same row whatever the database has by then. Rows far behind the position may
/// be kept in a temporary file, which nobody else can open and which ends with the result. It opens on its first row.
///
/// Moves never fail for lack of rows: beyond an end they stop before the first or after the last row, and on an empty
/// result they do nothing. A result opened rdOpenForwardOnly refuses, with 40088, to move to its last row or to any row
/// before the current one. After Close everything but AtBOF, AtEOF (both true) and Close raises 40071.
///
/// A result opened with rdAsyncEnable runs its statement in the background. Whatever needs the result before the end of
/// that waits for it, and raises the failure of the open; only StillExecuting, Cancel and Close do not. Its end stops
/// the statement.
class rdoResultset : public Object {
 public:
  rdoResultset(rdoEnginePtr engine, RdoCursorPtr cursor, rdoNumber type);
  ~rdoResultset() override;
  std::string_view ReportedType() const noexcept override;

  /// The cursor type that was asked for.
  rdoNumber Type() const noexcept { return type_; }
  bool AtBOF() const;
  bool AtEOF() const;
  /// Whether the open still runs in the background. Only a flag is looked at.
  bool StillExecuting() const noexcept;
  /// Stops an open in the background, also one that has ended and has not been looked at; the result is then closed.
  /// Does nothing to a result that is open.
  void Cancel();

  bool Bookmarkable() const noexcept { return true; }
  /// The 1-based position as a Long. Reading raises 40009 without a current row and 6 for a position that is no Long,
  /// setting raises 5 for a position that the result does not have.
  Variant Bookmark() const;
  void SetBookmark(const Variant& value);
  /// The 1-based position, -1 without a current row; setting one beyond an end goes to that end.
  long long AbsolutePosition() const;
  void SetAbsolutePosition(long long value);
  /// The number of rows once the end has been reached, by MoveLast or otherwise; -1 before.
  long long RowCount() const;

  /// In the order of the result, positions from 1; of columns with the same name the first one has the key.
  const KeyedList<rdoColumnPtr>& rdoColumns() const;
  /// What the driver says of them, in the same order; for who needs no more, since the objects cost more than this.
  /// Results of one shape share it for as long as nothing changes.
  const odbc::Columns& Described() const;

  void MoveFirst();
  void MoveLast();
  void MoveNext();
  void MovePrevious();
  void Move(long long rows);

  /// The rows from the current one on (before the first row: from the first), at most as many as asked for; the cursor
  /// is then on the row after the last of them. The block stays valid after Close. Raises 5 for a negative number.
  RowBlock GetRows(long long rows);

  /// Gives the parameters of the query what a call gave back, once, when the last row has been fetched, or passed where
  /// there are long columns, which cannot be read afterwards; false before that and where nothing comes back. Raises
  /// what the driver refused behind the rows, and 6 for a value that is too long.
  bool TakeOutputs();

  void Close();

 private:
  RdoCursor& Cursor() const;
  void MakeColumns() const;

  rdoEnginePtr engine_;
  rdoNumber type_;
  RdoCursorPtr cursor_;
  mutable odbc::Columns described_;
  mutable KeyedList<rdoColumnPtr> columns_;
};

}  // namespace velmoria
