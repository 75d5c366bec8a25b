#include "velmoria/platform/rdo/rdo_cursor.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

RdoCursor::RdoCursor(rdoConnectionPtr connection, std::unique_ptr<odbc::Statement> statement,
                     std::unique_ptr<odbc::ParameterValues> values, bool forwardOnly)
    : engine_(connection->Engine()),
      connection_(std::move(connection)),
      values_(std::move(values)),
      statement_(std::move(statement)),
      forwardOnly_(forwardOnly) {
  connection_->Enter(this);
}

RdoCursor::~RdoCursor() { EndStatement(); }

const std::vector<odbc::ColumnInfo>& RdoCursor::Open() {
  if (closed_ && failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  if (opened_ || closed_) return columns_;
  opened_ = true;
  engine_->rdoErrors().clear();
  try {
    statement_->FinishExecution();
    bool hasColumns = statement_->Columns() > 0;
    while (!hasColumns && statement_->MoreResults()) hasColumns = statement_->Columns() > 0;
    if (hasColumns) columns_ = odbc::DescribeColumns(*statement_);
    ended_ = !hasColumns;
    if (ended_) {
      EndStatement();
    } else {
      fetch_ = std::make_unique<odbc::BlockFetch>(*statement_, columns_);
      FetchMore();
    }
  } catch (...) {
    Close();
    throw;
  }
  return columns_;
}

void RdoCursor::Cancel() noexcept {
  if (opened_) return;
  if (statement_) statement_->CancelExecution();
  Close();
}

void RdoCursor::FetchRest() noexcept {
  try {
    Open();
    while (FetchMore()) {}
  } catch (...) { failure_ = std::current_exception(); }
  EndStatement();
}

bool RdoCursor::AtBOF() const noexcept { return closed_ || position_ == 0 || Fetched() == 0; }

bool RdoCursor::AtEOF() const noexcept { return closed_ || position_ > Fetched() || Fetched() == 0; }

long long RdoCursor::RowCount() const noexcept { return ended_ ? Fetched() : -1; }

bool RdoCursor::FetchMore() {
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  if (ended_) return false;
  engine_->rdoErrors().clear();
  if (failed_ || !statement_ || !statement_->IsOpen()) odbc::FailClosed("The result could not be read to its end.");
  failed_ = true;
  auto chunk = fetch_->Next();
  failed_ = false;
  ended_ = fetch_->HasEnded();
  if (ended_ && std::ranges::none_of(columns_, &odbc::ColumnInfo::IsLong)) EndStatement();
  if (!chunk) return false;
  rows_.Append(std::move(chunk));
  return true;
}

bool RdoCursor::Reach(long long position) {
  while (position > Fetched() && FetchMore()) {}
  return position <= Fetched();
}

void RdoCursor::GoTo(long long position) {
  RequireOpen();
  if (Fetched() == 0) return;
  const long long target = std::max(position, 0LL);
  if (forwardOnly_ && target < position_) throw Error(rdErrForwardOnly, "A forward-only result cannot go back.");
  position_ = Reach(target) ? target : Fetched() + 1;
}

void RdoCursor::GoToLast() {
  RequireOpen();
  if (Fetched() == 0) return;
  if (forwardOnly_) throw Error(rdErrForwardOnly, "A forward-only result cannot go to its last row.");
  while (FetchMore()) {}
  position_ = Fetched();
}

RowBlock RdoCursor::Take(long long rows) {
  RequireOpen();
  if (rows < 0) Fail(RuntimeFailure::InvalidArgument);
  if (Fetched() == 0) return {};
  const long long first = std::max(position_, 1LL);
  // One row more, to know whether the result goes on behind the last one.
  Reach(first + std::min(rows, std::numeric_limits<long long>::max() - first));
  const long long count = std::min(rows, Fetched() - first + 1);
  position_ = first + count;
  return rows_.Slice(static_cast<std::size_t>(first - 1), static_cast<std::size_t>(count));
}

Variant RdoCursor::Value(std::size_t column) const {
  RequireRow();
  return rows_.Value(column, static_cast<std::size_t>(position_ - 1));
}

const std::optional<std::string>& RdoCursor::LongValue(std::size_t column) {
  RequireRow();
  if (long_ && long_->Position == position_ && long_->Column == column) return long_->Bytes;
  engine_->rdoErrors().clear();
  if (!fetch_ || !statement_->IsOpen()) odbc::FailClosed("The rows of the result have been read to their end.");
  const bool isText = columns_[column].Type == rdTypeLONGVARCHAR;
  auto bytes = fetch_->ReadLong(static_cast<std::size_t>(position_), static_cast<odbc::Word>(column + 1), isText);
  long_ = std::make_unique<Long>(Long{position_, column, std::move(bytes)});
  return long_->Bytes;
}

void RdoCursor::EndStatement() noexcept {
  fetch_.reset();
  statement_.reset();
  values_.reset();
  if (connection_) connection_->Leave(this);
  connection_ = nullptr;
}

void RdoCursor::Close() noexcept {
  EndStatement();
  failure_ = nullptr;
  rows_ = {};
  long_.reset();
  closed_ = true;
}

void RdoCursor::RequireOpen() const {
  if (closed_) odbc::FailClosed("The result is closed.");
}

void RdoCursor::RequireRow() const {
  RequireOpen();
  if (!HasRow()) throw Error(rdErrNoCurrentRow, "The result has no current row.");
}

}  // namespace velmoria
