#include "velmoria/runtime/row_gatherer.h"

#include <gtest/gtest.h>

#include "tests/support/row_chunk_builder.h"

namespace velmoria {

namespace {

using test::RowChunkBuilder;

/// Rows of every kind of storage; every third row is Null throughout.
std::shared_ptr<const RowChunk> Chunk(int first, int rows) {
  RowChunkBuilder builder({ColumnStorage::Long, ColumnStorage::Text, ColumnStorage::Double, ColumnStorage::Boolean,
                           ColumnStorage::Decimal, ColumnStorage::Placeholder});
  for (int number = first; number < first + rows; ++number) {
    const auto null = Variant::Null();
    if (number % 3 == 0)
      builder.AddRow({number, null, null, null, null, null});
    else
      builder.AddRow({number, "text " + std::to_string(number), number / 2.0, number % 2 == 0,
                      Decimal::From(std::int64_t{number}), Variant()});
  }
  return builder.Build();
}

RowBlock Rows() {
  RowBlock block;
  block.Append(Chunk(1, 10));
  block.Append(Chunk(11, 10));
  return block;
}

TEST(RowGathererTest, CopiesChosenRowsWithTheirValuesAndNulls) {
  const auto rows = Rows();
  RowGatherer gatherer;
  for (const std::size_t row : {1U, 2U, 9U, 10U, 19U}) gatherer.Add(rows.Slice(row, 1));
  EXPECT_EQ(gatherer.Rows(), 5U);
  const auto gathered = gatherer.Build();
  ASSERT_EQ(gathered.Rows(), 5U);
  ASSERT_EQ(gathered.Chunks().size(), 1U);
  std::size_t place = 0;
  for (const std::size_t row : {1U, 2U, 9U, 10U, 19U}) {
    for (std::size_t column = 0; column < rows.Columns(); ++column)
      EXPECT_EQ(gathered.Value(column, place), rows.Value(column, row)) << row << ", " << column;
    ++place;
  }
}

TEST(RowGathererTest, TakesWholeBlocksToo) {
  RowGatherer gatherer;
  gatherer.Add(Rows());
  const auto gathered = gatherer.Build();
  ASSERT_EQ(gathered.Rows(), 20U);
  EXPECT_EQ(gathered.Value(0, 19), Variant(20));
  EXPECT_TRUE(gathered.Value(1, 17).IsNull());
}

TEST(RowGathererTest, WithoutRowsThereIsNoChunk) {
  RowGatherer gatherer;
  EXPECT_TRUE(gatherer.Build().IsEmpty());
  EXPECT_TRUE(gatherer.Build().Chunks().empty());
}

TEST(RowGathererTest, BeginsAnewBehindABuild) {
  RowGatherer gatherer;
  gatherer.Add(Rows().Slice(3, 1));
  gatherer.Build();
  gatherer.Add(Rows().Slice(4, 2));
  EXPECT_EQ(gatherer.Rows(), 2U);
  EXPECT_EQ(gatherer.Build().Value(0, 0), Variant(5));
}

}  // namespace

}  // namespace velmoria
