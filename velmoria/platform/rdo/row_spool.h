#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "velmoria/platform/posix/temporary_file.h"
#include "velmoria/runtime/row_block.h"

namespace velmoria {

/// Rows in a temporary file that nobody else can open and that ends with this: chunk behind chunk, in the form that
/// they have in memory. The file is made for the first of them.
class RowSpool {
 public:
  struct Part {
    std::shared_ptr<const RowChunk> Chunk{};
    long long First = 0;  // its first row, counted from 1
  };

  /// Adds a chunk that has rows behind the others. False when the file could not be made or written: the chunk is not
  /// there, and none is taken any more.
  bool Append(const RowChunk& chunk) noexcept;
  long long Rows() const noexcept { return entries_.empty() ? 0 : entries_.back().LastRow; }
  /// The chunk with the row, from 1. Raises 40071 when it cannot be read.
  Part Read(long long row) const;

 private:
  struct Entry {
    long long LastRow = 0;
    std::int64_t End = 0;  // offset
  };

  bool Write(const RowChunk& chunk);

  std::optional<TemporaryFile> file_;
  std::vector<Entry> entries_;  // one for each chunk
  std::size_t columns_ = 0;
  bool isFull_ = false;
};

}  // namespace velmoria
