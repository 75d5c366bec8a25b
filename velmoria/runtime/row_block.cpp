#include "velmoria/runtime/row_block.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace velmoria {

namespace {

// In the order of ColumnStorage.
constexpr std::array<std::size_t, 13> kWidths{sizeof(std::int16_t),
                                              sizeof(std::int32_t),
                                              sizeof(std::int64_t),
                                              sizeof(float),
                                              sizeof(double),
                                              sizeof(std::int64_t),
                                              sizeof(Decimal),
                                              sizeof(double),
                                              sizeof(Byte),
                                              sizeof(Byte),
                                              0,
                                              0,
                                              0};
static_assert(kWidths.size() == static_cast<std::size_t>(ColumnStorage::Placeholder) + 1);

template <class T>
T Load(const RowChunk::Column& column, std::size_t row) noexcept {
  T value;
  std::memcpy(&value, column.Values + row * sizeof(T), sizeof(T));
  return value;
}

bool IsInArena(ColumnStorage storage) noexcept {
  return storage == ColumnStorage::Text || storage == ColumnStorage::Bytes;
}

std::string_view InArena(const RowChunk::Column& column, std::size_t row) noexcept {
  const std::size_t begin = row == 0 ? 0 : column.Ends.At(row - 1);
  return {reinterpret_cast<const char*>(column.Values) + begin, column.Ends.At(row) - begin};
}

std::size_t BytesOfNulls(const RowChunk::Column& column, std::size_t rows) noexcept {
  return column.HasNulls ? (rows + 63) / 64 * sizeof(std::uint64_t) : 0;
}

/// Of the values of a fixed storage, or of the ends of others.
std::size_t BytesOfRows(const RowChunk::Column& column, std::size_t rows) noexcept {
  return IsInArena(column.Storage) ? ValueEnds::Bytes(rows, column.Bytes) : rows * StorageWidth(column.Storage);
}

std::size_t BytesOf(const std::vector<RowChunk::Column>& columns, std::size_t rows) noexcept {
  std::size_t bytes = 0;
  for (const auto& column : columns) bytes += BytesOfNulls(column, rows) + BytesOfRows(column, rows) + column.Bytes;
  return bytes;
}

// A division of 32 bits is several times cheaper than one of 64.
std::size_t Quotient(std::size_t dividend, std::size_t divisor) noexcept {
  if ((dividend | divisor) >> 32U != 0) return dividend / divisor;
  return static_cast<std::uint32_t>(dividend) / static_cast<std::uint32_t>(divisor);
}

template <class T>
void ReserveOne(std::vector<T>& values) {
  if (values.size() == values.capacity()) values.reserve(std::max<std::size_t>(1, values.size() * 2));
}

Variant BytesValue(std::string_view bytes) {
  return std::span<const Byte>(reinterpret_cast<const Byte*>(bytes.data()), bytes.size());
}

}  // namespace

std::size_t StorageWidth(ColumnStorage storage) noexcept { return kWidths[static_cast<std::size_t>(storage)]; }

// Null bits come first, since they alone are read in place, and arenas last, which leaves the numbers of a large chunk
// where their sizes want them.
RowChunk::RowChunk(std::vector<Column> columns, std::size_t rows)
    : columns_(std::move(columns)),
      rows_(rows),
      bytes_(BytesOf(columns_, rows)),
      memory_(std::make_unique_for_overwrite<std::byte[]>(bytes_)) {
  std::byte* place = memory_.get();
  const auto take = [&](std::size_t bytes) { return std::exchange(place, place + bytes); };
  for (auto& column : columns_) {
    if (column.HasNulls) column.NullBits = reinterpret_cast<std::uint64_t*>(take(BytesOfNulls(column, rows)));
  }
  std::memset(memory_.get(), 0, static_cast<std::size_t>(place - memory_.get()));
  for (auto& column : columns_) {
    std::byte* const begin = take(BytesOfRows(column, rows));
    if (IsInArena(column.Storage))
      column.Ends = ValueEnds(begin, column.Bytes);
    else if (column.Storage != ColumnStorage::Placeholder)
      column.Values = begin;
  }
  for (auto& column : columns_) {
    if (IsInArena(column.Storage)) column.Values = take(column.Bytes);
  }
}

Variant RowChunk::Value(std::size_t column, std::size_t row) const {
  if (IsNull(column, row)) return Variant::Null();
  const Column& values = columns_[column];
  switch (values.Storage) {
    case ColumnStorage::Integer: return Load<std::int16_t>(values, row);
    case ColumnStorage::Long: return Load<std::int32_t>(values, row);
    case ColumnStorage::BigInteger: return Decimal::From(Load<std::int64_t>(values, row));
    case ColumnStorage::Single: return Load<float>(values, row);
    case ColumnStorage::Double: return Load<double>(values, row);
    case ColumnStorage::Currency: return Currency{Load<std::int64_t>(values, row)};
    case ColumnStorage::Decimal: return Load<Decimal>(values, row);
    case ColumnStorage::Date: return Date{Load<double>(values, row)};
    case ColumnStorage::Boolean: return Load<Byte>(values, row) != 0;
    case ColumnStorage::Byte: return Load<Byte>(values, row);
    case ColumnStorage::Text: return InArena(values, row);
    case ColumnStorage::Bytes: return BytesValue(InArena(values, row));
    case ColumnStorage::Placeholder: break;
  }
  return {};
}

std::string_view RowChunk::View(std::size_t column, std::size_t row) const noexcept {
  const Column& values = columns_[column];
  return IsInArena(values.Storage) ? InArena(values, row) : std::string_view();
}

std::size_t RowChunk::HeapBytes() const noexcept { return columns_.capacity() * sizeof(Column) + bytes_; }

void RowBlock::Append(std::shared_ptr<const RowChunk> chunk) {
  if (rows_ > 0 && chunk->Rows() == 0) return;
  // Nothing has changed when there is no memory.
  ReserveOne(ends_);
  ReserveOne(chunks_);
  if (rows_ == 0) {
    chunks_.clear();
    ends_.clear();
    skip_ = 0;
  }
  const std::size_t rows = chunk->Rows();
  ends_.push_back((ends_.empty() ? 0 : ends_.back()) + rows);
  chunks_.push_back(std::move(chunk));
  rows_ += rows;
}

RowBlock RowBlock::Slice(std::size_t first, std::size_t count) const {
  RowBlock slice;
  if (chunks_.empty()) return slice;
  first = std::min(first, rows_);
  slice.rows_ = std::min(count, rows_ - first);
  const std::size_t begin = skip_ + first;
  const std::size_t end = begin + slice.rows_;
  auto chunk = static_cast<std::size_t>(std::upper_bound(ends_.begin(), ends_.end(), begin) - ends_.begin());
  chunk = std::min(chunk, chunks_.size() - 1);
  const std::size_t base = chunk == 0 ? 0 : ends_[chunk - 1];
  slice.skip_ = begin - base;
  do {
    slice.chunks_.push_back(chunks_[chunk]);
    // The last chunk ends where the range does, so that another one can follow.
    slice.ends_.push_back(std::min(ends_[chunk], end) - base);
  } while (ends_[chunk++] < end);
  return slice;
}

RowBlock::Place RowBlock::Find(std::size_t row) const noexcept {
  row += skip_;
  if (row < ends_.front()) return {chunks_.front().get(), row};
  // Fetches are of one size but for the first two and the last, so the third one's size usually tells which one it is.
  const bool isLater = ends_.size() > 2 && row >= ends_[1];
  const std::size_t guess = isLater ? 2 + Quotient(row - ends_[1], ends_[2] - ends_[1]) : 1;
  std::size_t chunk = std::min(guess, ends_.size() - 1);
  const bool right = row < ends_[chunk] && row >= ends_[chunk - 1];
  if (!right) chunk = static_cast<std::size_t>(std::upper_bound(ends_.begin(), ends_.end(), row) - ends_.begin());
  return {chunks_[chunk].get(), row - ends_[chunk - 1]};
}

std::size_t RowBlock::Columns() const noexcept { return chunks_.empty() ? 0 : chunks_.front()->Columns(); }

Variant RowBlock::Value(std::size_t column, std::size_t row) const {
  const Place place = Find(row);
  return place.Chunk->Value(column, place.Row);
}

ColumnStorage RowBlock::Storage(std::size_t column) const noexcept { return chunks_.front()->Storage(column); }

std::size_t RowBlock::HeapBytes() const noexcept {
  std::size_t bytes = chunks_.capacity() * sizeof(chunks_[0]) + ends_.capacity() * sizeof(ends_[0]);
  for (const auto& chunk : chunks_) bytes += sizeof(RowChunk) + chunk->HeapBytes();
  return bytes;
}

}  // namespace velmoria
