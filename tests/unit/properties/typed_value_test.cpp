#include <vector>

#include <gtest/gtest.h>

#include "velmoria/properties/typed_value_impl.h"
#include "velmoria/runtime/error.h"

namespace velmoria {
namespace {

struct Row {
  zDataTypes DataType;
  VarType Storage;
  Variant Zero;
  Variant OfText;  // what "1" converts to
};

const std::vector<Row>& Rows() {
  static const std::vector<Row> rows{
      {dtString, VarType::String, "", "1"},
      {dtLongInteger, VarType::Long, 0, 1},
      {dtInteger, VarType::Integer, std::int16_t{0}, std::int16_t{1}},
      {dtCurrency, VarType::Currency, Currency{}, Currency{10000}},
      {dtSingle, VarType::Single, 0.0F, 1.0F},
      {dtDouble, VarType::Double, 0.0, 1.0},
      {dtDecimal, VarType::Decimal, Decimal{}, Decimal::From(std::int64_t{1})},
      {dtByte, VarType::Byte, Byte{0}, Byte{1}},
      {dtBoolean, VarType::Boolean, false, true},
  };
  return rows;
}

TEST(TypedValueTest, EmptyBecomesTheZeroOfTheType) {
  for (const auto& row : Rows()) EXPECT_EQ(ConvertToDataType(Variant(), row.DataType), row.Zero);
  EXPECT_EQ(ConvertToDataType(Variant(), dtDate), Variant(Date{}));
}

TEST(TypedValueTest, TextConvertsToTheStorageOfTheType) {
  for (const auto& row : Rows()) {
    const auto value = ConvertToDataType("1", row.DataType);
    EXPECT_EQ(value.Type(), row.Storage);
    EXPECT_EQ(value, row.OfText);
  }
  EXPECT_EQ(ConvertToDataType("1998-06-01", dtDate), Variant(Date::From(1998, 6, 1)));
}

TEST(TypedValueTest, UntypedAndBinaryValuesStayAsTheyAre) {
  for (const auto type : {dtVariant, dtByteArray, zDataTypes{12}, zDataTypes{-1}}) {
    EXPECT_EQ(ConvertToDataType("x", type), Variant("x"));
    EXPECT_TRUE(ConvertToDataType(Variant(), type).IsEmpty());
  }
}

TEST(TypedValueTest, WhatDoesNotConvertFails) {
  const auto numberOf = [](const Variant& value, zDataTypes type) {
    try {
      ConvertToDataType(value, type);
    } catch (const Error& error) { return error.Number(); }
    return 0;
  };
  EXPECT_EQ(numberOf("abc", dtLongInteger), 13);
  EXPECT_EQ(numberOf(70000, dtInteger), 6);
  EXPECT_EQ(numberOf(Variant::Null(), dtLongInteger), 94);
}

TEST(TypedValueTest, EachStorageMatchesItsOwnTypeOnly) {
  auto rows = Rows();
  rows.push_back({dtDate, VarType::Date, {}, {}});
  rows.push_back({dtByteArray, VarType::Array, {}, {}});
  for (const auto& type : rows) {
    for (const auto& storage : rows) {
      EXPECT_EQ(VarTypeMatches(storage.Storage, type.DataType), storage.DataType == type.DataType);
    }
  }
}

TEST(TypedValueTest, NothingMatchesUntyped) {
  for (const auto storage : {VarType::Empty, VarType::Null, VarType::Variant, VarType::String}) {
    EXPECT_FALSE(VarTypeMatches(storage, dtVariant));
  }
}

TEST(TypedValueTest, RealByteArrayDoesNotMatchTheBareMarker) {
  EXPECT_FALSE(VarTypeMatches(ArrayOf(VarType::Byte), dtByteArray));
}

}  // namespace
}  // namespace velmoria
