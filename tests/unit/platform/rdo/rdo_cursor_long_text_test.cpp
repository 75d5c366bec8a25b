#include <algorithm>
#include <memory>
#include <string>

#include "tests/support/faulty_odbc.h"
#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

/// A result whose statement only reads, read in blocks, of rows "1", "2" ... with a text beside; one text is longer
/// than the driver says that it can be, which takes a second run.
class RdoLongTextTest : public RdoTest {
 protected:
  static constexpr int kLong = 2001;  // the row with the long text
  static constexpr int kRows = 3000;

  const std::string longText_ = std::string(10000, 'x');

  void SetUp() override { FillRows(kRows, kLong, 400); }
  void FillRows(int rows, int longRow, odbc::ULength size) {
    odbc->Columns = {{"Id", 4}, {"Note", 12, size}, {"Price", 3, 12}};
    odbc->Rows.clear();
    odbc->Scrolls = false;
    for (int row = 1; row <= rows; ++row) odbc->Rows.push_back({std::to_string(row), std::string(size, 'n'), "1.50"});
    odbc->Rows[static_cast<std::size_t>(longRow) - 1][1] = longText_;
  }
  rdoResultsetPtr OpenRepeatable(rdoNumber type = rdOpenKeyset) {
    return Open()->CreateQuery("", "SELECT")->OpenResultset({.Type = type, .Repeatable = true});
  }
  FakeOdbc::Row& Row(int number) { return odbc->Rows.at(static_cast<std::size_t>(number) - 1); }
  /// The first row is fetched, and the rows are what `change` makes of them when the rest is asked for.
  template <class Change>
  void ExpectRefused(Change change) {
    const auto result = OpenRepeatable();
    change();
    ExpectRdoFailure(rdErrClosed, "rows of the result have changed", [&] { result->GetRows(kRows); });
    EXPECT_EQ(result->AbsolutePosition(), 1);
    EXPECT_EQ(odbc->CallsOf["Execute"], 2);
    ExpectRdoFailure(rdErrClosed, "could not be read to its end", [&] { result->MoveLast(); });
    EXPECT_EQ(result->rdoColumns().At("Note")->Value().AsText(), std::string(400, 'n'));
  }
};

TEST_F(RdoLongTextTest, IsReadWholeByASecondRun) {
  const auto rows = OpenRepeatable()->GetRows(kRows);
  ASSERT_EQ(rows.Rows(), static_cast<std::size_t>(kRows));
  EXPECT_EQ(rows.Value(1, kLong - 1).AsText(), longText_);
  EXPECT_EQ(rows.Value(1, kLong - 2).AsText(), std::string(400, 'n'));
  for (int row = 1; row <= kRows; ++row) ASSERT_EQ(rows.Value(0, static_cast<std::size_t>(row) - 1).AsLong(), row);
  EXPECT_EQ(odbc->CallsOf["Execute"], 2);
}

TEST_F(RdoLongTextTest, OfTheFirstRowIsReadWhole) {
  FillRows(10, 1, 400);
  EXPECT_EQ(OpenRepeatable()->GetRows(1).Value(1, 0).AsText(), longText_);
}

TEST_F(RdoLongTextTest, IsReadWholeBehindRowsThatLieInTheFileOfTheResult) {
  FillRows(20000, 19000, 900);
  for (const rdoNumber type : {rdOpenKeyset, rdOpenForwardOnly}) {
    const auto result = OpenRepeatable(type);
    for (int first = 1; first <= 20000; first += 500) {
      const auto rows = result->GetRows(500);
      ASSERT_EQ(rows.Rows(), 500U);
      ASSERT_EQ(rows.Value(0, 0).AsLong(), first);
      if (first == 18501) { EXPECT_EQ(rows.Value(1, 499).AsText(), longText_); }
    }
  }
}

TEST_F(RdoLongTextTest, BehindRowsInTheFileThatHaveChangedIsRefused) {
  FillRows(20000, 19000, 900);
  const auto result = OpenRepeatable();
  for (int page = 0; page < 30; ++page) result->GetRows(500);
  Row(2)[1] = "changed";
  ExpectRdoFailure(rdErrClosed, "rows of the result have changed", [&] { result->GetRows(5000); });
  EXPECT_EQ(result->AbsolutePosition(), 15001);
  result->MoveFirst();
  EXPECT_EQ(result->GetRows(2).Value(1, 1).AsText(), std::string(900, 'n'));
}

TEST_F(RdoLongTextTest, BehindAValueThatHasChangedIsRefused) {
  ExpectRefused([this] { Row(3)[1] = std::string(399, 'n') + "m"; });
}

TEST_F(RdoLongTextTest, BehindANumberThatHasChangedIsRefused) {
  ExpectRefused([this] { Row(5)[0] = "-5"; });
}

TEST_F(RdoLongTextTest, BehindAValueThatHasBecomeNullIsRefused) {
  ExpectRefused([this] { Row(1)[0].reset(); });
}

TEST_F(RdoLongTextTest, BehindANumberWithOtherDigitsIsRefused) {
  ExpectRefused([this] { Row(2)[2] = "1.5"; });
}

TEST_F(RdoLongTextTest, BehindARowThatIsGoneIsRefused) {
  ExpectRefused([this] { odbc->Rows.erase(odbc->Rows.begin()); });
}

TEST_F(RdoLongTextTest, BehindRowsThatStandInAnotherOrderIsRefused) {
  ExpectRefused([this] { std::swap(Row(1), Row(2)); });
}

TEST_F(RdoLongTextTest, BehindRowsThatHaveChangedNoLongValueOfTheSecondRunIsGiven) {
  odbc->Columns.push_back({"Memo", -1});
  for (auto& row : odbc->Rows) row.push_back("of the first run");
  const auto result = OpenRepeatable();
  Row(1) = {"1", "changed", "1.50", "of the second run"};
  ExpectRdoFailure(rdErrClosed, "rows of the result have changed", [&] { result->GetRows(kRows); });
  EXPECT_EQ(result->AbsolutePosition(), 1);
  ExpectRdoFailure(rdErrClosed, "could not be read to its end", [&] { result->rdoColumns().At("Memo")->Whole(); });
}

TEST_F(RdoLongTextTest, OfAResultThatEndsEarlierByThenIsRefused) {
  const auto driver = std::make_shared<FaultyOdbc>(odbc);
  environment = Make<rdoEngine>(driver)->rdoCreateEnvironment("", "", "");
  const auto query = Open()->CreateQuery("", "SELECT");
  const OpenResultsetArguments how = {.Type = rdOpenKeyset, .Repeatable = true};
  driver->Disarm();
  query->OpenResultset(how)->GetRows(kRows);
  const auto calls = driver->Names();
  const auto firstOfSecondRun = std::ranges::find(calls, "Fetch") - calls.begin() + 1;
  driver->Arm(static_cast<int>(firstOfSecondRun), FaultWay::NoData);
  ExpectRdoFailure(rdErrClosed, "rows of the result have changed", [&] { query->OpenResultset(how)->GetRows(kRows); });
}

TEST_F(RdoLongTextTest, ChangesBehindTheRowsFetchedSoFarAreReadAsTheyAreByThen) {
  const auto result = OpenRepeatable();
  Row(kRows)[1] = "newer";
  const auto rows = result->GetRows(kRows);
  ASSERT_EQ(rows.Rows(), static_cast<std::size_t>(kRows));
  EXPECT_EQ(rows.Value(1, kRows - 1).AsText(), "newer");
}

TEST_F(RdoLongTextTest, OfAResultWithOtherColumnsByThenIsRefused) {
  const auto result = OpenRepeatable();
  odbc->Columns[0].Name = "Number";
  ExpectRdoFailure(rdErrClosed, "columns of the result have changed", [&] { result->GetRows(kRows); });
}

TEST_F(RdoLongTextTest, AFailureOfTheSecondRunLeavesThePositionAndGoingOnIsRefused) {
  const auto result = OpenRepeatable();
  odbc->FailName = "Execute";
  ExpectRdoFailure(7, "fake failure", [&] { result->GetRows(kRows); });
  EXPECT_EQ(result->AbsolutePosition(), 1);
  odbc->FailName.clear();
  ExpectRdoFailure(rdErrClosed, "could not be read to its end", [&] { result->MoveLast(); });
  EXPECT_EQ(result->rdoColumns().At("Id")->Value().AsLong(), 1);
}

TEST_F(RdoLongTextTest, OfATextThatMayWriteIsReadWithoutASecondRun) {
  const auto rows = OpenRows()->GetRows(kRows);
  EXPECT_EQ(rows.Value(1, kLong - 1).AsText(), longText_);
  EXPECT_EQ(odbc->CallsOf["Execute"], 1);
}

}  // namespace
}  // namespace velmoria::test
