#include "velmoria/runtime/row_gatherer.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace velmoria {

void RowGatherer::Begin(const RowChunk& chunk) {
  for (std::size_t column = 0; column < chunk.Columns(); ++column) columns_.push_back({chunk.Storage(column)});
}

void RowGatherer::Add(const RowBlock& block) {
  for (std::size_t row = 0; row < block.Rows(); ++row) {
    const auto place = block.Find(row);
    if (columns_.empty()) Begin(*place.Chunk);
    AddRow(*place.Chunk, place.Row);
  }
}

void RowGatherer::AddRow(const RowChunk& chunk, std::size_t row) {
  for (std::size_t number = 0; number < columns_.size(); ++number) {
    auto& column = columns_[number];
    if (chunk.IsNull(number, row)) column.Nulls.push_back(rows_);
    if (chunk.Data(number).Ends) {
      column.Values += chunk.View(number, row);
      column.Ends.push_back(static_cast<std::uint32_t>(column.Values.size()));
    } else if (const auto width = StorageWidth(column.Storage)) {
      column.Values.append(reinterpret_cast<const char*>(chunk.Data(number).Values.get()) + row * width, width);
    }
  }
  ++rows_;
}

RowChunk::Column RowGatherer::Finish(Column column) const {
  RowChunk::Column made{.Storage = column.Storage, .Values = {}, .Ends = {}, .Arena = {}, .NullBits = {}};
  if (!column.Nulls.empty()) made.NullBits = std::make_unique<std::uint64_t[]>((rows_ + 63) / 64);
  for (const auto row : column.Nulls) made.NullBits[row / 64] |= std::uint64_t{1} << (row % 64);
  if (StorageWidth(column.Storage) != 0) {
    made.Values = std::make_unique_for_overwrite<std::byte[]>(column.Values.size());
    std::memcpy(made.Values.get(), column.Values.data(), column.Values.size());
  } else if (!column.Ends.empty()) {
    made.Ends = ValueEnds(rows_, column.Values.size());
    for (std::size_t row = 0; row < rows_; ++row) made.Ends.Set(row, column.Ends[row]);
    column.Values.shrink_to_fit();
    made.Arena = std::move(column.Values);
  }
  return made;
}

RowBlock RowGatherer::Build() {
  RowBlock block;
  if (rows_ == 0) return block;
  std::vector<RowChunk::Column> made;
  made.reserve(columns_.size());
  for (auto& column : columns_) made.push_back(Finish(std::move(column)));
  block.Append(std::make_shared<RowChunk>(std::move(made), rows_));
  columns_.clear();
  rows_ = 0;
  return block;
}

}  // namespace velmoria
