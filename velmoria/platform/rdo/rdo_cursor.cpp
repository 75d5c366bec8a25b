#include "velmoria/platform/rdo/rdo_cursor.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/platform/rdo/rdo_parameter.h"
#include "velmoria/runtime/error.h"

namespace velmoria {
namespace {

constexpr const char* kBrokenOff = "The result could not be read to its end.";

}  // namespace

RdoCursor::RdoCursor(rdoConnectionPtr connection, std::unique_ptr<odbc::Statement> statement,
                     std::unique_ptr<odbc::ParameterValues> values, bool forwardOnly)
    : engine_(connection->Engine()),
      connection_(std::move(connection)),
      source_(std::in_place, std::move(statement), std::move(values)),
      forwardOnly_(forwardOnly) {
  connection_->Enter(this);
}

RdoCursor::~RdoCursor() { Close(); }

void RdoCursor::LetRunAgain(std::string sql, bool prepared) { source_->LetRunAgain(std::move(sql), prepared); }

void RdoCursor::LetTakeOutputs(std::vector<rdoParameterPtr> parameters) {
  if (source_->Values().Outputs() == 0) return;
  outputs_.emplace(Outputs{odbc::CallOutputs(source_->Values()), std::move(parameters)});
}

bool RdoCursor::TakeOutputs() {
  if (!outputs_ || !ended_ || closed_) return false;
  if (source_ && !AtEOF()) return false;
  EndResults();
  const auto taken = std::exchange(outputs_, std::nullopt);
  for (const auto& output : taken->Call.Outputs()) taken->Takers[output.Place]->SetValue(output.Value);
  return true;
}

/// A result may be nothing but the outputs.
void RdoCursor::NoteFirstRow() {
  if (!outputs_ || !HasRow() || !outputs_->Call.MayBe(columns_->size())) return;
  std::vector<Variant> row;
  for (const auto& column : *columns_) row.push_back(column.IsLong ? LongValue(row.size()) : Value(row.size()));
  outputs_->Call.Note(std::move(row));
}

const odbc::Columns& RdoCursor::Open() {
  if (closed_ && failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  if (opened_ || closed_) return columns_;
  opened_ = true;
  engine_->rdoErrors().clear();
  try {
    source_->Statement().FinishExecution();
    ended_ = !source_->OpenResult();
    if (ended_) {
      if (outputs_) outputs_->Call.TakeAtEnd();
      EndSource();
    } else {
      columns_ = Describe();
      source_->BeginFetch(columns_);
      FetchMore();
    }
  } catch (...) {
    Close();
    throw;
  }
  return columns_;
}

odbc::Columns RdoCursor::Describe() {
  if (shape_.empty()) return odbc::DescribeColumns(source_->Statement());
  auto& known = connection_->KnownColumns(shape_);
  known = odbc::DescribeColumns(source_->Statement(), known);
  return known;
}

/// Fetches the rows that there are once more, and leaves them as they are. Blocks of the same columns are of the same
/// sizes, so the last one ends where these end.
void RdoCursor::RequireSameRows() {
  for (long long first = 1; first <= rows_.Count();) {
    const auto again = source_->Fetch().Next();
    if (!again || !rows_.Matches(*again, first)) {
      odbc::FailClosed(
          "A value is longer than its column says, so the statement was run again, and the rows of the "
          "result have changed since. Open it anew.");
    }
    first += static_cast<long long>(again->Rows());
  }
}

/// A forward-only result is never asked for them, but it may have to compare them.
FetchedRows::Behind RdoCursor::WhatIsBehind() const noexcept {
  const bool mayCompare = source_ && source_->CanRunAgain();
  return forwardOnly_ && !mayCompare ? FetchedRows::Behind::IsGone : FetchedRows::Behind::IsKept;
}

void RdoCursor::Cancel() noexcept {
  if (opened_) return;
  if (source_) source_->Statement().CancelExecution();
  Close();
}

void RdoCursor::FetchRest() noexcept {
  try {
    Open();
    while (FetchMore()) {}
  } catch (...) { failure_ = std::current_exception(); }
  EndResults();
}

bool RdoCursor::AtBOF() const noexcept { return closed_ || position_ == 0 || rows_.Count() == 0; }

bool RdoCursor::AtEOF() const noexcept { return closed_ || position_ > rows_.Count() || rows_.Count() == 0; }

long long RdoCursor::RowCount() const noexcept { return ended_ ? rows_.Count() : -1; }

bool RdoCursor::FetchMore() {
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  if (ended_) return false;
  engine_->rdoErrors().clear();
  if (brokeOff_ || !source_ || !source_->IsOpen()) odbc::FailClosed(kBrokenOff);
  brokeOff_ = true;
  const bool isFirst = rows_.Count() == 0;
  auto chunk = NextChunk();
  const bool isThere = chunk != nullptr;
  if (isThere) rows_.Append(std::move(chunk));
  brokeOff_ = false;
  ended_ = source_->Fetch().HasEnded();
  if (isFirst) NoteFirstRow();
  if (ended_ && std::ranges::none_of(*columns_, &odbc::ColumnInfo::IsLong)) EndResults();
  return isThere;
}

// A value that a driver announced shorter than it is takes the rows from there on one by one.
std::shared_ptr<const RowChunk> RdoCursor::NextChunk() {
  auto chunk = source_->Fetch().Next();
  if (!source_->Fetch().IsCut()) return chunk;
  source_->End();
  connection_->Leave(this);
  connection_->MakeRoom();
  connection_->Enter(this);
  source_->RunAgain(connection_->Handle(), columns_);
  RequireSameRows();
  return source_->Fetch().Next();
}

bool RdoCursor::Reach(long long position) {
  while (position > rows_.Count() && FetchMore()) {}
  return position <= rows_.Count();
}

void RdoCursor::GoTo(long long position) {
  RequireOpen();
  if (rows_.Count() == 0) return;
  const long long target = std::max(position, 0LL);
  if (forwardOnly_ && target < position_) throw Error(rdErrForwardOnly, "A forward-only result cannot go back.");
  position_ = Reach(target) ? target : rows_.Count() + 1;
  rows_.MoveFarBehind(position_, WhatIsBehind());
}

/// Moves nothing far behind: who reads all rows into one page goes to the last one to count them, and takes them then.
void RdoCursor::GoToLast() {
  RequireOpen();
  if (rows_.Count() == 0) return;
  if (forwardOnly_) throw Error(rdErrForwardOnly, "A forward-only result cannot go to its last row.");
  while (FetchMore()) {}
  position_ = rows_.Count();
}

RowBlock RdoCursor::Take(long long rows) {
  RequireOpen();
  if (rows < 0) Fail(RuntimeFailure::InvalidArgument);
  if (rows_.Count() == 0) return {};
  const long long first = std::max(position_, 1LL);
  // One row more, to know whether the result goes on behind the last one.
  Reach(first + std::min(rows, std::numeric_limits<long long>::max() - first));
  const long long count = std::min(rows, rows_.Count() - first + 1);
  auto taken = rows_.Take(first, count);
  position_ = first + count;
  rows_.MoveFarBehind(position_, WhatIsBehind());
  return taken;
}

Variant RdoCursor::Value(std::size_t column) const {
  RequireRow();
  return rows_.Value(column, position_);
}

const Variant& RdoCursor::LongValue(std::size_t column) {
  RequireRow();
  if (long_ && long_->Position == position_ && long_->Column == column) return long_->Bytes;
  engine_->rdoErrors().clear();
  // Behind a fetch that failed, nobody knows what the driver would give for a row.
  if (brokeOff_) odbc::FailClosed(kBrokenOff);
  if (!source_ || !source_->IsOpen()) odbc::FailClosed("The rows of the result have been read to their end.");
  const bool isText = (*columns_)[column].Type == rdTypeLONGVARCHAR;
  const auto number = static_cast<odbc::Word>(column + 1);
  auto bytes = source_->Fetch().ReadLong(static_cast<std::size_t>(position_), number, isText);
  long_ = std::make_unique<Long>(Long{position_, column, std::move(bytes)});
  return long_->Bytes;
}

void RdoCursor::EndSource() noexcept {
  source_.reset();
  if (connection_) connection_->Leave(this);
  connection_ = nullptr;
}

/// Behind the last row, what the call gives back is taken before the statement ends.
void RdoCursor::EndResults() noexcept {
  const bool isBehind = ended_ && source_ && source_->HasFetch();
  if (outputs_ && isBehind) outputs_->Call.TakeBehind(source_->Statement(), source_->Fetch());
  EndSource();
}

void RdoCursor::Close() noexcept {
  EndSource();
  outputs_.reset();
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
