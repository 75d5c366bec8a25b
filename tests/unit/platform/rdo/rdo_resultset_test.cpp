#include "velmoria/platform/rdo/rdo_resultset.h"

#include <limits>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

class RdoResultsetTest : public RdoTest {
 protected:
  static std::vector<int> Numbers(const RowBlock& block) {
    std::vector<int> numbers;
    numbers.reserve(block.Rows());
    for (std::size_t row = 0; row < block.Rows(); ++row) numbers.push_back(block.Value(0, row).AsLong());
    return numbers;
  }
};

constexpr auto kInvalidArgument = static_cast<std::int32_t>(RuntimeFailure::InvalidArgument);

TEST_F(RdoResultsetTest, OpensOnItsFirstRow) {
  const auto result = OpenNumbers(3);
  EXPECT_FALSE(result->AtBOF());
  EXPECT_FALSE(result->AtEOF());
  EXPECT_EQ(result->AbsolutePosition(), 1);
  EXPECT_TRUE(result->Bookmarkable());
  EXPECT_FALSE(result->StillExecuting());
}

TEST_F(RdoResultsetTest, MovesStopBeforeTheFirstAndAfterTheLastRow) {
  const auto result = OpenNumbers(3);
  result->MovePrevious();
  EXPECT_TRUE(result->AtBOF());
  result->MovePrevious();
  result->MoveNext();
  EXPECT_EQ(result->AbsolutePosition(), 1);
  result->Move(std::numeric_limits<long long>::max());
  EXPECT_TRUE(result->AtEOF());
  EXPECT_EQ(result->AbsolutePosition(), -1);
  result->MoveNext();
  result->MovePrevious();
  EXPECT_EQ(result->AbsolutePosition(), 3);
  result->Move(-2);
  EXPECT_EQ(result->AbsolutePosition(), 1);
}

TEST_F(RdoResultsetTest, RowCountIsKnownAtTheEnd) {
  const auto result = OpenNumbers(3000);
  EXPECT_EQ(result->RowCount(), -1);
  result->MoveLast();
  EXPECT_EQ(result->RowCount(), 3000);
  EXPECT_EQ(result->AbsolutePosition(), 3000);
  EXPECT_EQ(result->rdoColumns().At(std::size_t{1})->Value(), Variant(3000));
}

TEST_F(RdoResultsetTest, GetRowsLeavesTheCursorOnTheRowBehindTheLast) {
  const auto result = OpenNumbers(10);
  EXPECT_EQ(Numbers(result->GetRows(4)), (std::vector<int>{1, 2, 3, 4}));
  EXPECT_EQ(result->AbsolutePosition(), 5);
  EXPECT_EQ(Numbers(result->GetRows(6)), (std::vector<int>{5, 6, 7, 8, 9, 10}));
  EXPECT_TRUE(result->AtEOF());
  EXPECT_TRUE(result->GetRows(4).IsEmpty());
}

TEST_F(RdoResultsetTest, GetRowsBeforeTheFirstRowBeginsWithIt) {
  const auto result = OpenNumbers(3);
  result->MovePrevious();
  EXPECT_EQ(Numbers(result->GetRows(2)), (std::vector<int>{1, 2}));
}

TEST_F(RdoResultsetTest, PagesJoinOverTheBlocksOfTheFetch) {
  const auto result = OpenNumbers(3000);
  int next = 1;
  for (auto page = result->GetRows(500); !page.IsEmpty(); page = result->GetRows(500)) {
    for (const int number : Numbers(page)) EXPECT_EQ(number, next++);
  }
  EXPECT_EQ(next, 3001);
}

TEST_F(RdoResultsetTest, BookmarkIsThePosition) {
  const auto result = OpenNumbers(3000);
  result->Move(1999);
  const auto bookmark = result->Bookmark();
  EXPECT_EQ(bookmark, Variant(2000));
  result->MoveFirst();
  result->SetBookmark(bookmark);
  EXPECT_EQ(result->rdoColumns().At(std::size_t{1})->Value(), Variant(2000));
}

TEST_F(RdoResultsetTest, BookmarkOfNoRowRaises5AndMovesNothing) {
  const auto result = OpenNumbers(3);
  for (const int bookmark : {0, -1, 4}) {
    ExpectRdoFailure(kInvalidArgument, "", [&] { result->SetBookmark(bookmark); });
    EXPECT_EQ(result->AbsolutePosition(), 1);
  }
}

TEST_F(RdoResultsetTest, ReadingWithoutACurrentRowRaises40009) {
  const auto result = OpenNumbers(1);
  result->MoveNext();
  ExpectRdoFailure(rdErrNoCurrentRow, "no current row", [&] { result->Bookmark(); });
  ExpectRdoFailure(rdErrNoCurrentRow, "no current row", [&] { result->rdoColumns().At(std::size_t{1})->Value(); });
}

TEST_F(RdoResultsetTest, AbsolutePositionBeyondAnEndGoesToThatEnd) {
  const auto result = OpenNumbers(3);
  result->SetAbsolutePosition(2);
  EXPECT_EQ(result->AbsolutePosition(), 2);
  result->SetAbsolutePosition(9);
  EXPECT_TRUE(result->AtEOF());
  result->SetAbsolutePosition(-9);
  EXPECT_TRUE(result->AtBOF());
}

TEST_F(RdoResultsetTest, MovesOnAnEmptyResultDoNothing) {
  for (const rdoNumber type : {rdOpenForwardOnly, rdOpenKeyset}) {
    const auto result = OpenNumbers(0, type);
    result->MoveFirst();
    result->MoveLast();
    result->MoveNext();
    result->MovePrevious();
    result->Move(5);
    EXPECT_TRUE(result->AtBOF());
    EXPECT_TRUE(result->AtEOF());
    EXPECT_EQ(result->RowCount(), 0);
    EXPECT_TRUE(result->GetRows(5).IsEmpty());
  }
}

TEST_F(RdoResultsetTest, ForwardOnlyResultRefusesWhatGoesBack) {
  const auto result = OpenNumbers(3000, rdOpenForwardOnly);
  result->MoveFirst();
  EXPECT_EQ(result->GetRows(2000).Rows(), 2000U);
  ExpectRdoFailure(rdErrForwardOnly, "forward-only", [&] { result->MoveLast(); });
  ExpectRdoFailure(rdErrForwardOnly, "forward-only", [&] { result->MovePrevious(); });
  ExpectRdoFailure(rdErrForwardOnly, "forward-only", [&] { result->MoveFirst(); });
  ExpectRdoFailure(rdErrForwardOnly, "forward-only", [&] { result->Move(-1); });
  ExpectRdoFailure(rdErrForwardOnly, "forward-only", [&] { result->SetBookmark(1); });
  EXPECT_EQ(result->AbsolutePosition(), 2001);
  EXPECT_EQ(result->GetRows(2000).Rows(), 1000U);
}

TEST_F(RdoResultsetTest, DriverThatCannotScrollStillGivesAScrollingResult) {
  odbc->Scrolls = false;
  const auto result = OpenNumbers(200);
  result->MoveLast();
  result->MoveFirst();
  EXPECT_EQ(result->AbsolutePosition(), 1);
}

TEST_F(RdoResultsetTest, ColumnsAreFoundWithoutRegardToCaseAndTheFirstOfTwoHasTheName) {
  odbc->Columns = {{"Id", 4}, {"Name", 12}, {"id", 5}, {"", 12}};
  const auto result = OpenRows();
  ASSERT_EQ(result->rdoColumns().Count(), 4U);
  EXPECT_EQ((*result->rdoColumns().FindKey("ID"))->Type(), 4);
  EXPECT_EQ(result->rdoColumns().At(std::size_t{3})->Type(), 5);
  EXPECT_EQ(result->rdoColumns().At(std::size_t{3})->OrdinalPosition(), 3);
}

TEST_F(RdoResultsetTest, ColumnTellsWhatItIs) {
  odbc->Columns = {{"Id", 4, 10}, {"Name", 12, 40}, {"Photo", -4, 0}};
  const auto result = OpenRows();
  const auto id = result->rdoColumns().At(std::size_t{1});
  const auto name = result->rdoColumns().At(std::size_t{2});
  const auto photo = result->rdoColumns().At(std::size_t{3});
  EXPECT_EQ(id->Attributes(), rdFixedColumn);
  EXPECT_FALSE(id->AllowZeroLength());
  EXPECT_EQ(name->Attributes(), rdVariableColumn);
  EXPECT_TRUE(name->AllowZeroLength());
  EXPECT_EQ(name->Size(), 40);
  EXPECT_FALSE(name->ChunkRequired());
  EXPECT_TRUE(photo->ChunkRequired());
}

TEST_F(RdoResultsetTest, ClosedResultKeepsWhatItHasGivenAndRefusesTheRest) {
  const auto result = OpenNumbers(3);
  const auto block = result->GetRows(3);
  result->Close();
  result->Close();
  EXPECT_EQ(Numbers(block), (std::vector<int>{1, 2, 3}));
  EXPECT_TRUE(result->AtEOF());
  ExpectRdoFailure(rdErrClosed, "result is closed", [&] { result->GetRows(1); });
  ExpectRdoFailure(rdErrClosed, "result is closed", [&] { result->MoveFirst(); });
  ExpectRdoFailure(rdErrClosed, "result is closed", [&] { result->RowCount(); });
}

TEST_F(RdoResultsetTest, NegativeNumberOfRowsRaises5) {
  ExpectRdoFailure(kInvalidArgument, "", [&] { OpenNumbers(3)->GetRows(-1); });
}

}  // namespace
}  // namespace velmoria::test
