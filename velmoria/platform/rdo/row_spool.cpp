#include "velmoria/platform/rdo/row_spool.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

#include "velmoria/platform/odbc/diagnostics.h"

namespace velmoria {

namespace {

/// What stands in the file ahead of a chunk's memory, for each of its columns.
struct Mark {
  std::uint32_t Bytes;
  ColumnStorage Storage;
  bool HasNulls;
  std::uint16_t Unused;  // so that a mark has no byte that nobody writes
};

[[noreturn, gnu::cold]] void FailToRead() {
  odbc::FailClosed("Rows of the result could not be read back from its file.");
}

std::vector<Mark> MarksOf(const RowChunk& chunk) {
  std::vector<Mark> marks(chunk.Columns());
  for (std::size_t place = 0; place < marks.size(); ++place) {
    const auto& column = chunk.Data(place);
    marks[place] = {.Bytes = column.Bytes, .Storage = column.Storage, .HasNulls = column.HasNulls, .Unused = 0};
  }
  return marks;
}

std::vector<RowChunk::Column> ColumnsOf(const std::vector<Mark>& marks) {
  std::vector<RowChunk::Column> columns;
  columns.reserve(marks.size());
  for (const auto& mark : marks)
    columns.push_back({.Storage = mark.Storage, .HasNulls = mark.HasNulls, .Bytes = mark.Bytes});
  return columns;
}

}  // namespace

bool RowSpool::Append(const RowChunk& chunk) noexcept {
  if (isFull_) return false;
  try {
    isFull_ = !Write(chunk);
  } catch (...) { isFull_ = true; }
  return !isFull_;
}

bool RowSpool::Write(const RowChunk& chunk) {
  if (!file_) file_.emplace();
  if (!file_->IsOpen()) return false;
  const auto marks = MarksOf(chunk);
  const auto ahead = std::as_bytes(std::span(marks));
  std::int64_t end = entries_.empty() ? 0 : entries_.back().End;
  if (!file_->Write({ahead, chunk.Memory()}, end)) return false;
  end += static_cast<std::int64_t>(ahead.size() + chunk.Memory().size());
  entries_.push_back({.LastRow = Rows() + static_cast<long long>(chunk.Rows()), .End = end});
  columns_ = marks.size();
  return true;
}

RowSpool::Part RowSpool::Read(long long row) const {
  const auto entry = std::ranges::lower_bound(entries_, row, {}, &Entry::LastRow);
  if (entry == entries_.end()) FailToRead();
  const Entry before = entry == entries_.begin() ? Entry{} : *(entry - 1);
  const auto rows = static_cast<std::size_t>(entry->LastRow - before.LastRow);
  std::vector<Mark> marks(columns_);
  const auto ahead = std::as_writable_bytes(std::span(marks));
  if (!file_->Read(ahead, before.End)) FailToRead();
  auto chunk = std::make_shared<RowChunk>(ColumnsOf(marks), rows);
  const auto begin = before.End + static_cast<std::int64_t>(ahead.size());
  const bool isWhole = begin + static_cast<std::int64_t>(chunk->Memory().size()) == entry->End;
  if (!isWhole || !file_->Read(chunk->Memory(), begin)) FailToRead();
  return {.Chunk = std::move(chunk), .First = before.LastRow + 1};
}

}  // namespace velmoria
