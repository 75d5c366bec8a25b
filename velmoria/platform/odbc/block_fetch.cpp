#include "velmoria/platform/odbc/block_fetch.h"

#include <algorithm>
#include <span>
#include <utility>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/long_value.h"
#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/error.h"

namespace velmoria::odbc {
namespace {

// Many results are a row or a page.
constexpr std::size_t kFirstBlock = 8;
constexpr std::size_t kSecondBlock = 64;
constexpr std::size_t kWholeBlock = 1024;
constexpr std::size_t kBlockBytes = std::size_t{4} << 20;

}  // namespace

BlockFetch::BlockFetch(Statement& statement, Columns columns, WhenCut whenCut)
    : statement_(statement), columns_(std::move(columns)), isStream_(!statement.Scrolls()) {
  const DateManners& manners = statement.Dates();
  landings_.reserve(columns_->size());
  bool canBeCut = false;
  for (const auto& column : *columns_) {
    const auto& landing = landings_.emplace_back(column, static_cast<Word>(landings_.size() + 1), manners);
    rowBytes_ += landing.RowBytes();
    canBeCut = canBeCut || landing.CanBeCut();
  }
  firstAlone_ = isStream_ && std::ranges::any_of(*columns_, &ColumnInfo::IsLong);
  rowByRow_ = isStream_ && whenCut == WhenCut::ReadRowByRow && (canBeCut || firstAlone_);
}

std::size_t BlockFetch::RowsOfBlock() const noexcept {
  if (firstAlone_ && rowsBefore_ == 0) return 1;
  const std::size_t next = rowsBefore_ < kSecondBlock ? kSecondBlock : kWholeBlock;
  const std::size_t most = rowsBefore_ == 0 ? kFirstBlock : next;
  return std::clamp<std::size_t>(kBlockBytes / std::max<std::size_t>(rowBytes_, 1), 1, most);
}

std::shared_ptr<const RowChunk> BlockFetch::Next() {
  if (ended_) return nullptr;
  statement_.AwaitTurn();
  const std::size_t wanted = RowsOfBlock();
  Prepare(wanted);
  const std::size_t rows = rowByRow_ ? FetchRows(wanted) : FetchBlock();
  if (isCut_) return nullptr;
  if (rows < wanted) ended_ = true;
  if (rows == 0) return nullptr;
  auto chunk = MakeChunk(rows);
  rowsBefore_ += rows;
  return chunk;
}

void BlockFetch::Prepare(std::size_t rows) {
  if (rows != capacity_) MakeRoom(rows);
  for (auto& landing : landings_) landing.Begin();
  if (rowByRow_) return;
  SetArraySize(rows);
  if (!isBound_) Bind();
}

void BlockFetch::MakeRoom(std::size_t rows) {
  std::size_t bytes = rows * sizeof(Word);
  for (const auto& landing : landings_) bytes += landing.Bytes(rows);
  memory_ = std::make_unique_for_overwrite<std::byte[]>(bytes);
  std::byte* place = memory_.get();
  for (auto& landing : landings_) {
    landing.LandIn(place, rows);
    place += landing.Bytes(rows);
  }
  status_ = reinterpret_cast<Word*>(place);
  std::fill_n(status_, rows, Word{SQL_ROW_SUCCESS});
  capacity_ = rows;
  isBound_ = false;
}

void BlockFetch::Bind() {
  statement_.SetPointer(SQL_ATTR_ROW_STATUS_PTR, status_);
  if (rowsBefore_ == 0) statement_.SetPointer(SQL_ATTR_ROWS_FETCHED_PTR, &fetched_);
  for (auto& landing : landings_) {
    if (landing.IsFetched()) landing.Bind(statement_);
  }
  isBound_ = true;
}

/// The cursor then goes to single rows, and their columns are asked for one by one.
void BlockFetch::Unbind() {
  statement_.UnbindColumns();
  isBound_ = false;
  SetArraySize(1);
  repositioned_ = true;
}

void BlockFetch::SetArraySize(std::size_t rows) {
  if (rows == arraySize_) return;
  statement_.SetAttribute(SQL_ATTR_ROW_ARRAY_SIZE, rows);
  arraySize_ = rows;
}

void BlockFetch::Release() {
  if (rowByRow_) return;
  statement_.UnbindColumns();
  SetArraySize(1);
  statement_.SetPointer(SQL_ATTR_ROW_STATUS_PTR, nullptr);
  statement_.SetPointer(SQL_ATTR_ROWS_FETCHED_PTR, nullptr);
}

std::size_t BlockFetch::FetchBlock() {
  fetched_ = 0;
  const Code code = statement_.Calls().FetchScroll(
      statement_.Get(), repositioned_ ? SQL_FETCH_ABSOLUTE : SQL_FETCH_NEXT, static_cast<Length>(rowsBefore_ + 1));
  repositioned_ = false;
  if (code == SQL_NO_DATA) {
    statement_.NoteEnd();
    return 0;
  }
  statement_.Check(code);
  const std::size_t rows = std::min<std::size_t>(fetched_, capacity_);
  if (code == SQL_SUCCESS && rows < capacity_) statement_.NoteEnd();
  const bool informed = code == SQL_SUCCESS_WITH_INFO;
  if (informed) RefuseFailedRows();
  for (auto& landing : landings_) landing.RefuseMisread(statement_, rows);
  const auto isCut = [&](const Landing& landing) { return landing.HasCut(rows, informed); };
  if (std::any_of(landings_.begin(), landings_.end(), isCut)) {
    isCut_ = isStream_;
    if (!isCut_) CompleteLongValues(rows, informed);
  }
  return rows;
}

// A block with a row that could not be converted is a success with information.
void BlockFetch::RefuseFailedRows() const {
  const std::span statuses(status_, std::min<std::size_t>(fetched_, capacity_));
  if (std::ranges::find(statuses, Word{SQL_ROW_ERROR}) != statuses.end()) statement_.Check(SQL_ERROR);
}

void BlockFetch::CompleteLongValues(std::size_t rows, bool informed) {
  Unbind();
  for (std::size_t row = 0; row < rows; ++row) {
    bool there = false;
    for (auto& landing : landings_) {
      if (!landing.IsCut(row, informed)) continue;
      if (!there) {
        statement_.Check(statement_.Calls().FetchScroll(statement_.Get(), SQL_FETCH_ABSOLUTE,
                                                        static_cast<Length>(rowsBefore_ + row + 1)));
        there = true;
      }
      landing.Read(statement_, row);
    }
  }
}

Variant BlockFetch::ReadLong(std::size_t row, Word column, bool isText) {
  statement_.AwaitTurn();
  if (isStream_) {
    const bool isThere = row == 1 && rowsBefore_ == 1 && !ended_;
    if (!isThere) throw Error(rdErrForwardOnly, "A forward-only result cannot go back.");
  } else {
    Unbind();
    const auto place = static_cast<Length>(row);
    statement_.Check(statement_.Calls().FetchScroll(statement_.Get(), SQL_FETCH_ABSOLUTE, place));
  }
  return ReadLongValue(statement_, column, isText);
}

std::size_t BlockFetch::FetchRows(std::size_t rows) {
  for (std::size_t row = 0; row < rows; ++row) {
    const Code code = statement_.Calls().Fetch(statement_.Get());
    if (code == SQL_NO_DATA) {
      statement_.NoteEnd();
      return row;
    }
    statement_.Check(code);
    for (auto& landing : landings_) {
      if (landing.IsFetched()) landing.Read(statement_, row);
    }
  }
  return rows;
}

std::shared_ptr<const RowChunk> BlockFetch::MakeChunk(std::size_t rows) {
  std::vector<RowChunk::Column> columns;
  columns.reserve(landings_.size());
  for (auto& landing : landings_) columns.push_back(landing.Describe(rows));
  auto chunk = std::make_shared<RowChunk>(std::move(columns), rows);
  for (std::size_t place = 0; place < landings_.size(); ++place) landings_[place].Fill(chunk->Data(place), rows);
  return chunk;
}

}  // namespace velmoria::odbc
