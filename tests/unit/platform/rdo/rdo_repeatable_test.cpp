#include <string>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

/// A result whose statement may be run again, of rows "1", "2" ... with a text of 400 characters beside.
class RdoRepeatableTest : public RdoTest {
 protected:
  static constexpr int kMany = 40000;  // 16 MB
  static constexpr int kPage = 500;

  rdoResultsetPtr OpenMany(int count = kMany, rdoNumber type = rdOpenKeyset) {
    odbc->Columns = {{"Id", 4}, {"Note", 12, 400}};
    odbc->Rows.clear();
    for (int number = 1; number <= count; ++number) odbc->Rows.push_back({std::to_string(number), Note(number)});
    odbc->Scrolls = false;
    return Open()->CreateQuery("", "SELECT")->OpenResultset({.Type = type, .Repeatable = true});
  }
  static std::string Note(int number) { return std::string(400, static_cast<char>('a' + number % 26)); }
  static int IdAt(const rdoResultset& result) { return result.rdoColumns().At(std::size_t{1})->Value().AsLong(); }
  /// Reads so many pages and expects their rows.
  static void ReadPages(rdoResultset& result, int first, int pages) {
    for (int page = 0; page < pages; ++page) {
      const auto rows = result.GetRows(kPage);
      ASSERT_EQ(rows.Rows(), static_cast<std::size_t>(kPage));
      ASSERT_EQ(rows.Value(0, 0).AsLong(), first + page * kPage);
      ASSERT_EQ(rows.Value(1, kPage - 1).AsText(), Note(first + (page + 1) * kPage - 1));
    }
  }
};

TEST_F(RdoRepeatableTest, ReadsInBlocksFromACursorThatOnlyGoesForwards) {
  const auto result = OpenMany(3000);
  ReadPages(*result, 1, 6);
  EXPECT_TRUE(result->AtEOF());
  EXPECT_GT(odbc->LargestArray, 1U);
}

TEST_F(RdoRepeatableTest, GoesBackToWhatItKeepsWithoutRunningAgain) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 70);
  result->SetBookmark(33001);
  EXPECT_EQ(IdAt(*result), 33001);
  EXPECT_EQ(odbc->CallsOf["Execute"], 1);
}

TEST_F(RdoRepeatableTest, RunsAgainForRowsThatItHasLetGoOf) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 70);
  result->MoveFirst();
  EXPECT_EQ(odbc->CallsOf["Execute"], 2);
  EXPECT_EQ(IdAt(*result), 1);
  ReadPages(*result, 1, 80);
  EXPECT_TRUE(result->AtEOF());
  EXPECT_EQ(result->RowCount(), kMany);
  result->SetBookmark(501);
  EXPECT_EQ(odbc->CallsOf["Execute"], 3);
  ReadPages(*result, 501, 3);
}

TEST_F(RdoRepeatableTest, SmallResultsAreKeptWhole) {
  const auto result = OpenMany(3000);
  ReadPages(*result, 1, 6);
  result->MoveFirst();
  EXPECT_EQ(IdAt(*result), 1);
  EXPECT_EQ(odbc->CallsOf["Execute"], 1);
}

TEST_F(RdoRepeatableTest, AStaticResultKeepsEverything) {
  const auto result = OpenMany(kMany, rdOpenStatic);
  ReadPages(*result, 1, 70);
  result->MoveFirst();
  EXPECT_EQ(IdAt(*result), 1);
  EXPECT_EQ(odbc->CallsOf["Execute"], 1);
}

TEST_F(RdoRepeatableTest, AllRowsTakenAtOnceAreFetchedOnce) {
  const auto result = OpenMany();
  result->MoveLast();
  EXPECT_EQ(result->RowCount(), kMany);
  result->MoveFirst();
  EXPECT_EQ(result->GetRows(kMany).Rows(), static_cast<std::size_t>(kMany));
  result->MovePrevious();
  EXPECT_EQ(IdAt(*result), kMany);
  EXPECT_EQ(odbc->CallsOf["Execute"], 1);
}

TEST_F(RdoRepeatableTest, AValueLongerThanTheDriverSaidIsReadWhole) {
  OpenMany(1);
  for (int number = 1; number <= 3000; ++number) odbc->Rows.push_back({std::to_string(number + 1), "short"});
  const std::string longer(10000, 'x');
  odbc->Rows[2000][1] = longer;
  const auto result = Open()->CreateQuery("", "SELECT")->OpenResultset({.Type = rdOpenKeyset, .Repeatable = true});
  const auto rows = result->GetRows(3001);
  ASSERT_EQ(rows.Rows(), 3001U);
  EXPECT_EQ(rows.Value(1, 2000).AsText(), longer);
  EXPECT_EQ(rows.Value(1, 1999).AsText(), "short");
  EXPECT_EQ(rows.Value(0, 3000).AsLong(), 3001);
}

TEST_F(RdoRepeatableTest, AFailureToRunAgainLeavesThePosition) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 70);
  odbc->FailName = "Execute";
  ExpectRdoFailure(7, "fake failure", [&] { result->MoveFirst(); });
  EXPECT_EQ(result->AbsolutePosition(), 35001);
  odbc->FailName.clear();
  result->MoveFirst();
  EXPECT_EQ(IdAt(*result), 1);
}

TEST_F(RdoRepeatableTest, ShorterByThenItEndsEarlier) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 70);
  odbc->Rows.resize(10);
  result->MoveFirst();
  EXPECT_EQ(result->GetRows(kPage).Rows(), 10U);
  EXPECT_TRUE(result->AtEOF());
}

TEST_F(RdoRepeatableTest, GoingOnBehindAFailureToRunAgainIsRefused) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 70);
  odbc->FailName = "Execute";
  ExpectRdoFailure(7, "fake failure", [&] { result->MoveFirst(); });
  ExpectRdoFailure(rdErrClosed, "could not be read to its end", [&] { result->MoveLast(); });
}

TEST_F(RdoRepeatableTest, TableThatWasMadeAnewWithOtherColumnsIsRefusedAndNotReadIntoTheOldOnes) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 70);
  std::swap(odbc->Columns[0], odbc->Columns[1]);
  for (auto& row : odbc->Rows) std::swap(row[0], row[1]);
  ExpectRdoFailure(rdErrClosed, "columns of the result have changed", [&] { result->MoveFirst(); });
  EXPECT_EQ(result->AbsolutePosition(), 35001);
  std::swap(odbc->Columns[0], odbc->Columns[1]);
  for (auto& row : odbc->Rows) std::swap(row[0], row[1]);
  result->MoveFirst();
  EXPECT_EQ(IdAt(*result), 1);
}

TEST_F(RdoRepeatableTest, ColumnsThatChangedBeforeALongValueIsReadWholeAreRefused) {
  OpenMany(1);
  for (int number = 1; number <= 3000; ++number) odbc->Rows.push_back({std::to_string(number + 1), "short"});
  odbc->Rows[2000][1] = std::string(10000, 'x');
  const auto result = Open()->CreateQuery("", "SELECT")->OpenResultset({.Type = rdOpenKeyset, .Repeatable = true});
  odbc->Columns[0].Name = "Number";
  ExpectRdoFailure(rdErrClosed, "columns of the result have changed", [&] { result->GetRows(3001); });
}

TEST_F(RdoRepeatableTest, LongValueOfARowThatWasReadAnewIsReadAnew) {
  OpenMany();
  odbc->Columns.push_back({"Story", -1});
  for (auto& row : odbc->Rows) row.emplace_back("old");
  const auto result = Open()->CreateQuery("", "SELECT")->OpenResultset({.Type = rdOpenKeyset, .Repeatable = true});
  const auto story = result->rdoColumns().At("Story");
  EXPECT_EQ(story->ColumnSize(), 3);
  ReadPages(*result, 1, 70);
  for (auto& row : odbc->Rows) row[2] = "newer";
  result->MoveFirst();
  EXPECT_EQ(story->ColumnSize(), 5);
}

TEST_F(RdoRepeatableTest, NoHandleIsLeft) {
  auto result = OpenMany();
  ReadPages(*result, 1, 70);
  result->MoveFirst();
  result = nullptr;
  environment = nullptr;
  EXPECT_EQ(odbc->OpenHandles(), 0U);
  EXPECT_EQ(odbc->Misuses, 0);
}

}  // namespace
}  // namespace velmoria::test
