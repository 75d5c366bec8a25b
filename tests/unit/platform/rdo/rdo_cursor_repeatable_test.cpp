#include <cstdint>
#include <filesystem>
#include <string>

#include "tests/support/open_files.h"
#include "tests/support/rdo_builders.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"

namespace velmoria::test {
namespace {

/// A result whose statement only reads, of rows "1", "2" ... with a text of 400 characters beside.
class RdoRepeatableTest : public RdoTest {
 protected:
  static constexpr int kMany = 40000;  // 16 MB
  static constexpr int kPage = 500;

  rdoResultsetPtr OpenMany(int count = kMany, rdoNumber type = rdOpenKeyset) {
    odbc->Columns = {{"Id", 4}, {"Note", 12, 400}};
    odbc->Rows.clear();
    for (int number = 1; number <= count; ++number) odbc->Rows.push_back({std::to_string(number), Note(number)});
    odbc->Scrolls = false;
    return OpenAgain(type);
  }
  rdoResultsetPtr OpenAgain(rdoNumber type = rdOpenKeyset) {
    return Open()->CreateQuery("", "SELECT")->OpenResultset({.Type = type, .Repeatable = true});
  }
  TemporaryFolder folder_;
  ScopedVariable variable_{"TMPDIR", folder_.Path().c_str()};

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
  /// Expects all rows, and all of them again when the database has none any more.
  void ExpectKept(rdoResultset& result) {
    ReadPages(result, 1, 80);
    odbc->Rows.clear();
    result.MoveFirst();
    ReadPages(result, 1, 80);
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

TEST_F(RdoRepeatableTest, RowsFarBehindAreReadBackFromItsFile) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 70);
  EXPECT_EQ(NamelessFilesIn(folder_.Path()).size(), 1U);
  result->MoveFirst();
  EXPECT_EQ(IdAt(*result), 1);
  ReadPages(*result, 1, 80);
  EXPECT_TRUE(result->AtEOF());
  EXPECT_EQ(result->RowCount(), kMany);
  result->SetBookmark(501);
  ReadPages(*result, 501, 3);
  EXPECT_EQ(odbc->CallsOf["Execute"], 1);
}

TEST_F(RdoRepeatableTest, RowsThatAreWalkedPastAreMovedToItsFileToo) {
  const auto result = OpenMany();
  while (!result->AtEOF()) result->MoveNext();
  const auto files = NamelessFilesIn(folder_.Path());
  ASSERT_EQ(files.size(), 1U);
  EXPECT_GT(std::filesystem::file_size(files[0]), std::uintmax_t{10} << 20);
  result->MoveFirst();
  ReadPages(*result, 1, 80);
}

TEST_F(RdoRepeatableTest, GoingToTheLastRowMovesNothingToItsFile) {
  const auto result = OpenMany();
  result->MoveLast();
  result->MoveFirst();
  EXPECT_EQ(result->GetRows(kMany).Rows(), static_cast<std::size_t>(kMany));
  EXPECT_TRUE(NamelessFilesIn(folder_.Path()).empty());
}

TEST_F(RdoRepeatableTest, APositionIsTheSameRowWhateverTheDatabaseHasByThen) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 70);
  odbc->Rows.erase(odbc->Rows.begin(), odbc->Rows.begin() + 100);
  for (auto& row : odbc->Rows) row = {"-1", "changed"};
  for (const int first : {1, 20001, 34501, 1, 33999}) {
    result->SetBookmark(first);
    ReadPages(*result, first, 1);
    result->MovePrevious();
    EXPECT_EQ(IdAt(*result), first + kPage - 1);
  }
}

TEST_F(RdoRepeatableTest, WalksBackwardsInPagesFromTheLastRow) {
  const auto result = OpenMany();
  result->MoveLast();
  for (int first = kMany - kPage + 1; first > 0; first -= kPage) {
    result->SetBookmark(first);
    ReadPages(*result, first, 1);
  }
  EXPECT_EQ(odbc->CallsOf["Execute"], 1);
}

TEST_F(RdoRepeatableTest, ReadingOnBehindRowsThatWereReadBackMissesNone) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 40);
  result->SetBookmark(101);
  EXPECT_EQ(result->GetRows(kMany).Rows(), static_cast<std::size_t>(kMany - 100));
  EXPECT_TRUE(result->AtEOF());
}

TEST_F(RdoRepeatableTest, WithoutAPlaceForItsFileItKeepsEverything) {
  const ScopedVariable nowhere("TMPDIR", "/nowhere/at/all");
  const auto result = OpenMany();
  ExpectKept(*result);
}

TEST_F(RdoRepeatableTest, RowsThatAreLostFromItsFileAreRefusedAndThePositionStays) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 70);
  std::filesystem::resize_file(NamelessFilesIn(folder_.Path()).at(0), 100);
  result->SetBookmark(501);
  ExpectRdoFailure(rdErrClosed, "could not be read back", [&] { IdAt(*result); });
  ExpectRdoFailure(rdErrClosed, "could not be read back", [&] { result->GetRows(1); });
  EXPECT_EQ(result->AbsolutePosition(), 501);
  result->SetBookmark(34501);
  ReadPages(*result, 34501, 11);
  EXPECT_TRUE(result->AtEOF());
}

TEST_F(RdoRepeatableTest, AfterTheLastRowGoingBackNeedsNoConnection) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 80);
  environment->Close();
  environment = nullptr;
  EXPECT_EQ(odbc->OpenHandles(), 0U);
  result->MoveFirst();
  ReadPages(*result, 1, 80);
}

TEST_F(RdoRepeatableTest, AResultThatMayNotBeRunAgainIsReadBackAsWell) {
  OpenMany();
  const auto result = OpenRows();
  ExpectKept(*result);
}

TEST_F(RdoRepeatableTest, AForwardOnlyResultThatMayNotBeRunAgainNeedsNoFile) {
  OpenMany();
  const auto result = OpenRows(rdOpenForwardOnly);
  ReadPages(*result, 1, 70);
  EXPECT_TRUE(NamelessFilesIn(folder_.Path()).empty());
}

TEST_F(RdoRepeatableTest, AForwardOnlyWalkLetsGoOfRowsThatItHasPassedAlone) {
  OpenMany();
  const auto result = OpenRows(rdOpenForwardOnly);
  for (int number = 1; number <= kMany; ++number, result->MoveNext()) ASSERT_EQ(IdAt(*result), number);
  EXPECT_TRUE(result->AtEOF());
  EXPECT_EQ(result->RowCount(), kMany);
  EXPECT_TRUE(NamelessFilesIn(folder_.Path()).empty());
}

TEST_F(RdoRepeatableTest, ItsFileEndsWithTheResult) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 70);
  result->Close();
  EXPECT_TRUE(NamelessFilesIn(folder_.Path()).empty());
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

TEST_F(RdoRepeatableTest, TableMadeAnewWithOtherColumnsIsNotReadIntoTheOldOnes) {
  const auto result = OpenMany();
  ReadPages(*result, 1, 70);
  std::swap(odbc->Columns[0], odbc->Columns[1]);
  for (auto& row : odbc->Rows) std::swap(row[0], row[1]);
  result->MoveFirst();
  ReadPages(*result, 1, 70);
}

TEST_F(RdoRepeatableTest, LongValueReadBeforeIsTheSameBehindAWalk) {
  OpenMany();
  odbc->Columns.push_back({"Story", -1});
  for (auto& row : odbc->Rows) row.emplace_back("old");
  const auto result = OpenAgain();
  const auto story = result->rdoColumns().At("Story");
  EXPECT_EQ(story->ColumnSize(), 3);
  ReadPages(*result, 1, 70);
  for (auto& row : odbc->Rows) row[2] = "newer";
  result->MoveFirst();
  EXPECT_EQ(story->ColumnSize(), 3);
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
