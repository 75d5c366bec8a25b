#include "velmoria/platform/rdo/fetched_rows.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

namespace velmoria {

namespace {

constexpr std::size_t kBytesBehind = std::size_t{4} << 20;

/// It is looked again when so great a part of the rows in memory has come or has been passed.
constexpr std::size_t kLooks = 16;

/// The part of a chunk's bytes that is won when it is let go of here.
std::size_t OwnBytes(const std::shared_ptr<const RowChunk>& chunk) noexcept {
  return chunk.use_count() == 1 ? chunk->HeapBytes() : 0;
}

bool IsSameValue(const RowChunk& left, std::size_t leftRow, const RowChunk& right, std::size_t rightRow,
                 std::size_t column) {
  if (left.IsNull(column, leftRow) != right.IsNull(column, rightRow)) return false;
  if (left.IsNull(column, leftRow)) return true;
  // A Decimal has bytes that are not its value's; its text tells the scale too.
  if (left.Storage(column) == ColumnStorage::Decimal) {
    return left.Value(column, leftRow).AsText() == right.Value(column, rightRow).AsText();
  }
  const std::size_t width = StorageWidth(left.Storage(column));
  if (width == 0) return left.View(column, leftRow) == right.View(column, rightRow);
  return std::memcmp(left.Data(column).Values + leftRow * width, right.Data(column).Values + rightRow * width, width) ==
         0;
}

bool IsSameRow(const RowChunk& left, std::size_t leftRow, const RowChunk& right, std::size_t rightRow) {
  for (std::size_t column = 0; column < left.Columns(); ++column) {
    if (!IsSameValue(left, leftRow, right, rightRow, column)) return false;
  }
  return true;
}

}  // namespace

void FetchedRows::Append(std::shared_ptr<const RowChunk> chunk) {
  const auto bytes = chunk->HeapBytes();
  rows_.Append(std::move(chunk));
  bytes_ += bytes;
}

const RowSpool::Part& FetchedRows::ReadBack(long long position) const {
  const bool isHere = readBack_.Chunk && position >= readBack_.First &&
                      position < readBack_.First + static_cast<long long>(readBack_.Chunk->Rows());
  if (!isHere) readBack_ = spool_.Read(position);
  return readBack_;
}

Variant FetchedRows::Value(std::size_t column, long long position) const {
  if (position > moved_) return rows_.Value(column, Place(position));
  const auto& part = ReadBack(position);
  return part.Chunk->Value(column, static_cast<std::size_t>(position - part.First));
}

RowBlock FetchedRows::Take(long long first, long long count) const {
  if (first > moved_) return rows_.Slice(Place(first), static_cast<std::size_t>(count));
  RowBlock taken;
  const auto skipped = static_cast<std::size_t>(first - ReadBack(first).First);
  long long next = first;
  do {
    const auto& part = ReadBack(next);
    taken.Append(part.Chunk);
    next = part.First + static_cast<long long>(part.Chunk->Rows());
  } while (next <= moved_ && next < first + count);
  if (next < first + count) {
    const auto rest = rows_.Slice(0, static_cast<std::size_t>(first + count - next));
    for (const auto& chunk : rest.Chunks()) taken.Append(chunk);
  }
  return taken.Slice(skipped, static_cast<std::size_t>(count));
}

bool FetchedRows::Matches(const RowChunk& rows, long long first) const {
  const auto count = static_cast<long long>(rows.Rows());
  if (first + count - 1 > Count()) return false;
  const auto block = Take(first, count);
  for (std::size_t row = 0; row < rows.Rows(); ++row) {
    const auto place = block.Find(row);
    if (!IsSameRow(*place.Chunk, place.Row, rows, row)) return false;
  }
  return true;
}

/// How many chunks need not be in memory, from the first one on.
std::size_t FetchedRows::ChunksFarBehind(long long position) const {
  const std::size_t here = Place(std::max(position - 1, moved_ + 1));
  const auto& chunks = rows_.Chunks();
  std::size_t count = 0;
  for (std::size_t rows = 0; count < chunks.size(); ++count) {
    rows += chunks[count]->Rows();
    if (rows > here) break;
  }
  std::size_t bytes = 0;
  for (; count > 0; --count) {
    bytes += OwnBytes(chunks[count - 1]);
    if (bytes > kBytesBehind) break;
  }
  return count;
}

bool FetchedRows::Keep(const RowChunk& chunk, long long rowsBefore) {
  return rowsBefore < spool_.Rows() || spool_.Append(chunk);
}

void FetchedRows::MoveFarBehind(long long position, Behind behind) noexcept {
  if (bytes_ <= kBytesBehind || (bytes_ < nextBytes_ && position < nextPosition_)) return;
  try {
    std::size_t rows = 0;
    for (const auto& chunk : std::span(rows_.Chunks()).first(ChunksFarBehind(position))) {
      if (behind == Behind::IsKept && !Keep(*chunk, moved_ + static_cast<long long>(rows))) break;
      rows += chunk->Rows();
    }
    if (rows > 0) {
      rows_ = rows_.Slice(rows, rows_.Rows() - rows);
      moved_ += static_cast<long long>(rows);
      bytes_ = rows_.HeapBytes();
    }
    nextBytes_ = bytes_ + bytes_ / kLooks;
    nextPosition_ = position + static_cast<long long>(rows_.Rows() / kLooks);
  } catch (...) {
    // What could not be moved for lack of memory stays where it is.
  }
}

}  // namespace velmoria
