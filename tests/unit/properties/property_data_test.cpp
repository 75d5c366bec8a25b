#include "velmoria/properties/property_data.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/attributes_data.h"
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

TEST_F(PropertyDataTest, StyleNeverStamps) {
  const auto data = Clean();
  data->SetStyle(psPersistent);
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

TEST_F(PropertyDataTest, ClearDirtyMakesThePresentValueTheOldOne) {
  const auto data = Clean();
  data->SetValue(1);
  data->ClearDirty();
  EXPECT_FALSE(data->Dirty());
  EXPECT_FALSE(data->DirtyValue());
  EXPECT_EQ(data->OldValue().AsLong(), 1);
}

struct DirtyCase {
  const char* Name;
  Variant Old;
  Variant Present;
  bool Dirty;
};

class PropertyDataDirtyTest : public PropertyDataTest, public testing::WithParamInterface<DirtyCase> {};

TEST_P(PropertyDataDirtyTest, DirtyValueGoesByTheTypeOfTheOldValue) {
  const auto data = Clean();
  data->SetValue(GetParam().Old);
  data->SetValue(GetParam().Present);
  EXPECT_EQ(data->DirtyValue(), GetParam().Dirty);
}

INSTANTIATE_TEST_SUITE_P(Table, PropertyDataDirtyTest,
                         testing::Values(DirtyCase{"EmptyEmpty", Variant(), Variant(), false},
                                         DirtyCase{"EmptyNull", Variant(), Variant::Null(), true},
                                         DirtyCase{"NullNull", Variant::Null(), Variant::Null(), false},
                                         DirtyCase{"NullEmpty", Variant::Null(), Variant(), true},
                                         DirtyCase{"DateNull", Date{1}, Variant::Null(), true},
                                         DirtyCase{"DateSameSecond", Date{1}, Date{1 + 0.3 / 86400}, false},
                                         DirtyCase{"DateOtherSecond", Date{1}, Date{1 + 1.0 / 86400}, true},
                                         DirtyCase{"NumberEmpty", 1, Variant(), true},
                                         DirtyCase{"NumberNull", 1, Variant::Null(), true},
                                         DirtyCase{"NumberSame", 1, 1, false}, DirtyCase{"NumberOther", 1, 2, true},
                                         DirtyCase{"NumberOfOtherWidth", std::int16_t{1}, 1, false},
                                         DirtyCase{"TextSame", "a", "a", false}, DirtyCase{"TextOther", "a", "A", true},
                                         DirtyCase{"TextZeroLength", "a", "", true},
                                         DirtyCase{"BytesSame", std::vector<Byte>{1}, std::vector<Byte>{1}, false},
                                         DirtyCase{"BytesOther", std::vector<Byte>{1}, std::vector<Byte>{2}, true},
                                         DirtyCase{"MissingAlways", Variant::Missing(), Variant::Missing(), true}),
                         [](const auto& each) { return each.param.Name; });

TEST_F(PropertyDataTest, ObjectsAlwaysDiffer) {
  const auto data = Clean();
  const Variant object(Clean());
  data->SetValue(object);
  data->SetValue(object);
  EXPECT_TRUE(data->DirtyValue());
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

TEST_F(PropertyDataTest, SourceKeyIsComparedExactly) {
  const auto data = Clean({.Name = "X", .SourceColumn = "Id", .SourceTable = "orders"});
  EXPECT_TRUE(data->HasSourceKey("orders.Id"));
  EXPECT_FALSE(data->HasSourceKey("Orders.Id"));
  EXPECT_FALSE(data->HasSourceKey("orders_Id"));
  EXPECT_FALSE(Clean()->HasSourceKey(""));
}

}  // namespace
}  // namespace velmoria::test
