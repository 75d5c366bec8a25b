#include "velmoria/runtime/currency.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_failure.h"

namespace velmoria {
namespace {

TEST(CurrencyTest, ReadsAmountsExactly) {
  const struct {
    const char* Text;
    std::int64_t TenThousandths;
  } rows[] = {{"12.5", 125000},
              {"-0.0001", -1},
              {"  +7 ", 70000},
              {".5", 5000},
              {"5.", 50000},
              {"1e2", 1000000},
              {"125E-3", 1250},
              {"-0", 0},
              {"922337203685477.5807", std::numeric_limits<std::int64_t>::max()},
              {"-922337203685477.5808", std::numeric_limits<std::int64_t>::min()}};
  for (const auto& row : rows) EXPECT_EQ(Currency::Parse(row.Text).TenThousandths, row.TenThousandths) << row.Text;
}

TEST(CurrencyTest, DigitsBeyondTheFourthRoundHalfToEven) {
  const struct {
    const char* Text;
    std::int64_t TenThousandths;
  } rows[] = {{"0.00005", 0}, {"0.00015", 2},   {"0.00025", 2},          {"0.000250000000000000000000000001", 3},
              {"0.00024", 2}, {"-0.00015", -2}, {"0.00004999999999", 0}, {"0.99995", 10000},
              {"1e-5", 0}};
  for (const auto& row : rows) EXPECT_EQ(Currency::Parse(row.Text).TenThousandths, row.TenThousandths) << row.Text;
}

TEST(CurrencyTest, WhatIsNoNumberRaises13) {
  for (const char* text : {"", " ", "abc", "1,5", "$1", "1.2.3", "--1", "1e", "0x10", "nan", "inf", "1 2"}) {
    ExpectTypeMismatch([&] { Currency::Parse(text); });
  }
}

TEST(CurrencyTest, WhatDoesNotFitRaises6) {
  for (const char* text : {"922337203685477.5808", "-922337203685477.5809", "1e40", "1e999999999999"}) {
    ExpectOverflow([&] { Currency::Parse(text); });
  }
  for (const double value : {1e15, -1e15, 1e300, std::numeric_limits<double>::infinity(), std::nan("")}) {
    ExpectOverflow([&] { Currency::From(value); });
  }
}

TEST(CurrencyTest, DoublesRoundByTheirDecimalDigitsHalfToEven) {
  const struct {
    double Value;
    std::int64_t TenThousandths;
  } rows[] = {{0.1, 1000},        {-12.34565, -123456},
              {12.34575, 123458}, {1.00005, 10000},
              {1.00015, 10002},   {99.5, 995000},
              {1e-10, 0},         {12345678901.23455, 123456789012346},
              {-0.00005, 0},      {900000000000000.25, 9000000000000002000}};
  for (const auto& row : rows) EXPECT_EQ(Currency::From(row.Value).TenThousandths, row.TenThousandths) << row.Value;
}

TEST(CurrencyTest, PrintsExactlyWithoutTrailingZeros) {
  const struct {
    std::int64_t TenThousandths;
    const char* Text;
  } rows[] = {{125000, "12.5"},     {0, "0"},
              {-1, "-0.0001"},      {10000, "1"},
              {100000000, "10000"}, {std::numeric_limits<std::int64_t>::min(), "-922337203685477.5808"}};
  for (const auto& row : rows) EXPECT_EQ(Currency{row.TenThousandths}.AsText(), row.Text);
}

TEST(CurrencyTest, OrdersByAmount) {
  EXPECT_LT(Currency{-1}, Currency{0});
  EXPECT_EQ(Currency::Parse("1.50"), Currency::Parse("1.5"));
  EXPECT_DOUBLE_EQ(Currency{125000}.AsDouble(), 12.5);
}

}  // namespace
}  // namespace velmoria
