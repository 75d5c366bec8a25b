#include "velmoria/properties/property.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertyTest : public testing::Test {
 protected:
  static PropertyPtr New(const PropertyFields& fields) { return Framework().CreateProperty(fields); }

  ScopedApartment apartment_;
};

TEST_F(PropertyTest, CopyKeepsTheKindAndLosesWhatIsPersonal) {
  const auto property = New({.Name = "X",
                             .Value = 1,
                             .DataType = dtLongInteger,
                             .Size = 4,
                             .Operator = "<>",
                             .OrFlag = true,
                             .SourceName = "s",
                             .Modifiable = false,
                             .Flags = pfInput,
                             .DefaultValue = 9,
                             .Caption = "c",
                             .Description = "d",
                             .Locked = true});
  const auto copy = property->Copy();
  EXPECT_EQ(copy->Name(), "X");
  EXPECT_EQ(copy->Value().AsLong(), 1);
  EXPECT_EQ(copy->Size(), 4);
  EXPECT_EQ(copy->Operator(), "<>");
  EXPECT_TRUE(copy->OrFlag());
  EXPECT_EQ(copy->SourceName(), "s");
  EXPECT_EQ(copy->Flags(), pfInput);
  EXPECT_EQ(copy->Caption(), "c");
  EXPECT_TRUE(copy->Modifiable());
  EXPECT_EQ(copy->Description(), "");
  copy->SetDefaultValue(8);
  EXPECT_EQ(copy->DefaultValue().AsLong(), 8);
}

TEST_F(PropertyTest, CopyIsCleanAndYetItsValueIsDirty) {
  const auto copy = New({.Name = "X", .Value = 1, .DataType = dtLongInteger})->Copy();
  EXPECT_FALSE(copy->Dirty());
  EXPECT_TRUE(copy->DirtyValue());
  EXPECT_TRUE(copy->OldValue().IsEmpty());
}

TEST_F(PropertyTest, CopyTakesAnotherNameAndItsOwnState) {
  const auto property = New({.Name = "X"});
  property->SetLocked(true);
  property->SetStateFlags(sfpersistent);
  const auto copy = property->Copy("Y");
  EXPECT_EQ(copy->Name(), "Y");
  EXPECT_FALSE(copy->Locked());
  EXPECT_EQ(copy->StateFlags(), sfnonpersistent | sfNew);
}

TEST_F(PropertyTest, FlagsThatWereTakenAwayComeBackInACopy) {
  const auto property = New({.Name = "X", .DataType = dtString});
  property->SetFlags(pfNone);
  EXPECT_EQ(property->Copy()->Flags(), pfAllowZeroLength);
}

TEST_F(PropertyTest, RecursiveCopyTakesTheAttributesAlong) {
  const auto property = New({.Name = "X"});
  property->Attributes()->SetupItem({.Name = "A"});
  EXPECT_EQ(property->Copy()->Attributes()->Count(), 1);
  EXPECT_EQ(property->Copy({}, false)->Attributes()->Count(), 0);
}

TEST_F(PropertyTest, ChangedAttributeMakesThePropertyDirty) {
  const auto copy = New({.Name = "X"})->Copy();
  copy->Attributes()->SetupItem({.Name = "A"});
  EXPECT_TRUE(copy->Dirty());
  copy->ClearDirty();
  EXPECT_FALSE(copy->Dirty());
}

TEST_F(PropertyTest, DisplayValueStandsForNullEmptyAndBytes) {
  EXPECT_EQ(New({.Name = "X", .Value = Variant::Null()})->DisplayValue().AsText(), "(Null)");
  EXPECT_EQ(New({.Name = "X"})->DisplayValue().AsText(), "(Empty)");
  EXPECT_EQ(New({.Name = "X", .DataType = dtByteArray})->DisplayValue().AsText(), "(Byte Array)");
}

TEST_F(PropertyTest, DisplayValueOfAnEmptyShowsTheDefault) {
  EXPECT_EQ(New({.Name = "X", .DataType = dtLongInteger, .DefaultValue = 7})->DisplayValue().AsText(), "7");
}

TEST_F(PropertyTest, DisplayValueFollowsTheFormat) {
  const auto property = New({.Name = "X", .Value = 1234.5, .DataType = dtDouble, .FormatText = "#,##0.00"});
  EXPECT_EQ(property->DisplayValue().AsText(), "1,234.50");
}

TEST_F(PropertyTest, DisplayValueWithoutFormatIsTheValueUnconverted) {
  EXPECT_TRUE(New({.Name = "X", .Value = 7, .DataType = dtLongInteger})->DisplayValue() == Variant(7));
}

TEST_F(PropertyTest, UnreadableFormatIsReportedWithItsText) {
  const auto property = New({.Name = "X", .Value = 1, .DataType = dtLongInteger, .FormatText = "0\"open"});
  ExpectRaised(errProperty_DisplayValue, [&] { property->DisplayValue(); }, {.Text = "FormatText: '0\"open'"});
}

TEST_F(PropertyTest, FormatThatDoesNotGoWithTheValueIsReportedToo) {
  const auto property = New({.Name = "X", .Value = Variant::ArrayOfValues({1}), .FormatText = "0.00"});
  ExpectRaised(errProperty_DisplayValue, [&] { property->DisplayValue(); }, {.Text = "FormatText: '0.00'", .Count = 2});
}

TEST_F(PropertyTest, FormatIsNotAskedForNullEmptyAndBytes) {
  EXPECT_EQ(New({.Name = "X", .Value = Variant::Null(), .FormatText = "\"open"})->DisplayValue(), Variant("(Null)"));
  EXPECT_EQ(New({.Name = "X", .FormatText = "\"open"})->DisplayValue(), Variant("(Empty)"));
  EXPECT_EQ(New({.Name = "X", .Value = 1, .DataType = dtByteArray, .FormatText = "\"open"})->DisplayValue(),
            Variant("(Byte Array)"));
}

TEST_F(PropertyTest, DisplayValueOfAnUnreadableValueIsItsFailure) {
  const auto property = New({.Name = "X", .Value = "abc", .DataType = dtLongInteger, .FormatText = "0"});
  ExpectReported(RuntimeFailure::TypeMismatch, [&] { property->DisplayValue(); });
}

struct DetailsCase {
  const char* Name;
  Variant (*Value)();
  const char* Shown;
};

class PropertyDetailsTest : public PropertyTest, public testing::WithParamInterface<DetailsCase> {};

TEST_P(PropertyDetailsTest, DetailsShowEveryValue) {
  const auto property = New({.Name = "X", .Value = GetParam().Value()});
  EXPECT_EQ(property->Details(), std::string("Property: 'X'  Value: ") + GetParam().Shown +
                                     "  DataType: 'Variant'  SourceName: ''  SourceDataType: 'Variant'");
}

INSTANTIATE_TEST_SUITE_P(
    Table, PropertyDetailsTest,
    testing::Values(DetailsCase{"Empty", [] { return Variant(); }, "(Empty)"},
                    DetailsCase{"Null", [] { return Variant::Null(); }, "(Null)"},
                    DetailsCase{"Text", [] { return Variant("it's"); }, "it's"},
                    DetailsCase{"Boolean", [] { return Variant(true); }, "True"},
                    DetailsCase{"Date", [] { return Variant(Date::From(1998, 6, 1)); }, "1998-06-01"},
                    DetailsCase{"DateOutOfBounds", [] { return Variant(Date{1e9}); }, "(Date)"},
                    DetailsCase{"Array", [] { return Variant::ArrayOfValues({1}); }, "(Variant())"},
                    DetailsCase{"Bytes", [] { return Variant(std::vector<Byte>{1}); }, "(Byte())"},
                    DetailsCase{"Nothing", [] { return Variant(PropertyPtr()); }, "(Nothing)"}),
    [](const auto& each) { return each.param.Name; });

TEST_F(PropertyTest, PropertyMadeOnItsOwnIsOneWithoutAName) {
  const auto property = Make<Property>();
  EXPECT_EQ(property->Name(), "");
  EXPECT_EQ(property->Operator(), "=");
  EXPECT_EQ(property->StateFlags(), sfnonpersistent | sfNew);
  property->SetValue(1);
  EXPECT_EQ(property->Value(), Variant(1));
  EXPECT_EQ(Make<Property>()->Attributes()->Count(), 0);
}

TEST_F(PropertyTest, AttributesAreKeptAndOthersTakeTheirPlace) {
  const auto property = New({.Name = "X"});
  const auto own = property->Attributes();
  EXPECT_EQ(property->Attributes(), own);
  const auto others = Framework().CreateAttributes();
  property->SetAttributes(others);
  EXPECT_EQ(property->Attributes(), others);
  own->SetupItem({.Name = "A"});
  property->SetAttributes({});
  EXPECT_EQ(property->Attributes()->Count(), 1);
}

TEST_F(PropertyTest, DetailsTellTheValueAndTheTypes) {
  const auto property = New(
      {.Name = "Id", .Value = 7, .DataType = dtLongInteger, .SourceName = "order_id", .SourceDataType = dtRDOINTEGER});
  EXPECT_EQ(property->Details(),
            "Property: 'Id'  Value: 7  DataType: 'Long Integer'  SourceName: 'order_id'  SourceDataType: 'Integer'");
}

TEST_F(PropertyTest, ReportOfAnUnreadableValueDoesNotRunInCircles) {
  const auto property = New({.Name = "X", .Value = "abc", .DataType = dtLongInteger});
  EXPECT_THROW(property->Value(), Error);
  EXPECT_THROW(property->Details(), Error);
}

// Parents

TEST_F(PropertyTest, NamesComeFromTheParents) {
  const SampleDesign design;
  Parents parents;
  parents.Server = design.Sales->Data();
  parents.Class = design.Order->Data();
  const auto property = New({.Name = "X"});
  EXPECT_EQ(property->ServerName(), "");
  property->SetParents(psUser, parents);
  EXPECT_EQ(property->ServerName(), "Sales");
  EXPECT_EQ(property->ClassName(), "Order");
  property->ClearParents(psNone, {.Class = true});
  EXPECT_EQ(property->ServerName(), "Sales");
  EXPECT_EQ(property->ClassName(), "");
}

TEST_F(PropertyTest, ParentIsGivenOnceEvenTheSame) {
  const SampleDesign design;
  Parents parents;
  parents.Server = design.Sales->Data();
  const auto property = New({.Name = "X"});
  property->SetParents(psNone, parents);
  ExpectRaised(errParent_Server, [&] { property->SetParents(psNone, parents); }, {.Text = "Server: 'Sales'"});
}

TEST_F(PropertyTest, SourceTypeOutsideARowGoesByTheTable) {
  EXPECT_EQ(New({.Name = "X", .SourceTable = "orders"})->SourceType(), stTable);
  EXPECT_EQ(New({.Name = "X"})->SourceType(), stNone);
}

TEST_F(PropertyTest, SourceTypeOfAParameterIsItsSources) {
  const SampleDesign design;
  const auto source = design.Order->Actions()->Item("Get")->Sources()->Item();
  source->SetSourceType(stView);
  const auto parameter = source->Parameters()->SetupItem({.Name = "Id"});
  EXPECT_EQ(parameter->SourceType(), stView);
  EXPECT_EQ(parameter->SourceText(), "orders");
  EXPECT_EQ(parameter->Engine(), engODBC);
}

// On a row

TEST_F(PropertyTest, BoundPropertyTakesItsOriginFromTheRow) {
  const SampleRows rows(efUpdate);
  const auto property = rows.Row(0)->Item("Name");
  EXPECT_EQ(property->ServerName(), "Sales");
  EXPECT_EQ(property->ClassName(), "Order");
  EXPECT_EQ(property->ActionName(), "Get");
  EXPECT_EQ(property->DatabaseName(), "Shop");
  EXPECT_EQ(property->Engine(), engODBC);
  EXPECT_EQ(property->SourceType(), stTable);
  EXPECT_EQ(property->SourceText(), "orders");
  EXPECT_EQ(property->EditFlags(), efUpdate);
  EXPECT_EQ(property->OrderNumber(), 2);
}

TEST_F(PropertyTest, BoundValueChangeMakesDirtyValueAndNotDirty) {
  const SampleRows rows;
  const auto property = rows.Row(0)->Item("Name");
  property->SetValue("Eve");
  EXPECT_TRUE(property->DirtyValue());
  EXPECT_FALSE(property->Dirty());
  EXPECT_EQ(property->StateFlags(), sfpersistent | sfdirty);
}

TEST_F(PropertyTest, BoundOldValueIsTheOneBeforeTheFirstChange) {
  const SampleRows rows;
  const auto property = rows.Row(0)->Item("Name");
  EXPECT_TRUE(property->OldValue().IsEmpty());
  property->SetValue("Eve");
  property->SetValue("Fay");
  EXPECT_EQ(property->OldValue().AsText(), "Ada");
  property->SetValue("Ada");
  EXPECT_EQ(property->OldValue().AsText(), "Ada");
  EXPECT_FALSE(property->DirtyValue());
}

TEST_F(PropertyTest, BoundUndoPutsBackADateAndLeavesAnOrdinaryValue) {
  const SampleRows rows;
  const auto placed = rows.Row(0)->Item("Placed");
  placed->SetValue("1998-07-01");
  placed->Undo();
  EXPECT_EQ(placed->Value(), Variant(Date::From(1998, 6, 1, 9)));
  const auto name = rows.Row(0)->Item("Name");
  name->SetValue("Eve");
  name->Undo();
  EXPECT_EQ(name->Value(), Variant("Eve"));
}

TEST_F(PropertyTest, BoundEmptyValueIsTheRowsAndNotTheDefinitions) {
  const SampleRows rows;
  EXPECT_FALSE(rows.Row(0)->Item("Name")->EmptyValue());
  EXPECT_FALSE(rows.Row(0)->Item("Note")->EmptyValue());
  EXPECT_TRUE(rows.NewRow()->Item("Name")->EmptyValue());
}

TEST_F(PropertyTest, BoundDefaultValueIsTheDefinitions) {
  const SampleRows rows;
  rows.Row(0)->Item("Name")->SetDefaultValue("nobody");
  EXPECT_EQ(rows.NewRow()->Item("Name")->Value(), Variant("nobody"));
  EXPECT_EQ(rows.Row(0)->Item("Name")->Value(), Variant("Ada"));
}

TEST_F(PropertyTest, BoundValueIsConvertedToItsDataType) {
  const SampleRows rows;
  const auto property = rows.Row(0)->Item("Amount");
  property->SetDataType(dtLongInteger);
  EXPECT_TRUE(property->Value() == Variant(12));
}

TEST_F(PropertyTest, DeletedRowRefusesItsValues) {
  const SampleRows rows;
  const auto property = rows.Row(1)->Item("Name");
  rows.Rows->FlagDeleted(1);
  ExpectRaised(errPersistence_Deleted, [&] { property->Value(); }, {.Text = "Identifier: '1'"});
  ExpectRaised(errPersistence_Deleted, [&] { property->SetValue("x"); }, {.Text = "Identifier: '1'"});
  ExpectRaised(errPersistence_Deleted, [&] { property->OldValue(); });
  ExpectRaised(errPersistence_Deleted, [&] { property->EmptyValue(); });
  ExpectRaised(errPersistence_Deleted, [&] { property->Undo(); });
  EXPECT_FALSE(property->DirtyValue());
}

TEST_F(PropertyTest, ReadOnlyIsToldBeforeDeletedAndDeletedBeforeABadValue) {
  const SampleRows rows;
  const auto property = rows.Row(1)->Item("Id");
  rows.Rows->FlagDeleted(1);
  ExpectRaised(errPersistence_Deleted, [&] { property->SetValue("abc"); }, {.Text = "Identifier: '1'"});
  property->SetModifiable(false);
  ExpectRaised(errProperty_Modify, [&] { property->SetValue("abc"); }, {.Text = "Property: 'Id'"});
}

TEST_F(PropertyTest, CopyOfABoundPropertyCarriesTheRowsValue) {
  const SampleRows rows;
  const auto property = rows.Row(0)->Item("Id");
  property->SetValue(77);
  const auto copy = property->Copy();
  EXPECT_FALSE(copy->IsBound());
  EXPECT_EQ(copy->Value().AsLong(), 77);
  EXPECT_TRUE(copy->OldValue().IsEmpty());
  EXPECT_EQ(copy->EditFlags(), efAll);
  copy->SetValue(5);
  EXPECT_EQ(property->Value().AsLong(), 77);
}

}  // namespace
}  // namespace velmoria::test
