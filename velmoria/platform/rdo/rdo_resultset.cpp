#include "velmoria/platform/rdo/rdo_resultset.h"

#include <limits>

#include "velmoria/platform/odbc/arguments.h"
#include "velmoria/platform/rdo/rdo_column.h"
#include "velmoria/platform/rdo/rdo_cursor.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

rdoResultset::rdoResultset(rdoEnginePtr engine, RdoCursorPtr cursor, rdoNumber type)
    : engine_(std::move(engine)), type_(type), cursor_(std::move(cursor)) {
  if (!cursor_->IsUnfinished()) Cursor();
}

rdoResultset::~rdoResultset() = default;

std::string_view rdoResultset::ReportedType() const noexcept { return "rdoResultset"; }

RdoCursor& rdoResultset::Cursor() const {
  if (!described_) described_ = cursor_->Open();
  return *cursor_;
}

/// Many results are read without a look at their columns.
void rdoResultset::MakeColumns() const {
  KeyedList<rdoColumnPtr> columns;
  for (std::size_t place = 0; place < described_->size(); ++place) {
    const std::string& name = (*described_)[place].Name;
    auto column = Make<rdoColumn>(described_, place, cursor_);
    if (name.empty() || columns.FindKey(name) != nullptr) {
      columns.Add(std::move(column));
    } else {
      columns.Add(std::move(column), name);
    }
  }
  columns_ = std::move(columns);
}

bool rdoResultset::StillExecuting() const noexcept { return cursor_->IsExecuting(); }

void rdoResultset::Cancel() {
  engine_->rdoErrors().clear();
  cursor_->Cancel();
}

const KeyedList<rdoColumnPtr>& rdoResultset::rdoColumns() const {
  Cursor();
  if (columns_.IsEmpty()) MakeColumns();
  return columns_;
}

const odbc::Columns& rdoResultset::Described() const {
  Cursor();
  return described_;
}

bool rdoResultset::AtBOF() const { return Cursor().AtBOF(); }

bool rdoResultset::AtEOF() const { return Cursor().AtEOF(); }

Variant rdoResultset::Bookmark() const {
  Cursor().RequireOpen();
  if (!Cursor().HasRow()) throw Error(rdErrNoCurrentRow, "The result has no current row.");
  return odbc::CheckedNumber(static_cast<std::size_t>(Cursor().Position()));
}

void rdoResultset::SetBookmark(const Variant& value) {
  const std::int32_t position = value.AsLong();
  Cursor().RequireOpen();
  if (position < 1) Fail(RuntimeFailure::InvalidArgument);
  const long long before = Cursor().Position();
  Cursor().GoTo(position);
  if (Cursor().HasRow()) return;
  if (Cursor().RowCount() > 0 && type_ != rdOpenForwardOnly) Cursor().GoTo(before);
  Fail(RuntimeFailure::InvalidArgument);
}

long long rdoResultset::AbsolutePosition() const {
  Cursor().RequireOpen();
  return Cursor().HasRow() ? Cursor().Position() : -1;
}

void rdoResultset::SetAbsolutePosition(long long value) { Cursor().GoTo(value); }

long long rdoResultset::RowCount() const {
  Cursor().RequireOpen();
  return Cursor().RowCount();
}

void rdoResultset::MoveFirst() { Cursor().GoTo(1); }

void rdoResultset::MoveLast() { Cursor().GoToLast(); }

void rdoResultset::MoveNext() { Move(1); }

void rdoResultset::MovePrevious() { Move(-1); }

void rdoResultset::Move(long long rows) {
  const long long from = Cursor().Position();
  const bool beyond = rows > std::numeric_limits<long long>::max() - from;
  Cursor().GoTo(beyond ? std::numeric_limits<long long>::max() : from + rows);
}

RowBlock rdoResultset::GetRows(long long rows) { return Cursor().Take(rows); }

bool rdoResultset::TakeOutputs() { return Cursor().TakeOutputs(); }

void rdoResultset::Close() {
  engine_->rdoErrors().clear();
  cursor_->Close();
}

}  // namespace velmoria
