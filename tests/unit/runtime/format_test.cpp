#include "velmoria/runtime/format.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_failure.h"
#include "tests/unit/runtime/expect_texts.h"

namespace velmoria {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const Decimal kLargest = Decimal::Parse("79228162514264337593543950335");
const Decimal kFinest = Decimal::Parse("0.0000000000000000000000000001");
const Currency kRichest{std::numeric_limits<std::int64_t>::max()};
const Currency kPoorest{std::numeric_limits<std::int64_t>::min()};

const Date kAfternoon = Date::From(2026, 11, 21, 14, 3, 5);  // a Saturday
const Date kMorning = Date::From(1998, 6, 1, 9, 4, 2);       // a Monday

TEST(FormatTest, GeneralNumberShowsTheDigitsOfEveryType) {
  const ValueRow rows[] = {{std::int16_t{-7}, "-7"},
                           {70000, "70000"},
                           {1234567, "1234567"},
                           {0.1F, "0.1"},
                           {1234.5, "1234.5"},
                           {-0.0, "0"},
                           {1e14, "100000000000000"},
                           {1e20, "1e+20"},
                           {1e-05, "1e-05"},
                           {kRichest, "922337203685477.5807"},
                           {kPoorest, "-922337203685477.5808"},
                           {kLargest, "79228162514264337593543950335"},
                           {kFinest, "0.0000000000000000000000000001"},
                           {Decimal::Parse("1.50"), "1.50"},
                           {Byte{255}, "255"},
                           {true, "-1"},
                           {false, "0"},
                           {Date{1.5}, "1.5"},
                           {Date::From(1998, 6, 1), "35947"}};
  ExpectTexts("General Number", rows);
}

TEST(FormatTest, GeneralNumberReadsTextsAsNumbers) {
  const ValueRow rows[] = {{"1234.50", "1234.5"},   {"007", "7"},
                           {" +5 ", "5"},           {"-0", "0"},
                           {"-.5", "-0.5"},         {"5.", "5"},
                           {"1e3", "1000"},         {"-12E-1", "-1.2"},
                           {"0.0001", "0.0001"},    {"0.00001", "1e-05"},
                           {"1.25e-7", "1.25e-07"}, {"79228162514264337593543950335", "79228162514264337593543950335"},
                           {"1e30", "1e+30"},       {"-12.5e200", "-1.25e+201"}};
  ExpectTexts("General Number", rows);
}

TEST(FormatTest, CurrencyPrintsEveryType) {
  const ValueRow rows[] = {{std::int16_t{7}, "$7.00"},
                           {-70000, "($70,000.00)"},
                           {0.1F, "$0.10"},
                           {1234.5, "$1,234.50"},
                           {-1234.5, "($1,234.50)"},
                           {0, "$0.00"},
                           {0.005, "$0.01"},
                           {-0.005, "($0.01)"},
                           {-0.004, "$0.00"},
                           {999.995, "$1,000.00"},
                           {1e20, "$100,000,000,000,000,000,000.00"},
                           {kRichest, "$922,337,203,685,477.58"},
                           {kPoorest, "($922,337,203,685,477.58)"},
                           {kLargest, "$79,228,162,514,264,337,593,543,950,335.00"},
                           {kFinest, "$0.00"},
                           {Byte{255}, "$255.00"},
                           {true, "($1.00)"},
                           {false, "$0.00"},
                           {Date{2.5}, "$2.50"},
                           {"1234.5", "$1,234.50"},
                           {"-3", "($3.00)"}};
  ExpectTexts("Currency", rows);
}

TEST(FormatTest, FixedPrintsEveryType) {
  const ValueRow rows[] = {{std::int16_t{7}, "7.00"},
                           {-70000, "-70000.00"},
                           {0.1F, "0.10"},
                           {1234.565, "1234.57"},
                           {-0.5, "-0.50"},
                           {-0.001, "0.00"},
                           {0.0, "0.00"},
                           {1e-300, "0.00"},
                           {1e20, "100000000000000000000.00"},
                           {kPoorest, "-922337203685477.58"},
                           {Decimal::Parse("1.005"), "1.01"},
                           {Byte{0}, "0.00"},
                           {true, "-1.00"},
                           {Date{0.25}, "0.25"},
                           {"  2.345  ", "2.35"}};
  ExpectTexts("Fixed", rows);
}

TEST(FormatTest, StandardPrintsEveryType) {
  const ValueRow rows[] = {{std::int16_t{999}, "999.00"},
                           {1000, "1,000.00"},
                           {-1234567, "-1,234,567.00"},
                           {1234567.891, "1,234,567.89"},
                           {999999.995, "1,000,000.00"},
                           {0.25F, "0.25"},
                           {kRichest, "922,337,203,685,477.58"},
                           {Decimal::Parse("-1234.5"), "-1,234.50"},
                           {Byte{12}, "12.00"},
                           {true, "-1.00"},
                           {Date{35947}, "35,947.00"},
                           {"1234.5", "1,234.50"}};
  ExpectTexts("Standard", rows);
}

TEST(FormatTest, PercentPrintsEveryType) {
  const ValueRow rows[] = {{1, "100.00%"},           {std::int16_t{-2}, "-200.00%"},
                           {0.12, "12.00%"},         {0.123456, "12.35%"},
                           {-0.00001, "0.00%"},      {0.07F, "7.00%"},
                           {12345.6, "1234560.00%"}, {Currency{5000}, "50.00%"},
                           {kFinest, "0.00%"},       {Decimal::Parse("0.33335"), "33.34%"},
                           {true, "-100.00%"},       {false, "0.00%"},
                           {Date{0.5}, "50.00%"},    {"0.5", "50.00%"}};
  ExpectTexts("Percent", rows);
}

TEST(FormatTest, ScientificPrintsEveryType) {
  const ValueRow rows[] = {{1234, "1.23E+03"},
                           {std::int16_t{-7}, "-7.00E+00"},
                           {0, "0.00E+00"},
                           {0.000123, "1.23E-04"},
                           {9.996, "1.00E+01"},
                           {0.5F, "5.00E-01"},
                           {std::numeric_limits<double>::max(), "1.80E+308"},
                           {std::numeric_limits<double>::denorm_min(), "5.00E-324"},
                           {kPoorest, "-9.22E+14"},
                           {kLargest, "7.92E+28"},
                           {kFinest, "1.00E-28"},
                           {Byte{255}, "2.55E+02"},
                           {true, "-1.00E+00"},
                           {Date{35947}, "3.59E+04"},
                           {"1e5", "1.00E+05"}};
  ExpectTexts("Scientific", rows);
}

TEST(FormatTest, BooleanFormatsTellZeroFromAnyOtherNumber) {
  const struct {
    Variant Value;
    bool True;
  } rows[] = {{true, true},        {false, false},       {std::int16_t{0}, false},
              {5, true},           {-5, true},           {0.3, true},
              {-1e-300, true},     {0.0F, false},        {-0.0, false},
              {Currency{1}, true}, {Currency{0}, false}, {Decimal{}, false},
              {kFinest, true},     {Byte{1}, true},      {Date{0}, false},
              {Date{0.001}, true}, {"0.00", false},      {"0.01", true},
              {"-0", false}};
  for (const auto& row : rows) {
    EXPECT_EQ(FormatText(row.Value, "Yes/No"), row.True ? "Yes" : "No") << row.Value.AsText();
    EXPECT_EQ(FormatText(row.Value, "True/False"), row.True ? "True" : "False") << row.Value.AsText();
    EXPECT_EQ(FormatText(row.Value, "On/Off"), row.True ? "On" : "Off") << row.Value.AsText();
  }
}

TEST(FormatTest, NamedDateFormatsPrintADate) {
  const PatternRow afternoon[] = {{"General Date", "11/21/26 2:03:05 PM"},
                                  {"Long Date", "Saturday, November 21, 2026"},
                                  {"Medium Date", "21-Nov-26"},
                                  {"Short Date", "11/21/26"},
                                  {"Long Time", "2:03:05 PM"},
                                  {"Medium Time", "02:03 PM"},
                                  {"Short Time", "14:03"}};
  ExpectTexts(kAfternoon, afternoon);
  const PatternRow morning[] = {{"General Date", "6/1/98 9:04:02 AM"},
                                {"Long Date", "Monday, June 1, 1998"},
                                {"Medium Date", "01-Jun-98"},
                                {"Short Date", "6/1/98"},
                                {"Long Time", "9:04:02 AM"},
                                {"Medium Time", "09:04 AM"},
                                {"Short Time", "09:04"}};
  ExpectTexts(kMorning, morning);
}

TEST(FormatTest, NamedDateFormatsPrintMidnightAndNoon) {
  const PatternRow midnight[] = {{"General Date", "6/1/98"},
                                 {"Long Date", "Monday, June 1, 1998"},
                                 {"Long Time", "12:00:00 AM"},
                                 {"Medium Time", "12:00 AM"},
                                 {"Short Time", "00:00"}};
  ExpectTexts(Date::From(1998, 6, 1), midnight);
  const PatternRow noon[] = {{"General Date", "12:00:00 PM"},
                             {"Short Date", "12/30/1899"},
                             {"Long Time", "12:00:00 PM"},
                             {"Medium Time", "12:00 PM"},
                             {"Medium Date", "30-Dec-99"},
                             {"Short Time", "12:00"},
                             {"Long Date", "Saturday, December 30, 1899"}};
  ExpectTexts(Date{0.5}, noon);
}

TEST(FormatTest, NamedDateFormatsTakeNumbersAsDaysAndTextsAsDates) {
  const FormatRow rows[] = {{35947, "Short Date", "6/1/98"},
                            {std::int16_t{2}, "Medium Date", "01-Jan-00"},
                            {35947.75, "General Date", "6/1/98 6:00:00 PM"},
                            {0.75F, "General Date", "6:00:00 PM"},
                            {Currency{359475000}, "Short Time", "12:00"},
                            {Decimal::Parse("35947.25"), "Long Time", "6:00:00 AM"},
                            {Byte{1}, "Long Date", "Sunday, December 31, 1899"},
                            {true, "Short Date", "12/29/1899"},
                            {false, "General Date", "12:00:00 AM"},
                            {-1.25, "General Date", "12/29/1899 6:00:00 AM"},
                            {"1998-06-01", "Long Date", "Monday, June 1, 1998"},
                            {"1998-06-01T09:04:02", "Medium Time", "09:04 AM"},
                            {"6/1/98 9:04:02 PM", "Short Time", "21:04"},
                            {"14:03", "Long Time", "2:03:00 PM"}};
  ExpectTexts(rows);
}

TEST(FormatTest, NamesAreKnownInAnyCaseButOnlyWhole) {
  const FormatRow rows[] = {{1234.5, "STANDARD", "1,234.50"}, {1234.5, "gENERAL nUMBER", "1234.5"},
                            {true, "on/off", "On"},           {kMorning, "short date", "6/1/98"},
                            {1234.5, " Fixed", " Fixe18"},    {5, "\"Fixed\"", "Fixed"},
                            {5, "Fixed 0", "Fixed 5"}};
  ExpectTexts(rows);
}

TEST(FormatTest, NumbersThatAreNotFiniteStayAsTheyAre) {
  for (const char* pattern : {"General Number", "Currency", "0.00", "0.0E+0", "Yes/No", "#;(#)"}) {
    EXPECT_EQ(FormatText(kInfinity, pattern), "inf") << pattern;
    EXPECT_EQ(FormatText(-kInfinity, pattern), "-inf") << pattern;
    EXPECT_EQ(FormatText(std::nan(""), pattern), "nan") << pattern;
    EXPECT_EQ(FormatText(-std::nanf(""), pattern), "nan") << pattern;
  }
}

TEST(FormatTest, NumbersThatAreNoDateRaise6UnderADatePattern) {
  for (const Variant& value : {Variant(1e9), Variant(-657435), Variant(2958466), Variant(std::nan("")),
                               Variant(kInfinity), Variant(kLargest), Variant(Date{1e9}), Variant(kRichest)}) {
    ExpectOverflow([&] { FormatText(value, "yyyy"); });
    ExpectOverflow([&] { FormatText(value, "General Date"); });
  }
}

TEST(FormatTest, ATextThatIsNoNumberOrDateStaysAsItIs) {
  for (const char* pattern : {"General Number", "Currency", "0.00", "0;(0);\"zero\"", "Yes/No", "\"fixed\""}) {
    for (const char* text : {"abc", "", " ", "1,5", "$5", "12 34", "1998-06-01", "True", "nan", "-", "e5"}) {
      EXPECT_EQ(FormatText(text, pattern), text) << pattern;
    }
  }
  for (const char* pattern : {"yyyy", "Short Date", "h:nn"}) {
    for (const char* text : {"abc", "", "35947", "1998-02-29", "25:00", "6/1", "True"}) {
      EXPECT_EQ(FormatText(text, pattern), text) << pattern;
    }
  }
}

TEST(FormatTest, NullAndEmptyGiveNoTextWithoutASection) {
  for (const char* pattern : {"", "0.00", "Currency", "General Number", "yyyy", "Short Date", "@@@", "Yes/No", ">",
                              "0;(0);\"zero\"", "\"fixed\"", "0;0;0;"}) {
    EXPECT_EQ(FormatText(Variant::Null(), pattern), "") << pattern;
    EXPECT_EQ(FormatText(Variant(), pattern), "") << pattern;
  }
}

TEST(FormatTest, AnEmptyPatternGivesTheStringForm) {
  const ValueRow rows[] = {{1.5, "1.5"},
                           {true, "True"},
                           {kAfternoon, "2026-11-21 14:03:05"},
                           {"abc", "abc"},
                           {Decimal::Parse("1.50"), "1.50"},
                           {"", ""}};
  ExpectTexts("", rows);
}

TEST(FormatTest, TheCharactersOfAPatternTellItsKind) {
  const FormatRow rows[] = {{"ab", "@ 0 d", "ab 0 d"},
                            {"ab", "0@", "0ab"},
                            {"AB", "<", "ab"},
                            {"AB", "x@<", "xab"},
                            {7, "\"@\"0", "@7"},
                            {7, "0<", "7<"},
                            {7, "\\<0", "<7"},
                            {7, "0 days", "7 days"},
                            {7, "(#) h", "(7) h"},
                            {kMorning, "\"0\"d", "01"},
                            {kMorning, "A/P", "A"},
                            {kMorning, "a/p", "a"},
                            {kMorning, "ampm", "AM"},
                            {kMorning, "-.%d", "-.%1"},
                            {7, "-", "-"},
                            {7, "%", "%"},
                            {7, "$ ()", "$ ()"},
                            {"", "!", ""}};
  ExpectTexts(rows);
}

TEST(FormatTest, QuotesAndBackslashesMakeLiterals) {
  const FormatRow rows[] = {{5, "0 \"pieces\"", "5 pieces"},
                            {5, "\"0#\" 0", "0# 5"},
                            {5, "\\#0", "#5"},
                            {5, "0\\\"", "5\""},
                            {5, "0\\\\", "5\\"},
                            {5, "\"a\\b\" 0", "a\\b 5"},
                            {5, "0\"\"", "5"},
                            {5, "\"a\"\"b\"0", "ab5"},
                            {5, "0 €", "5 €"},
                            {5, "0 \\€", "5 €"},
                            {5, "0\"é;ü\"", "5é;ü"},
                            {-5, "0;\"a;b\"", "a;b"},
                            {kMorning, "d\\d", "1d"},
                            {kMorning, "\"day\" d", "day 1"},
                            {kMorning, "yyyy年m月d日", "1998年6月1日"},
                            {"x", "\\@@\"&\"", "@x&"},
                            {"x", "@\\!", "x!"}};
  ExpectTexts(rows);
}

TEST(FormatTest, ABadPatternRaises5WhateverTheValue) {
  for (const char* pattern : {"\"open",    "0\"",      "yyyy\"",  "@\"",    "\\",      "0\\",    "d\\",   "0;0;0;0;0",
                              ";;;;",      "#;#;#;#;", "@;@;@",   "<;;",    "0.0E+",   "0.0e-x", "0E+.0", "0;0e-;0",
                              "0;0;0;0e+", "0;E+0",    "x0;.E-0", "0E+0 0", "0E+00.#", "0E+0E+0"}) {
    SCOPED_TRACE(pattern);
    for (const Variant& value : {Variant(1), Variant(-1), Variant(0), Variant("abc"), Variant(kMorning),
                                 Variant::Null(), Variant(), Variant(true)}) {
      ExpectInvalidArgument([&] { FormatText(value, pattern); });
    }
  }
}

TEST(FormatTest, WhatLooksBadButIsNot) {
  const FormatRow rows[] = {{5, "0E", "5E"},          {5, "0Ex", "5Ex"},     {5, "\"E+\"0", "E+5"},
                            {5, "0\\E+", "5E+"},      {5, "0.0.0", "5.0.0"}, {1.23, "0.0.0", "1.2.3"},
                            {5, "0;;;", "5"},         {"a", "@;", "a"},      {kMorning, "d;m;y;q;w;d", "1;6;152;2;2;1"},
                            {5, "0E+0.", "5E+0."},    {5, "0E+0,", "5E+0"},  {5, "0E+0e", "5E+0e"},
                            {5, "0.0%%", "50000.0%%"}};
  ExpectTexts(rows);
}

TEST(FormatTest, ArraysObjectsAndMissingRaise13) {
  for (const char* pattern : {"0", "@", "yyyy", "", "General Number", "Currency", "<", "\"x\"", "Long Date"}) {
    ExpectTypeMismatch([&] { FormatText(Variant::Array(0, 1), pattern); });
    ExpectTypeMismatch([&] { FormatText(std::vector<Byte>{1}, pattern); });
    ExpectTypeMismatch([&] { FormatText(Variant::Missing(), pattern); });
    ExpectTypeMismatch([&] { FormatText(Ref<Object>(), pattern); });
  }
}

}  // namespace
}  // namespace velmoria
