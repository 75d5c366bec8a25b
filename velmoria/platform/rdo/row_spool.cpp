#include "velmoria/platform/rdo/row_spool.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>
#include <utility>

#include "velmoria/platform/odbc/diagnostics.h"

namespace velmoria {

namespace {

/// What stands in the file ahead of a chunk, for each of its columns.
struct Mark {
  std::uint32_t ArenaBytes;
  ColumnStorage Storage;
  bool HasNulls;
  bool HasEnds;
  bool HasValues;
};

[[noreturn]] void FailToRead() { odbc::FailClosed("Rows of the result could not be read back from its file."); }

std::size_t BytesOfNulls(std::size_t rows) noexcept { return (rows + 63) / 64 * sizeof(std::uint64_t); }

std::vector<Mark> MarksOf(const RowChunk& chunk) {
  std::vector<Mark> marks(chunk.Columns());
  for (std::size_t place = 0; place < marks.size(); ++place) {
    const auto& column = chunk.Data(place);
    marks[place] = {.ArenaBytes = static_cast<std::uint32_t>(column.Arena.size()),
                    .Storage = column.Storage,
                    .HasNulls = column.NullBits != nullptr,
                    .HasEnds = static_cast<bool>(column.Ends),
                    .HasValues = column.Values != nullptr};
  }
  return marks;
}

std::vector<std::span<const std::byte>> PiecesOf(const RowChunk& chunk, const std::vector<Mark>& marks) {
  std::vector<std::span<const std::byte>> pieces = {std::as_bytes(std::span(marks))};
  const std::size_t rows = chunk.Rows();
  for (std::size_t place = 0; place < marks.size(); ++place) {
    const auto& column = chunk.Data(place);
    const auto add = [&](const void* begin, std::size_t bytes) {
      if (begin) pieces.emplace_back(static_cast<const std::byte*>(begin), bytes);
    };
    add(column.NullBits.get(), BytesOfNulls(rows));
    add(column.Values.get(), rows * StorageWidth(column.Storage));
    add(column.Ends.Data(), column.Ends.Bytes(rows));
    add(column.Arena.data(), column.Arena.size());
  }
  return pieces;
}

/// The bytes of a chunk that have not been taken from it yet.
class Unread {
 public:
  explicit Unread(std::span<const std::byte> left) : left_(left) {}

  void Take(void* target, std::size_t bytes) {
    if (bytes > left_.size()) FailToRead();
    std::memcpy(target, left_.data(), bytes);
    left_ = left_.subspan(bytes);
  }
  template <class T>
  std::unique_ptr<T[]> TakeArray(std::size_t bytes) {
    if (bytes > left_.size()) FailToRead();
    auto values = std::make_unique_for_overwrite<T[]>(bytes / sizeof(T));
    Take(values.get(), bytes);
    return values;
  }

 private:
  std::span<const std::byte> left_;
};

RowChunk::Column ColumnOf(Unread& unread, const Mark& mark, std::size_t rows) {
  RowChunk::Column column;
  column.Storage = mark.Storage;
  if (mark.HasNulls) column.NullBits = unread.TakeArray<std::uint64_t>(BytesOfNulls(rows));
  if (mark.HasValues) column.Values = unread.TakeArray<std::byte>(rows * StorageWidth(mark.Storage));
  if (mark.HasEnds) {
    column.Ends = ValueEnds(rows, mark.ArenaBytes);
    unread.Take(column.Ends.Data(), column.Ends.Bytes(rows));
  }
  column.Arena.resize(mark.ArenaBytes);
  unread.Take(column.Arena.data(), mark.ArenaBytes);
  return column;
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
  const auto pieces = PiecesOf(chunk, marks);
  std::int64_t end = entries_.empty() ? 0 : entries_.back().End;
  if (!file_->Write(pieces, end)) return false;
  for (const auto piece : pieces) end += static_cast<std::int64_t>(piece.size());
  entries_.push_back({.LastRow = Rows() + static_cast<long long>(chunk.Rows()), .End = end});
  columns_ = marks.size();
  return true;
}

RowSpool::Part RowSpool::Read(long long row) const {
  const auto entry = std::ranges::lower_bound(entries_, row, {}, &Entry::LastRow);
  if (entry == entries_.end()) FailToRead();
  const Entry before = entry == entries_.begin() ? Entry{} : *(entry - 1);
  const auto rows = static_cast<std::size_t>(entry->LastRow - before.LastRow);
  const auto size = static_cast<std::size_t>(entry->End - before.End);
  const auto buffer = std::make_unique_for_overwrite<std::byte[]>(size);
  if (!file_->Read({buffer.get(), size}, before.End)) FailToRead();
  Unread unread({buffer.get(), size});
  const auto marks = unread.TakeArray<Mark>(columns_ * sizeof(Mark));
  std::vector<RowChunk::Column> columns;
  columns.reserve(columns_);
  for (const auto& mark : std::span(marks.get(), columns_)) columns.push_back(ColumnOf(unread, mark, rows));
  return {.Chunk = std::make_shared<const RowChunk>(std::move(columns), rows), .First = before.LastRow + 1};
}

}  // namespace velmoria
