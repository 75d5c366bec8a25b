#include "velmoria/runtime/date.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_failure.h"

namespace velmoria {
namespace {

TEST(DateTest, DaysCountFromDayZero) {
  const struct {
    int Year, Month, Day;
    double Days;
  } rows[] = {{1899, 12, 30, 0},   {1899, 12, 31, 1},      {1900, 1, 1, 2},      {1900, 3, 1, 61},
              {1998, 6, 1, 35947}, {2000, 2, 29, 36585},   {2000, 3, 1, 36586},  {2024, 12, 31, 45657},
              {1899, 12, 29, -1},  {1600, 2, 29, -109512}, {100, 1, 1, -657434}, {9999, 12, 31, 2958465}};
  for (const auto& row : rows) {
    const Date date = Date::From(row.Year, row.Month, row.Day);
    EXPECT_EQ(date.Days, row.Days) << row.Year;
    const DateParts parts = date.Parts();
    EXPECT_EQ(parts.Year, row.Year);
    EXPECT_EQ(parts.Month, row.Month);
    EXPECT_EQ(parts.Day, row.Day);
  }
}

TEST(DateTest, EveryDayOfACycleOfLeapYearsFollowsTheOneBefore) {
  DateParts before = Date{36524}.Parts();
  for (int day = 36525; day < 36524 + 146097; ++day) {
    const DateParts parts = Date{static_cast<double>(day)}.Parts();
    const bool next = parts.Day == before.Day + 1 && parts.Month == before.Month && parts.Year == before.Year;
    const bool month = parts.Day == 1 && before.Day >= 28 && parts.Month == before.Month % 12 + 1;
    ASSERT_TRUE(next || month) << day;
    ASSERT_EQ(Date::From(parts).Days, day);
    before = parts;
  }
  EXPECT_EQ(before.Year, 2399);
}

TEST(DateTest, BeforeDayZeroTheTimeStillCountsForwards) {
  EXPECT_DOUBLE_EQ(Date::From(1899, 12, 29, 6).Days, -1.25);
  EXPECT_EQ(Date{-1.25}.Parts().Hour, 6);
  EXPECT_EQ(Date{-1.75}.Parts().Day, 29);
  EXPECT_EQ(Date{-1.75}.AsText(), "1899-12-29 18:00:00");
  EXPECT_LT(Date{-1.25}, Date{-1.75});
  EXPECT_EQ(SecondsBetween(Date{-1.25}, Date{-1.75}), 12 * 3600);
  EXPECT_EQ(SecondsBetween(Date{-1.75}, Date{0}), 6 * 3600);
}

TEST(DateTest, FractionBelowDayZeroIsATimeOfDayZero) {
  EXPECT_EQ(Date{-0.25}.AsText(), "06:00:00");
  EXPECT_EQ(SecondsBetween(Date{-0.25}, Date{0.25}), 0);
}

TEST(DateTest, SecondsBetweenDaysOutOfBoundsStayNumbers) {
  EXPECT_EQ(SecondsBetween(Date{}, Date{std::nan("")}), 0);
  EXPECT_EQ(SecondsBetween(Date{1e300}, Date{1e301}), 0);
  EXPECT_GT(SecondsBetween(Date{-1e300}, Date{}), 0);
}

TEST(DateTest, DaysThatDoNotExistRaise5) {
  const DateParts rows[] = {{.Year = 1900, .Month = 2, .Day = 29},
                            {.Year = 99, .Month = 1, .Day = 1},
                            {.Year = 10000, .Month = 1, .Day = 1},
                            {.Year = 2000, .Month = 13, .Day = 1},
                            {.Year = 2000, .Month = 0, .Day = 1},
                            {.Year = 2000, .Month = 4, .Day = 31},
                            {.Year = 2000, .Month = 4, .Day = 0},
                            {.Hour = 24},
                            {.Minute = 60},
                            {.Second = -1},
                            {.Millisecond = 1000}};
  for (const DateParts& parts : rows) {
    ExpectInvalidArgument([&] { Date::From(parts); });
  }
}

TEST(DateTest, PartsAreRoundedToTheMillisecond) {
  const Date date = Date::From({2026, 11, 20, 9, 0, 1, 999});
  EXPECT_EQ(date.Parts().Second, 1);
  EXPECT_EQ(date.Parts().Millisecond, 999);
  EXPECT_EQ(Date{date.Days + 0.0006 / 86400}.Parts().Second, 2);
  const DateParts midnight = Date{45000.9999999999}.Parts();
  EXPECT_EQ(midnight.Day, Date{45001}.Parts().Day);
  EXPECT_EQ(midnight.Hour, 0);
}

TEST(DateTest, DaysOutOfBoundsHaveNoParts) {
  for (const double days : {-657435.0, 2958466.0, 2958465.9999999995, 1e300, std::nan("")}) {
    ExpectOverflow([&] { Date{days}.Parts(); });
  }
  EXPECT_EQ(Date{-657434.5}.Parts().Year, 100);
}

TEST(DateTest, SecondsBetweenCountsBoundaries) {
  const Date nine = Date::From({2026, 11, 20, 9, 0, 0, 0});
  const struct {
    int FromMillisecond;
    int ToSecond, ToMillisecond;
    std::int64_t Seconds;
  } rows[] = {{0, 0, 400, 0}, {900, 1, 100, 1}, {0, 0, 999, 0}, {999, 1, 0, 1}, {0, 59, 0, 59}};
  for (const auto& row : rows) {
    const Date from = Date::From({2026, 11, 20, 9, 0, 0, row.FromMillisecond});
    const Date to = Date::From({2026, 11, 20, 9, 0, row.ToSecond, row.ToMillisecond});
    EXPECT_EQ(SecondsBetween(from, to), row.Seconds);
    EXPECT_EQ(SecondsBetween(to, from), -row.Seconds);
  }
  EXPECT_EQ(SecondsBetween(nine, Date{nine.Days + 1}), 86400);
}

TEST(DateTest, ADateAHairBelowItsSecondIsInThatSecond) {
  const Date exact = Date::From(2026, 11, 20, 9, 0, 1);
  const Date below{std::nextafter(exact.Days, 0)};
  EXPECT_EQ(SecondsBetween(below, exact), 0);
  EXPECT_EQ(below.AsText(), "2026-11-20 09:00:01");
}

TEST(DateTest, PrintsDateTimeOrBoth) {
  const struct {
    DateParts Parts;
    const char* Text;
    const char* General;
  } rows[] = {{{2026, 11, 20, 14, 3, 5, 0}, "2026-11-20 14:03:05", "11/20/26 2:03:05 PM"},
              {{1998, 6, 1, 9, 14, 2, 0}, "1998-06-01 09:14:02", "6/1/98 9:14:02 AM"},
              {{2026, 11, 20, 0, 0, 0, 0}, "2026-11-20", "11/20/26"},
              {{1899, 12, 30, 14, 3, 5, 0}, "14:03:05", "2:03:05 PM"},
              {{1899, 12, 30, 0, 0, 0, 0}, "00:00:00", "12:00:00 AM"},
              {{2026, 11, 20, 12, 0, 0, 999}, "2026-11-20 12:00:00", "11/20/26 12:00:00 PM"},
              {{2026, 11, 20, 0, 0, 0, 500}, "2026-11-20", "11/20/26"},
              {{1929, 12, 31, 0, 0, 0, 0}, "1929-12-31", "12/31/1929"},
              {{1930, 1, 1, 0, 0, 0, 0}, "1930-01-01", "1/1/30"},
              {{2029, 1, 1, 0, 0, 0, 0}, "2029-01-01", "1/1/29"},
              {{2030, 1, 1, 0, 0, 0, 0}, "2030-01-01", "1/1/2030"},
              {{2005, 1, 1, 0, 0, 1, 0}, "2005-01-01 00:00:01", "1/1/05 12:00:01 AM"},
              {{1899, 6, 30, 0, 5, 0, 0}, "1899-06-30 00:05:00", "6/30/1899 12:05:00 AM"},
              {{123, 4, 5, 0, 0, 0, 0}, "0123-04-05", "4/5/0123"}};
  for (const auto& row : rows) {
    const Date date = Date::From(row.Parts);
    EXPECT_EQ(date.AsText(), row.Text);
    EXPECT_EQ(date.AsGeneralDate(), row.General);
  }
}

TEST(DateTest, ReadsBackWhatItPrints) {
  for (const double days : {0.0, 0.25, 35947.0, 35947.3847453704, 46000.999988, -1.25, -657434.0, 2958465.5}) {
    const Date date{days};
    EXPECT_EQ(SecondsBetween(Date::Parse(date.AsText()), date), 0) << days;
    EXPECT_EQ(SecondsBetween(Date::Parse(date.AsGeneralDate()), date), 0) << days;
  }
}

TEST(DateTest, ReadsEveryForm) {
  const struct {
    const char* Text;
    DateParts Parts;
  } rows[] = {{"2026-11-20", {2026, 11, 20, 0, 0, 0, 0}},
              {" 2026-11-20 14:03 ", {2026, 11, 20, 14, 3, 0, 0}},
              {"2026-11-20T14:03:05", {2026, 11, 20, 14, 3, 5, 0}},
              {"2026-11-20 14:03:05.5", {2026, 11, 20, 14, 3, 5, 500}},
              {"2026-11-20 14:03:05.123999", {2026, 11, 20, 14, 3, 5, 123}},
              {"14:03", {1899, 12, 30, 14, 3, 0, 0}},
              {"9:03:05", {1899, 12, 30, 9, 3, 5, 0}},
              {"6/1/1998 9:14:02 AM", {1998, 6, 1, 9, 14, 2, 0}},
              {"06/01/1998 09:14:02 pm", {1998, 6, 1, 21, 14, 2, 0}},
              {"6/1/98", {1998, 6, 1, 0, 0, 0, 0}},
              {"6/1/29", {2029, 6, 1, 0, 0, 0, 0}},
              {"6/1/30", {1930, 6, 1, 0, 0, 0, 0}},
              {"12:00:00 AM", {1899, 12, 30, 0, 0, 0, 0}},
              {"12:00 PM", {1899, 12, 30, 12, 0, 0, 0}},
              {"9:14PM", {1899, 12, 30, 21, 14, 0, 0}},
              {"2026-11-20    14:03", {2026, 11, 20, 14, 3, 0, 0}},
              {"2026-11-20 2:03:05.25 pm", {2026, 11, 20, 14, 3, 5, 250}},
              {"6/1/1998 14:02", {1998, 6, 1, 14, 2, 0, 0}},
              {"2000-02-29", {2000, 2, 29, 0, 0, 0, 0}}};
  for (const auto& row : rows) EXPECT_EQ(Date::Parse(row.Text).Days, Date::From(row.Parts).Days) << row.Text;
}

TEST(DateTest, AnythingElseRaises13) {
  for (const char* text : {"",
                           "today",
                           "2026-11-31",
                           "1900-02-29",
                           "2026-1-1",
                           "26-11-20",
                           "2026-11-20x",
                           "20.11.2026",
                           "13/1/1998",
                           "6/1/998",
                           "24:00",
                           "12:60",
                           "9:5",
                           "13:00 PM",
                           "0:30 AM",
                           "2026-11-20 9",
                           "6/1/1998T9:14",
                           "45000",
                           "2026-11-20 10:00:00.",
                           "9:14 XM",
                           "99999-01-01",
                           "1998",
                           "1998-06",
                           "1998-06-",
                           "1998-6-01",
                           "1998/06/01",
                           "6",
                           "6/",
                           "6/1",
                           "6/1/",
                           "6/123/1998",
                           "6-1-1998",
                           "9",
                           "9:",
                           "9:14:",
                           "9:14:2",
                           "9:14:02.1234567890",
                           "PM",
                           "6/1/1998 PM",
                           "1998-06-01T",
                           "1998-06-01T 9:14",
                           "1998-06-01 9:14 AMx",
                           "0099-01-01"}) {
    SCOPED_TRACE(text);
    ExpectTypeMismatch([&] { Date::Parse(text); });
  }
}

}  // namespace
}  // namespace velmoria
