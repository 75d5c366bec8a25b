#include "velmoria/platform/rdo/rdo_cursor.h"

#include <algorithm>
#include <limits>

#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

RdoCursor::RdoCursor(rdoEnginePtr engine, std::unique_ptr<odbc::Statement> statement,
                     const std::vector<odbc::ColumnInfo>& columns, bool forwardOnly)
    : engine_(std::move(engine)), statement_(std::move(statement)), forwardOnly_(forwardOnly) {
  if (columns.empty()) {
    statement_.reset();
    return;
  }
  fetch_ = std::make_unique<odbc::BlockFetch>(*statement_, columns);
  FetchMore();
}

RdoCursor::~RdoCursor() = default;

bool RdoCursor::AtBOF() const noexcept { return closed_ || position_ == 0 || Fetched() == 0; }

bool RdoCursor::AtEOF() const noexcept { return closed_ || position_ > Fetched() || Fetched() == 0; }

long long RdoCursor::RowCount() const noexcept { return fetch_ ? -1 : Fetched(); }

bool RdoCursor::FetchMore() {
  if (!fetch_) return false;
  engine_->rdoErrors().clear();
  if (failed_ || !statement_->IsOpen()) odbc::FailClosed("The result could not be read to its end.");
  failed_ = true;
  auto chunk = fetch_->Next();
  failed_ = false;
  if (fetch_->HasEnded()) {
    fetch_.reset();
    statement_.reset();
  }
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
  RequireOpen();
  if (!HasRow()) throw Error(rdErrNoCurrentRow, "The result has no current row.");
  return rows_.Value(column, static_cast<std::size_t>(position_ - 1));
}

void RdoCursor::Close() noexcept {
  fetch_.reset();
  statement_.reset();
  rows_ = {};
  closed_ = true;
}

void RdoCursor::RequireOpen() const {
  if (closed_) odbc::FailClosed("The result is closed.");
}

}  // namespace velmoria
