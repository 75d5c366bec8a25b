#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

struct Setter {
  const char* Name;
  void (*Set)(Property&);
  bool (*IsSet)(Property&);
};

constexpr Setter kSetters[] = {
    {"Name", [](Property& p) { p.SetName("new"); }, [](Property& p) { return p.Name() == "new"; }},
    {"Caption", [](Property& p) { p.SetCaption("new"); }, [](Property& p) { return p.Caption() == "new"; }},
    {"Description", [](Property& p) { p.SetDescription("new"); }, [](Property& p) { return p.Description() == "new"; }},
    {"FormatText", [](Property& p) { p.SetFormatText("new"); }, [](Property& p) { return p.FormatText() == "new"; }},
    {"InputMask", [](Property& p) { p.SetInputMask("new"); }, [](Property& p) { return p.InputMask() == "new"; }},
    {"SourceName", [](Property& p) { p.SetSourceName("new"); }, [](Property& p) { return p.SourceName() == "new"; }},
    {"SourceTable", [](Property& p) { p.SetSourceTable("new"); }, [](Property& p) { return p.SourceTable() == "new"; }},
    {"SourceColumn", [](Property& p) { p.SetSourceColumn("new"); },
     [](Property& p) { return p.SourceColumn() == "new"; }},
    {"DataType", [](Property& p) { p.SetDataType(dtDate); }, [](Property& p) { return p.DataType() == dtDate; }},
    {"SourceDataType", [](Property& p) { p.SetSourceDataType(dtRDOBIT); },
     [](Property& p) { return p.SourceDataType() == dtRDOBIT; }},
    {"Size", [](Property& p) { p.SetSize(7); }, [](Property& p) { return p.Size() == 7; }},
    {"Flags", [](Property& p) { p.SetFlags(pfcounter); }, [](Property& p) { return p.Flags() == pfcounter; }},
    {"Modifiable", [](Property& p) { p.SetModifiable(false); }, [](Property& p) { return !p.Modifiable(); }},
    {"OrFlag", [](Property& p) { p.SetOrFlag(true); }, [](Property& p) { return p.OrFlag(); }},
    {"Operator", [](Property& p) { p.SetOperator("<>"); }, [](Property& p) { return p.Operator() == "<>"; }},
};

class PropertyFieldsTest : public testing::TestWithParam<Setter> {
 protected:
  ScopedApartment apartment_;
};

TEST_P(PropertyFieldsTest, SetterStoresAndStamps) {
  const auto property = Framework().CreateProperty({.Name = "X"})->Copy();
  EXPECT_FALSE(property->Dirty());
  GetParam().Set(*property);
  EXPECT_TRUE(GetParam().IsSet(*property));
  EXPECT_TRUE(property->Dirty());
}

TEST_P(PropertyFieldsTest, LockedRefusesTheSetter) {
  const auto property = Framework().CreateProperty({.Name = "X"})->Copy();
  property->SetLocked(true);
  ExpectRaised(errVelmoria_Locked, [&] { GetParam().Set(*property); });
  EXPECT_FALSE(GetParam().IsSet(*property));
  EXPECT_FALSE(property->Dirty());
}

TEST_P(PropertyFieldsTest, RefusalNamesTheSetter) {
  const auto property = Framework().CreateProperty({.Name = "X"});
  property->SetLocked(true);
  EXPECT_THROW(GetParam().Set(*property), Error);
  const auto message = Framework().Messages()->Item("15002");
  EXPECT_EQ(message->RoutineName(), std::string(GetParam().Name) + " (Let)");
}

INSTANTIATE_TEST_SUITE_P(Table, PropertyFieldsTest, testing::ValuesIn(kSetters),
                         [](const auto& each) { return each.param.Name; });

class PropertyMetadataTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
};

TEST_F(PropertyMetadataTest, SameValueDoesNotStamp) {
  const auto property = Framework().CreateProperty({.Name = "X", .Caption = "c"})->Copy();
  property->SetCaption("c");
  EXPECT_FALSE(property->Dirty());
}

TEST_F(PropertyMetadataTest, LockedIsPlain) {
  const auto property = Framework().CreateProperty({.Name = "X"});
  property->SetLocked(true);
  property->SetLocked(false);
  property->SetCaption("c");
  EXPECT_EQ(property->Caption(), "c");
}

TEST_F(PropertyMetadataTest, LockedRefusesOtherAttributes) {
  const auto property = Framework().CreateProperty({.Name = "X"});
  property->SetLocked(true);
  EXPECT_THROW(property->SetAttributes({}), Error);
  EXPECT_EQ(Framework().Messages()->Item("15002")->RoutineName(), "Attributes (Let)");
  ExpectRaised(errVelmoria_Locked, [&] { property->SetAttributes({}); });
}

TEST_F(PropertyMetadataTest, OperatorOfABoundPropertyIsRefusedThoughItIsNotLocked) {
  const SampleRows rows;
  const auto property = rows.Row(0)->Item("Name");
  ExpectRaised(errVelmoria_Locked, [&] { property->SetOperator("<>"); });
}

TEST_F(PropertyMetadataTest, CounterIsTheFlag) {
  EXPECT_TRUE(Framework().CreateProperty({.Name = "X", .Flags = pfcounter})->Counter());
  EXPECT_FALSE(Framework().CreateProperty({.Name = "X", .Flags = pfInput})->Counter());
}

TEST_F(PropertyMetadataTest, SourceKeyNeedsTableAndColumn) {
  const auto key = [](const char* table, const char* column) {
    return Framework().CreateProperty({.Name = "X", .SourceColumn = column, .SourceTable = table})->SourceKey();
  };
  EXPECT_EQ(key("orders", "Id"), "orders.Id");
  EXPECT_EQ(key("", "Id"), "");
  EXPECT_EQ(key("orders", ""), "");
}

class PropertyOutsideTest : public testing::TestWithParam<std::int32_t> {
 protected:
  ScopedApartment apartment_;
  PropertyPtr property_ = Framework().CreateProperty({.Name = "X", .Value = "kept"})->Copy();
};

TEST_P(PropertyOutsideTest, DataTypeOutsideIsAsGoodAsVariant) {
  property_->SetDataType(zDataTypes{GetParam()});
  EXPECT_EQ(property_->DataType(), zDataTypes{GetParam()});
  EXPECT_EQ(property_->DataTypeName(), "");
  EXPECT_EQ(property_->DisplayValue(), Variant("kept"));
  property_->SetValue(7);
  EXPECT_EQ(property_->Value(), Variant(7));
  property_->SetDefaultValue("7");
  EXPECT_EQ(property_->DefaultValue(), Variant("7"));
  EXPECT_EQ(property_->Details(), "Property: 'X'  Value: 7  DataType: ''  SourceName: ''  SourceDataType: 'Variant'");
}

TEST_P(PropertyOutsideTest, SourceDataTypeOutsideIsShownAsVariant) {
  property_->SetSourceDataType(zSourceDataTypes{GetParam()});
  EXPECT_EQ(property_->SourceDataType(), zSourceDataTypes{GetParam()});
  EXPECT_EQ(property_->SourceDataTypeName(), "Variant");
  property_->Data()->SetEngine(engAccess);
  EXPECT_EQ(property_->SourceDataTypeName(), "Variant");
}

TEST_P(PropertyOutsideTest, FlagsCountByTheirBits) {
  property_->SetFlags(zPropertyFlags{GetParam()});
  EXPECT_EQ(property_->Flags(), zPropertyFlags{GetParam()});
  EXPECT_EQ(property_->Counter(), (GetParam() & 32) != 0);
  const auto error = Thrown([&] { property_->SetValue(Variant::Null()); });
  EXPECT_EQ(error ? error->CatalogueNumber() : 0, (GetParam() & 1) != 0 ? 15162 : 0);
}

TEST_P(PropertyOutsideTest, SizeIsKeptAsGiven) {
  property_->SetSize(GetParam());
  EXPECT_EQ(property_->Size(), GetParam());
}

TEST_P(PropertyOutsideTest, EngineOutsideIsKept) {
  property_->Data()->SetEngine(zEngines{GetParam()});
  EXPECT_EQ(property_->Engine(), zEngines{GetParam()});
  EXPECT_EQ(property_->SourceDataTypeName(), "Variant");
}

INSTANTIATE_TEST_SUITE_P(Table, PropertyOutsideTest,
                         testing::Values(-1000, 64, 99, 2147483647, -2147483647 - 1, 0x55555540));

TEST_F(PropertyMetadataTest, AllFlagsShowAllWords) {
  const auto property = Framework().CreateProperty({.Name = "X", .Flags = zPropertyFlags{-1}});
  EXPECT_EQ(property->FlagsDisplay(), "Allow Zero Length; Counter/Identity; Input; Output; Required; Return");
  property->SetFlags(zPropertyFlags{64});
  EXPECT_EQ(property->FlagsDisplay(), "");
}

TEST_F(PropertyMetadataTest, WhatIsNoOperatorIsRefusedAndNotStored) {
  const auto property = Framework().CreateProperty({.Name = "X"})->Copy();
  for (const char* each : {"", " ", "==", "!=", "= ", "><", "Like", "\xff"}) {
    ExpectRaised(errInvalid_Operator, [&] { property->SetOperator(each); }, {.Text = each, .Count = 1});
  }
  EXPECT_EQ(property->Operator(), "=");
  EXPECT_FALSE(property->Dirty());
}

TEST_F(PropertyMetadataTest, WrongOperatorIsReportedByTheDefinition) {
  EXPECT_THROW(Framework().CreateProperty({.Name = "X"})->SetOperator("!="), Error);
  EXPECT_EQ(Framework().Messages()->Item("15056")->TypeName(), "PropertyData");
  EXPECT_EQ(Framework().Messages()->Item("15056")->RoutineName(), "Operator (Let)");
}

TEST_F(PropertyMetadataTest, OtherSettersOfABoundPropertyAreNotRefused) {
  const SampleRows rows;
  const auto property = rows.Row(0)->Item("Name");
  property->SetCaption("c");
  EXPECT_EQ(rows.Row(1)->Item("Name")->Caption(), "c");
}

TEST_F(PropertyMetadataTest, OtherDataTypeLeavesTheStoredValue) {
  const auto property = Framework().CreateProperty({.Name = "X", .Value = 2.5, .DataType = dtDouble});
  property->SetDataType(dtLongInteger);
  EXPECT_EQ(property->Value(), Variant(2));
  property->SetDataType(dtDouble);
  EXPECT_EQ(property->Value(), Variant(2.5));
}

TEST_F(PropertyMetadataTest, DisplayNames) {
  const auto property = Framework().CreateProperty(
      {.Name = "X", .DataType = dtLongInteger, .SourceDataType = dtRDOINTEGER, .Flags = pfcounter});
  EXPECT_EQ(property->DataTypeName(), "Long Integer");
  EXPECT_EQ(property->SourceDataTypeName(), "Integer");
  EXPECT_EQ(property->FlagsDisplay(), "Counter/Identity");
}

}  // namespace
}  // namespace velmoria::test
