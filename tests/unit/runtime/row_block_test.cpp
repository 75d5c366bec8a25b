#include "velmoria/runtime/row_block.h"

#include <numeric>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/row_chunk_builder.h"
#include "tests/unit/runtime/expect_failure.h"

namespace velmoria {
namespace {

using test::RowChunkBuilder;

std::shared_ptr<const RowChunk> ChunkOfNumbers(int first, int count) {
  RowChunkBuilder builder({ColumnStorage::Long, ColumnStorage::Text});
  for (int number = first; number < first + count; ++number) builder.AddRow({number, "row " + std::to_string(number)});
  return builder.Build();
}

// Numbers from 0 on, in chunks of the sizes given.
RowBlock BlockOf(const std::vector<int>& sizes) {
  RowBlock block;
  int first = 0;
  for (const int size : sizes) {
    block.Append(ChunkOfNumbers(first, size));
    first += size;
  }
  return block;
}

void ExpectNumbers(const RowBlock& block, int first, std::size_t count) {
  ASSERT_EQ(block.Rows(), count);
  for (std::size_t row = 0; row < count; ++row) {
    const int number = first + static_cast<int>(row);
    ASSERT_EQ(block.Value(0, row), Variant(number)) << row;
    ASSERT_EQ(block.Value(1, row), Variant("row " + std::to_string(number))) << row;
  }
}

const std::vector<std::vector<int>> kDivisions = {{10},         {4, 4, 2}, {1, 3, 3, 3}, {4, 4, 4},    {1, 5, 4},
                                                  {5, 1, 1, 3}, {7, 3},    {2, 8},       {1, 1, 5, 3}, {1, 5, 1, 1, 2}};

TEST(RowBlockTest, EveryStorageGivesItsValues) {
  const Date noon = Date::From(2026, 11, 20, 12);
  const struct {
    ColumnStorage Storage;
    Variant Given;
    Variant Read;
    std::size_t Width;
  } rows[] = {
      {ColumnStorage::Integer, 7, std::int16_t{7}, 2},
      {ColumnStorage::Long, -70000, -70000, 4},
      {ColumnStorage::BigInteger, Decimal::Parse("9223372036854775807"), Decimal::Parse("9223372036854775807"), 8},
      {ColumnStorage::Single, 1.5, 1.5F, 4},
      {ColumnStorage::Double, 1e300, 1e300, 8},
      {ColumnStorage::Currency, "12.5", Currency{125000}, 8},
      {ColumnStorage::Decimal, "-1.50", Decimal::Parse("-1.50"), 16},
      {ColumnStorage::Date, noon, noon, 8},
      {ColumnStorage::Boolean, true, true, 1},
      {ColumnStorage::Byte, 255, Byte{255}, 1},
      {ColumnStorage::Text, "a text too long to be held inside", "a text too long to be held inside", 0},
      {ColumnStorage::Bytes, std::vector<Byte>{0, 1, 255}, std::vector<Byte>{0, 1, 255}, 0},
      {ColumnStorage::Placeholder, "long text", Variant(), 0}};
  for (const auto& row : rows) {
    RowChunkBuilder builder({row.Storage});
    builder.AddRow({row.Given});
    const auto chunk = builder.Build();
    EXPECT_EQ(chunk->Value(0, 0), row.Read) << row.Read.TypeName();
    EXPECT_EQ(StorageWidth(row.Storage), row.Width) << row.Read.TypeName();
    EXPECT_EQ(chunk->Storage(0), row.Storage);
  }
}

TEST(RowBlockTest, NullIsKeptInEveryStorageButThePlaceholder) {
  for (int code = 0; code <= static_cast<int>(ColumnStorage::Placeholder); ++code) {
    const auto storage = static_cast<ColumnStorage>(code);
    RowChunkBuilder builder({storage});
    builder.AddRow({Variant::Null()});
    const Variant value = builder.Build()->Value(0, 0);
    EXPECT_EQ(value.IsNull(), storage != ColumnStorage::Placeholder) << code;
    EXPECT_EQ(value.IsEmpty(), storage == ColumnStorage::Placeholder) << code;
  }
}

TEST(RowBlockTest, NullsStandWhereTheyWerePut) {
  RowChunkBuilder builder({ColumnStorage::Long, ColumnStorage::Text});
  for (int row = 0; row < 200; ++row) {
    builder.AddRow({row % 3 == 0 ? Variant::Null() : Variant(row), row % 5 == 0 ? Variant::Null() : Variant("x")});
  }
  const auto chunk = builder.Build();
  for (std::size_t row = 0; row < 200; ++row) {
    EXPECT_EQ(chunk->IsNull(0, row), row % 3 == 0) << row;
    EXPECT_EQ(chunk->Value(1, row).IsNull(), row % 5 == 0) << row;
  }
}

TEST(RowBlockTest, TextsLieInPlaceOneBehindTheOther) {
  RowChunkBuilder builder({ColumnStorage::Text, ColumnStorage::Long});
  builder.AddRow({"ab", 1});
  builder.AddRow({"", 2});
  builder.AddRow({Variant::Null(), 3});
  builder.AddRow({"cde", 4});
  const auto chunk = builder.Build();
  EXPECT_EQ(chunk->View(0, 0), "ab");
  EXPECT_EQ(chunk->View(0, 1), "");
  EXPECT_EQ(chunk->View(0, 2), "");
  EXPECT_EQ(chunk->View(0, 3), "cde");
  EXPECT_EQ(chunk->View(0, 0).data() + 2, chunk->View(0, 3).data());
  EXPECT_EQ(chunk->View(1, 0), "");
}

TEST(RowBlockTest, BytesLieInPlaceToo) {
  RowChunkBuilder builder({ColumnStorage::Bytes});
  builder.AddRow({std::vector<Byte>{'a', 0}});
  builder.AddRow({std::vector<Byte>{}});
  builder.AddRow({std::vector<Byte>{255}});
  const auto chunk = builder.Build();
  EXPECT_EQ(chunk->View(0, 0), std::string_view("a\0", 2));
  EXPECT_EQ(chunk->Value(0, 1), Variant(std::vector<Byte>()));
  EXPECT_EQ(chunk->View(0, 2), "\xFF");
}

TEST(RowBlockTest, FalseIsHeldAsWellAsTrue) {
  RowChunkBuilder builder({ColumnStorage::Boolean});
  builder.AddRow({false});
  builder.AddRow({-1});
  const auto chunk = builder.Build();
  EXPECT_EQ(chunk->Value(0, 0), Variant(false));
  EXPECT_EQ(chunk->Value(0, 1), Variant(true));
}

TEST(RowBlockTest, TheBuilderRefusesWhatAColumnCannotHold) {
  RowChunkBuilder builder({ColumnStorage::Integer, ColumnStorage::Bytes});
  ExpectOverflow([&] { builder.AddRow({70000, Variant::Null()}); });
  ExpectTypeMismatch([&] { builder.AddRow({"x", Variant::Null()}); });
  ExpectTypeMismatch([&] { builder.AddRow({1, "text"}); });
  ExpectSubscriptOutOfRange([&] { builder.AddRow({1}); });
  EXPECT_EQ(builder.Build()->Rows(), 0U);
}

TEST(RowBlockTest, TheBuilderStartsAnewAfterEachChunk) {
  RowChunkBuilder builder({ColumnStorage::Long});
  builder.AddRow({1});
  EXPECT_EQ(builder.Build()->Rows(), 1U);
  builder.AddRow({2});
  EXPECT_EQ(builder.Build()->Value(0, 0), Variant(2));
}

TEST(RowBlockTest, FindsEveryRowInEvenAndUnevenChunks) {
  for (const auto& sizes : kDivisions) {
    const int rows = std::accumulate(sizes.begin(), sizes.end(), 0);
    ExpectNumbers(BlockOf(sizes), 0, static_cast<std::size_t>(rows));
  }
}

TEST(RowBlockTest, EverySliceShowsItsRows) {
  for (const auto& sizes : kDivisions) {
    const RowBlock block = BlockOf(sizes);
    for (std::size_t first = 0; first <= block.Rows(); ++first) {
      for (std::size_t count = 0; first + count <= block.Rows(); ++count) {
        ExpectNumbers(block.Slice(first, count), static_cast<int>(first), count);
      }
    }
  }
}

TEST(RowBlockTest, SlicesOfSlicesAndWhatIsAppendedToThem) {
  for (const auto& sizes : kDivisions) {
    RowBlock slice = BlockOf(sizes).Slice(1, 8).Slice(2, 4);
    ExpectNumbers(slice, 3, 4);
    slice.Append(ChunkOfNumbers(7, 5));
    ExpectNumbers(slice, 3, 9);
    ExpectNumbers(slice.Slice(3, 4), 6, 4);
  }
}

TEST(RowBlockTest, ASliceTakesOnlyThePartThatExists) {
  const RowBlock block = BlockOf({4, 4, 2});
  ExpectNumbers(block.Slice(7, 100), 7, 3);
  EXPECT_TRUE(block.Slice(10, 1).IsEmpty());
  EXPECT_TRUE(block.Slice(99, 1).IsEmpty());
  EXPECT_TRUE(RowBlock().Slice(0, 5).IsEmpty());
}

TEST(RowBlockTest, ASliceSharesOnlyTheChunksItNeeds) {
  const RowBlock block = BlockOf({4, 4, 2});
  const RowBlock slice = block.Slice(5, 2);
  ASSERT_EQ(slice.Chunks().size(), 1U);
  EXPECT_EQ(slice.Chunks()[0], block.Chunks()[1]);
  EXPECT_EQ(block.Slice(3, 2).Chunks().size(), 2U);
}

TEST(RowBlockTest, AChunkWithoutRowsTellsItsColumns) {
  RowBlock block;
  EXPECT_EQ(block.Columns(), 0U);
  block.Append(ChunkOfNumbers(0, 0));
  EXPECT_EQ(block.Columns(), 2U);
  EXPECT_EQ(block.Storage(1), ColumnStorage::Text);
  EXPECT_TRUE(block.IsEmpty());
  EXPECT_EQ(block.Slice(0, 5).Columns(), 2U);
  block.Append(ChunkOfNumbers(0, 3));
  block.Append(ChunkOfNumbers(0, 0));
  block.Append(ChunkOfNumbers(3, 2));
  ExpectNumbers(block, 0, 5);
}

TEST(RowBlockTest, HeapBytesCountTheBuffers) {
  RowChunkBuilder builder({ColumnStorage::Long, ColumnStorage::Double});
  for (int row = 0; row < 1000; ++row) builder.AddRow({row, 1.0});
  const auto chunk = builder.Build();
  EXPECT_GE(chunk->HeapBytes(), 12000U);
  EXPECT_LT(chunk->HeapBytes(), 13000U);
  RowBlock block;
  block.Append(chunk);
  EXPECT_GT(block.HeapBytes(), chunk->HeapBytes());
}

TEST(RowBlockTest, HeapBytesCountTextsAndNullBitsToo) {
  RowChunkBuilder builder({ColumnStorage::Text, ColumnStorage::Long});
  for (int row = 0; row < 64; ++row) builder.AddRow({std::string(100, 'x'), Variant::Null()});
  const std::size_t texts = 64 * (100 + sizeof(std::uint16_t));
  const std::size_t numbers = 64 * sizeof(std::int32_t) + sizeof(std::uint64_t);
  EXPECT_GE(builder.Build()->HeapBytes(), texts + numbers);
}

TEST(RowBlockTest, ChunkIsInOnePiece) {
  RowChunkBuilder builder({ColumnStorage::Text, ColumnStorage::Long});
  builder.AddRow({"short", Variant::Null()});
  const auto chunk = builder.Build();
  EXPECT_EQ(chunk->Memory().size(), 5 + sizeof(std::uint16_t) + sizeof(std::int32_t) + sizeof(std::uint64_t));
  EXPECT_EQ(chunk->HeapBytes(), 2 * sizeof(RowChunk::Column) + chunk->Memory().size());
}

}  // namespace
}  // namespace velmoria
