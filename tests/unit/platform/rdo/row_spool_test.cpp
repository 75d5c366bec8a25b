#include "velmoria/platform/rdo/row_spool.h"

#include <filesystem>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/open_files.h"
#include "tests/support/rdo_builders.h"
#include "tests/support/row_chunk_builder.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"

namespace velmoria::test {
namespace {

class RowSpoolTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  ScopedVariable variable_{"TMPDIR", folder_.Path().c_str()};
  RowSpool spool_;
};

std::shared_ptr<const RowChunk> Numbers(int first, int count) {
  RowChunkBuilder builder({ColumnStorage::Long, ColumnStorage::Text});
  for (int number = first; number < first + count; ++number) builder.AddRow({number, "row " + std::to_string(number)});
  return builder.Build();
}

const std::vector<ColumnStorage> kStorages = {
    ColumnStorage::Integer, ColumnStorage::Long,    ColumnStorage::BigInteger, ColumnStorage::Single,
    ColumnStorage::Double,  ColumnStorage::Decimal, ColumnStorage::Currency,   ColumnStorage::Date,
    ColumnStorage::Boolean, ColumnStorage::Byte,    ColumnStorage::Text,       ColumnStorage::Bytes,
    ColumnStorage::Text,    ColumnStorage::Text,    ColumnStorage::Placeholder};

/// Rows of every storage, each value Null in some of them; of the last two texts, one is always Null and one is empty.
std::shared_ptr<const RowChunk> RowsOfEveryStorage(int count) {
  RowChunkBuilder builder(kStorages);
  for (int row = 0; row < count; ++row) {
    std::vector<Variant> values = {
        std::int16_t{-7},
        row - 70000,
        Decimal::Parse("-9223372036854775808"),
        1.5F,
        std::numeric_limits<double>::denorm_min(),
        Decimal::Parse("-1.50"),
        Currency{std::numeric_limits<std::int64_t>::min()},
        Date::From(1899, 12, 29, 6, 30, 1),
        row % 2 == 0,
        Byte{255},
        std::string(static_cast<std::size_t>(row), 'x') + "\xC3\x84 \xE6\xBC\xA2 \xF0\x9F\x9A\x80",
        std::vector<Byte>{0, 255, static_cast<Byte>(row)},
        Variant::Null(),
        "",
        "not kept"};
    values[static_cast<std::size_t>(row) % 12] = Variant::Null();
    builder.AddRow(values);
  }
  return builder.Build();
}

void ExpectSame(const RowChunk& read, const RowChunk& written) {
  ASSERT_EQ(read.Rows(), written.Rows());
  ASSERT_EQ(read.Columns(), written.Columns());
  for (std::size_t column = 0; column < read.Columns(); ++column) {
    EXPECT_EQ(read.Storage(column), written.Storage(column));
    for (std::size_t row = 0; row < read.Rows(); ++row) {
      EXPECT_EQ(read.IsNull(column, row), written.IsNull(column, row));
      EXPECT_EQ(read.Value(column, row), written.Value(column, row)) << column << ", " << row;
      EXPECT_EQ(read.Value(column, row).Type(), written.Value(column, row).Type());
    }
  }
  EXPECT_EQ(read.Value(5, 0).AsText(), "-1.50");
}

TEST_F(RowSpoolTest, GivesBackRowsOfEveryStorageAsTheyWere) {
  const auto rows = RowsOfEveryStorage(100);
  ASSERT_TRUE(spool_.Append(*rows));
  ExpectSame(*spool_.Read(50).Chunk, *rows);
}

TEST_F(RowSpoolTest, FindsTheChunkOfARow) {
  for (int chunk = 0; chunk < 5; ++chunk) ASSERT_TRUE(spool_.Append(*Numbers(1 + 10 * chunk, 10)));
  ASSERT_TRUE(spool_.Append(*Numbers(51, 1)));
  EXPECT_EQ(spool_.Rows(), 51);
  for (const long long row : {1, 10, 11, 27, 50, 51}) {
    const auto part = spool_.Read(row);
    EXPECT_EQ(part.First, (row - 1) / 10 * 10 + 1);
    EXPECT_EQ(part.Chunk->Value(0, static_cast<std::size_t>(row - part.First)).AsLong(), row);
    EXPECT_EQ(part.Chunk->View(1, 0), "row " + std::to_string(part.First));
  }
}

TEST_F(RowSpoolTest, ItsFileIsMadeForTheFirstRowsAndEndsWithIt) {
  {
    RowSpool spool;
    EXPECT_TRUE(NamelessFilesIn(folder_.Path()).empty());
    spool.Append(*Numbers(1, 3));
    EXPECT_EQ(NamelessFilesIn(folder_.Path()).size(), 1U);
    EXPECT_TRUE(NamesIn(folder_.Path()).empty());
  }
  EXPECT_TRUE(NamelessFilesIn(folder_.Path()).empty());
}

TEST_F(RowSpoolTest, WithoutAFolderItTakesNothing) {
  const ScopedVariable nowhere("TMPDIR", "/nowhere/at/all");
  EXPECT_FALSE(spool_.Append(*Numbers(1, 3)));
  EXPECT_EQ(spool_.Rows(), 0);
  EXPECT_FALSE(spool_.Append(*Numbers(1, 3)));
}

TEST_F(RowSpoolTest, RowsThatAreNotThereOrAreLostRaise40071) {
  ExpectRdoFailure(rdErrClosed, "could not be read back", [&] { spool_.Read(1); });
  for (int chunk = 0; chunk < 2; ++chunk) ASSERT_TRUE(spool_.Append(*Numbers(1 + 10 * chunk, 10)));
  ExpectRdoFailure(rdErrClosed, "could not be read back", [&] { spool_.Read(21); });
  const auto path = NamelessFilesIn(folder_.Path()).at(0);
  std::filesystem::resize_file(path, std::filesystem::file_size(path) - 1);
  ExpectRdoFailure(rdErrClosed, "could not be read back", [&] { spool_.Read(11); });
  EXPECT_EQ(spool_.Read(10).Chunk->Value(0, 9).AsLong(), 10);
}

}  // namespace
}  // namespace velmoria::test
