#include "velmoria/properties/property_data.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/attribute_data.h"
#include "velmoria/properties/attributes_data.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertyDataTest : public testing::Test {
 protected:
  static PropertyDataPtr New(zPropertyStyles style, const PropertyFields& fields, bool clean = true) {
    auto data = Make<PropertyData>();
    data->Setup(style, fields, 0, clean);
    return data;
  }
  static PropertyDataPtr Clean(const PropertyFields& fields = {.Name = "X"}) { return New(psUser, fields); }

  ScopedApartment apartment_;
};

TEST_F(PropertyDataTest, FlagsNoneMakesTheDefaultOfTypeAndStyle) {
  EXPECT_EQ(New(psUser, {.Name = "X", .DataType = dtString})->Flags(), pfAllowZeroLength);
  EXPECT_EQ(New(psUser, {.Name = "X", .DataType = dtDate})->Flags(), pfNone);
  EXPECT_EQ(New(psParameter, {.Name = "X", .DataType = dtString})->Flags(), pfAllowZeroLength | pfInput);
  EXPECT_EQ(New(psLinkParameter, {.Name = "X", .DataType = dtDate})->Flags(), pfInput);
}

TEST_F(PropertyDataTest, GivenFlagsGetNothingAdded) {
  EXPECT_EQ(New(psParameter, {.Name = "X", .DataType = dtString, .Flags = pfRequired})->Flags(), pfRequired);
}

TEST_F(PropertyDataTest, SetupStoresTheValueUncheckedAndLeavesTheOldOneEmpty) {
  const auto data = New(psUser, {.Name = "X", .Value = "abc", .DataType = dtLongInteger});
  EXPECT_EQ(data->Value().AsText(), "abc");
  EXPECT_TRUE(data->OldValue().IsEmpty());
}

TEST_F(PropertyDataTest, ReadOnlyDefinitionTakesItsFirstValue) {
  const auto data = New(psUser, {.Name = "X", .Value = 1, .Modifiable = false});
  EXPECT_EQ(data->Value().AsLong(), 1);
  EXPECT_FALSE(data->Modifiable());
}

TEST_F(PropertyDataTest, LockedDefinitionTakesItsFirstDefaultValue) {
  const auto data = New(psUser, {.Name = "X", .DataType = dtLongInteger, .DefaultValue = "5", .Locked = true});
  EXPECT_TRUE(data->DefaultValue() == Variant(5));
  EXPECT_TRUE(data->Locked());
  ExpectRaised(errVelmoria_Locked, [&] { data->SetDefaultValue(6); });
}

TEST_F(PropertyDataTest, BadDefaultValueFailsTheSetup) {
  ExpectRaised(errProperty_DataType,
               [] { New(psUser, {.Name = "X", .DataType = dtLongInteger, .DefaultValue = "abc"}); });
}

TEST_F(PropertyDataTest, DirtyUnlessSetUpClean) {
  EXPECT_FALSE(New(psUser, {.Name = "X", .Value = 1}, true)->Dirty());
  EXPECT_TRUE(New(psUser, {.Name = "X"}, false)->Dirty());
}

TEST_F(PropertyDataTest, StampIsThePresentDate) {
  const auto data = Clean();
  apartment_.Clock().Advance(60);
  data->SetCaption("c");
  EXPECT_EQ(data->ModifiedStamp().AsDate().Parts().Minute, 15);
}

TEST_F(PropertyDataTest, StyleOrderNumberAndDefaultValueNeverStamp) {
  const auto data = Clean();
  data->SetStyle(psPersistent);
  data->SetOrderNumber(3);
  data->SetDefaultValue(1);
  EXPECT_FALSE(data->Dirty());
}

TEST_F(PropertyDataTest, NameEngineAndFileFieldsStamp) {
  const auto stamps = [](void (*set)(PropertyData&)) {
    const auto data = Clean();
    set(*data);
    return data->Dirty();
  };
  EXPECT_TRUE(stamps([](PropertyData& data) { data.SetName("Y"); }));
  EXPECT_TRUE(stamps([](PropertyData& data) { data.SetEngine(engODBC); }));
  EXPECT_TRUE(stamps([](PropertyData& data) { data.SetLocked(true); }));
  EXPECT_TRUE(stamps([](PropertyData& data) { data.SetPropertiesName("p"); }));
  EXPECT_TRUE(stamps([](PropertyData& data) { data.SetDateCreated(Date{1}); }));
  EXPECT_TRUE(stamps([](PropertyData& data) { data.SetDateModified(Date{1}); }));
  EXPECT_TRUE(stamps([](PropertyData& data) { data.SetModifiedBy("me"); }));
  EXPECT_TRUE(stamps([](PropertyData& data) { data.SetAttributesData({}); }));
}

TEST_F(PropertyDataTest, OperatorsAreTheEightAndNoOther) {
  const auto data = Clean();
  EXPECT_EQ(data->Operator(), "=");
  for (const char* each : {"=", ">", "<>", "=>", "=<", "<", "<=", ">="}) {
    data->SetOperator(each);
    EXPECT_EQ(data->Operator(), each);
  }
  ExpectRaised(errInvalid_Operator, [&] { data->SetOperator("!="); }, {.Text = "Operator: '!='"});
  EXPECT_EQ(data->Operator(), ">=");
}

TEST_F(PropertyDataTest, SetupDoesNotTestTheOperator) {
  EXPECT_EQ(Clean({.Name = "X", .Operator = "Like"})->Operator(), "Like");
}

// The steps of Setup

TEST_F(PropertyDataTest, FlagsAreMadeAheadOfTheDefaultValue) {
  EXPECT_EQ(Clean({.Name = "X", .DataType = dtString, .DefaultValue = ""})->DefaultValue(), Variant(""));
  ExpectRaised(errValue_ZeroLength,
               [] { Clean({.Name = "X", .DataType = dtString, .Flags = pfRequired, .DefaultValue = ""}); });
}

TEST_F(PropertyDataTest, FirstValueMeetsNoTestAndTheFirstDefaultValueAll) {
  EXPECT_TRUE(Clean({.Name = "X", .Value = Variant::Null(), .Flags = pfRequired})->Value().IsNull());
  EXPECT_EQ(Clean({.Name = "X", .Value = "abc", .DataType = dtString, .Size = 1})->Value(), Variant("abc"));
  ExpectRaised(errValue_Required, [] { Clean({.Name = "X", .Flags = pfRequired, .DefaultValue = Variant::Null()}); });
  ExpectRaised(errValue_Size, [] { Clean({.Name = "X", .DataType = dtString, .Size = 1, .DefaultValue = "abc"}); });
  ExpectRaised(errValue_BLOB, [] { Clean({.Name = "X", .DataType = dtByteArray, .DefaultValue = 1}); });
}

TEST_F(PropertyDataTest, MissingAndEmptyAreNoFirstValue) {
  for (const auto& value : {Variant(), Variant::Missing()}) {
    const auto data = Clean({.Name = "X", .Value = value, .DefaultValue = value});
    EXPECT_TRUE(data->Value().IsEmpty());
    EXPECT_TRUE(data->StoredDefaultValue().IsEmpty());
    EXPECT_FALSE(data->DirtyValue());
  }
}

TEST_F(PropertyDataTest, EmptyIsADefaultValueEvenWhenRequired) {
  EXPECT_TRUE(Clean({.Name = "X", .Flags = pfRequired, .DefaultValue = Variant()})->DefaultValue().IsEmpty());
}

TEST_F(PropertyDataTest, FirstStampIsTheDateOfTheCreation) {
  const auto data = New(psUser, {.Name = "X"}, false);
  EXPECT_EQ(data->DateCreated(), apartment_.Clock().Time);
  EXPECT_EQ(data->ModifiedStamp(), Variant(data->DateCreated()));
  EXPECT_TRUE(New(psUser, {.Name = "X"}, true)->ModifiedStamp().IsEmpty());
}

TEST_F(PropertyDataTest, RequiresValueOfAParameterNeedsRequiredBesideItsInput) {
  const auto requires_ = [](zPropertyFlags flags) {
    const auto property = Make<Property>();
    property->Bind(New(psParameter, {.Name = "X", .Flags = flags}), Parents());
    return property->RequiresValue();
  };
  EXPECT_FALSE(requires_(pfNone));
  EXPECT_FALSE(requires_(pfRequired));
  EXPECT_TRUE(requires_(pfInput | pfRequired));
}

TEST_F(PropertyDataTest, FailedSetterLeavesTheDefinitionClean) {
  const auto data = Clean();
  data->SetDataType(dtLongInteger);
  data->ClearDirty();
  EXPECT_THROW(data->SetOperator("!="), Error);
  EXPECT_THROW(data->SetDefaultValue("abc"), Error);
  EXPECT_FALSE(data->Dirty());
  EXPECT_EQ(data->Operator(), "=");
}

TEST_F(PropertyDataTest, CopyTakesEveryFieldButFive) {
  PropertyFields fields{.Name = "X",
                        .Value = 1,
                        .DataType = dtLongInteger,
                        .Size = 4,
                        .Operator = "<>",
                        .OrFlag = true,
                        .SourceName = "name",
                        .SourceColumn = "column",
                        .SourceTable = "table",
                        .SourceDataType = dtRDOINTEGER,
                        .Modifiable = false,
                        .Flags = pfInput,
                        .DefaultValue = 9,
                        .FormatText = "0.00",
                        .InputMask = "99",
                        .Caption = "caption",
                        .Description = "description",
                        .Locked = true,
                        .Engine = engOracle};
  const auto data = New(psLinkProperty, fields);
  data->SetPropertiesName("properties");
  const auto copy = data->Copy("Y", true);
  EXPECT_EQ(copy->Name(), "Y");
  EXPECT_EQ(copy->Style(), psLinkProperty);
  EXPECT_EQ(copy->Value(), Variant(1));
  EXPECT_EQ(copy->DataType(), dtLongInteger);
  EXPECT_EQ(copy->Size(), 4);
  EXPECT_EQ(copy->Operator(), "<>");
  EXPECT_TRUE(copy->OrFlag());
  EXPECT_EQ(copy->SourceName() + copy->SourceColumn() + copy->SourceTable(), "namecolumntable");
  EXPECT_EQ(copy->SourceDataType(), dtRDOINTEGER);
  EXPECT_EQ(copy->Flags(), pfInput);
  EXPECT_EQ(copy->DefaultValue(), Variant(9));
  EXPECT_EQ(copy->FormatText() + copy->InputMask() + copy->Caption(), "0.0099caption");
  EXPECT_EQ(copy->Engine(), engOracle);
  EXPECT_TRUE(copy->Modifiable());
  EXPECT_FALSE(copy->Locked());
  EXPECT_EQ(copy->Description() + copy->PropertiesName(), "");
}

TEST_F(PropertyDataTest, CopyHasNoPlaceAndNoStamp) {
  auto data = Make<PropertyData>();
  data->Setup(psIdentifier, {.Name = "X", .Value = 1}, 3, false);
  const auto copy = data->Copy("", true);
  EXPECT_EQ(copy->Style(), psIdentifier);
  EXPECT_EQ(copy->OrderNumber(), 0);
  EXPECT_FALSE(copy->Dirty());
}

TEST_F(PropertyDataTest, DetailsShowTheStoredValue) {
  const auto data = Clean({.Name = "Id", .Value = 7, .DataType = dtLongInteger, .Size = 4, .SourceName = "s"});
  EXPECT_EQ(data->Details(),
            "Property: 'Id'  Value: '7'  Data Type: 'Long Integer'  Size: 4  SourceName: 's'  "
            "Source Data Type: 'Variant'");
}

TEST_F(PropertyDataTest, DetailsOfBytesShowNoValue) {
  const auto data = Clean({.Name = "P", .Value = "raw", .DataType = dtByteArray});
  EXPECT_NE(data->Details().find("Value: '(Byte Array)'"), std::string::npos);
}

TEST_F(PropertyDataTest, DetailsShowWhatHasNoText) {
  EXPECT_NE(Clean({.Name = "X", .Value = Variant::Null()})->Details().find("Value: ''"), std::string::npos);
  EXPECT_NE(Clean({.Name = "X", .Value = Date{1e9}})->Details().find("Value: '(Date)'"), std::string::npos);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

// Attributes

TEST_F(PropertyDataTest, AttributesAreMadeOnFirstReadAndAreTheDefinitionsOwn) {
  const auto data = Clean();
  const auto attributes = data->AttributesData();
  EXPECT_EQ(attributes->Count(), 0);
  EXPECT_EQ(data->AttributesData(), attributes);
  EXPECT_FALSE(data->Dirty());
}

TEST_F(PropertyDataTest, ChangedAttributeMakesTheDefinitionDirtyAndClearDirtyCleansBoth) {
  const auto data = Clean();
  data->AttributesData()->SetupItem({.Name = "A"}, {}, true);
  EXPECT_FALSE(data->Dirty());
  data->AttributesData()->Item("A")->SetValue(1);
  EXPECT_TRUE(data->Dirty());
  EXPECT_TRUE(data->ModifiedStamp().IsEmpty());
  data->ClearDirty();
  EXPECT_FALSE(data->Dirty());
  EXPECT_FALSE(data->AttributesData()->Dirty());
}

TEST_F(PropertyDataTest, OtherAttributesTakeThePlaceOfTheFormer) {
  const auto data = Clean();
  const auto others = Make<AttributesData>();
  data->SetAttributesData(others);
  EXPECT_EQ(data->AttributesData(), others);
  EXPECT_TRUE(data->Dirty());
}

TEST_F(PropertyDataTest, ColumnShowsItsFactsAsCleanAttributes) {
  const auto data = Clean();
  data->SetColumnFacts({.Attributes = 18, .OrdinalPosition = 2, .ChunkRequired = true});
  for (const auto& each : {data, data->Copy("", true)}) {
    const auto attributes = each->AttributesData();
    EXPECT_EQ(attributes->Count(), 3);
    EXPECT_EQ(attributes->Item("Attributes")->Value(), Variant(std::int16_t{18}));
    EXPECT_EQ(attributes->Item("ChunkRequired")->Value(), Variant(true));
    EXPECT_EQ(attributes->Item("OrdinalPosition")->Value(), Variant(std::int16_t{2}));
    EXPECT_FALSE(each->Dirty());
  }
  EXPECT_EQ(data->Copy("", false)->AttributesData()->Count(), 0);
}

TEST_F(PropertyDataTest, CopyOfADefinitionWithAttributesIsClean) {
  const auto data = Clean();
  data->AttributesData()->SetupItem({.Name = "A", .Value = 1});
  const auto copy = data->Copy("", true);
  EXPECT_FALSE(copy->Dirty());
  EXPECT_EQ(copy->AttributesData()->Item("A")->Value(), Variant(1));
  EXPECT_NE(copy->AttributesData()->Item("A"), data->AttributesData()->Item("A"));
}

TEST_F(PropertyDataTest, SourceKeyNeedsBothNames) {
  EXPECT_FALSE(Clean({.Name = "X", .SourceColumn = "Id"})->HasSourceKey(".Id"));
  EXPECT_FALSE(Clean({.Name = "X", .SourceTable = "orders"})->HasSourceKey("orders."));
  EXPECT_FALSE(Clean({.Name = "X", .SourceColumn = "Id", .SourceTable = "orders"})->HasSourceKey("orders.Ix"));
  EXPECT_FALSE(Clean({.Name = "X", .SourceColumn = "Id", .SourceTable = "orders"})->HasSourceKey("orderx.Id"));
  EXPECT_FALSE(Clean({.Name = "X", .SourceColumn = "Id", .SourceTable = "orders"})->HasSourceKey("orders.Idx"));
}

TEST_F(PropertyDataTest, SourceKeyIsComparedExactly) {
  const auto data = Clean({.Name = "X", .SourceColumn = "Id", .SourceTable = "orders"});
  EXPECT_TRUE(data->HasSourceKey("orders.Id"));
  EXPECT_FALSE(data->HasSourceKey("Orders.Id"));
  EXPECT_FALSE(data->HasSourceKey("orders_Id"));
  EXPECT_FALSE(Clean()->HasSourceKey(""));
}

}  // namespace
}  // namespace velmoria::test
