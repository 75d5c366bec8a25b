#include "velmoria/platform/odbc/date_values.h"

#include <gtest/gtest.h>
#include <sql.h>
#include <sqlext.h>

#include "tests/support/expect_raised.h"
#include "velmoria/platform/odbc/raw_values.h"
#include "velmoria/runtime/error.h"

namespace velmoria::odbc {
namespace {

velmoria::Date At(int hour, int minute, int second = 0, int millisecond = 0) {
  return Date::From({2026, 11, 20, hour, minute, second, millisecond});
}

velmoria::Date Time(int hour, int minute, int second = 0, int millisecond = 0) {
  return Date::From({1899, 12, 30, hour, minute, second, millisecond});
}

TEST(DateValuesTest, TextOfADateIsReadInEveryFormThatDriversWrite) {
  const struct {
    const char* Text;
    velmoria::Date Read;
  } cases[] = {
      {"2026-11-20", At(0, 0)},
      {"2026-11-20 14:03:05", At(14, 3, 5)},
      {"2026-11-20T14:03:05", At(14, 3, 5)},
      {"2026-11-20 00:00:00.000000", At(0, 0)},
      {"2026-11-20 14:03:05.5", At(14, 3, 5, 500)},
      {"2026-11-20 14:03:05.25", At(14, 3, 5, 250)},
      {"2026-11-20 14:03:05.123", At(14, 3, 5, 123)},
      {"2026-11-20 14:03:05.1239", At(14, 3, 5, 123)},
      {"2026-11-20 14:03:05.000999999", At(14, 3, 5)},
      {"2026-11-20 14:03", At(14, 3)},
      {"2026-11-20  14:03:05", At(14, 3, 5)},
      {" 2026-11-20 ", At(0, 0)},
      {"2026-11-20 14:03:05Z", At(14, 3, 5)},
      {"2026-11-20T14:03:05.250Z", At(14, 3, 5, 250)},
      {"2026-11-20 14:03+02", At(14, 3)},
      {"2026-11-20 14:03:05+0530", At(14, 3, 5)},
      {"2026-11-20 14:03:05.5-07:30", At(14, 3, 5, 500)},
      {"2026-11-20 14:03:05 +02:00", At(14, 3, 5)},
      {"11/20/2026", At(0, 0)},
      {"11/20/2026 2:03:05 PM", At(14, 3, 5)},
      {"11/20/26 2:03:05 PM", At(14, 3, 5)},
      {"14:03:05", Time(14, 3, 5)},
      {"14:03:05.75", Time(14, 3, 5, 750)},
      {"14:03:05.750000", Time(14, 3, 5, 750)},
      {"14:03", Time(14, 3)},
      {"2:03:05 PM", Time(14, 3, 5)},
      {"00:00:00", Time(0, 0)},
      {"0100-01-01", Date::From(100, 1, 1)},
      {"2024-02-29", Date::From(2024, 2, 29)},
      {"9999-12-31 23:59:59.999999", Date::From({9999, 12, 31, 23, 59, 59, 999})},
  };
  for (const auto& c : cases) EXPECT_EQ(ReadDateText(c.Text).Days, c.Read.Days) << c.Text;
}

TEST(DateValuesTest, TextThatIsNoDateRaises5) {
  for (const char* const text : {
           "",
           " ",
           "soon",
           "today",
           "infinity",
           "-infinity",
           "0000-00-00",
           "0000-00-00 00:00:00",
           "1234-00-00",
           "2026-02-30",
           "2025-02-29",
           "2026-13-01",
           "2026-11-00",
           "0099-12-31",
           "12345-01-01",
           "-0044-03-15",
           "0044-03-15 BC",
           "1044-03-15 BC",
           "1044-03-15 01:02:03 BC",
           "2026-11-20 24:00:00",
           "2026-11-20 14:60:00",
           "2026-11-20 14:03:60",
           "24:00:00",
           "25:00:00",
           "838:59:59",
           "-01:02:03",
           "-00:00:01",
           "2026-11-2x",
           "2026-11-20x14:03:05",
           "2026-11-20 14:03:05.",
           "2026-11-20 14:03:05.x",
           "2026-11-20 14:03:05.1234567890",
           "2026-11-20 14:03:05,5",
           "2026-11-20 14:03:05 junk",
           "2026-11-20 14:03:05+2",
           "2026-11-20 14:03:05+ab:cd",
           "2026-11-20 14:03:05+02:00:",
           "2026-11-20Z",
           "14:03:05Z",
           "2026/11/20",
           "20.11.2026",
           "20/11/2026",
           "20261120",
           "20261120 14:03:05",
           "Nov 20 2026 2:03:05PM",
           "1700000000",
           "46000.5",
           "1e3",
           "X'01'",
           "/:/:-/:-/: /:::/",  // the characters that lie around the digits
       }) {
    const auto error = test::Thrown([&] { ReadDateText(text); });
    ASSERT_TRUE(error) << text;
    EXPECT_EQ(error->Number(), static_cast<std::int32_t>(RuntimeFailure::InvalidArgument)) << text;
  }
}

TEST(DateValuesTest, EveryDayOfItsTextIsTheDayItself) {
  for (double days = Date::FirstDay; days < Date::EndOfDays; days += 137) {
    const velmoria::Date date{days};
    EXPECT_EQ(ReadDateText(DateText(date, SQL_TYPE_TIMESTAMP)).Days, days);
  }
}

TEST(DateValuesTest, StructureGivesBackWhatWasStored) {
  std::byte place[sizeof(SQL_TIMESTAMP_STRUCT)];
  for (const auto date : {At(14, 3, 5, 123), At(0, 0), Date::From(100, 1, 1), Date::From(9999, 12, 31, 23, 59, 59)}) {
    StoreDate(place, SQL_C_TYPE_TIMESTAMP, date);
    EXPECT_EQ(LoadDate(place, SQL_C_TYPE_TIMESTAMP).Days, date.Days);
  }
  StoreDate(place, SQL_C_TYPE_TIME, Time(14, 3, 5));
  EXPECT_EQ(LoadDate(place, SQL_C_TYPE_TIME).Days, Time(14, 3, 5).Days);
}

TEST(DateValuesTest, StructureThatNoCalendarHasRaises5) {
  std::byte place[sizeof(SQL_TIMESTAMP_STRUCT)];
  for (const SQL_TIMESTAMP_STRUCT stamp :
       {SQL_TIMESTAMP_STRUCT{2026, 2, 30, 0, 0, 0, 0}, SQL_TIMESTAMP_STRUCT{-9999, 1, 1, 0, 0, 0, 0},
        SQL_TIMESTAMP_STRUCT{12345, 1, 1, 0, 0, 0, 0}, SQL_TIMESTAMP_STRUCT{99, 1, 1, 0, 0, 0, 0}}) {
    Store(place, stamp);
    EXPECT_THROW(LoadDate(place, SQL_C_TYPE_TIMESTAMP), Error) << stamp.year;
  }
  Store(place, SQL_TIME_STRUCT{24, 0, 0});
  EXPECT_THROW(LoadDate(place, SQL_C_TYPE_TIME), Error);
}

TEST(DateValuesTest, TextForAParameterIsThatOfItsType) {
  const auto date = At(14, 3, 5, 120);
  EXPECT_EQ(DateText(date, SQL_TYPE_TIMESTAMP), "2026-11-20 14:03:05.120");
  EXPECT_EQ(DateText(date, SQL_TYPE_DATE), "2026-11-20");
  EXPECT_EQ(DateText(date, SQL_TYPE_TIME), "14:03:05.120");
  EXPECT_EQ(DateText(Date::From(100, 1, 2), SQL_TYPE_TIMESTAMP), "0100-01-02 00:00:00.000");
}

}  // namespace
}  // namespace velmoria::odbc
