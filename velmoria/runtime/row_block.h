#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "velmoria/runtime/api.h"
#include "velmoria/runtime/value_ends.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// What kind of Variant a value of a column becomes, and how it is held in a buffer.
enum class ColumnStorage : std::uint8_t {
  Integer,      // std::int16_t
  Long,         // std::int32_t
  BigInteger,   // std::int64_t; becomes a Decimal
  Single,       // float
  Double,       // double
  Currency,     // std::int64_t of ten thousandths
  Decimal,      // velmoria::Decimal
  Date,         // double of days
  Boolean,      // one byte, 0 for False
  Byte,         // one byte
  Text,         // UTF-8 in the chunk's arena
  Bytes,        // in the chunk's arena
  Placeholder,  // a long column that is not fetched with the row; reads as Empty, never as Null
};

/// Bytes that one value of a fixed storage takes; 0 for Text, Bytes and Placeholder.
VELMORIA_API std::size_t StorageWidth(ColumnStorage storage) noexcept;

/// The rows of one fetch, column by column in typed buffers with null bits, in one piece of memory. Filled once by the
/// one who makes it, then immutable and shared.
class VELMORIA_API RowChunk {
 public:
  struct Column {
    ColumnStorage Storage = ColumnStorage::Text;
    bool HasNulls = false;
    std::uint32_t Bytes = 0;  // Text and Bytes: of all values together
    // Where it lies; the chunk fills these in.
    std::uint64_t* NullBits = nullptr;  // absent when no value of the column is Null
    std::byte* Values = nullptr;        // rows * StorageWidth; Text and Bytes: the arena, the values run together
    ValueEnds Ends{};                   // Text and Bytes: where each value ends in the arena
  };

  /// Makes room for the rows. Null bits are 0, everything else has to be written.
  RowChunk(std::vector<Column> columns, std::size_t rows);

  std::size_t Rows() const noexcept { return rows_; }
  std::size_t Columns() const noexcept { return columns_.size(); }
  bool IsNull(std::size_t column, std::size_t row) const noexcept {
    const auto* const bits = columns_[column].NullBits;
    return bits != nullptr && ((bits[row / 64] >> (row % 64)) & 1U) != 0;
  }
  ColumnStorage Storage(std::size_t column) const noexcept { return columns_[column].Storage; }
  /// Written through only by the one who makes the chunk.
  const Column& Data(std::size_t column) const noexcept { return columns_[column]; }
  /// The value as a Variant; row and column count from 0 and are not checked.
  Variant Value(std::size_t column, std::size_t row) const;
  /// The text or bytes in place, without a copy; empty for other storages.
  std::string_view View(std::size_t column, std::size_t row) const noexcept;
  /// The one piece of all columns. Copied into a chunk made of the same columns (Storage, HasNulls, Bytes) and the same
  /// number of rows, it is the same rows.
  std::span<std::byte> Memory() noexcept { return {memory_.get(), bytes_}; }
  std::span<const std::byte> Memory() const noexcept { return {memory_.get(), bytes_}; }
  /// What the chunk occupies on the heap, in bytes.
  std::size_t HeapBytes() const noexcept;

 private:
  std::vector<Column> columns_;
  std::size_t rows_;
  std::size_t bytes_;
  std::unique_ptr<std::byte[]> memory_;
};

/// A range of rows over shared chunks: what one page of a result is made of. Cheap to copy; rows count from 0.
class VELMORIA_API RowBlock {
 public:
  RowBlock() = default;

  /// Adds the rows of a chunk behind those of this range; a chunk without rows only tells its columns.
  void Append(std::shared_ptr<const RowChunk> chunk);
  /// The rows first to first + count - 1 of this block, sharing its chunks; the part that exists.
  RowBlock Slice(std::size_t first, std::size_t count) const;

  std::size_t Rows() const noexcept { return rows_; }
  std::size_t Columns() const noexcept;
  bool IsEmpty() const noexcept { return rows_ == 0; }
  /// Not checked, as in RowChunk.
  Variant Value(std::size_t column, std::size_t row) const;
  ColumnStorage Storage(std::size_t column) const noexcept;
  /// What all its chunks occupy, also where a slice shows only part of them.
  std::size_t HeapBytes() const noexcept;
  const std::vector<std::shared_ptr<const RowChunk>>& Chunks() const noexcept { return chunks_; }

  struct Place {
    const RowChunk* Chunk;
    std::size_t Row;
  };
  /// Where a row lies; not checked.
  Place Find(std::size_t row) const noexcept;

 private:
  std::vector<std::shared_ptr<const RowChunk>> chunks_;
  std::vector<std::size_t> ends_;  // where the rows of each chunk end, counted from the start of the first chunk
  std::size_t skip_ = 0;           // rows of the first chunk that lie before this range
  std::size_t rows_ = 0;
};

}  // namespace velmoria
