#include "velmoria/runtime/decimal.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_failure.h"

namespace velmoria {
namespace {

constexpr const char* kLargest = "79228162514264337593543950335";

TEST(DecimalTest, TextsComeBackExactlyWithTheirScale) {
  for (const char* text :
       {"0", "1", "-1", "1.50", "0.00", "-0.001", "123456789012345678901234567.8", "0.1234567890123456789012345678",
        "7.9228162514264337593543950335", kLargest, "-79228162514264337593543950335"}) {
    EXPECT_EQ(Decimal::Parse(text).AsText(), text);
  }
}

TEST(DecimalTest, OtherSpellingsAreRead) {
  const struct {
    const char* Text;
    const char* Printed;
  } rows[] = {{" +1.5 ", "1.5"},    {"1e3", "1000"},
              {"1.5E-3", "0.0015"}, {".25", "0.25"},
              {"12.", "12"},        {"-0.0", "0.0"},
              {"1.25e1", "12.5"},   {"0e500", "0"},
              {"000123", "123"},    {"1E+28", "10000000000000000000000000000"}};
  for (const auto& row : rows) EXPECT_EQ(Decimal::Parse(row.Text).AsText(), row.Printed) << row.Text;
}

TEST(DecimalTest, NumbersAroundTheLengthOfAMachineWordAreExact) {
  for (const char* text : {"9999999999999999999", "-9999999999999999999", "99999999999999999999", "99999999999999.9999",
                           "9999999999999999.9999", "0.99999999999999999", "-0.99999999999999999",
                           "0.999999999999999999999", "18446744073709551615", "18446744073709551616"}) {
    EXPECT_EQ(Decimal::Parse(text).AsText(), text);
  }
}

TEST(DecimalTest, DigitsThatDoNotFitRoundHalfToEven) {
  const struct {
    const char* Text;
    const char* Printed;
  } rows[] = {{"0.12345678901234567890123456785", "0.1234567890123456789012345678"},
              {"0.12345678901234567890123456775", "0.1234567890123456789012345678"},
              {"0.123456789012345678901234567850001", "0.1234567890123456789012345679"},
              {"12345678901234567890123456789.5", "12345678901234567890123456790"},
              {"12345678901234567890123456788.5", "12345678901234567890123456788"},
              {"8.00000000000000000000000000005", "8.000000000000000000000000000"},
              {"1e-40", "0"}};
  for (const auto& row : rows) EXPECT_EQ(Decimal::Parse(row.Text).AsText(), row.Printed) << row.Text;
}

TEST(DecimalTest, WhatDoesNotFitIn96BitsRaises6) {
  for (const char* text : {"79228162514264337593543950336", "79228162514264337593543950335.5", "1e29", "-1e100"}) {
    ExpectOverflow([&] { Decimal::Parse(text); });
  }
  for (const double value : {1e29, -1e300, std::numeric_limits<double>::infinity(), std::nan("")}) {
    ExpectOverflow([&] { Decimal::From(value); });
  }
}

TEST(DecimalTest, WhatIsNoNumberRaises13) {
  for (const char* text : {"", "-", ".", "-.", "--1", "1.2.3", "1e+", "one", "1,000", "&H10"}) {
    ExpectTypeMismatch([&] { Decimal::Parse(text); });
  }
}

TEST(DecimalTest, DoublesGiveTheirShortestDigits) {
  const struct {
    double Value;
    const char* Printed;
  } rows[] = {{0.1, "0.1"}, {-2.5, "-2.5"}, {1e20, "100000000000000000000"}, {100, "100"},
              {1e-30, "0"}, {-0.0, "0"},    {1.0 / 3, "0.3333333333333333"}, {123456.789, "123456.789"}};
  for (const auto& row : rows) EXPECT_EQ(Decimal::From(row.Value).AsText(), row.Printed);
}

TEST(DecimalTest, WholeNumbersAndAmountsAreExact) {
  EXPECT_EQ(Decimal::From(std::numeric_limits<std::int64_t>::min()).AsText(), "-9223372036854775808");
  EXPECT_EQ(Decimal::From(std::int64_t{42}).AsText(), "42");
  EXPECT_EQ(Decimal::From(Currency{-125000}).AsText(), "-12.5");
  EXPECT_EQ(Decimal::From(Currency{1}).AsText(), "0.0001");
}

TEST(DecimalTest, RoundsToWholeNumbersHalfToEven) {
  const struct {
    const char* Text;
    std::int64_t Whole;
  } rows[] = {
      {"0.5", 0},   {"1.5", 2},    {"2.5", 2},  {"-0.5", 0},
      {"-1.5", -2}, {"2.5001", 3}, {"2.49", 2}, {"9223372036854775807.4", std::numeric_limits<std::int64_t>::max()}};
  for (const auto& row : rows) EXPECT_EQ(Decimal::Parse(row.Text).AsInt64(), row.Whole) << row.Text;
  ExpectOverflow([] { Decimal::Parse("9223372036854775807.5").AsInt64(); });
  EXPECT_EQ(Decimal::Parse("-9223372036854775808").AsInt64(), std::numeric_limits<std::int64_t>::min());
}

TEST(DecimalTest, RoundsToAmountsHalfToEven) {
  EXPECT_EQ(Decimal::Parse("1.00005").AsCurrency(), Currency{10000});
  EXPECT_EQ(Decimal::Parse("1.00015").AsCurrency(), Currency{10002});
  EXPECT_EQ(Decimal::Parse("12").AsCurrency(), Currency{120000});
  ExpectOverflow([] { Decimal::Parse("922337203685478").AsCurrency(); });
}

TEST(DecimalTest, DoublesOfDecimalsAreTheNearestOnes) {
  const struct {
    const char* Text;
    double Value;
  } rows[] = {{"0.1", 0.1},
              {"-1.25", -1.25},
              {"123456789012345678.9", 123456789012345678.9},
              {kLargest, 7.9228162514264337593543950335e28}};
  for (const auto& row : rows) EXPECT_EQ(Decimal::Parse(row.Text).AsDouble(), row.Value) << row.Text;
}

TEST(DecimalTest, ZeroHasNoSignHoweverItWasMade) {
  const Decimal negative{.Scale = 3, .Negative = true};
  EXPECT_EQ(negative, Decimal{});
  EXPECT_EQ(Decimal{}, negative);
  EXPECT_EQ(negative.AsText(), "0.000");
  EXPECT_EQ(negative.AsInt64(), 0);
  EXPECT_GT(negative, Decimal::Parse("-0.001"));
}

TEST(DecimalTest, DoublesOfManyPlacesAreTheNearestOnes) {
  for (const char* text : {"0.00000000000000000000000001", "-0.0000000000000000000000000123", "9007199254740993",
                           "0.9007199254740993", "12345678901234567890.12345678"}) {
    EXPECT_EQ(Decimal::Parse(text).AsDouble(), std::stod(text)) << text;
  }
}

TEST(DecimalTest, DoublesComeBackFromTheirDecimal) {
  for (const double value : {0.1, -1234.5678, 1e28, 1.0 / 3, 9007199254740992.0, 123456789.123456789}) {
    EXPECT_EQ(Decimal::From(value).AsDouble(), value);
  }
}

TEST(DecimalTest, ComparesByValueWhateverTheScale) {
  EXPECT_EQ(Decimal::Parse("1.5"), Decimal::Parse("1.500"));
  EXPECT_EQ(Decimal::Parse("0"), Decimal::Parse("-0.00"));
  EXPECT_LT(Decimal::Parse("-2"), Decimal::Parse("-1.9999999999999999999999999999"));
  EXPECT_LT(Decimal::Parse("-1"), Decimal::Parse("0.0000000000000000000000000001"));
  EXPECT_GT(Decimal::Parse(kLargest), Decimal::Parse("79228162514264337593543950334"));
  EXPECT_GT(Decimal::Parse(kLargest), Decimal::Parse("7.9228162514264337593543950335"));
  EXPECT_LT(Decimal::Parse("1.4999999999999999999999999999"), Decimal::Parse("1.5"));
}

}  // namespace
}  // namespace velmoria
