#include <cmath>

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_failure.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {
namespace {

class Plain : public Object {};

Date At(int second, int millisecond) { return Date::From({2026, 11, 20, 9, 0, second, millisecond}); }

TEST(VariantCompareTest, EqualValuesOfOneTypeAreTheSame) {
  const auto object = Make<Plain>();
  const struct {
    Variant Left;
    Variant Right;
    bool Same;
  } rows[] = {{Variant(), Variant(), true},
              {Variant::Null(), Variant::Null(), true},
              {Variant::Missing(), Variant::Missing(), true},
              {Variant(), Variant::Null(), false},
              {Variant::Null(), Variant(), false},
              {Variant(), 0, false},
              {Variant(), "", false},
              {Variant::Null(), 0, false},
              {std::int16_t{1}, 1, false},
              {"1", 1, false},
              {1, 1.0, false},
              {1, true, false},
              {Byte{1}, std::int16_t{1}, false},
              {7, 7, true},
              {7, 8, false},
              {1.5F, 1.5F, true},
              {1.5, 1.25, false},
              {0.0, -0.0, true},
              {std::nan(""), std::nan(""), false},
              {Currency{1}, Currency{1}, true},
              {Decimal::Parse("1.50"), Decimal::Parse("1.5"), true},
              {true, true, true},
              {true, false, false},
              {"Load", "Load", true},
              {"Load", "load", false},
              {"a text too long to be held inside", "a text too long to be held inside", true},
              {"a text too long to be held inside", "a text too long to be held outside", false},
              {object, object, true},
              {object, Make<Plain>(), false},
              {Ref<Plain>(), Ref<Plain>(), true},
              {object, Ref<Plain>(), false},
              {Byte{7}, Byte{7}, true},
              {Byte{7}, Byte{8}, false},
              {std::int16_t{7}, std::int16_t{8}, false},
              {1.5F, 1.25F, false},
              {std::nanf(""), std::nanf(""), false},
              {Currency{1}, Currency{2}, false},
              {Decimal::Parse("1.5"), Decimal::Parse("1.6"), false},
              {"", "", true},
              {"short", "a text too long to be held inside", false}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.Left == row.Right, row.Same) << row.Left.TypeName() << " " << row.Right.TypeName();
    EXPECT_EQ(row.Right == row.Left, row.Same) << row.Left.TypeName() << " " << row.Right.TypeName();
  }
}

TEST(VariantCompareTest, DatesOfOneSecondAreTheSame) {
  EXPECT_TRUE(Variant(At(0, 100)) == Variant(At(0, 500)));
  EXPECT_FALSE(Variant(At(0, 900)) == Variant(At(1, 100)));
  const Date second = At(1, 0);
  EXPECT_TRUE(Variant(second) == Variant(Date{std::nextafter(second.Days, 0)}));
}

TEST(VariantCompareTest, ArraysAreComparedElementByElement) {
  const Variant array = Variant::ArrayOfValues({1, "x", At(0, 100)});
  EXPECT_TRUE(array == Variant::ArrayOfValues({1, "x", At(0, 300)}));
  EXPECT_FALSE(array == Variant::ArrayOfValues({1, "y", At(0, 100)}));
  EXPECT_FALSE(array == Variant::ArrayOfValues({1, "x"}));
  EXPECT_TRUE(Variant(std::vector<Byte>{1, 2}) == Variant(std::vector<Byte>{1, 2}));
  EXPECT_FALSE(Variant(std::vector<Byte>{1, 2}) == Variant(std::vector<Byte>{1, 3}));
  EXPECT_TRUE(Variant::Array(0, 2, VarType::Integer) == Variant::Array(0, 2, VarType::Integer));
}

TEST(VariantCompareTest, ArraysOfOtherBoundsOrTypesDiffer) {
  EXPECT_FALSE(Variant::Array(0, 1) == Variant::Array(1, 2));
  EXPECT_FALSE(Variant::Array(0, 1) == Variant::Array(0, 2));
  EXPECT_FALSE(Variant::Array(0, 1, VarType::Integer) == Variant::Array(0, 1, VarType::Long));
  EXPECT_FALSE(Variant::Array2(1, 2) == Variant::Array2(2, 1));
  EXPECT_FALSE(Variant::Array2(0, 1) == Variant::Array(0, 1));
}

TEST(VariantCompareTest, NumbersOfAnyWidthAreOrderedByValue) {
  const struct {
    Variant Left;
    Variant Right;
    int Order;
  } rows[] = {{std::int16_t{1}, 1, 0},
              {1, 1.5, -1},
              {Byte{200}, std::int16_t{-1}, 1},
              {true, 0, -1},
              {true, -1, 0},
              {Currency{15000}, 1.5F, 0},
              {Currency{15001}, Decimal::Parse("1.5"), 1},
              {Decimal::Parse("79228162514264337593543950335"), 2147483647, 1},
              {Currency{9223372036854775807}, 5, 1},
              {0.1F, 0.1, 1}};
  for (const auto& row : rows) {
    EXPECT_EQ(Compare(row.Left, row.Right), row.Order) << row.Left.AsText() << " " << row.Right.AsText();
    EXPECT_EQ(Compare(row.Right, row.Left), -row.Order);
  }
}

TEST(VariantCompareTest, EqualNumbersOfAllPairsOfTypesCompareEqual) {
  const Variant sevens[] = {std::int16_t{7}, 7, 7.0F, 7.0, Currency{70000}, Decimal::Parse("7.00"), Byte{7}};
  const Variant eights[] = {std::int16_t{8}, 8, 8.0F, 8.0, Currency{80000}, Decimal::Parse("8.0"), Byte{8}};
  for (const Variant& seven : sevens) {
    for (const Variant& other : sevens) EXPECT_EQ(Compare(seven, other), 0) << other.TypeName();
    for (const Variant& eight : eights) EXPECT_EQ(Compare(seven, eight), -1) << eight.TypeName();
    EXPECT_EQ(Compare(seven, true), 1) << seven.TypeName();
    EXPECT_EQ(Compare(false, seven), -1) << seven.TypeName();
  }
}

TEST(VariantCompareTest, TextsAreOrderedByTheirBytes) {
  EXPECT_EQ(Compare("a", "b"), -1);
  EXPECT_EQ(Compare("B", "a"), -1);
  EXPECT_EQ(Compare("ä", "z"), 1);
  EXPECT_EQ(Compare("x", "x"), 0);
}

TEST(VariantCompareTest, DatesAreOrderedByWholeSeconds) {
  EXPECT_EQ(Compare(At(0, 100), At(0, 900)), 0);
  EXPECT_EQ(Compare(At(0, 900), At(1, 0)), -1);
  EXPECT_EQ(Compare(Date{-1.25}, Date{-1.75}), -1);
}

TEST(VariantCompareTest, WhatCannotBeOrderedRaises13) {
  const struct {
    Variant Left;
    Variant Right;
  } rows[] = {{"1", 1}, {Date{1}, 1},  {Variant::Null(), 1}, {Variant(), Variant()},
              {1, "x"}, {"x", Date{}}, {std::nan(""), 1.0},  {Variant::Array(0, 1), Variant::Array(0, 1)}};
  for (const auto& row : rows) {
    ExpectTypeMismatch([&] { Compare(row.Left, row.Right); });
  }
}

}  // namespace
}  // namespace velmoria
