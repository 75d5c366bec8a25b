#include "velmoria/platform/odbc/block_fetch.h"

#include <gtest/gtest.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

using BlockFetchTest = RdoTest;

const std::string kStreet = "Stra\xC3\x9F" + std::string("e");  // the hexadecimal digits must not go on

std::string Long(int row) { return std::string(static_cast<std::size_t>(5000 + row), 'x') + std::to_string(row); }

TEST_F(BlockFetchTest, EveryStorageArrivesAsItsValue) {
  odbc->Columns = {{"i", 4},  {"s", 5},  {"b", -5}, {"d", 8},  {"r", 7}, {"n", 3},
                   {"t", 12}, {"y", -6}, {"f", -7}, {"w", 93}, {"l", -4}};
  odbc->Rows = {{"-7", "300", "9007199254740993", "1.5", "2.5", "12.50", kStreet, "200", "1", "2026-11-20 14:03:05",
                 "never fetched"}};
  const auto block = OpenRows()->GetRows(5);
  EXPECT_EQ(block.Rows(), 1U);
  EXPECT_EQ(block.Value(0, 0), Variant(-7));
  EXPECT_EQ(block.Value(1, 0), Variant(std::int16_t{300}));
  EXPECT_EQ(block.Value(2, 0), Variant(Decimal::Parse("9007199254740993")));
  EXPECT_EQ(block.Value(3, 0), Variant(1.5));
  EXPECT_EQ(block.Value(4, 0), Variant(2.5F));
  EXPECT_EQ(block.Value(5, 0).AsText(), "12.50");
  EXPECT_EQ(block.Value(6, 0), Variant(kStreet));
  EXPECT_EQ(block.Value(7, 0), Variant(Byte{200}));
  EXPECT_EQ(block.Value(8, 0), Variant(true));
  EXPECT_EQ(block.Value(9, 0), Variant(Date::From(2026, 11, 20, 14, 3, 5)));
  EXPECT_TRUE(block.Value(10, 0).IsEmpty());
}

TEST_F(BlockFetchTest, NullsAreNullInEveryStorage) {
  odbc->Columns = {{"i", 4}, {"n", 3}, {"t", 12}, {"w", 93}};
  for (int row = 0; row < 200; ++row) {
    odbc->Rows.push_back(row % 3 == 0 ? FakeOdbc::Row(4) : FakeOdbc::Row{"1", "2", "3", "2020-01-01"});
  }
  const auto block = OpenRows()->GetRows(200);
  for (std::size_t row = 0; row < 200; ++row) {
    for (std::size_t column = 0; column < 4; ++column) {
      EXPECT_EQ(block.Value(column, row).IsNull(), row % 3 == 0) << row << " " << column;
    }
  }
}

TEST_F(BlockFetchTest, ValueLongerThanItsSlotIsReadWholeAndTheFetchGoesOn) {
  odbc->Columns = {{"id", 4}, {"t", 12, 5}, {"u", 12, 5}};
  for (int row = 1; row <= 3000; ++row) {
    odbc->Rows.push_back({std::to_string(row), row % 700 == 1 ? Long(row) : "a", row % 700 == 2 ? Long(row) : "b"});
  }
  const auto block = OpenRows()->GetRows(5000);
  ASSERT_EQ(block.Rows(), 3000U);
  for (int row = 1; row <= 3000; ++row) {
    const auto place = static_cast<std::size_t>(row - 1);
    EXPECT_EQ(block.Value(0, place), Variant(row));
    EXPECT_EQ(block.Value(1, place), Variant(row % 700 == 1 ? Long(row) : "a"));
    EXPECT_EQ(block.Value(2, place), Variant(row % 700 == 2 ? Long(row) : "b"));
  }
}

TEST_F(BlockFetchTest, CursorThatCannotGoBackIsReadRowByRow) {
  odbc->Scrolls = false;
  odbc->Columns = {{"id", 4}, {"t", 12, 5}};
  for (int row = 1; row <= 100; ++row) odbc->Rows.push_back({std::to_string(row), Long(row)});
  const auto block = OpenRows()->GetRows(1000);
  ASSERT_EQ(block.Rows(), 100U);
  EXPECT_EQ(block.Value(1, 0), Variant(Long(1)));
  EXPECT_EQ(block.Value(1, 99), Variant(Long(100)));
  EXPECT_EQ(odbc->LargestArray, 1U);
}

TEST_F(BlockFetchTest, CursorThatCannotGoBackIsReadInBlocksWhenNoValueCanBeTooLong) {
  odbc->Scrolls = false;
  EXPECT_EQ(OpenNumbers(3000)->GetRows(3000).Rows(), 3000U);
  EXPECT_EQ(odbc->LargestArray, 1024U);
}

TEST_F(BlockFetchTest, WideRowsMakeSmallBlocks) {
  odbc->Columns.assign(100, {"t", 12, 8000});
  odbc->Rows.assign(300, FakeOdbc::Row(100, "x"));
  EXPECT_EQ(OpenRows()->GetRows(300).Rows(), 300U);
  EXPECT_LT(odbc->LargestArray, 16U);
}

TEST_F(BlockFetchTest, RowThatDoesNotConvertIsTheDriversFailure) {
  odbc->FailingRow = 1500;
  odbc->Diagnostics = {{"22003", 9, "out of range"}};
  const auto result = OpenNumbers(2000);
  ExpectRdoFailure(9, "22003: out of range", [&] { result->MoveLast(); });
}

TEST_F(BlockFetchTest, NumberThatIsNoByteRaises6WithItsColumn) {
  odbc->Columns = {{"Age", -6}};
  odbc->Rows = {{"-5"}};
  ExpectRdoFailure(static_cast<std::int32_t>(RuntimeFailure::Overflow), "'Age'", [&] { OpenRows(); });
}

TEST_F(BlockFetchTest, FailedFetchCanNotBeTakenForTheEnd) {
  odbc->FailName = "FetchScroll";
  odbc->FailNameFrom = 3;
  const auto result = OpenNumbers(5000);
  ExpectRdoFailure(7, "fake failure", [&] { result->MoveLast(); });
  odbc->FailName.clear();
  ExpectRdoFailure(rdErrClosed, "could not be read to its end", [&] { result->MoveLast(); });
  EXPECT_EQ(result->RowCount(), -1);
}

}  // namespace
}  // namespace velmoria::test
