#include "velmoria/properties/attribute.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/properties/attribute_data.h"

namespace velmoria::test {
namespace {

class AttributeTest : public testing::Test {
 protected:
  static AttributePtr Made(const AttributeFields& fields) {
    auto data = Make<AttributeData>();
    data->Setup(fields, true);
    return Make<Attribute>(data);
  }
  static AttributePtr OfType(zDataTypes type, std::int32_t size = 0) {
    return Made({.Name = "A", .DataType = type, .Size = size});
  }

  ScopedApartment apartment_;
};

TEST_F(AttributeTest, EmptyTextIsAccepted) {
  const auto attribute = OfType(dtString, 1);
  attribute->SetValue("");
  EXPECT_EQ(attribute->Value(), Variant(""));
}

TEST_F(AttributeTest, ReadOnlyOneCanBeMadeWithAValueAndRefusesEveryOtherAssignment) {
  const auto attribute = Made({.Name = "A", .Value = "held", .DataType = dtString, .Modifiable = false});
  EXPECT_EQ(attribute->Value(), Variant("held"));
  ExpectRaised(errAttribute_Modify, [&] { attribute->SetValue("other"); }, {.Text = "Attribute: 'A'", .Count = 1});
  ExpectRaised(errAttribute_Modify, [&] { attribute->SetValue("held"); }, {.Count = 1});
  EXPECT_EQ(attribute->Value(), Variant("held"));
}

TEST_F(AttributeTest, AssignmentOfThePresentValueStamps) {
  const auto attribute = Made({.Name = "A", .Value = "same", .DataType = dtString});
  EXPECT_FALSE(attribute->Data()->Dirty());
  attribute->SetValue("same");
  EXPECT_TRUE(attribute->Data()->Dirty());
}

TEST_F(AttributeTest, LockedDoesNotStopTheValue) {
  const auto attribute = Made({.Name = "A", .DataType = dtString, .Locked = true});
  attribute->SetValue("new");
  EXPECT_EQ(attribute->Value(), Variant("new"));
}

TEST_F(AttributeTest, LockedRefusesTheOtherSetters) {
  const auto attribute = Made({.Name = "A", .DataType = dtString, .Locked = true});
  ExpectRaised(errVelmoria_Locked, [&] { attribute->SetDataType(dtDate); }, {.Text = "Attribute.DataType (Let)"});
  ExpectRaised(errVelmoria_Locked, [&] { attribute->SetSize(1); }, {.Text = "Attribute.Size (Let)"});
  ExpectRaised(errVelmoria_Locked, [&] { attribute->SetModifiable(false); }, {.Text = "Attribute.Modifiable (Let)"});
  attribute->SetLocked(false);
  attribute->SetSize(7);
  EXPECT_EQ(attribute->Size(), 7);
}

TEST_F(AttributeTest, ValueIsConvertedToTheType) {
  const auto attribute = OfType(dtLongInteger);
  attribute->SetValue("42");
  EXPECT_EQ(attribute->Value(), Variant(42));
}

TEST_F(AttributeTest, EmptyReadsAsTheZeroOfItsTypeAndNullAsNull) {
  EXPECT_EQ(OfType(dtLongInteger)->Value(), Variant(0));
  EXPECT_EQ(OfType(dtBoolean)->Value(), Variant(false));
  EXPECT_EQ(OfType(dtString)->Value(), Variant(""));
  EXPECT_TRUE(OfType(dtVariant)->Value().IsEmpty());
  const auto attribute = OfType(dtDate);
  attribute->SetValue(Variant::Null());
  EXPECT_TRUE(attribute->Value().IsNull());
}

TEST_F(AttributeTest, ValueThatDoesNotConvertIsRefusedAndLeavesTheOldOne) {
  const auto attribute = Made({.Name = "A", .Value = 5, .DataType = dtLongInteger});
  ExpectRaised(errAttribute_DataType, [&] { attribute->SetValue("abc"); },
               {.Text = "Attribute: 'A'  DataType: 'Long Integer'  ValueDataType: 'String'", .Count = 2});
  EXPECT_EQ(attribute->Value(), Variant(5));
}

TEST_F(AttributeTest, CauseOfARefusalIsBesideItAsAWarning) {
  EXPECT_TRUE(Thrown([] { OfType(dtInteger)->SetValue(70000); }));
  const auto cause = apartment_.Messages().Item("6");
  ASSERT_TRUE(cause);
  EXPECT_EQ(cause->SeverityFlags(), svfWarning);
  EXPECT_EQ(cause->TypeName(), "AttributeData");
  EXPECT_EQ(cause->RoutineName(), "Value (Let)");
}

TEST_F(AttributeTest, TextBeyondTheSizeIsRefused) {
  const auto attribute = OfType(dtString, 3);
  attribute->SetValue("äöü");
  ExpectRaised(errValue_Size, [&] { attribute->SetValue("abcd"); },
               {.Text = "Size Limit: 3  Value Length: 4", .Count = 1});
  EXPECT_EQ(attribute->Value(), Variant("äöü"));
}

TEST_F(AttributeTest, SizeIsOfNoConcernToOtherTypes) {
  const auto attribute = OfType(dtLongInteger, 1);
  attribute->SetValue(1000);
  EXPECT_EQ(attribute->Value(), Variant(1000));
}

TEST_F(AttributeTest, BinaryAndUntypedValuesAreKeptWithoutATest) {
  const auto binary = OfType(dtByteArray);
  binary->SetValue(17);
  EXPECT_EQ(binary->Value(), Variant(17));
  const auto untyped = OfType(dtVariant);
  untyped->SetValue("x");
  EXPECT_EQ(untyped->Value(), Variant("x"));
}

TEST_F(AttributeTest, ReadOnlyOneRefusesEmptyNullAndWhatDoesNotConvertAlike) {
  const auto attribute = Made({.Name = "A", .Value = 5, .DataType = dtLongInteger, .Modifiable = false});
  for (const auto& value : {Variant(), Variant::Null(), Variant("abc")}) {
    ExpectRaised(errAttribute_Modify, [&] { attribute->SetValue(value); }, {.Count = 1});
  }
  attribute->SetModifiable(true);
  attribute->SetValue(6);
  EXPECT_EQ(attribute->Value(), Variant(6));
}

TEST_F(AttributeTest, RefusalsNameTheDataAndTheSettersTheAttribute) {
  EXPECT_TRUE(Thrown([] { OfType(dtLongInteger)->SetValue("abc"); }));
  EXPECT_EQ(apartment_.Messages().Item("15020")->TypeName(), "AttributeData");
  EXPECT_EQ(apartment_.Messages().Item("15020")->RoutineName(), "Value (Let)");
  EXPECT_TRUE(Thrown([] { Made({.Name = "A", .Locked = true})->SetSize(1); }));
  EXPECT_EQ(apartment_.Messages().Item("15002")->TypeName(), "Attribute");
}

TEST_F(AttributeTest, MissingValueLeavesItEmpty) {
  EXPECT_TRUE(Made({.Name = "A"})->Value().IsEmpty());
  EXPECT_EQ(Made({.Name = "A", .Value = Variant(), .DataType = dtDate})->Value(), Variant(Date{}));
}

TEST_F(AttributeTest, FirstValueMeetsTheTests) {
  ExpectRaised(errAttribute_DataType, [] { Made({.Name = "A", .Value = "x", .DataType = dtDate}); });
  ExpectRaised(errValue_Size, [] { Made({.Name = "A", .Value = "abc", .DataType = dtString, .Size = 2}); });
}

TEST_F(AttributeTest, UnreadableSettingFailsWhenItIsReadAndShowsItsText) {
  const auto attribute = OfType(dtBoolean);
  attribute->Data()->SetStoredValue("maybe");
  ExpectReported(RuntimeFailure::TypeMismatch, [&] { attribute->Value(); });
  EXPECT_EQ(attribute->Details(), "Attribute: 'A'  DataType: 'Boolean'  Value: 'maybe'");
  attribute->SetValue(true);
  EXPECT_EQ(attribute->Value(), Variant(true));
}

class AttributeOutsideTest : public AttributeTest, public testing::WithParamInterface<std::int32_t> {};

TEST_P(AttributeOutsideTest, DataTypeAndSizeOutsideAreKept) {
  const auto attribute = Made({.Name = "A", .Value = "kept"});
  attribute->SetDataType(zDataTypes{GetParam()});
  attribute->SetSize(GetParam());
  EXPECT_EQ(attribute->DataType(), zDataTypes{GetParam()});
  EXPECT_EQ(attribute->Size(), GetParam());
  EXPECT_EQ(attribute->Value(), Variant("kept"));
  EXPECT_EQ(attribute->Details(), "Attribute: 'A'  DataType: ''  Value: 'kept'");
  attribute->SetValue(Variant::ArrayOfValues({1}));
  EXPECT_TRUE(attribute->Value().IsArray());
}

INSTANTIATE_TEST_SUITE_P(Table, AttributeOutsideTest, testing::Values(-1, 12, 2147483647, -2147483647 - 1));

TEST_F(AttributeTest, OtherDataTypeLeavesTheStoredValue) {
  const auto attribute = Made({.Name = "A", .Value = "2.5", .DataType = dtString});
  attribute->SetDataType(dtInteger);
  EXPECT_EQ(attribute->Value(), Variant(std::int16_t{2}));
  attribute->SetDataType(dtString);
  EXPECT_EQ(attribute->Value(), Variant("2.5"));
}

TEST_F(AttributeTest, TypeHasAName) { EXPECT_EQ(OfType(dtByteArray)->DataTypeName(), "Byte Array"); }

TEST_F(AttributeTest, DetailsShowNameTypeAndValue) {
  EXPECT_EQ(Made({.Name = "A", .Value = 5, .DataType = dtLongInteger})->Details(),
            "Attribute: 'A'  DataType: 'Long Integer'  Value: '5'");
}

TEST_F(AttributeTest, BinaryValueIsShownWithoutABlankInItsWord) {
  EXPECT_EQ(Made({.Name = "A", .Value = std::vector<Byte>{1, 2}, .DataType = dtByteArray})->Details(),
            "Attribute: 'A'  DataType: 'Byte Array'  Value: '(ByteArray)'");
}

TEST_F(AttributeTest, DetailsOfAValueWithoutATextFormDoNotFail) {
  EXPECT_EQ(Made({.Name = "A", .Value = Variant::Null()})->Details(), "Attribute: 'A'  DataType: 'Variant'  Value: ''");
  EXPECT_EQ(Made({.Name = "A", .Value = Variant::ArrayOfValues({1, 2})})->Details(),
            "Attribute: 'A'  DataType: 'Variant'  Value: '(Variant())'");
}

TEST_F(AttributeTest, CopyIsOneOfItsOwn) {
  const auto attribute = Made({"A", "x", dtString, false, 9, true});
  const auto copy = attribute->Copy();
  attribute->Data()->SetName("B");
  EXPECT_EQ(copy->Name(), "A");
  EXPECT_EQ(copy->Value(), Variant("x"));
  EXPECT_FALSE(copy->Modifiable());
  EXPECT_EQ(copy->Size(), 9);
  EXPECT_TRUE(copy->Locked());
  EXPECT_FALSE(copy->Data()->Dirty());
}

TEST_F(AttributeTest, NewDataIsDirtyUnlessItIsMadeClean) {
  auto data = Make<AttributeData>();
  data->Setup({.Name = "A"});
  EXPECT_TRUE(data->Dirty());
  data->ClearDirty();
  EXPECT_FALSE(data->Dirty());
  EXPECT_EQ(data->DateCreated(), apartment_.Clock().Time);
}

TEST_F(AttributeTest, SetterStampsOnlyForAnotherValue) {
  const auto attribute = OfType(dtString);
  attribute->SetSize(0);
  attribute->SetDataType(dtString);
  attribute->SetModifiable(true);
  attribute->SetLocked(false);
  EXPECT_FALSE(attribute->Data()->Dirty());
  attribute->SetLocked(true);
  EXPECT_TRUE(attribute->Data()->Dirty());
}

}  // namespace
}  // namespace velmoria::test
