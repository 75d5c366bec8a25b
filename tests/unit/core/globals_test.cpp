#include "velmoria/core/globals.h"

#include <cstdint>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace velmoria {
namespace {

Date At(int hour, int minute, int second, int millisecond = 0) {
  return Date::From({1998, 6, 1, hour, minute, second, millisecond});
}

class Thing final : public Object {};

TEST(GlobalsTest, DatesWithinOneSecondAreEqual) { EXPECT_TRUE(VariantsEqual(At(9, 0, 0, 100), At(9, 0, 0, 500))); }

TEST(GlobalsTest, DatesAcrossASecondBoundaryDiffer) { EXPECT_FALSE(VariantsEqual(At(9, 0, 0, 900), At(9, 0, 1, 100))); }

TEST(GlobalsTest, ADateAHairBelowItsSecondIsThatSecond) {
  const Date exact = At(9, 0, 1);
  EXPECT_TRUE(VariantsEqual(exact, Date{exact.Days - 1e-10}));
}

TEST(GlobalsTest, EmptyAndNullAreEachEqualToThemselvesOnly) {
  EXPECT_TRUE(VariantsEqual({}, {}));
  EXPECT_TRUE(VariantsEqual(Variant::Null(), Variant::Null()));
  EXPECT_FALSE(VariantsEqual({}, Variant::Null()));
  EXPECT_FALSE(VariantsEqual(Variant::Null(), {}));
  EXPECT_FALSE(VariantsEqual(0, {}));
  EXPECT_FALSE(VariantsEqual("", {}));
}

TEST(GlobalsTest, EqualNumbersOfTwoTypesDiffer) {
  EXPECT_FALSE(VariantsEqual(std::int16_t{1}, std::int32_t{1}));
  EXPECT_TRUE(VariantsEqual(std::int16_t{1}, std::int16_t{1}));
}

TEST(GlobalsTest, ValuesOfOneTypeCompareByValue) {
  const std::pair<Variant, Variant> pairs[] = {
      {true, false},      {std::int32_t{1}, std::int32_t{2}}, {1.5F, 2.5F},
      {1.5, 2.5},         {Currency{10000}, Currency{10001}}, {Decimal::Parse("1.10"), Decimal::Parse("1.11")},
      {Byte{1}, Byte{2}}, {At(9, 0, 0), At(9, 0, 1)},         {Make<Thing>(), Make<Thing>()}};
  for (const auto& [first, second] : pairs) {
    EXPECT_TRUE(VariantsEqual(first, Variant(first))) << first.TypeName();
    EXPECT_FALSE(VariantsEqual(first, second)) << first.TypeName();
  }
}

TEST(GlobalsTest, DatesOfOneSecondOnOtherDaysDiffer) {
  EXPECT_FALSE(VariantsEqual(At(9, 0, 0), Date{At(9, 0, 0).Days + 1}));
}

TEST(GlobalsTest, ArraysOfATypeCompareByTheirElements) {
  const Variant bytes(std::vector<Byte>{1, 2});
  EXPECT_TRUE(VariantsEqual(bytes, Variant(std::vector<Byte>{1, 2})));
  EXPECT_FALSE(VariantsEqual(bytes, Variant(std::vector<Byte>{1, 3})));
  EXPECT_FALSE(VariantsEqual(bytes, Variant(std::vector<Byte>{1})));
  EXPECT_FALSE(VariantsEqual(bytes, Variant::ArrayOfValues({Byte{1}, Byte{2}})));
}

TEST(GlobalsTest, TextsCompareWithCase) {
  EXPECT_TRUE(VariantsEqual("Order", "Order"));
  EXPECT_FALSE(VariantsEqual("Order", "order"));
}

TEST(GlobalsTest, ArraysCompareByBoundsAndElements) {
  const auto values = Variant::ArrayOfValues({1, "a"});
  EXPECT_TRUE(VariantsEqual(values, Variant::ArrayOfValues({1, "a"})));
  EXPECT_FALSE(VariantsEqual(values, Variant::ArrayOfValues({1, "b"})));
  EXPECT_FALSE(VariantsEqual(values, Variant::ArrayOfValues({1, "a", 2})));
  EXPECT_FALSE(VariantsEqual(Variant::Array(0, 1), Variant::Array(1, 2)));
}

TEST(GlobalsTest, StripNameDelimitersRemovesEveryBracketAndAt) {
  EXPECT_EQ(StripNameDelimiters("[dbo].[@Order] [Lines]"), "dbo.Order Lines");
  EXPECT_EQ(StripNameDelimiters("Plain"), "Plain");
  EXPECT_EQ(StripNameDelimiters("[@]"), "");
}

}  // namespace
}  // namespace velmoria
