#include "velmoria/properties/properties.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertiesTest : public testing::Test {
 protected:
  static PropertiesPtr Transient() { return Framework().CreateProperties(); }

  ScopedApartment apartment_;
};

TEST_F(PropertiesTest, NameIsRefusedWhenLockedOrBound) {
  const auto properties = Transient();
  properties->SetName("N");
  EXPECT_EQ(properties->Name(), "N");
  properties->SetLocked(true);
  ExpectRaised(errVelmoria_Locked, [&] { properties->SetName("M"); }, {.Text = "Properties.Name (Let)", .Count = 1});
  EXPECT_EQ(properties->Name(), "N");
  const SampleRows rows;
  ExpectRaised(errVelmoria_Locked, [&] { rows.Row(0)->SetName("M"); });
}

TEST_F(PropertiesTest, LockedOfARowIsRefusedThoughTheRowIsNotLocked) {
  const SampleRows rows;
  EXPECT_FALSE(rows.Row(0)->Locked());
  ExpectRaised(errVelmoria_Locked, [&] { rows.Row(0)->SetLocked(true); });
  ExpectRaised(errVelmoria_Locked, [&] { rows.Row(0)->SetLocked(false); });
}

TEST_F(PropertiesTest, LockedRefusesTheSupportSettersUntilItIsTakenBack) {
  const auto properties = Transient();
  properties->SetLocked(true);
  ExpectRaised(errVelmoria_Locked, [&] { properties->SetSupportsAdd(false); }, {.Text = "SupportsAdd (Let)"});
  ExpectRaised(errVelmoria_Locked, [&] { properties->SetSupportsRemove(false); }, {.Text = "SupportsRemove (Let)"});
  EXPECT_TRUE(properties->SupportsAdd());
  EXPECT_TRUE(properties->SupportsRemove());
  properties->SetLocked(false);
  properties->SetSupportsAdd(false);
  properties->SetSupportsRemove(false);
  EXPECT_FALSE(properties->SupportsAdd());
  EXPECT_FALSE(properties->SupportsRemove());
}

TEST_F(PropertiesTest, LockedStopsNeitherAddNorRemove) {
  const auto properties = Transient();
  properties->SetLocked(true);
  properties->SetupItem({.Name = "A"});
  properties->Remove("A");
  EXPECT_EQ(properties->Count(), 0);
}

TEST_F(PropertiesTest, LockedDoesNotReachTheMembers) {
  const auto properties = Transient();
  const auto member = properties->SetupItem({.Name = "A"});
  properties->SetLocked(true);
  EXPECT_FALSE(member->Locked());
}

TEST_F(PropertiesTest, IdentifierDefinitionComesFromTheClass) {
  const SampleDesign design;
  const auto first = design.Line->Properties();
  EXPECT_EQ(first->Style(), psIdentifier);
  EXPECT_EQ(first->Count(), 2);
  first->RenameItem("LineNo", "Number");
  EXPECT_EQ(first->Item(2)->Name(), "Number");
}

TEST_F(PropertiesTest, IdentifierOfARowHoldsItsLiveMembers) {
  const SampleRows rows;
  const auto row = rows.Row(1);
  const auto identifier = row->Identifier();
  EXPECT_EQ(identifier, row->Identifier());
  EXPECT_EQ(identifier->Properties()->Item(1), row->Item("Id"));
  row->Item("Id")->SetValue(20);
  EXPECT_EQ(identifier->Key(), "20");
  EXPECT_TRUE(identifier->Dirty());
}

TEST_F(PropertiesTest, IdentifierLeavesTheStyleOfTheSharedColumnsAlone) {
  const SampleRows rows;
  rows.Row(0)->Identifier();
  EXPECT_EQ(rows.Column("Id").Style(), psPersistent);
  EXPECT_EQ(rows.Column("Id").OrderNumber(), 1);
}

TEST_F(PropertiesTest, UnboundCollectionHasNoIdentifier) { EXPECT_FALSE(Transient()->Identifier()); }

TEST_F(PropertiesTest, IdentifierGivenToAFreeCollectionIsKept) {
  const SampleDesign design;
  const auto properties = Transient();
  const auto identifier = design.Order->CreateIdentifier();
  properties->SetIdentifier(identifier);
  EXPECT_EQ(properties->Identifier(), identifier);
}

TEST_F(PropertiesTest, RowThatLacksAKeyColumnHasNoIdentifierToGive) {
  const SampleRows rows;
  rows.Row(0)->Remove("Id");
  ExpectRaised(errIdentifier_Property, [&] { rows.Row(0)->Identifier(); }, {.Text = "Class: 'Order'", .Count = 1});
}

TEST_F(PropertiesTest, ReturnValueParameterIsTheFirstOne) {
  const auto properties = Transient();
  EXPECT_FALSE(properties->ReturnValueParameter());
  properties->SetupItem({.Name = "A", .Flags = pfInput});
  EXPECT_FALSE(properties->ReturnValueParameter());
  properties->SetupItem({.Name = "B", .Flags = pfReturnValue | pfOutput});
  properties->SetupItem({.Name = "C", .Flags = pfReturnValue});
  EXPECT_EQ(properties->ReturnValueParameter()->Name(), "B");
}

TEST_F(PropertiesTest, RowHasNoReturnValueParameter) {
  const SampleRows rows;
  rows.Row(0)->Item("Id")->SetFlags(pfReturnValue);
  EXPECT_FALSE(rows.Row(0)->ReturnValueParameter());
}

TEST_F(PropertiesTest, StatisticsAreMadeOnceAndKept) {
  const auto properties = Transient();
  const auto statistics = properties->Statistics();
  EXPECT_TRUE(statistics);
  EXPECT_EQ(properties->Statistics(), statistics);
  EXPECT_NE(Transient()->Statistics(), statistics);
}

// Copy

TEST_F(PropertiesTest, CopyOfARowIsFreeOfIt) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  const auto copy = row->Copy();
  EXPECT_FALSE(copy->IsBound());
  EXPECT_FALSE(copy->Identifier());
  EXPECT_EQ(copy->Style(), psNone);
  EXPECT_EQ(copy->Name(), "Get");
  EXPECT_EQ(copy->ActionName(), "Get");
  EXPECT_EQ(copy->Count(), row->Count());
  EXPECT_EQ(copy->Item("Name")->Value().AsText(), "Ada");
  copy->Item("Name")->SetValue("Eve");
  EXPECT_EQ(row->Item("Name")->Value().AsText(), "Ada");
  EXPECT_FALSE(row->DirtyValues());
}

TEST_F(PropertiesTest, CopyOfACollectionWithDefinitionsIsTransient) {
  const SampleDesign design;
  const auto copy = design.Line->Properties()->Copy("N");
  EXPECT_EQ(copy->Name(), "N");
  EXPECT_EQ(copy->Item(1)->Name(), "OrderId");
  EXPECT_EQ(copy->Item(2)->Name(), "LineNo");
  EXPECT_EQ(copy->ClassName(), "");
  EXPECT_FALSE(copy->Data());
  ExpectRaised(errNotSupported_Rename, [&] { copy->RenameItem("OrderId", "N"); });
}

TEST_F(PropertiesTest, CopyKeepsTheActionAndItsNameAlone) {
  const SampleDesign design;
  const auto parameters = design.Order->Actions()->Item("Get")->Sources()->Item()->Parameters();
  const auto copy = parameters->Copy();
  EXPECT_EQ(copy->ActionName(), "Get");
  EXPECT_EQ(copy->EditFlags(), efAll);
  EXPECT_EQ(copy->ServerName(), "");
}

TEST_F(PropertiesTest, CopyOfACopyStillTellsTheAction) {
  const SampleRows rows;
  EXPECT_EQ(rows.Row(0)->Copy()->Copy()->ActionName(), "Get");
}

TEST_F(PropertiesTest, CopyAllowsWhatTheOriginalDoesNot) {
  const auto properties = Transient();
  properties->SetupItem({.Name = "A", .Modifiable = false});
  properties->SetSupportsAdd(false);
  properties->SetLocked(true);
  const auto copy = properties->Copy();
  EXPECT_TRUE(copy->SupportsAdd());
  EXPECT_FALSE(copy->Locked());
  EXPECT_TRUE(copy->Item("A")->Modifiable());
}

TEST_F(PropertiesTest, OnlyARecursiveCopyTakesTheAttributes) {
  const auto properties = Transient();
  properties->SetupItem({.Name = "A"})->Attributes()->SetupItem({.Name = "Colour", .Value = "red"});
  EXPECT_EQ(properties->Copy()->Item("A")->Attributes()->Count(), 1);
  EXPECT_EQ(properties->Copy("", true)->Item("A")->Attributes()->Count(), 1);
  EXPECT_EQ(properties->Copy("", false)->Item("A")->Attributes()->Count(), 0);
}

}  // namespace
}  // namespace velmoria::test
