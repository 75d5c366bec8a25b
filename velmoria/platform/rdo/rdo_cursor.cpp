#include "velmoria/platform/rdo/rdo_cursor.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

using Overflow = odbc::BlockFetch::Overflow;

namespace {

constexpr std::size_t kKeptBytes = std::size_t{4} << 20;

}  // namespace

RdoCursor::RdoCursor(rdoConnectionPtr connection, std::unique_ptr<odbc::Statement> statement,
                     std::unique_ptr<odbc::ParameterValues> values, bool forwardOnly)
    : engine_(connection->Engine()),
      connection_(std::move(connection)),
      values_(std::move(values)),
      statement_(std::move(statement)),
      forwardOnly_(forwardOnly) {
  connection_->Enter(this);
}

RdoCursor::~RdoCursor() { Close(); }

void RdoCursor::LetRunAgain(std::string sql, bool prepared) { recipe_ = Recipe{std::move(sql), prepared}; }

const odbc::Columns& RdoCursor::Open() {
  if (closed_ && failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  if (opened_ || closed_) return columns_;
  opened_ = true;
  engine_->rdoErrors().clear();
  try {
    statement_->FinishExecution();
    ended_ = !OpenResult();
    if (ended_) {
      EndStatement();
    } else {
      columns_ = Describe();
      const auto overflow = recipe_ ? Overflow::Tell : Overflow::ReadRowByRow;
      fetch_ = std::make_unique<odbc::BlockFetch>(*statement_, *columns_, overflow);
      FetchMore();
    }
  } catch (...) {
    Close();
    throw;
  }
  return columns_;
}

/// Goes to the first result that has columns.
bool RdoCursor::OpenResult() {
  bool hasColumns = statement_->Columns() > 0;
  while (!hasColumns && statement_->MoreResults()) hasColumns = statement_->Columns() > 0;
  return hasColumns;
}

odbc::Columns RdoCursor::Describe() {
  if (shape_.empty()) return odbc::DescribeColumns(*statement_);
  auto& known = connection_->KnownColumns(shape_);
  known = odbc::DescribeColumns(*statement_, known);
  return known;
}

void RdoCursor::RunAgain(Overflow overflow, long long skipped) {
  fetch_.reset();
  statement_.reset();
  connection_->Leave(this);
  connection_->MakeRoom();
  connection_->Enter(this);
  statement_ = std::make_unique<odbc::Statement>(connection_->Handle());
  if (recipe_->Prepared) statement_->Prepare(recipe_->Sql);
  values_->BindTo(*statement_);
  recipe_->Prepared ? statement_->Execute() : statement_->ExecuteDirect(recipe_->Sql);
  if (!OpenResult()) odbc::FailClosed("The statement gives no result any more.");
  // The rows that are kept, and those who read them, know the columns that there were.
  if (odbc::DescribeColumns(*statement_, columns_) != columns_) {
    odbc::FailClosed("The columns of the result have changed.");
  }
  fetch_ = std::make_unique<odbc::BlockFetch>(*statement_, *columns_, overflow);
  fetch_->Skip(static_cast<std::size_t>(skipped));
}

/// Brings back the rows from the first on.
void RdoCursor::Rewind() {
  engine_->rdoErrors().clear();
  RunAgain(Overflow::Tell, 0);
  rows_ = {};
  long_.reset();
  keptBytes_ = 0;
  dropped_ = 0;
  ended_ = false;
  FetchMore();
}

/// Lets go of what lies far behind the position.
void RdoCursor::LetGo() {
  if (!recipe_) return;
  std::size_t rows = 0;
  const std::size_t here = Place(std::max(position_ - 1, dropped_ + 1));
  for (const auto& chunk : rows_.Chunks()) {
    const auto bytes = chunk->HeapBytes();
    if (rows + chunk->Rows() > here || keptBytes_ < kKeptBytes + bytes) break;
    keptBytes_ -= bytes;
    rows += chunk->Rows();
  }
  if (rows == 0) return;
  rows_ = rows_.Slice(rows, rows_.Rows() - rows);
  dropped_ += static_cast<long long>(rows);
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
  if (failed_ || !fetch_ || !statement_->IsOpen()) odbc::FailClosed("The result could not be read to its end.");
  failed_ = true;
  auto chunk = NextChunk();
  failed_ = false;
  ended_ = fetch_->HasEnded();
  if (ended_ && std::ranges::none_of(*columns_, &odbc::ColumnInfo::IsLong)) EndStatement();
  if (!chunk) return false;
  keptBytes_ += chunk->HeapBytes();
  rows_.Append(std::move(chunk));
  return true;
}

// A value that a driver announced shorter than it is takes the rows from there on one by one.
std::shared_ptr<const RowChunk> RdoCursor::NextChunk() {
  try {
    return fetch_->Next();
  } catch (const odbc::BlockFetch::ValueCut&) {}
  RunAgain(Overflow::ReadRowByRow, Fetched());
  return fetch_->Next();
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
  if (target >= 1 && target <= dropped_) Rewind();
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
  if (first <= dropped_) Rewind();
  // One row more, to know whether the result goes on behind the last one.
  Reach(first + std::min(rows, std::numeric_limits<long long>::max() - first));
  const long long count = std::min(rows, Fetched() - first + 1);
  auto taken = rows_.Slice(Place(first), static_cast<std::size_t>(count));
  position_ = first + count;
  LetGo();
  return taken;
}

Variant RdoCursor::Value(std::size_t column) const {
  RequireRow();
  return rows_.Value(column, Place(position_));
}

const Variant& RdoCursor::LongValue(std::size_t column) {
  RequireRow();
  if (long_ && long_->Position == position_ && long_->Column == column) return long_->Bytes;
  engine_->rdoErrors().clear();
  if (!fetch_ || !statement_->IsOpen()) odbc::FailClosed("The rows of the result have been read to their end.");
  const bool isText = (*columns_)[column].Type == rdTypeLONGVARCHAR;
  auto bytes = fetch_->ReadLong(static_cast<std::size_t>(position_), static_cast<odbc::Word>(column + 1), isText);
  long_ = std::make_unique<Long>(Long{position_, column, std::move(bytes)});
  return long_->Bytes;
}

// What has let go of rows needs the connection for them; what has them all needs it no more.
void RdoCursor::EndStatement() noexcept {
  fetch_.reset();
  statement_.reset();
  if (connection_) connection_->Leave(this);
  if (recipe_ && dropped_ > 0) return;
  recipe_.reset();
  values_.reset();
  connection_ = nullptr;
}

void RdoCursor::Close() noexcept {
  recipe_.reset();
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
