#include <string>

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_texts.h"
#include "velmoria/runtime/format.h"

namespace velmoria {
namespace {

const Date kAfternoon = Date::From(2026, 11, 21, 14, 3, 5);  // a Saturday
const Date kMorning = Date::From(1998, 6, 1, 9, 4, 2);       // a Monday

TEST(FormatDateTest, DaysArePrintedByTheirNumberOfLetters) {
  const PatternRow rows[] = {{"d", "1"},
                             {"dd", "01"},
                             {"ddd", "Mon"},
                             {"dddd", "Monday"},
                             {"D", "1"},
                             {"dDd", "Mon"},
                             {"ddddd", "6/1/98"},
                             {"dddddd", "Monday, June 1, 1998"},
                             {"ddddddd", "Monday, June 1, 19981"}};
  ExpectTexts(kMorning, rows);
  EXPECT_EQ(FormatText(Date::From(2026, 12, 31), "d dd"), "31 31");
}

TEST(FormatDateTest, NamesOfAllDays) {
  const char* const names[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
  for (int day = 0; day < 7; ++day) {
    const Date date = Date::From(2026, 11, 22 + day);
    const std::string name = names[day];
    EXPECT_EQ(FormatText(date, "dddd"), name);
    EXPECT_EQ(FormatText(date, "ddd"), name.substr(0, 3));
    EXPECT_EQ(FormatText(date, "w"), std::to_string(day + 1));
  }
}

TEST(FormatDateTest, NamesOfAllMonths) {
  const char* const names[] = {"January", "February", "March",     "April",   "May",      "June",
                               "July",    "August",   "September", "October", "November", "December"};
  for (int month = 1; month <= 12; ++month) {
    const Date date = Date::From(2026, month, 15);
    const std::string name = names[month - 1];
    EXPECT_EQ(FormatText(date, "mmmm"), name);
    EXPECT_EQ(FormatText(date, "mmm"), name.substr(0, 3));
    EXPECT_EQ(FormatText(date, "m"), std::to_string(month));
    EXPECT_EQ(FormatText(date, "mm"), std::to_string(100 + month).substr(1));
    EXPECT_EQ(FormatText(date, "q"), std::to_string(1 + (month - 1) / 3));
  }
}

TEST(FormatDateTest, YearsArePrintedByTheirNumberOfLetters) {
  const FormatRow rows[] = {{kMorning, "yy", "98"},
                            {kMorning, "yyyy", "1998"},
                            {kMorning, "YYYY", "1998"},
                            {kMorning, "yyy", "98152"},
                            {kMorning, "yyyyy", "1998152"},
                            {Date::From(2005, 1, 2), "yy", "05"},
                            {Date::From(2000, 1, 2), "yy", "00"},
                            {Date::From(100, 1, 1), "yy", "00"},
                            {Date::From(100, 1, 1), "yyyy", "0100"},
                            {Date::From(987, 1, 1), "yyyy", "0987"},
                            {Date::From(9999, 1, 1), "yy yyyy", "99 9999"}};
  ExpectTexts(rows);
}

TEST(FormatDateTest, DaysOfTheYearCountTheLeapDay) {
  const FormatRow rows[] = {{Date::From(2026, 1, 1), "y", "1"},
                            {Date::From(2026, 12, 31), "y", "365"},
                            {Date::From(2024, 12, 31), "y", "366"},
                            {Date::From(2024, 2, 29), "y", "60"},
                            {Date::From(2024, 3, 1), "y", "61"},
                            {Date::From(2026, 3, 1), "y", "60"},
                            {Date::From(1900, 3, 1), "y", "60"},
                            {Date::From(2000, 3, 1), "y", "61"},
                            {kMorning, "y", "152"}};
  ExpectTexts(rows);
}

TEST(FormatDateTest, WeeksAtTheEndsOfYears) {
  const ValueRow rows[] = {
      {Date::From(2022, 12, 31), "53"}, {Date::From(2023, 1, 1), "1"},    {Date::From(2023, 1, 7), "1"},
      {Date::From(2023, 1, 8), "2"},    {Date::From(2023, 12, 30), "52"}, {Date::From(2023, 12, 31), "53"},
      {Date::From(2024, 1, 1), "1"},    {Date::From(2024, 1, 6), "1"},    {Date::From(2024, 1, 7), "2"},
      {Date::From(2024, 12, 31), "53"}, {Date::From(2026, 1, 1), "1"},    {Date::From(2026, 1, 3), "1"},
      {Date::From(2026, 1, 4), "2"},    {Date::From(2000, 1, 1), "1"},    {Date::From(2000, 1, 2), "2"},
      {Date::From(2000, 12, 30), "53"}, {Date::From(2000, 12, 31), "54"}, {Date::From(2011, 12, 31), "53"},
      {Date::From(100, 1, 1), "1"},     {Date::From(100, 1, 3), "2"},     {Date::From(9999, 12, 31), "53"}};
  ExpectTexts("ww", rows);
  EXPECT_EQ(FormatText(kMorning, "ww w www"), "23 2 232");
}

// Walks day by day through a whole cycle of the calendar with nothing but counting.
TEST(FormatDateTest, EveryDayOfFourHundredYearsAgreesWithCounting) {
  double days = Date::From(1800, 1, 1).Days;
  int weekday = 4;  // a Wednesday
  for (int year = 1800; year < 2200; ++year) {
    int week = 1;
    const int length = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0 ? 366 : 365;
    for (int day = 1; day <= length; ++day, ++days) {
      const std::string expected =
          std::to_string(year) + " " + std::to_string(day) + " " + std::to_string(weekday) + " " + std::to_string(week);
      ASSERT_EQ(FormatText(Date{days}, "yyyy y w ww"), expected) << days;
      weekday = weekday % 7 + 1;
      if (weekday == 1) ++week;
    }
  }
}

TEST(FormatDateTest, TheEndsOfTheCalendar) {
  const PatternRow first[] = {
      {"yyyy-mm-dd hh:nn:ss", "0100-01-01 00:00:00"}, {"dddd w y ww q", "Friday 6 1 1 1"}, {"c", "1/1/0100"},
      {"dddddd", "Friday, January 1, 0100"},          {"General Date", "1/1/0100"},        {"h AM/PM", "12 AM"}};
  ExpectTexts(Date::From(100, 1, 1), first);
  const PatternRow last[] = {{"yyyy-mm-dd hh:nn:ss", "9999-12-31 23:59:59"},
                             {"dddd w y ww q", "Friday 6 365 53 4"},
                             {"c", "12/31/9999 11:59:59 PM"},
                             {"h AM/PM", "11 PM"}};
  ExpectTexts(Date::From(9999, 12, 31, 23, 59, 59), last);
  EXPECT_EQ(FormatText(-657434, "yyyy-mm-dd"), "0100-01-01");
  EXPECT_EQ(FormatText(-657434.75, "yyyy-mm-dd hh"), "0100-01-01 18");
  EXPECT_EQ(FormatText(2958465, "yyyy-mm-dd"), "9999-12-31");
}

TEST(FormatDateTest, BeforeDayZeroTheTimeStillRunsForwards) {
  const FormatRow rows[] = {
      {-0.25, "yyyy-mm-dd hh:nn", "1899-12-30 06:00"},
      {-1, "yyyy-mm-dd hh:nn", "1899-12-29 00:00"},
      {-1.25, "yyyy-mm-dd hh:nn", "1899-12-29 06:00"},
      {-1.75, "yyyy-mm-dd h AM/PM", "1899-12-29 6 PM"},
      {Date::From(1776, 7, 4, 18, 30), "dddd, mmmm d, yyyy h:nn AM/PM", "Thursday, July 4, 1776 6:30 PM"},
      {Date::From(1899, 12, 29, 23, 59, 59), "c", "12/29/1899 11:59:59 PM"}};
  ExpectTexts(rows);
}

TEST(FormatDateTest, DayZeroIsATimeAlone) {
  const FormatRow rows[] = {{Date{0}, "c", "12:00:00 AM"},
                            {Date{0.25}, "c", "6:00:00 AM"},
                            {Date{0.25}, "ddddd", "12/30/1899"},
                            {Date{0.25}, "ddddd ttttt", "12/30/1899 6:00:00 AM"},
                            {Date{1}, "c", "12/31/1899"},
                            {kMorning, "c", "6/1/98 9:04:02 AM"},
                            {Date::From(1998, 6, 1), "c", "6/1/98"},
                            {kMorning, "C", "6/1/98 9:04:02 AM"},
                            {kMorning, "(c)", "(6/1/98 9:04:02 AM)"}};
  ExpectTexts(rows);
}

TEST(FormatDateTest, ShortYearsAreThoseOfTheNearestCentury) {
  const ValueRow rows[] = {{Date::From(1929, 12, 31), "12/31/1929"},
                           {Date::From(1930, 1, 1), "1/1/30"},
                           {Date::From(2029, 12, 31), "12/31/29"},
                           {Date::From(2030, 1, 1), "1/1/2030"}};
  ExpectTexts("ddddd", rows);
  ExpectTexts("Short Date", rows);
}

TEST(FormatDateTest, LeapDaysArePrintedAsDaysOfTheirYear) {
  const FormatRow rows[] = {{Date::From(2024, 2, 29), "dddd, mmmm d", "Thursday, February 29"},
                            {Date::From(2000, 2, 29), "ddd d.m.yyyy", "Tue 29.2.2000"},
                            {Date{Date::From(2026, 2, 28).Days + 1}, "m/d", "3/1"},
                            {Date{Date::From(1900, 2, 28).Days + 1}, "m/d", "3/1"},
                            {60, "mm/dd/yyyy", "02/28/1900"},
                            {61, "mm/dd/yyyy", "03/01/1900"}};
  ExpectTexts(rows);
}

TEST(FormatDateTest, HoursMinutesAndSecondsArePrintedByTheirNumberOfLetters) {
  const FormatRow rows[] = {{kMorning, "h", "9"},
                            {kMorning, "hh", "09"},
                            {kMorning, "n", "4"},
                            {kMorning, "nn", "04"},
                            {kMorning, "s", "2"},
                            {kMorning, "ss", "02"},
                            {kMorning, "H:N:S", "9:4:2"},
                            {kMorning, "ttttt", "9:04:02 AM"},
                            {kMorning, "TTTTT", "9:04:02 AM"},
                            {kMorning, "t tttt", "t tttt"},
                            {kMorning, "tttttt", "9:04:02 AMt"},
                            {kAfternoon, "h:n:s", "14:3:5"},
                            {kAfternoon, "hh:nn:ss", "14:03:05"},
                            {kAfternoon, "hhnnss", "140305"},
                            {kAfternoon, "ttttt", "2:03:05 PM"},
                            {Date::From(2026, 1, 1), "h:nn", "0:00"},
                            {Date::From(2026, 1, 1), "hh:nn:ss", "00:00:00"}};
  ExpectTexts(rows);
}

TEST(FormatDateTest, TheSecondIsTheOneThatHasBegun) {
  const FormatRow rows[] = {{Date::From({2026, 11, 20, 9, 0, 59, 999}), "h:nn:ss", "9:00:59"},
                            {Date::From({2026, 11, 20, 23, 59, 59, 999}), "d h:nn:ss", "20 23:59:59"},
                            {Date::From({2026, 11, 20, 0, 0, 0, 999}), "c", "11/20/26"}};
  ExpectTexts(rows);
}

TEST(FormatDateTest, EveryHourIsPrintedByBothClocks) {
  for (int hour = 0; hour < 24; ++hour) {
    const Date date = Date::From(2026, 11, 20, hour, 30);
    const std::string twelve = std::to_string(hour % 12 == 0 ? 12 : hour % 12);
    const std::string half = hour < 12 ? "AM" : "PM";
    EXPECT_EQ(FormatText(date, "h"), std::to_string(hour));
    EXPECT_EQ(FormatText(date, "h AM/PM"), twelve + " " + half);
    EXPECT_EQ(FormatText(date, "Long Time"), twelve + ":30:00 " + half);
    EXPECT_EQ(FormatText(date, "A/P"), half.substr(0, 1));
  }
}

TEST(FormatDateTest, HalvesOfTheDayArePrintedAsTheyAreSpelt) {
  const PatternRow morning[] = {{"h:nn AM/PM", "9:04 AM"}, {"h:nn am/pm", "9:04 am"}, {"h A/P", "9 A"},
                                {"h a/p", "9 a"},          {"h AMPM", "9 AM"},        {"h ampm", "9 AM"},
                                {"h Am/Pm", "9 AM"},       {"h aM/pM", "9 am"},       {"hAMPM", "9AM"}};
  ExpectTexts(kMorning, morning);
  const PatternRow afternoon[] = {
      {"h:nn AM/PM", "2:03 PM"}, {"hh:nn am/pm", "02:03 pm"}, {"h A/P", "2 P"}, {"h a/p", "2 p"},
      {"AMPM hh", "PM 02"},      {"ampm h", "PM 2"},          {"AM/PM", "PM"},  {"a/p", "p"}};
  ExpectTexts(kAfternoon, afternoon);
}

TEST(FormatDateTest, ALiteralHalfLeavesTheHoursAt24) {
  const PatternRow rows[] = {
      {"h \"AM/PM\"", "14 AM/PM"}, {"h \\A/P", "14 A/P"}, {"h AM", "14 A3"}, {"h a p", "14 a p"}};
  ExpectTexts(kAfternoon, rows);
}

TEST(FormatDateTest, MonthLettersBehindTheHourAreMinutes) {
  const PatternRow rows[] = {{"hh:mm:ss", "14:03:05"},
                             {"h:m", "14:3"},
                             {"h:M", "14:3"},
                             {"hhmm", "1403"},
                             {"hh \"and\" mm", "14 and 03"},
                             {"mm/dd hh:mm", "11/21 14:03"},
                             {"h:mm m", "14:03 11"},
                             {"hh mmm", "14 Nov"},
                             {"hh mmmm", "14 November"},
                             {"hh:ss mm", "14:05 11"},
                             {"mm:ss", "11:05"},
                             {"hh:nn mm", "14:03 11"},
                             {"h AM/PM m/d", "2 PM 11/21"},
                             {"h c m", "14 11/21/26 2:03:05 PM 11"},
                             {"h:mm AM/PM", "2:03 PM"}};
  ExpectTexts(kAfternoon, rows);
}

TEST(FormatDateTest, OtherCharactersStandForThemselves) {
  const PatternRow rows[] = {{"d/m/yyyy", "1/6/1998"},
                             {"d.m.yyyy", "1.6.1998"},
                             {"yyyy-mm-dd", "1998-06-01"},
                             {"YYYY-MM-DD", "1998-06-01"},
                             {"yyyymmdd", "19980601"},
                             {"(d)", "(1)"},
                             {"$d,d", "$1,1"},
                             {"d%", "1%"},
                             {"d E+d", "1 E+1"},
                             {"d;d", "1;1"},
                             {"d<>!", "1<>!"},
                             {"dddd, mmmm d, yyyy", "Monday, June 1, 1998"},
                             {"ddd, dd-mmm-yyyy", "Mon, 01-Jun-1998"},
                             {"\"Q\"q yyyy", "Q2 1998"},
                             {"qq", "22"}};
  ExpectTexts(kMorning, rows);
}

TEST(FormatDateTest, NumbersAreDaysAndTextsAreDates) {
  const FormatRow rows[] = {{35947, "yyyy-mm-dd", "1998-06-01"},
                            {std::int16_t{0}, "yyyy-mm-dd", "1899-12-30"},
                            {35947.5F, "yyyy-mm-dd hh", "1998-06-01 12"},
                            {Currency{359475000}, "yyyy-mm-dd hh", "1998-06-01 12"},
                            {Decimal::Parse("35947.75"), "h AM/PM", "6 PM"},
                            {Byte{255}, "yyyy-mm-dd", "1900-09-11"},
                            {true, "yyyy-mm-dd", "1899-12-29"},
                            {"1998-06-01", "d mmm yy", "1 Jun 98"},
                            {"1998-06-01 09:04:02", "h:nn", "9:04"},
                            {" 6/1/98 ", "yyyy-mm-dd", "1998-06-01"},
                            {"2/29/2024", "dddd", "Thursday"},
                            {"12:15 AM", "hh:nn", "00:15"},
                            {"9999-12-31", "y", "365"}};
  ExpectTexts(rows);
}

}  // namespace
}  // namespace velmoria
