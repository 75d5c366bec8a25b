#include "velmoria/platform/rdo/fetched_rows.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/open_files.h"
#include "tests/support/rdo_builders.h"
#include "tests/support/row_chunk_builder.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"

namespace velmoria::test {
namespace {

using Behind = FetchedRows::Behind;

constexpr int kRows = 100;  // of a chunk
constexpr std::size_t kTextBytes = 1000;
constexpr std::size_t kMegabyte = std::size_t{1} << 20;

std::shared_ptr<const RowChunk> ChunkFrom(int first, int count = kRows) {
  RowChunkBuilder builder({ColumnStorage::Long, ColumnStorage::Text, ColumnStorage::Decimal});
  for (int number = first; number < first + count; ++number) {
    builder.AddRow({number, std::string(kTextBytes, static_cast<char>('a' + number % 26)), Decimal::Parse("1.50")});
  }
  return builder.Build();
}

/// Rows 1, 2, ... with a text each, in chunks of about 0.1 MB.
class FetchedRowsTest : public testing::Test {
 protected:
  /// Adds chunks, and walks behind each.
  void Walk(int chunks, Behind behind = Behind::IsKept) {
    for (int chunk = 0; chunk < chunks; ++chunk) {
      const auto made = ChunkFrom(static_cast<int>(rows_.Count()) + 1);
      chunks_.push_back(made);
      rows_.Append(made);
      rows_.MoveFarBehind(rows_.Count() - kRows, behind);
    }
  }
  std::size_t BytesInMemory() const {
    std::size_t bytes = 0;
    for (const auto& chunk : chunks_) {
      if (const auto alive = chunk.lock()) bytes += alive->HeapBytes();
    }
    return bytes;
  }
  void ExpectRows(const RowBlock& taken, int first, std::size_t count) {
    ASSERT_EQ(taken.Rows(), count);
    for (std::size_t row = 0; row < count; ++row) {
      ASSERT_EQ(taken.Value(0, row).AsLong(), first + static_cast<int>(row));
    }
  }

  TemporaryFolder folder_;
  ScopedVariable variable_{"TMPDIR", folder_.Path().c_str()};
  FetchedRows rows_;
  std::vector<std::weak_ptr<const RowChunk>> chunks_;
};

TEST_F(FetchedRowsTest, AboutFourMegabytesBehindThePositionStayInMemory) {
  Walk(300);
  EXPECT_GT(BytesInMemory(), 4 * kMegabyte);
  EXPECT_LT(BytesInMemory(), 6 * kMegabyte);
  EXPECT_EQ(NamelessFilesIn(folder_.Path()).size(), 1U);
}

TEST_F(FetchedRowsTest, FewRowsNeedNoFile) {
  Walk(30);
  EXPECT_TRUE(NamelessFilesIn(folder_.Path()).empty());
}

TEST_F(FetchedRowsTest, WhatLiesAheadOfThePositionStaysInMemory) {
  for (int chunk = 0; chunk < 100; ++chunk) rows_.Append(ChunkFrom(chunk * kRows + 1));
  rows_.MoveFarBehind(1, Behind::IsKept);
  EXPECT_TRUE(NamelessFilesIn(folder_.Path()).empty());
}

TEST_F(FetchedRowsTest, AnyValueIsTheSameWhereverItLies) {
  Walk(200);
  for (const long long position : {1LL, 100LL, 101LL, 7777LL, 10000LL, 15555LL, 19999LL, 20000LL, 1LL}) {
    EXPECT_EQ(rows_.Value(0, position).AsLong(), position);
    EXPECT_EQ(rows_.Value(1, position).AsText(), std::string(kTextBytes, static_cast<char>('a' + position % 26)));
  }
}

TEST_F(FetchedRowsTest, RangesAreTakenFromTheFileFromMemoryAndFromBoth) {
  Walk(200);
  ExpectRows(rows_.Take(1, 20000), 1, 20000);
  ExpectRows(rows_.Take(1, 1), 1, 1);
  ExpectRows(rows_.Take(100, 2), 100, 2);
  ExpectRows(rows_.Take(150, 1000), 150, 1000);
  ExpectRows(rows_.Take(10001, 9950), 10001, 9950);
  ExpectRows(rows_.Take(19901, 100), 19901, 100);
  EXPECT_EQ(rows_.Take(150, 0).Rows(), 0U);
  EXPECT_EQ(rows_.Take(150, 0).Columns(), 3U);
}

TEST_F(FetchedRowsTest, RowsThatSomebodyElseHoldsAreNotMoved) {
  for (int chunk = 0; chunk < 100; ++chunk) rows_.Append(ChunkFrom(chunk * kRows + 1));
  const auto all = rows_.Take(1, rows_.Count());
  rows_.MoveFarBehind(rows_.Count() + 1, Behind::IsKept);
  EXPECT_TRUE(NamelessFilesIn(folder_.Path()).empty());
}

TEST_F(FetchedRowsTest, ASingleRowThatSomebodyHoldsKeepsNoOthersInMemory) {
  Walk(1);
  const auto first = rows_.Take(1, 1);
  Walk(299);
  EXPECT_LT(BytesInMemory(), 6 * kMegabyte);
  ExpectRows(first, 1, 1);
  ExpectRows(rows_.Take(1, 250), 1, 250);
}

TEST_F(FetchedRowsTest, RowsThatNobodyGoesBackToNeedNoFile) {
  Walk(300, Behind::IsGone);
  EXPECT_LT(BytesInMemory(), 6 * kMegabyte);
  EXPECT_TRUE(NamelessFilesIn(folder_.Path()).empty());
  EXPECT_EQ(rows_.Count(), 30000);
  ExpectRows(rows_.Take(29901, 100), 29901, 100);
}

TEST_F(FetchedRowsTest, WithoutAFileEverythingStaysInMemory) {
  const ScopedVariable nowhere("TMPDIR", "/nowhere/at/all");
  Walk(200);
  EXPECT_GT(BytesInMemory(), 19 * kMegabyte);
  ExpectRows(rows_.Take(1, 20000), 1, 20000);
}

TEST_F(FetchedRowsTest, RowsThatAreLostRaise40071AndTheOthersCanBeRead) {
  Walk(200);
  std::filesystem::resize_file(NamelessFilesIn(folder_.Path()).at(0), 0);
  ExpectRdoFailure(rdErrClosed, "could not be read back", [&] { rows_.Value(0, 1); });
  ExpectRdoFailure(rdErrClosed, "could not be read back", [&] { rows_.Take(101, 10); });
  ExpectRows(rows_.Take(19901, 100), 19901, 100);
}

TEST_F(FetchedRowsTest, ComparesRowsInTheFileAndInMemory) {
  Walk(200);
  for (const int first : {1, 50, 15000, 19901}) EXPECT_TRUE(rows_.Matches(*ChunkFrom(first), first)) << first;
  EXPECT_FALSE(rows_.Matches(*ChunkFrom(2), 1));
  EXPECT_FALSE(rows_.Matches(*ChunkFrom(19950), 19950)) << "they go on behind the last one";
}

TEST_F(FetchedRowsTest, RowsWithAnyOtherValueAreNotTheSame) {
  const auto rowOf = [](const Variant& number, const Variant& text, const Variant& exact) {
    RowChunkBuilder builder({ColumnStorage::Long, ColumnStorage::Text, ColumnStorage::Decimal});
    builder.AddRow({number, text, exact});
    return builder.Build();
  };
  const auto exact = Decimal::Parse("1.50");
  rows_.Append(rowOf(1, "one", exact));
  rows_.Append(rowOf(2, Variant::Null(), exact));
  EXPECT_TRUE(rows_.Matches(*rowOf(1, "one", exact), 1));
  EXPECT_TRUE(rows_.Matches(*rowOf(2, Variant::Null(), exact), 2));
  EXPECT_FALSE(rows_.Matches(*rowOf(0, "one", exact), 1));
  EXPECT_FALSE(rows_.Matches(*rowOf(1, "on", exact), 1));
  EXPECT_FALSE(rows_.Matches(*rowOf(1, Variant::Null(), exact), 1));
  EXPECT_FALSE(rows_.Matches(*rowOf(1, "one", Decimal::Parse("1.5")), 1));
  EXPECT_FALSE(rows_.Matches(*rowOf(2, "", exact), 2));
}

}  // namespace
}  // namespace velmoria::test
