#pragma once

#include <initializer_list>
#include <memory>
#include <vector>

#include "velmoria/runtime/row_block.h"

namespace velmoria::test {

/// Builds a chunk row by row. A value is converted to its column's storage and raises the failure of the conversion;
/// Null stays Null, and a Placeholder takes anything and keeps nothing.
class RowChunkBuilder {
 public:
  explicit RowChunkBuilder(std::vector<ColumnStorage> storages);
  /// Raises 9 when the number of values is not that of the columns.
  void AddRow(std::initializer_list<Variant> values);
  void AddRow(const std::vector<Variant>& values);
  /// The chunk of the rows added since the last one.
  std::shared_ptr<const RowChunk> Build();

 private:
  std::vector<ColumnStorage> storages_;
  std::vector<std::vector<Variant>> rows_;
};

}  // namespace velmoria::test
