#pragma once

#include <cstddef>
#include <memory>

#include "velmoria/platform/rdo/row_spool.h"
#include "velmoria/runtime/row_block.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The rows of a result that have been fetched so far, by their positions from 1. It owns them: those around and ahead
/// of the place where they are read in memory, those far behind in a temporary file, and a row is the same wherever it
/// lies. What the file does not take stays in memory.
class FetchedRows {
 public:
  /// What becomes of rows far behind.
  enum class Behind {
    IsKept,  // in the file
    IsGone   // nobody goes back to them
  };

  void Append(std::shared_ptr<const RowChunk> chunk);
  long long Count() const noexcept { return moved_ + static_cast<long long>(rows_.Rows()); }
  /// Both for positions that there are and that are not gone. Raise 40071 when the file cannot be read.
  Variant Value(std::size_t column, long long position) const;
  RowBlock Take(long long first, long long count) const;
  /// Whether the rows from a position on are these: there, with the same values, bit by bit. Raises as Take does.
  bool Matches(const RowChunk& rows, long long first) const;
  /// Takes from memory what lies more than about 4 MB behind a position. Rows that somebody else holds too do not count
  /// for these, since nothing would be won.
  void MoveFarBehind(long long position, Behind behind) noexcept;

 private:
  std::size_t ChunksFarBehind(long long position) const;
  bool Keep(const RowChunk& chunk, long long rowsBefore);
  const RowSpool::Part& ReadBack(long long position) const;
  std::size_t Place(long long position) const noexcept { return static_cast<std::size_t>(position - moved_ - 1); }

  RowSpool spool_;
  mutable RowSpool::Part readBack_;  // the chunk read last
  RowBlock rows_;                    // begins and ends with whole chunks
  long long moved_ = 0;              // rows ahead of these
  std::size_t bytes_ = 0;            // of rows_
  // Below both of them there is nothing that could be moved.
  std::size_t nextBytes_ = 0;
  long long nextPosition_ = 0;
};

}  // namespace velmoria
