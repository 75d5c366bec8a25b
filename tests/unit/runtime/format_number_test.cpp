#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_texts.h"
#include "velmoria/runtime/format.h"

namespace velmoria {
namespace {

TEST(FormatNumberTest, ZerosAreAlwaysShown) {
  const FormatRow rows[] = {
      {5, "0", "5"},          {5, "000", "005"},       {1234, "0", "1234"},     {1234, "00", "1234"},
      {0, "0", "0"},          {0, "000.00", "000.00"}, {5, "0.00", "5.00"},     {0.5, "0.##", "0.5"},
      {0.5, "00.0", "00.5"},  {-5, "000", "-005"},     {-0.0, "0", "0"},        {12.5, "0.000", "12.500"},
      {1.5F, "0.00", "1.50"}, {true, "0", "-1"},       {Byte{7}, "000", "007"}, {1e15, "0", "1000000000000000"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, NumberSignsShowOnlyWhatIsThere) {
  const FormatRow rows[] = {{0, "#", ""},           {5, "#", "5"},          {5, "###", "5"},       {1234, "#", "1234"},
                            {0, "#.##", "."},       {0.5, "#.##", ".5"},    {-0.5, "#.##", "-.5"}, {5, "#.##", "5."},
                            {5.25, "#.#", "5.3"},   {0.25, "#.###", ".25"}, {0.04, "#.#", "."},    {10, "##", "10"},
                            {100.5, "#.#", "100.5"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, AZeroPlaceForcesThePlacesBetweenItAndThePoint) {
  const FormatRow rows[] = {{7, "#00", "07"},         {7, "0##", "007"},     {0, "0#", "00"},
                            {42, "#0#", "42"},        {0, "#0#", "00"},      {1.5, "0.0##0", "1.5000"},
                            {1.5, "0.#0#", "1.50"},   {1, "0.##0", "1.000"}, {1.2, "0.0#", "1.2"},
                            {1.2345, "0.0#", "1.23"}, {3, "0.0#", "3.0"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, PlacesMayBeOnOneSideOfThePointOnly) {
  const FormatRow rows[] = {{12.5, ".00", "12.50"}, {0.5, ".00", ".50"}, {-0.5, ".0", "-.5"}, {12.5, "0.", "13."},
                            {0, ".", "."},          {12.5, ".", "13."},  {0, ".##", "."},     {1234.5, ".0", "1234.5"},
                            {99.96, ".0", "100.0"}, {0.96, ".0", "1.0"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, LiteralsStandBetweenTheDigits) {
  const FormatRow rows[] = {{123456789, "000-00-0000", "123-45-6789"},
                            {5551234, "###-####", "555-1234"},
                            {15551234, "###-####", "1555-1234"},
                            {1234, "(###) ###-####", "() -1234"},
                            {5, "$0.00", "$5.00"},
                            {-5, "$0.00", "-$5.00"},
                            {5, "USD 0.00", "USD 5.00"},
                            {-5, "(0)", "-(5)"},
                            {5, "+0", "+5"},
                            {-5, "-0", "--5"},
                            {7, "\"fixed\"", "fixed"},
                            {-7, "\"fixed\"", "-fixed"},
                            {12.34, "0\" dollars and \".00\" cents\"", "12 dollars and .34 cents"},
                            {1030, "00:00", "10:30"},
                            {101998, "00/0000", "10/1998"},
                            {5, "0 x", "5 x"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, HalvesRoundAwayFromZero) {
  const FormatRow rows[] = {{0.5, "0", "1"},
                            {1.5, "0", "2"},
                            {2.5, "0", "3"},
                            {-0.5, "0", "-1"},
                            {-2.5, "0", "-3"},
                            {0.125, "0.00", "0.13"},
                            {-0.125, "0.00", "-0.13"},
                            {0.6, "#", "1"},
                            {0.05, "0.0", "0.1"},
                            {0.45, "0.0", "0.5"},
                            {Currency{5}, "0.000", "0.001"},
                            {Currency{-12345}, "0.000", "-1.235"},
                            {Decimal::Parse("0.0000000000000000000000000005"), "0.000000000000000000000000000",
                             "0.000000000000000000000000001"},
                            {Decimal::Parse("7922816251426433759354395033.5"), "0", "7922816251426433759354395034"},
                            {"0.5", "0", "1"},
                            {2.5F, "0", "3"},
                            {Date{2.5}, "0", "3"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, TheDecimalDigitsOfANumberAreRoundedNotItsBinaryNeighbour) {
  const FormatRow rows[] = {{1.005, "0.00", "1.01"},          {2.675, "0.00", "2.68"},
                            {1.115, "0.00", "1.12"},          {0.285, "0.00", "0.29"},
                            {0.1F, "0.0000000", "0.1000000"}, {1.1, "0.00000000000000000000", "1.10000000000000000000"},
                            {8.345, "0.00", "8.35"},          {-1.005, "0.00", "-1.01"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, BelowAHalfRoundsTowardsZero) {
  const FormatRow rows[] = {{0.4999, "0", "0"},         {1.4999999, "0", "1"}, {0.04, "0.0", "0.0"},
                            {0.0049, "0.00", "0.00"},   {2.4, "#", "2"},       {1e-320, "0.0", "0.0"},
                            {0.00001, "0.000", "0.000"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, RoundingCarriesThroughNines) {
  const FormatRow rows[] = {{99.995, "0.00", "100.00"},
                            {9.99, "0.0", "10.0"},
                            {999.5, "#", "1000"},
                            {999.5, "#,##0", "1,000"},
                            {0.999, "#.##", "1."},
                            {-9.95, "0.0", "-10.0"},
                            {999999.9, "#,##0", "1,000,000"},
                            {"9999999999999999999999999999.5", "#,##0", "10,000,000,000,000,000,000,000,000,000"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, DecimalsOf28DigitsAreExact) {
  const FormatRow rows[] = {
      {Decimal::Parse("79228162514264337593543950335"), "0", "79228162514264337593543950335"},
      {Decimal::Parse("-79228162514264337593543950335"), "#,##0.0", "-79,228,162,514,264,337,593,543,950,335.0"},
      {Decimal::Parse("7.9228162514264337593543950335"), "0.0000000000000000000000000000",
       "7.9228162514264337593543950335"},
      {Decimal::Parse("1234567890123456789012345678"), "0,,,", "1234567890123456789"},
      {Decimal::Parse("0.0000000000000000000000000001"), "0.############################",
       "0.0000000000000000000000000001"},
      {Decimal::Parse("1.0000000000000000000000000000"), "0.####", "1."},
      {"123456789012345678901234567890.123456789", "#,##0.000000000",
       "123,456,789,012,345,678,901,234,567,890.123456789"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, DoublesOfAnySizeAreWrittenOut) {
  EXPECT_EQ(FormatText(1e100, "0"), "1" + std::string(100, '0'));
  EXPECT_EQ(FormatText(-1.5e300, "0.0"), "-15" + std::string(299, '0') + ".0");
  EXPECT_EQ(FormatText(1e-20, "0." + std::string(20, '0')), "0." + std::string(19, '0') + "1");
  EXPECT_EQ(FormatText(5e-324, "0." + std::string(330, '#')), "0." + std::string(323, '0') + "5");
  EXPECT_EQ(FormatText("1e500", "#"), "1" + std::string(500, '0'));
}

TEST(FormatNumberTest, ACommaBetweenPlacesGroupsThousands) {
  const FormatRow rows[] = {{1234567, "#,##0", "1,234,567"},
                            {123, "#,##0", "123"},
                            {0, "#,##0", "0"},
                            {0, "#,###", ""},
                            {1000, "#,###", "1,000"},
                            {1234567, "0,0", "1,234,567"},
                            {5, "0,0", "05"},
                            {5, "000,000", "000,005"},
                            {1234567, "#,#", "1,234,567"},
                            {1234567, "#,,#", "1,234,567"},
                            {1234567, "##,##,##0", "1,234,567"},
                            {-1234.5, "#,##0.00", "-1,234.50"},
                            {1234567, "0, 0", "1,234,56 7"},
                            {1234567.125, "#,##0.000", "1,234,567.125"},
                            {12, "#,##0", "12"},
                            {-123456, "#,##0", "-123,456"},
                            {1234, ",0", "1234"},
                            {1234, "$,0", "$1234"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, CommasBehindTheLastPlaceDivideByThousands) {
  const FormatRow rows[] = {{1234567, "0,", "1235"},
                            {1234567, "0,,", "1"},
                            {1234567, "0,,,", "0"},
                            {100000000, "##0,,", "100"},
                            {999999, "##0,,", "1"},
                            {499999, "##0,,", "0"},
                            {1234567, "#,##0,", "1,235"},
                            {1234567, "0,.00", "1234.57"},
                            {1234567, "0,,.000", "1.235"},
                            {1234567, "#,##0,.0", "1,234.6"},
                            {1234567, "0,\"k\"", "1235k"},
                            {1234567, "0\"k\",", "1235k"},
                            {1500, "0,%", "150%"},
                            {-1500, "0,", "-2"},
                            {-499, "0,", "0"},
                            {0, "0,", "0"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, CommasBehindThePointAreLeftOut) {
  const FormatRow rows[] = {{1234567, "0.0,", "1234567.0"}, {0.1234, "0.00,00", "0.1234"}, {5, ".,0", "5.0"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, PercentsMultiplyByAHundred) {
  const FormatRow rows[] = {
      {0.256, "0%", "26%"},          {0.256, "0.0%", "25.6%"},  {1, "0%", "100%"},      {-0.05, "0%", "-5%"},
      {0.5, "0\\%", "1%"},           {0.5, "0\"%\"", "1%"},     {0.01, "0%%", "100%%"}, {0.256, "%0", "%26"},
      {12.5, "#,##0%", "1,250%"},    {0, "0%", "0%"},           {0.004, "0%", "0%"},    {0.005, "0%", "1%"},
      {0.125, "0.0E+0%", "1.3E+1%"}, {-0.1, "0%;(0%)", "(10%)"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, ExponentsShowTheirSignAsAsked) {
  const FormatRow rows[] = {{12345, "0.00E+00", "1.23E+04"},
                            {12345, "0.00E-00", "1.23E04"},
                            {12345, "0.00e+00", "1.23e+04"},
                            {12345, "0.00e-00", "1.23e04"},
                            {0.00012, "0.0E+0", "1.2E-4"},
                            {0.00012, "0.0e-0", "1.2e-4"},
                            {0.00012, "0.0E-00", "1.2E-04"},
                            {-12345, "0.00E+00", "-1.23E+04"},
                            {-0.0005, "0E-0", "-5E-4"},
                            {1, "0E+0", "1E+0"},
                            {1, "0E-0", "1E0"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, ExponentsHaveAsManyDigitsAsPlacesOrMore) {
  const FormatRow rows[] = {{1e5, "0E+0", "1E+5"},      {1e5, "0E+000", "1E+005"},        {1e5, "0E+#", "1E+5"},
                            {1e5, "0E+##", "1E+05"},    {1e100, "0E+0", "1E+100"},        {-1e100, "0E+00", "-1E+100"},
                            {1e-300, "0E+0", "1E-300"}, {12345, "#.##E+000", "1.23E+004"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, PlacesBeforeThePointSayHowManyDigitsStandThere) {
  const FormatRow rows[] = {{12345, "##0.0E+0", "123.5E+2"},       {12345, "00E+0", "12E+3"}, {5, "000E+0", "500E-2"},
                            {12345, ".00E+0", ".12E+5"},           {0.5, ".0E+0", ".5E+0"},   {12345, "0E+0", "1E+4"},
                            {1234567, "#,##0.0E+0", "1,234.6E+3"}, {99.96, ".0E+0", ".1E+3"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, RoundingMayRaiseTheExponent) {
  const FormatRow rows[] = {{9.996, "0.00E+00", "1.00E+01"}, {0.0999, "0.0E+0", "1.0E-1"}, {9995, "0.00E+0", "1.00E+4"},
                            {-95, "0E+0", "-1E+2"},          {0.95, "0E+0", "1E+0"},       {999.9, "000E+0", "100E+1"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, ZeroHasTheExponentZero) {
  const FormatRow rows[] = {{0, "0.00E+00", "0.00E+00"},
                            {0, "0.0e-0", "0.0e0"},
                            {0, "##0E+0", "0E+0"},
                            {0.0, "#.#E+0", ".E+0"},
                            {Decimal{}, "0E+0%", "0E+0%"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, LiteralsMayStandAroundAnExponent) {
  const FormatRow rows[] = {{12345, "\"~\"0.0E+0\" m\"", "~1.2E+4 m"},
                            {12345, "0.0\" \"E+0", "1.2 E+4"},
                            {12345, "$0E+0$", "$1E+4$"},
                            {12345, "0,E+0", "1E+1"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, OneSectionIsForAllNumbers) {
  const FormatRow rows[] = {{5, "0.0", "5.0"}, {-5, "0.0", "-5.0"}, {0, "0.0", "0.0"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, TwoSectionsTellNegativeNumbers) {
  const FormatRow rows[] = {{5, "0;(0)", "5"},
                            {-5, "0;(0)", "(5)"},
                            {0, "0;(0)", "0"},
                            {-5, "0;0", "5"},
                            {-5, "0;\"minus\" 0.0", "minus 5.0"},
                            {-5, "0;-0", "-5"},
                            {-1234.5, "#,##0.00;0.0", "1234.5"},
                            {-0.5, "0;0%", "50%"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, ThreeSectionsTellZeroToo) {
  const FormatRow rows[] = {{5, "0;(0);\"zero\"", "5"},         {-5, "0;(0);\"zero\"", "(5)"},
                            {0, "0;(0);\"zero\"", "zero"},      {0, "0;(0);-", "-"},
                            {0, "0;(0);0.00", "0.00"},          {0, "0;(0);#", ""},
                            {0, "0;;\\Z\\e\\r\\o", "Zero"},     {-0.0, "0;(0);\"zero\"", "zero"},
                            {"0.000", "0;(0);\"zero\"", "zero"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, TheFourthSectionIsForNullAndEmpty) {
  const char* pattern = "0;(0);\"zero\";\"none\"";
  const ValueRow rows[] = {{Variant::Null(), "none"}, {Variant(), "none"}, {0, "zero"}, {5, "5"}, {-5, "(5)"}};
  for (const ValueRow& row : rows) EXPECT_EQ(FormatText(row.Value, pattern), row.Text);
}

TEST(FormatNumberTest, NullIsShownInItsSectionAsZeroWouldBe) {
  const PatternRow rows[] = {{"0;0;0;0.00", "0.00"}, {"0;0;0;#", ""},          {"0;0;0;-#-", "--"},
                             {"0;0;0;Null", "Null"}, {"0;0;0;0E+00", "0E+00"}, {"0;0;0;(0%)", "(0%)"},
                             {"0;;;x", "x"},         {";;;\"-\"", "-"}};
  for (const PatternRow& row : rows) EXPECT_EQ(FormatText(Variant::Null(), row.Pattern), row.Text) << row.Pattern;
}

TEST(FormatNumberTest, AnEmptySectionLeavesItsNumbersToTheFirst) {
  const FormatRow rows[] = {{-5, "$0;;\"zero\"", "-$5"}, {0, "0.0;(0);", "0.0"},
                            {0, "0.0;(0);;", "0.0"},     {-5, "0;", "-5"},
                            {-5, "0;;", "-5"},           {0, "0;;;\"none\"", "0"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, QuotesWithoutTextHideWhatASectionIsFor) {
  const FormatRow rows[] = {
      {0, "0;-0;\"\"", ""}, {-5, "0;\"\"", ""}, {5, "\"\";0", ""}, {0, "0;;\"\"", ""}, {5, "\"\"", ""}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, AnEmptyFirstSectionIsGeneralNumber) {
  const FormatRow rows[] = {
      {5.25, ";(0)", "5.25"},    {-5, ";(0)", "(5)"}, {0, ";(0)", "0"},   {-5.5, ";;\"zero\"", "-5.5"},
      {0, ";;\"zero\"", "zero"}, {5, ";", "5"},       {-5, ";", "-5"},    {1e20, ";;", "1e+20"},
      {"007", ";", "7"},         {-0.4, ";(0)", "0"}, {true, ";;", "-1"}, {Decimal::Parse("1.50"), ";;;", "1.50"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, WhatRoundsToZeroIsZero) {
  const FormatRow rows[] = {{-0.001, "0.00", "0.00"},
                            {-0.001, "0.00;(0.00)", "0.00"},
                            {0.001, "0.00;(0.00);\"zero\"", "zero"},
                            {-0.001, "0.00;(0.00);\"zero\"", "zero"},
                            {-0.001, "0.000;(0.000);\"zero\"", "(0.001)"},
                            {-0.001, "0.0000;(0.00)", "0.0000"},
                            {0.4, "#;#;\"none\"", "none"},
                            {-0.001, "0%", "0%"},
                            {-0.001, "0.0%;(0.0%)", "(0.1%)"},
                            {499, "0,;;\"little\"", "little"},
                            {-1e-10, "0.0E+0", "-1.0E-10"}};
  ExpectTexts(rows);
}

TEST(FormatNumberTest, WhereNoDigitIsShownASmallNumberIsNotZero) {
  const FormatRow rows[] = {{0.001, "\"more\";\"less\";\"zero\"", "more"},
                            {-0.001, "\"more\";\"less\";\"zero\"", "less"},
                            {0, "\"more\";\"less\";\"zero\"", "zero"},
                            {0.3, "\\Y;\\Y;\\N", "Y"}};
  ExpectTexts(rows);
}

// The amounts as counting in whole hundredths gives them.
TEST(FormatNumberTest, EveryAmountAgreesWithCounting) {
  for (std::int64_t amount = -25'000'000; amount <= 25'000'000; amount += 1723) {
    const std::int64_t hundredths = (std::abs(amount) + 50) / 100;
    std::string whole = std::to_string(hundredths / 100);
    if (whole.size() > 3) whole.insert(whole.size() - 3, ",");
    const std::string digits = whole + "." + std::to_string(hundredths % 100 + 100).substr(1);
    const bool negative = amount < 0 && hundredths != 0;
    ASSERT_EQ(FormatText(Currency{amount}, "#,##0.00"), (negative ? "-" : "") + digits) << amount;
    ASSERT_EQ(FormatText(Currency{amount}, "0.0000;-0.0000"), FormatText(Currency{amount}, "0.0000")) << amount;
  }
}

}  // namespace
}  // namespace velmoria
