#include "velmoria/platform/odbc/date_doubts.h"

#include <ctime>

#include "tests/support/expect_raised.h"
#include "tests/support/rdo_builders.h"
#include "velmoria/platform/posix/local_time.h"

namespace velmoria::test {
namespace {

/// Rows of a timestamp, over drivers that misread.
class DateDoubtsTest : public RdoTest {
 protected:
  void SetUp() override { odbc->Columns = {{"id", 4}, {"day", 93}}; }

  void AddRow(const FakeOdbc::Row::value_type& day) {
    odbc->Rows.push_back({std::to_string(odbc->Rows.size() + 1), day});
  }
  void LetMisread(const std::string& driver, const std::string& text, const std::string& as) {
    odbc->DriverName = driver;
    odbc->MisreadAs[text] = as;
  }
  Variant Day(std::size_t row, rdoNumber type = rdOpenKeyset) { return OpenRows(type)->GetRows(2000).Value(1, row); }
  /// The last row's day is refused over both kinds of cursor, and beside a long column, which has the first row fetched
  /// by itself or all of them one by one.
  void ExpectRefused() {
    ExpectRefusedInEachCursor();
    odbc->Columns.push_back({"long", -4});
    for (auto& row : odbc->Rows) row.emplace_back("long");
    ExpectRefusedInEachCursor();
  }
  void ExpectRefusedInEachCursor() {
    for (const rdoNumber type : {rdOpenForwardOnly, rdOpenKeyset}) {
      const auto error = Thrown([&] { Day(odbc->Rows.size() - 1, type); });
      ASSERT_TRUE(error);
      EXPECT_EQ(error->Number(), static_cast<std::int32_t>(RuntimeFailure::InvalidArgument)) << error->what();
      EXPECT_NE(error->Description().find("in the column 'day'"), std::string::npos) << error->what();
    }
  }
  static std::string Today() { return Date::From(LocalParts(std::time(nullptr))).AsText().substr(0, 10); }
};

TEST_F(DateDoubtsTest, DayThatIsReadAsTodayIsRefused) {
  LetMisread("psqlodbcw.so", "infinity", Today());
  for (int row = 1; row <= 100; ++row) AddRow("2020-01-02");
  AddRow("infinity");
  ExpectRefused();
}

TEST_F(DateDoubtsTest, YearOfFiveDigitsThatIsReadAsOneOfFourIsRefused) {
  LetMisread("psqlodbcw.so", "12345-06-07", "1234" + Today().substr(4));
  AddRow("12345-06-07");
  ExpectRefused();
}

TEST_F(DateDoubtsTest, TimestampWithoutEndThatIsReadAsTheLastSecondIsRefused) {
  LetMisread("psqlodbcw.so", "infinity", "9999-12-31 23:59:59");
  AddRow("9999-12-31 23:59:59");
  AddRow("infinity");
  ExpectRefused();
}

TEST_F(DateDoubtsTest, TodayAndTheLastSecondAreReadAndOnlyTheyAreLookedAtAgain) {
  odbc->DriverName = "psqlodbcw.so";
  AddRow("2020-01-02 00:00:00");
  AddRow(Today());
  AddRow("9999-12-31 23:59:59");
  AddRow(std::nullopt);
  AddRow(Today() + " 12:00:00");
  EXPECT_EQ(Day(1), Variant(Date::Parse(Today())));
  EXPECT_EQ(odbc->CallsOf["SetPos"], 2);
  EXPECT_EQ(Day(2), Variant(Date::From(9999, 12, 31, 23, 59, 59)));
  EXPECT_TRUE(Day(3).IsNull());
  EXPECT_EQ(Day(4), Variant(Date::Parse(Today() + " 12:00:00")));
}

TEST_F(DateDoubtsTest, FailureOfTheSecondLookIsTheDrivers) {
  odbc->DriverName = "psqlodbcw.so";
  AddRow(Today());
  odbc->FailName = "SetPos";
  const auto error = Thrown([&] { Day(0); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Number(), 7) << error->what();
}

TEST_F(DateDoubtsTest, NullThatHasBeenWrittenIsRefused) {
  LetMisread("libmaodbc.so", "0000-00-00", "");
  AddRow(std::nullopt);
  AddRow("0000-00-00");
  ExpectRefused();
}

TEST_F(DateDoubtsTest, NullThatHasNotBeenWrittenIsNullInEveryBlock) {
  odbc->DriverName = "libmaodbc.so";
  for (int row = 0; row < 2000; ++row) row % 2 == 0 ? AddRow(std::nullopt) : AddRow("2020-01-02");
  const auto rows = OpenRows()->GetRows(2000);
  for (std::size_t row = 0; row < 2000; ++row) EXPECT_EQ(rows.Value(1, row).IsNull(), row % 2 == 0) << row;
}

TEST_F(DateDoubtsTest, DriverThatIsNotKnownIsTakenAtItsWord) {
  LetMisread("other.so", "infinity", Today());
  AddRow("infinity");
  EXPECT_EQ(Day(0), Variant(Date::Parse(Today())));
  EXPECT_EQ(odbc->CallsOf["SetPos"], 0);
}

TEST_F(DateDoubtsTest, DatesAreReadFromTheTextWhereAnyTextCanStand) {
  odbc->DriverName = "libsqlite3odbc.so";
  for (const auto* const text : {"2026-11-20 14:03:05.25", "11/20/2026", "14:03:05", ""}) AddRow(text);
  EXPECT_EQ(Day(0), Variant(Date::From({2026, 11, 20, 14, 3, 5, 250})));
  EXPECT_EQ(Day(1), Variant(Date::From(2026, 11, 20)));
  EXPECT_EQ(Day(2), Variant(Date::From(1899, 12, 30, 14, 3, 5)));
  EXPECT_TRUE(Day(3).IsNull());
}

TEST_F(DateDoubtsTest, TextThatIsNoDateIsRefused) {
  odbc->DriverName = "sqlite3odbc.so";
  AddRow("soon");
  ExpectRefused();
}

TEST_F(DateDoubtsTest, TextThatBeginsAsADateAndDoesNotFitIsRefused) {
  odbc->DriverName = "sqlite3odbc.so";
  AddRow("2026-11-20 14:03:05" + std::string(100, ' ') + "or later");
  ExpectRefused();
}

TEST_F(DateDoubtsTest, TimeKeepsItsFractionAndIsRefusedBeyondTheDay) {
  odbc->Columns = {{"id", 4}, {"day", 92}};
  for (const std::string driver : {"psqlodbcw.so", "libmaodbc.so", "sqlite3odbc.so"}) {
    odbc->DriverName = driver;
    odbc->Rows = {{"1", "14:03:05.75"}};
    EXPECT_EQ(Day(0), Variant(Date::From({1899, 12, 30, 14, 3, 5, 750}))) << driver;
    for (const std::string text : {"-01:02:03", "838:59:59", "24:00:00"}) {
      odbc->Rows = {{"1", text}};
      EXPECT_THROW(Day(0), Error) << driver << " " << text;
    }
  }
}

}  // namespace
}  // namespace velmoria::test
