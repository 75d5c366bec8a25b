#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertyValueTest : public testing::Test {
 protected:
  static PropertyPtr New(const PropertyFields& fields) { return Framework().CreateProperty(fields); }
  static PropertyPtr Of(zDataTypes dataType, zPropertyFlags flags = pfNone) {
    return New({.Name = "X", .DataType = dataType, .Flags = flags});
  }

  ScopedApartment apartment_;
};

struct Coercion {
  const char* Name;
  zDataTypes DataType;
  Variant Given;
  Variant Stored;
};

class PropertyCoercionTest : public PropertyValueTest, public testing::WithParamInterface<Coercion> {};

TEST_P(PropertyCoercionTest, ValueTakesTheStorageOfItsDataType) {
  const auto& [name, dataType, given, stored] = GetParam();
  const auto property = Of(dataType);
  property->SetValue(given);
  EXPECT_TRUE(property->Value() == stored) << property->Value().TypeName();
}

INSTANTIATE_TEST_SUITE_P(
    Table, PropertyCoercionTest,
    testing::Values(Coercion{"VariantKeepsText", dtVariant, "7", "7"}, Coercion{"VariantKeepsNumber", dtVariant, 7, 7},
                    Coercion{"OutsideTheTableKeeps", static_cast<zDataTypes>(12), 7, 7},
                    Coercion{"String", dtString, 42, "42"}, Coercion{"LongInteger", dtLongInteger, "42", 42},
                    Coercion{"Date", dtDate, "1998-06-01", Date::From(1998, 6, 1)},
                    Coercion{"Integer", dtInteger, 42, std::int16_t{42}}, Coercion{"Boolean", dtBoolean, 1, true},
                    Coercion{"Currency", dtCurrency, 1.5, Currency{15000}}, Coercion{"Single", dtSingle, 1.5, 1.5F},
                    Coercion{"Double", dtDouble, "1.5", 1.5},
                    Coercion{"Decimal", dtDecimal, "1.50", Decimal::Parse("1.50")},
                    Coercion{"Byte", dtByte, 200, Byte{200}},
                    Coercion{"ByteArrayKeepsBytes", dtByteArray, std::vector<Byte>{1, 2}, std::vector<Byte>{1, 2}},
                    Coercion{"ByteArrayKeepsText", dtByteArray, "raw", "raw"}),
    [](const auto& each) { return each.param.Name; });

class PropertyUnsetTest : public PropertyValueTest,
                          public testing::WithParamInterface<std::pair<zDataTypes, Variant>> {};

TEST_P(PropertyUnsetTest, EmptyReadsAsTheZeroOfItsType) {
  const auto property = Of(GetParam().first);
  EXPECT_TRUE(property->Value() == GetParam().second) << property->Value().TypeName();
  EXPECT_TRUE(property->EmptyValue());
}

INSTANTIATE_TEST_SUITE_P(Table, PropertyUnsetTest,
                         testing::Values(std::pair{dtVariant, Variant()}, std::pair{dtByteArray, Variant()},
                                         std::pair{dtString, Variant("")}, std::pair{dtLongInteger, Variant(0)},
                                         std::pair{dtDate, Variant(Date{})},
                                         std::pair{dtInteger, Variant(std::int16_t{0})},
                                         std::pair{dtBoolean, Variant(false)},
                                         std::pair{dtCurrency, Variant(Currency{})}, std::pair{dtSingle, Variant(0.0F)},
                                         std::pair{dtDouble, Variant(0.0)}, std::pair{dtDecimal, Variant(Decimal{})},
                                         std::pair{dtByte, Variant(Byte{0})}));

TEST_F(PropertyValueTest, EmptyReadsAsTheDefaultValueInItsStorage) {
  const auto property = New({.Name = "X", .DataType = dtLongInteger, .DefaultValue = "5"});
  EXPECT_TRUE(property->Value() == Variant(5));
  EXPECT_TRUE(property->EmptyValue());
}

TEST_F(PropertyValueTest, NullReadsAsNullInSpiteOfADefaultValue) {
  const auto property = New({.Name = "X", .DataType = dtLongInteger, .DefaultValue = 5});
  property->SetValue(Variant::Null());
  EXPECT_TRUE(property->Value().IsNull());
}

TEST_F(PropertyValueTest, EmptyWithADefaultOfNullReadsAsNull) {
  const auto property = New({.Name = "X", .DataType = dtLongInteger, .DefaultValue = Variant::Null()});
  EXPECT_TRUE(property->DefaultValue().IsNull());
  EXPECT_TRUE(property->Value().IsNull());
}

TEST_F(PropertyValueTest, EmptyBinaryReadsAsItsDefaultValueUnconverted) {
  const auto property = New({.Name = "X", .DataType = dtByteArray, .DefaultValue = "raw"});
  EXPECT_TRUE(property->Value() == Variant("raw"));
}

TEST_F(PropertyValueTest, EmptyAndNullAreLegalForEveryDataType) {
  for (int code = 0; code <= 11; ++code) {
    const auto property = Of(static_cast<zDataTypes>(code));
    property->SetValue(Variant::Null());
    EXPECT_TRUE(property->Value().IsNull()) << code;
    property->SetValue(Variant());
    EXPECT_TRUE(property->EmptyValue()) << code;
  }
}

TEST_F(PropertyValueTest, InitialValueIsStoredUncheckedAndFailsAtEachRead) {
  const auto property = New({.Name = "X", .Value = "abc", .DataType = dtLongInteger});
  ExpectReported(RuntimeFailure::TypeMismatch, [&] { property->Value(); });
}

// Refusals

TEST_F(PropertyValueTest, TextLongerThanSizeIsRefusedWithBothLengths) {
  const auto property = New({.Name = "X", .DataType = dtString, .Size = 2});
  ExpectRaised(errValue_Size, [&] { property->SetValue("abc"); }, {.Text = "Size Limit: 2  Value Length: 3"});
}

TEST_F(PropertyValueTest, SizeZeroIsNoLimit) {
  const auto property = New({.Name = "X", .DataType = dtString, .Size = 0});
  property->SetValue("abc");
  EXPECT_EQ(property->Value().AsText(), "abc");
}

TEST_F(PropertyValueTest, SizeCountsCharactersAndNotBytes) {
  const auto property = New({.Name = "X", .DataType = dtString, .Size = 2});
  property->SetValue("äö");
  EXPECT_EQ(property->Value().AsText(), "äö");
}

TEST_F(PropertyValueTest, SizeTestsTheTextFormOfANumber) {
  const auto property = New({.Name = "X", .DataType = dtString, .Size = 2});
  ExpectRaised(errValue_Size, [&] { property->SetValue(123); }, {.Text = "Size Limit: 2  Value Length: 3"});
}

TEST_F(PropertyValueTest, SizeIsTestedForTextAlone) {
  const auto property = New({.Name = "X", .DataType = dtLongInteger, .Size = 2});
  property->SetValue(12345);
  EXPECT_EQ(property->Value().AsLong(), 12345);
}

TEST_F(PropertyValueTest, ZeroLengthIsAllowedWithoutFlags) {
  const auto property = Of(dtString);
  property->SetValue("");
  EXPECT_FALSE(property->EmptyValue());
}

TEST_F(PropertyValueTest, ZeroLengthIsRefusedWithFlagsThatLackIt) {
  const auto property = Of(dtString, pfRequired);
  ExpectRaised(errValue_ZeroLength, [&] { property->SetValue(""); }, {.Text = "Property: 'X'  Flags: 'Required'"});
}

TEST_F(PropertyValueTest, NullAndEmptyAreRefusedWhenRequired) {
  const auto property = Of(dtLongInteger, pfRequired);
  ExpectRaised(errValue_Required, [&] { property->SetValue(Variant::Null()); }, {.Text = "Flags: 'Required'"});
  ExpectRaised(errValue_Required, [&] { property->SetValue(Variant()); }, {.Text = "Property: 'X'"});
}

TEST_F(PropertyValueTest, ReadOnlyValueIsRefused) {
  const auto property = New({.Name = "X", .Modifiable = false});
  ExpectRaised(errProperty_Modify, [&] { property->SetValue(1); }, {.Text = "Property: 'X'"});
}

TEST_F(PropertyValueTest, LockedDoesNotStopAValueButModifiableDoes) {
  const auto property = Of(dtLongInteger);
  property->SetLocked(true);
  property->SetValue(1);
  EXPECT_EQ(property->Value().AsLong(), 1);
  property->SetLocked(false);
  property->SetModifiable(false);
  ExpectRaised(errProperty_Modify, [&] { property->SetValue(2); });
}

TEST_F(PropertyValueTest, BinaryRefusesWhatIsNoBytes) {
  const auto property = Of(dtByteArray);
  ExpectRaised(errValue_BLOB, [&] { property->SetValue(1); }, {.Text = "Property: 'X'  ValueType: 'Long'"});
}

TEST_F(PropertyValueTest, BinaryAcceptsAStringWithoutComplaint) {
  const auto property = Of(dtByteArray);
  property->SetValue("text");
  EXPECT_EQ(property->Value().AsText(), "text");
  EXPECT_EQ(property->DisplayValue().AsText(), "(Byte Array)");
}

TEST_F(PropertyValueTest, BinaryAcceptsAVariantArray) {
  const auto property = Of(dtByteArray);
  property->SetValue(Variant::ArrayOfValues({1, 2}));
  EXPECT_EQ(property->Value().UpperBound(), 1);
}

TEST_F(PropertyValueTest, TextIntoANumberIsAMismatch) {
  const auto property = Of(dtLongInteger);
  ExpectRaised(errProperty_DataType, [&] { property->SetValue("abc"); },
               {.Text = "Property: 'X' DataType: 'Long Integer'  ValueDataType: 'String'"});
}

TEST_F(PropertyValueTest, NumberThatDoesNotFitIsAMismatch) {
  const auto property = Of(dtInteger);
  ExpectRaised(errProperty_DataType, [&] { property->SetValue(70000); },
               {.Text = "DataType: 'Integer'  ValueDataType: 'Long'"});
}

TEST_F(PropertyValueTest, FailedConversionIsHeldAsAWarningUnderItsOwnNumber) {
  const auto property = Of(dtLongInteger);
  EXPECT_THROW(property->SetValue("abc"), Error);
  const auto warning = Framework().Messages()->Item("13");
  ASSERT_TRUE(warning);
  EXPECT_EQ(warning->SeverityFlags(), svfWarning);
}

TEST_F(PropertyValueTest, RefusalNamesThePropertyAndAFailedDefaultItsDefinition) {
  const auto property = Of(dtLongInteger);
  const auto& messages = *Framework().Messages();
  EXPECT_THROW(property->SetValue("abc"), Error);
  for (const char* number : {"13", "15059"}) {
    EXPECT_EQ(messages.Item(number)->TypeName() + "." + messages.Item(number)->RoutineName(), "Property.Value (Let)");
  }
  Framework().Messages()->Clear();
  EXPECT_THROW(property->SetDefaultValue("abc"), Error);
  EXPECT_EQ(messages.Item("15059")->TypeName(), "PropertyData");
  EXPECT_EQ(messages.Item("15059")->RoutineName(), "DefaultValue (Let)");
}

TEST_F(PropertyValueTest, FailureOfAListenerIsAProblemOfAMatchingValue) {
  const auto property = Of(dtLongInteger);
  property->BeforeValueChange += [](const Variant&, bool&) { Fail(RuntimeFailure::DivisionByZero); };
  ExpectRaised(errProperty_Value, [&] { property->SetValue(1); }, {.Text = "Property: 'X'"});
}

TEST_F(PropertyValueTest, FailureAfterTheStoreLeavesTheNewValue) {
  const auto property = Of(dtLongInteger);
  property->AfterValueChange += [] { Fail(RuntimeFailure::DivisionByZero); };
  ExpectRaised(errProperty_Value, [&] { property->SetValue(1); });
  EXPECT_EQ(property->Value().AsLong(), 1);
}

TEST_F(PropertyValueTest, FailureOfAListenerIsAMismatchOfAnyOtherValue) {
  const auto property = Of(dtLongInteger);
  property->BeforeValueChange += [](const Variant&, bool&) { throw std::runtime_error("not today"); };
  ExpectRaised(errProperty_DataType, [&] { property->SetValue("1"); }, {.Text = "ValueDataType: 'String'", .Count = 2});
  EXPECT_TRUE(property->EmptyValue());
}

TEST_F(PropertyValueTest, WhateverAListenerThrowsIsReported) {
  const auto property = Of(dtString);
  property->BeforeValueChange += [](const Variant&, bool&) { throw 7; };
  ExpectRaised(errProperty_Value, [&] { property->SetValue("x"); }, {.Count = 2});
}

TEST_F(PropertyValueTest, CatalogueErrorOfAListenerStaysTheOneSeen) {
  const auto property = Of(dtLongInteger);
  property->BeforeValueChange += [](const Variant&, bool&) { Framework().Servers()->Item("none"); };
  ExpectRaised(errItem_Server, [&] { property->SetValue(1); }, {.Text = "none"});
}

TEST_F(PropertyValueTest, ListenerMaySetTheValueItself) {
  const auto property = Of(dtLongInteger);
  property->AfterValueChange += [&] {
    if (property->Value().AsLong() < 3) property->SetValue(property->Value().AsLong() + 1);
  };
  property->SetValue(1);
  EXPECT_EQ(property->Value(), Variant(3));
  EXPECT_EQ(property->OldValue(), Variant(2));
}

TEST_F(PropertyValueTest, NothingSurvivesARefusedAssignment) {
  const auto property = New({.Name = "X", .Value = 1, .DataType = dtLongInteger});
  int calls = 0;
  property->BeforeValueChange += [&](const Variant&, bool&) { ++calls; };
  EXPECT_THROW(property->SetValue("abc"), Error);
  EXPECT_EQ(property->Value().AsLong(), 1);
  EXPECT_TRUE(property->OldValue().IsEmpty());
  EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace velmoria::test
