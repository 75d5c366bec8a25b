#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_failure.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {
namespace {

TEST(VariantArrayTest, HasTheBoundsItWasMadeWith) {
  const Variant array = Variant::Array(3, 5);
  EXPECT_EQ(array.LowerBound(), 3);
  EXPECT_EQ(array.UpperBound(), 5);
  EXPECT_EQ(array.Dimensions(), 1);
  EXPECT_TRUE(array.Element(4).IsEmpty());
}

TEST(VariantArrayTest, ElementsOfATypeStartAsItsZero) {
  EXPECT_EQ(Variant::Array(0, 0, VarType::Integer).Element(0), Variant(std::int16_t{0}));
  EXPECT_EQ(Variant::Array(0, 0, VarType::String).Element(0), Variant(""));
  EXPECT_EQ(Variant::Array(0, 0, VarType::Byte).Element(0), Variant(Byte{0}));
  EXPECT_EQ(Variant::Array(0, 0, VarType::Boolean).Element(0), Variant(false));
  EXPECT_EQ(Variant::Array(0, 0, VarType::Object).Element(0).TypeName(), "Nothing");
}

TEST(VariantArrayTest, AnUpperBoundBelowTheLowerMakesItEmpty) {
  const Variant array = Variant::Array(0, -1, VarType::Byte);
  EXPECT_EQ(array.UpperBound(), -1);
  EXPECT_TRUE(array.Bytes().empty());
  ExpectSubscriptOutOfRange([&] { array.Element(0); });
  ExpectSubscriptOutOfRange([] { Variant::Array(0, -2); });
}

TEST(VariantArrayTest, SubscriptsOutOfBoundsRaise9) {
  Variant array = Variant::Array(1, 2);
  ExpectSubscriptOutOfRange([&] { array.Element(0); });
  ExpectSubscriptOutOfRange([&] { array.Element(3); });
  ExpectSubscriptOutOfRange([&] { array.Element(1, 1); });
  ExpectSubscriptOutOfRange([&] { array.SetElement(3, 1); });
  ExpectSubscriptOutOfRange([&] { array.LowerBound(2); });
  ExpectSubscriptOutOfRange([&] { array.UpperBound(0); });
  ExpectSubscriptOutOfRange([&] { array.Element(std::numeric_limits<std::int32_t>::min()); });
}

TEST(VariantArrayTest, WhatIsNoArrayRaises13) {
  Variant value(5);
  ExpectTypeMismatch([&] { value.Element(0); });
  ExpectTypeMismatch([&] { value.SetElement(0, 1); });
  ExpectTypeMismatch([&] { value.UpperBound(); });
  ExpectTypeMismatch([&] { value.ResizeLast(1); });
  EXPECT_EQ(value.Dimensions(), 0);
  EXPECT_TRUE(value.Bytes().empty());
}

TEST(VariantArrayTest, ElementsMustHaveATypeThatValuesCanHave) {
  for (const VarType type : {VarType::Empty, VarType::Null, VarType::Error, VarType::Unknown, VarType::Array}) {
    ExpectInvalidArgument([&] { Variant::Array(0, 0, type); });
  }
}

TEST(VariantArrayTest, ATypedArrayConvertsWhatItTakes) {
  Variant array = Variant::Array(0, 1, VarType::Integer);
  array.SetElement(0, "12");
  EXPECT_EQ(array.Element(0), Variant(std::int16_t{12}));
  ExpectTypeMismatch([&] { array.SetElement(0, "twelve"); });
  ExpectOverflow([&] { array.SetElement(0, 70000); });
  EXPECT_EQ(array.Element(0), Variant(std::int16_t{12}));
  Variant objects = Variant::Array(0, 0, VarType::Object);
  ExpectTypeMismatch([&] { objects.SetElement(0, 1); });
}

TEST(VariantArrayTest, AVariantArrayKeepsValuesAsTheyAre) {
  const Variant array = Variant::ArrayOfValues({1, "x", Variant::Null(), Variant::Array(0, 1)});
  EXPECT_EQ(array.LowerBound(), 0);
  EXPECT_EQ(array.UpperBound(), 3);
  EXPECT_EQ(array.Element(1), Variant("x"));
  EXPECT_TRUE(array.Element(2).IsNull());
  EXPECT_TRUE(array.Element(3).IsArray());
}

TEST(VariantArrayTest, CopiesPartWhenOneIsWritten) {
  Variant first = Variant::ArrayOfValues({1, 2});
  const Variant second = first;
  first.SetElement(0, 9);
  EXPECT_EQ(first.Element(0), Variant(9));
  EXPECT_EQ(second.Element(0), Variant(1));
}

TEST(VariantArrayTest, AnArrayMayBePutIntoItself) {
  Variant array = Variant::ArrayOfValues({1, 2});
  array.SetElement(0, array);
  EXPECT_EQ(array.Element(0).Element(0), Variant(1));
  EXPECT_EQ(array.Element(1), Variant(2));
}

TEST(VariantArrayTest, TwoDimensionsAreReachedByTwoSubscripts) {
  Variant array = Variant::Array2(1, 2);
  for (std::int32_t field = 0; field <= 1; ++field) {
    for (std::int32_t row = 0; row <= 2; ++row) array.SetElement(field, row, field * 10 + row);
  }
  EXPECT_EQ(array.Dimensions(), 2);
  EXPECT_EQ(array.UpperBound(1), 1);
  EXPECT_EQ(array.UpperBound(2), 2);
  EXPECT_EQ(array.Element(1, 2), Variant(12));
  ExpectSubscriptOutOfRange([&] { array.Element(2, 0); });
  ExpectSubscriptOutOfRange([&] { array.Element(0); });
}

TEST(VariantArrayTest, ResizeKeepsTheElementsThatFit) {
  Variant array = Variant::Array(5, 6, VarType::Long);
  array.SetElement(6, 60);
  array.ResizeLast(8);
  EXPECT_EQ(array.Element(6), Variant(60));
  EXPECT_EQ(array.Element(8), Variant(0));
  array.ResizeLast(5);
  array.ResizeLast(6);
  EXPECT_EQ(array.Element(6), Variant(0));
  array.ResizeLast(4);
  EXPECT_EQ(array.UpperBound(), 4);
  ExpectSubscriptOutOfRange([&] { array.ResizeLast(3); });
}

TEST(VariantArrayTest, ResizeOfTwoDimensionsKeepsWholeRows) {
  Variant array = Variant::Array2(1, 1);
  array.SetElement(1, 1, "last");
  array.ResizeLast(3);
  EXPECT_EQ(array.Element(1, 1), Variant("last"));
  EXPECT_TRUE(array.Element(1, 3).IsEmpty());
  array.ResizeLast(0);
  EXPECT_EQ(array.UpperBound(1), 1);
  ExpectSubscriptOutOfRange([&] { array.Element(1, 1); });
}

TEST(VariantArrayTest, AnArrayThatCannotGrowKeepsItsBounds) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max() - 1;
  Variant array = Variant::Array2(kMost, -1);
  EXPECT_THROW(array.ResizeLast(kMost), std::length_error);
  EXPECT_EQ(array.UpperBound(2), -1);
}

TEST(VariantArrayTest, ResizeLeavesCopiesAsTheyAre) {
  Variant first(std::vector<Byte>{1, 2, 3});
  const Variant second = first;
  first.ResizeLast(0);
  EXPECT_EQ(first.Bytes().size(), 1U);
  EXPECT_EQ(second.Bytes().size(), 3U);
}

TEST(VariantArrayTest, EveryTypeOfElementConvertsAndStartsAsZero) {
  const struct {
    VarType Type;
    Variant Zero;
    Variant Seven;
  } rows[] = {{VarType::Integer, std::int16_t{0}, std::int16_t{7}},
              {VarType::Long, 0, 7},
              {VarType::Single, 0.0F, 7.0F},
              {VarType::Double, 0.0, 7.0},
              {VarType::Currency, Currency{0}, Currency{70000}},
              {VarType::Date, Date{0}, Date{7}},
              {VarType::String, "", "7"},
              {VarType::Boolean, false, true},
              {VarType::Decimal, Decimal{}, Decimal::From(std::int64_t{7})},
              {VarType::Byte, Byte{0}, Byte{7}}};
  for (const auto& row : rows) {
    Variant array = Variant::Array(-1, 1, row.Type);
    array.SetElement(1, std::int16_t{7});
    EXPECT_EQ(array.Element(-1), row.Zero) << row.Zero.TypeName();
    EXPECT_EQ(array.Element(1), row.Seven) << row.Zero.TypeName();
  }
}

TEST(VariantArrayTest, TwoDimensionsCheckEachSubscript) {
  Variant array = Variant::Array2(1, 2);
  ExpectSubscriptOutOfRange([&] { array.Element(0, 3); });
  ExpectSubscriptOutOfRange([&] { array.Element(-1, 0); });
  ExpectSubscriptOutOfRange([&] { array.SetElement(0, -1, 1); });
  ExpectSubscriptOutOfRange([&] { array.SetElement(0, 1); });
  ExpectSubscriptOutOfRange([&] { array.UpperBound(3); });
  ExpectSubscriptOutOfRange([] { Variant::Array2(-2, 0); });
  Variant none(5);
  ExpectTypeMismatch([&] { none.Element(0, 0); });
  ExpectTypeMismatch([&] { none.SetElement(0, 0, 1); });
}

TEST(VariantArrayTest, ByteArraysShowTheirBytes) {
  Variant array(std::vector<Byte>{1, 2, 255});
  EXPECT_EQ(array.LowerBound(), 0);
  EXPECT_EQ(array.UpperBound(), 2);
  EXPECT_EQ(array.Bytes().size(), 3U);
  EXPECT_EQ(array.Element(2), Variant(Byte{255}));
  array.SetElement(0, 200);
  EXPECT_EQ(array.Bytes()[0], 200);
  ExpectOverflow([&] { array.SetElement(0, 256); });
  EXPECT_EQ(Variant(std::vector<Byte>()).UpperBound(), -1);
}

TEST(VariantArrayTest, BytesThatAreMovedInStayWhereTheyAre) {
  std::vector<Byte> bytes(1000, Byte{7});
  const auto* const place = bytes.data();
  const Variant array = std::move(bytes);
  EXPECT_EQ(array.Bytes().data(), place);
  EXPECT_EQ(array.LowerBound(), 0);
  EXPECT_EQ(array.UpperBound(), 999);
}

}  // namespace
}  // namespace velmoria
