#include "velmoria/runtime/format.h"

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_failure.h"

namespace velmoria {
namespace {

struct Row {
  Variant Value;
  const char* Pattern;
  const char* Text;
};

template <std::size_t Count>
void ExpectTexts(const Row (&rows)[Count]) {
  for (const Row& row : rows) {
    EXPECT_EQ(FormatText(row.Value, row.Pattern), row.Text)
        << row.Value.TypeName() << " under " << testing::PrintToString(row.Pattern);
  }
}

const Date kAfternoon = Date::From(2026, 11, 21, 14, 3, 5);  // a Saturday
const Date kMorning = Date::From(1998, 6, 1, 9, 4, 2);       // a Monday

TEST(FormatTest, NamedNumberFormats) {
  const Row rows[] = {{1234.5, "General Number", "1234.5"},
                      {1234.5, "Currency", "$1,234.50"},
                      {-1234.5, "Currency", "($1,234.50)"},
                      {0, "Currency", "$0.00"},
                      {1234.5, "Fixed", "1234.50"},
                      {-0.5, "Fixed", "-0.50"},
                      {1234567.891, "Standard", "1,234,567.89"},
                      {999, "Standard", "999.00"},
                      {0.12, "Percent", "12.00%"},
                      {1234.5, "Scientific", "1.23E+03"},
                      {0.000123, "Scientific", "1.23E-04"},
                      {Currency{12345000}, "currency", "$1,234.50"},
                      {"1234.5", "STANDARD", "1,234.50"}};
  ExpectTexts(rows);
}

TEST(FormatTest, NamedBooleanFormats) {
  const Row rows[] = {{true, "Yes/No", "Yes"}, {false, "Yes/No", "No"},     {5, "Yes/No", "Yes"},
                      {-0.5, "Yes/No", "Yes"}, {0, "True/False", "False"},  {true, "True/False", "True"},
                      {true, "On/Off", "On"},  {Decimal{}, "on/off", "Off"}};
  ExpectTexts(rows);
}

TEST(FormatTest, NamedDateFormats) {
  const Row rows[] = {{kAfternoon, "General Date", "11/21/26 2:03:05 PM"},
                      {kAfternoon, "Long Date", "Saturday, November 21, 2026"},
                      {kAfternoon, "Medium Date", "21-Nov-26"},
                      {kAfternoon, "Short Date", "11/21/26"},
                      {kAfternoon, "Long Time", "2:03:05 PM"},
                      {kAfternoon, "Medium Time", "02:03 PM"},
                      {kAfternoon, "Short Time", "14:03"},
                      {kMorning, "General Date", "6/1/98 9:04:02 AM"},
                      {kMorning, "Short Time", "09:04"},
                      {"1998-06-01", "Long Date", "Monday, June 1, 1998"}};
  ExpectTexts(rows);
}

TEST(FormatTest, DigitsZerosAndPoints) {
  const Row rows[] = {{5, "0", "5"},
                      {5, "000", "005"},
                      {1234, "0", "1234"},
                      {0, "#", ""},
                      {0, "0", "0"},
                      {0.5, "#.##", ".5"},
                      {0.5, "0.##", "0.5"},
                      {5, "0.#", "5."},
                      {5, "0.00", "5.00"},
                      {1.2345, "0.0#", "1.23"},
                      {1.2, "0.0#", "1.2"},
                      {1.5, "0.0##0", "1.5000"},
                      {12.5, ".00", "12.50"},
                      {-5, "0.0", "-5.0"},
                      {42, "#0#", "42"},
                      {7, "#00", "07"},
                      {123456789, "000-00-0000", "123-45-6789"},
                      {5551234, "###-####", "555-1234"},
                      {1.5F, "0.00", "1.50"},
                      {true, "0", "-1"},
                      {Decimal::Parse("79228162514264337593543950335"), "0", "79228162514264337593543950335"}};
  ExpectTexts(rows);
}

TEST(FormatTest, HalvesRoundAwayFromZero) {
  const Row rows[] = {
      {0.5, "0", "1"},         {1.5, "0", "2"},         {2.5, "0", "3"},      {-2.5, "0", "-3"},
      {0.125, "0.00", "0.13"}, {1.005, "0.00", "1.01"}, {0.4999, "0", "0"},   {99.995, "0.00", "100.00"},
      {9.99, "0.0", "10.0"},   {0.05, "0.0", "0.1"},    {0.04, "0.0", "0.0"}, {0.6, "#", "1"}};
  ExpectTexts(rows);
}

TEST(FormatTest, ThousandsAreGroupedOrLeftOut) {
  const Row rows[] = {{1234567, "#,##0", "1,234,567"},   {123, "#,##0", "123"},          {1234567, "0,0", "1,234,567"},
                      {5, "000,000", "000,005"},         {1234567, "0,", "1235"},        {1234567, "0,,", "1"},
                      {1234567, "#,##0,", "1,235"},      {1234567, "0.0,", "1234567.0"}, {1234567, "0,.00", "1234.57"},
                      {-1234.5, "#,##0.00", "-1,234.50"}};
  ExpectTexts(rows);
}

TEST(FormatTest, PercentsMultiplyByAHundred) {
  const Row rows[] = {{0.256, "0%", "26%"}, {0.256, "0.0%", "25.6%"}, {1, "0%", "100%"},
                      {-0.05, "0%", "-5%"}, {0.5, "0\\%", "1%"},      {0.01, "0%%", "100%%"}};
  ExpectTexts(rows);
}

TEST(FormatTest, ScientificForms) {
  const Row rows[] = {{12345, "0.00E+00", "1.23E+04"}, {12345, "0.00E-00", "1.23E04"},
                      {0.00012, "0.0e-0", "1.2e-4"},   {9.996, "0.00E+00", "1.00E+01"},
                      {0, "0.00E+00", "0.00E+00"},     {12345, "##0.0E+0", "123.5E+2"},
                      {-1e100, "0E+0", "-1E+100"},     {12345, "#.##E+000", "1.23E+004"}};
  ExpectTexts(rows);
}

TEST(FormatTest, LiteralsStandForThemselves) {
  const Row rows[] = {{5, "$0.00", "$5.00"},       {-5, "$0.00", "-$5.00"}, {5, "0 \"pieces\"", "5 pieces"},
                      {5, "\\#0", "#5"},           {5, "\"0#\" 0", "0# 5"}, {5, "0 €", "5 €"},
                      {5, "USD 0.00", "USD 5.00"}, {5, "(0)", "(5)"},       {7, "\"fixed\"", "fixed"},
                      {-7, "\"fixed\"", "-fixed"}, {5, "0\\\"", "5\""}};
  ExpectTexts(rows);
}

TEST(FormatTest, SectionsBySign) {
  const Row rows[] = {{5, "0;(0)", "5"},
                      {-5, "0;(0)", "(5)"},
                      {0, "0;(0)", "0"},
                      {0, "0;(0);\"zero\"", "zero"},
                      {-5, "0;;\"zero\"", "-5"},
                      {0, "0;(0);", "0"},
                      {Variant::Null(), "0;(0);\"zero\";\"none\"", "none"},
                      {-5, "0;\"a;b\"", "a;b"}};
  ExpectTexts(rows);
}

TEST(FormatTest, WhatRoundsToZeroIsZero) {
  const Row rows[] = {{-0.001, "0.00", "0.00"},
                      {-0.001, "0.00;(0.00)", "0.00"},
                      {0.001, "0.00;(0.00);\"zero\"", "zero"},
                      {-0.001, "0.00;(0.00);\"zero\"", "zero"},
                      {-0.001, "0.000;(0.000);\"zero\"", "(0.001)"}};
  ExpectTexts(rows);
}

TEST(FormatTest, DaysAndWeeks) {
  const Row rows[] = {{kMorning, "d", "1"},
                      {kMorning, "dd", "01"},
                      {kMorning, "ddd", "Mon"},
                      {kMorning, "dddd", "Monday"},
                      {kMorning, "ddddd", "6/1/98"},
                      {kMorning, "dddddd", "Monday, June 1, 1998"},
                      {kMorning, "w", "2"},
                      {kAfternoon, "w", "7"},
                      {Date::From(2026, 11, 22), "w", "1"},
                      {kMorning, "y", "152"},
                      {kMorning, "ww", "23"},
                      {Date::From(2026, 1, 1), "ww", "1"},
                      {Date::From(2026, 1, 3), "ww", "1"},
                      {Date::From(2026, 1, 4), "ww", "2"},
                      {Date::From(2022, 12, 31), "ww", "53"},
                      {Date::From(2000, 12, 31), "ww", "54"}};
  ExpectTexts(rows);
}

TEST(FormatTest, MonthsQuartersAndYears) {
  const Row rows[] = {{kMorning, "m", "6"},
                      {kMorning, "mm", "06"},
                      {kMorning, "mmm", "Jun"},
                      {kMorning, "mmmm", "June"},
                      {kMorning, "q", "2"},
                      {kAfternoon, "q", "4"},
                      {Date::From(2026, 3, 31), "q", "1"},
                      {kMorning, "yy", "98"},
                      {kMorning, "yyyy", "1998"},
                      {kMorning, "YYYY-MM-DD", "1998-06-01"},
                      {Date::From(2005, 1, 2), "yy", "05"}};
  ExpectTexts(rows);
}

TEST(FormatTest, HoursMinutesAndSeconds) {
  const Row rows[] = {{kMorning, "h", "9"},
                      {kMorning, "hh", "09"},
                      {kAfternoon, "h:n:s", "14:3:5"},
                      {kAfternoon, "hh:nn:ss", "14:03:05"},
                      {kAfternoon, "ttttt", "2:03:05 PM"},
                      {kAfternoon, "h:nn AM/PM", "2:03 PM"},
                      {kAfternoon, "hh:nn am/pm", "02:03 pm"},
                      {kAfternoon, "h A/P", "2 P"},
                      {kMorning, "h a/p", "9 a"},
                      {kMorning, "hAMPM", "9AM"},
                      {Date{0}, "h AM/PM", "12 AM"},
                      {Date{0.5}, "h AM/PM", "12 PM"},
                      {kAfternoon, "c", "11/21/26 2:03:05 PM"}};
  ExpectTexts(rows);
}

TEST(FormatTest, MonthLettersBehindTheHourAreMinutes) {
  const Row rows[] = {{kAfternoon, "hh:mm:ss", "14:03:05"},
                      {kAfternoon, "h:m", "14:3"},
                      {kAfternoon, "mm/dd hh:mm", "11/21 14:03"},
                      {kAfternoon, "hh mmm", "14 Nov"},
                      {kAfternoon, "hh:ss mm", "14:05 11"}};
  ExpectTexts(rows);
}

TEST(FormatTest, DatePatternsKeepLiterals) {
  const Row rows[] = {{kMorning, "d\\d", "1d"},
                      {kMorning, "\"day\" d", "day 1"},
                      {kMorning, "d/m/yyyy", "1/6/1998"},
                      {35947, "yyyy-mm-dd", "1998-06-01"},
                      {"1998-06-01 09:04:02", "h:nn", "9:04"}};
  ExpectTexts(rows);
}

TEST(FormatTest, TextPlacesFillFromTheRight) {
  const Row rows[] = {{"5551234", "@@@-@@@@", "555-1234"},
                      {"15551234", "@@@-@@@@", "1555-1234"},
                      {"ab", "@@@@", "  ab"},
                      {"ab", "&&&&", "ab"},
                      {"ab", "@@-&&", "  -ab"},
                      {123, "@@@@@", "  123"},
                      {"abcdef", "@@@", "abcdef"},
                      {"Größe", "@@@@@@", " Größe"}};
  ExpectTexts(rows);
}

TEST(FormatTest, AnExclamationMarkFillsFromTheLeft) {
  const Row rows[] = {{"ab", "!@@@@", "ab  "}, {"15551234", "!@@@-@@@@", "155-51234"}, {"ab", "!&&&&", "ab"}};
  ExpectTexts(rows);
}

TEST(FormatTest, AngleBracketsChangeTheCase) {
  const Row rows[] = {{"Straße Ελλάδα", "<", "straße ελλάδα"},
                      {"größe я", ">", "GRÖßE Я"},
                      {"ab12", ">@@-@@", "AB-12"},
                      {true, ">", "TRUE"}};
  ExpectTexts(rows);
}

TEST(FormatTest, TheSecondTextSectionIsForNothing) {
  const Row rows[] = {{"", "@@;\"none\"", "none"},
                      {Variant::Null(), "@@;\"none\"", "none"},
                      {"x", "&;\"none\"", "x"},
                      {"", "@@", "  "}};
  ExpectTexts(rows);
}

TEST(FormatTest, NullAndEmptyGiveNoTextWithoutASection) {
  for (const char* pattern : {"0.00", "Currency", "General Number", "yyyy", "Short Date", "@@@", "Yes/No"}) {
    EXPECT_EQ(FormatText(Variant::Null(), pattern), "") << pattern;
    EXPECT_EQ(FormatText(Variant(), pattern), "") << pattern;
  }
}

TEST(FormatTest, ATextThatIsNoNumberOrDateStaysAsItIs) {
  const Row rows[] = {{"abc", "0.00", "abc"}, {"abc", "yyyy", "abc"}, {"abc", "Currency", "abc"}, {"", "0", ""}};
  ExpectTexts(rows);
}

TEST(FormatTest, AnEmptyPatternGivesTheStringForm) {
  const Row rows[] = {
      {1.5, "", "1.5"}, {true, "", "True"}, {kAfternoon, "", "2026-11-21 14:03:05"}, {Variant(), "", ""}};
  ExpectTexts(rows);
}

TEST(FormatTest, PatternsThatCannotBeReadRaise5) {
  for (const char* pattern : {"\"open", "0\\", "0.0E+", "0.0e-x", "0;0;0;0;0"}) {
    SCOPED_TRACE(pattern);
    ExpectInvalidArgument([&] { FormatText(1, pattern); });
  }
}

TEST(FormatTest, ArraysObjectsAndMissingRaise13) {
  for (const char* pattern : {"0", "@", "yyyy", "", "General Number"}) {
    ExpectTypeMismatch([&] { FormatText(Variant::Array(0, 1), pattern); });
    ExpectTypeMismatch([&] { FormatText(Variant::Missing(), pattern); });
    ExpectTypeMismatch([&] { FormatText(Ref<Object>(), pattern); });
  }
}

TEST(FormatTest, ANumberThatIsNoDateRaises6UnderADatePattern) {
  ExpectOverflow([] { FormatText(1e9, "yyyy"); });
}

}  // namespace
}  // namespace velmoria
