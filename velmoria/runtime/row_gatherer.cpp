#include "velmoria/runtime/row_gatherer.h"

#include <cstring>
#include <memory>
#include <utility>

#include "velmoria/runtime/error.h"

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
    if (const auto width = StorageWidth(column.Storage)) {
      column.Values.append(reinterpret_cast<const char*>(chunk.Data(number).Values) + row * width, width);
    } else if (column.Storage != ColumnStorage::Placeholder) {
      column.Values += chunk.View(number, row);
      column.Ends.push_back(static_cast<std::uint32_t>(column.Values.size()));
    }
  }
  ++rows_;
}

RowChunk::Column RowGatherer::Describe(const Column& column) {
  const bool isFixed = column.Ends.empty();
  if (!isFixed && column.Values.size() > ValueEnds::kMostBytes) Fail(RuntimeFailure::Overflow);
  return {.Storage = column.Storage,
          .HasNulls = !column.Nulls.empty(),
          .Bytes = isFixed ? 0 : static_cast<std::uint32_t>(column.Values.size())};
}

void RowGatherer::Fill(const RowChunk::Column& made, const Column& column) {
  for (const auto row : column.Nulls) made.NullBits[row / 64] |= std::uint64_t{1} << (row % 64);
  for (std::size_t row = 0; row < column.Ends.size(); ++row) made.Ends.Set(row, column.Ends[row]);
  if (!column.Values.empty()) std::memcpy(made.Values, column.Values.data(), column.Values.size());
}

RowBlock RowGatherer::Build() {
  RowBlock block;
  if (rows_ == 0) return block;
  std::vector<RowChunk::Column> made;
  made.reserve(columns_.size());
  for (const auto& column : columns_) made.push_back(Describe(column));
  auto chunk = std::make_shared<RowChunk>(std::move(made), rows_);
  for (std::size_t number = 0; number < columns_.size(); ++number) Fill(chunk->Data(number), columns_[number]);
  block.Append(std::move(chunk));
  columns_.clear();
  rows_ = 0;
  return block;
}

}  // namespace velmoria
