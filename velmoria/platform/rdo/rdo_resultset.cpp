#include "velmoria/platform/rdo/rdo_resultset.h"

#include <limits>

#include "velmoria/platform/rdo/rdo_column.h"
#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_cursor.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

rdoResultset::rdoResultset(rdoConnectionPtr connection, std::unique_ptr<odbc::Statement> statement, rdoNumber type)
    : connection_(std::move(connection)), type_(type) {
  auto columns = odbc::DescribeColumns(*statement);
  cursor_ = Make<RdoCursor>(connection_->Engine(), std::move(statement), columns, type == rdOpenForwardOnly);
  for (std::size_t place = 0; place < columns.size(); ++place) {
    const std::string name = columns[place].Name;
    auto column = Make<rdoColumn>(std::move(columns[place]), place, cursor_);
    if (name.empty() || columns_.FindKey(name) != nullptr) {
      columns_.Add(std::move(column));
    } else {
      columns_.Add(std::move(column), name);
    }
  }
}

rdoResultset::~rdoResultset() = default;

std::string_view rdoResultset::ReportedType() const noexcept { return "rdoResultset"; }

bool rdoResultset::AtBOF() const { return cursor_->AtBOF(); }

bool rdoResultset::AtEOF() const { return cursor_->AtEOF(); }

Variant rdoResultset::Bookmark() const {
  cursor_->RequireOpen();
  if (!cursor_->HasRow()) throw Error(rdErrNoCurrentRow, "The result has no current row.");
  return static_cast<std::int32_t>(cursor_->Position());
}

void rdoResultset::SetBookmark(const Variant& value) {
  const std::int32_t position = value.AsLong();
  cursor_->RequireOpen();
  if (position < 1) Fail(RuntimeFailure::InvalidArgument);
  const long long before = cursor_->Position();
  cursor_->GoTo(position);
  if (cursor_->HasRow()) return;
  if (cursor_->RowCount() > 0 && type_ != rdOpenForwardOnly) cursor_->GoTo(before);
  Fail(RuntimeFailure::InvalidArgument);
}

long long rdoResultset::AbsolutePosition() const {
  cursor_->RequireOpen();
  return cursor_->HasRow() ? cursor_->Position() : -1;
}

void rdoResultset::SetAbsolutePosition(long long value) { cursor_->GoTo(value); }

long long rdoResultset::RowCount() const {
  cursor_->RequireOpen();
  return cursor_->RowCount();
}

void rdoResultset::MoveFirst() { cursor_->GoTo(1); }

void rdoResultset::MoveLast() { cursor_->GoToLast(); }

void rdoResultset::MoveNext() { Move(1); }

void rdoResultset::MovePrevious() { Move(-1); }

void rdoResultset::Move(long long rows) {
  const long long from = cursor_->Position();
  const bool beyond = rows > std::numeric_limits<long long>::max() - from;
  cursor_->GoTo(beyond ? std::numeric_limits<long long>::max() : from + rows);
}

RowBlock rdoResultset::GetRows(long long rows) { return cursor_->Take(rows); }

void rdoResultset::Close() {
  connection_->Engine()->rdoErrors().clear();
  cursor_->Close();
}

}  // namespace velmoria
