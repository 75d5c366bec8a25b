#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "velmoria/runtime/api.h"
#include "velmoria/runtime/row_block.h"

namespace velmoria {

/// Copies single rows of a result out of its chunks into one of their own, so that what was passed over can go.
class VELMORIA_API RowGatherer {
 public:
  /// Adds all rows of the block. All blocks come from one result.
  void Add(const RowBlock& block);
  std::size_t Rows() const noexcept { return rows_; }
  /// The rows added since the last call; none when there are none. Raises 6 when the texts or bytes of one column are
  /// longer than 4 GB together.
  RowBlock Build();

 private:
  struct Column {
    ColumnStorage Storage;
    std::string Values{};  // the bytes of fixed storages, or texts and bytes run together
    std::vector<std::uint32_t> Ends{};
    std::vector<std::size_t> Nulls{};
  };

  void Begin(const RowChunk& chunk);
  void AddRow(const RowChunk& chunk, std::size_t row);
  static RowChunk::Column Describe(const Column& column);
  static void Fill(const RowChunk::Column& made, const Column& column);

  std::vector<Column> columns_;
  std::size_t rows_ = 0;
};

}  // namespace velmoria
