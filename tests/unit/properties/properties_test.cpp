#include "velmoria/properties/properties.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/design/server_data.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertiesTest : public testing::Test {
 protected:
  static PropertiesPtr Transient() { return Framework().CreateProperties(); }
  static PropertiesPtr Bound(zPropertyStyles style, PropertiesDataPtr data = Make<PropertiesData>()) {
    auto properties = Make<Properties>();
    properties->Bind({.Style = style, .PropertiesData = std::move(data)});
    return properties;
  }

  ScopedApartment apartment_;
};

TEST_F(PropertiesTest, NameIsRefusedWhenLockedOrBound) {
  const auto properties = Transient();
  properties->SetName("N");
  EXPECT_EQ(properties->Name(), "N");
  properties->SetLocked(true);
  ExpectRaised(errVelmoria_Locked, [&] { properties->SetName("M"); });
  const SampleRows rows;
  ExpectRaised(errVelmoria_Locked, [&] { rows.Row(0)->SetName("M"); });
}

TEST_F(PropertiesTest, LockedIsRefusedOnPersistentAndCachedWhateverTheValue) {
  const SampleRows rows;
  ExpectRaised(errVelmoria_Locked, [&] { rows.Row(0)->SetLocked(true); });
  ExpectRaised(errVelmoria_Locked, [&] { rows.Row(0)->SetLocked(false); });
  ExpectRaised(errVelmoria_Locked, [&] { Bound(psCached)->SetLocked(true); });
}

TEST_F(PropertiesTest, LockedDoesNotReachTheMembers) {
  const auto properties = Transient();
  const auto member = properties->SetupItem({.Name = "A"});
  properties->SetLocked(true);
  EXPECT_FALSE(member->Locked());
}

TEST_F(PropertiesTest, LockedRefusesTheSupportSetters) {
  const auto properties = Transient();
  properties->SetLocked(true);
  ExpectRaised(errVelmoria_Locked, [&] { properties->SetSupportsAdd(false); });
  ExpectRaised(errVelmoria_Locked, [&] { properties->SetSupportsRemove(false); });
}

TEST_F(PropertiesTest, SetupIsRefusedOnceThereAreMembersOrWhenLocked) {
  const auto used = Transient();
  used->SetupItem({.Name = "A"});
  ExpectRaised(errVelmoria_Locked, [&] { used->Setup("N", false, true, true); });
  const auto locked = Transient();
  locked->SetLocked(true);
  ExpectRaised(errVelmoria_Locked, [&] { locked->Setup("N", false, true, true); });
}

TEST_F(PropertiesTest, EveryStyleBoundWithADefinitionShowsItsMembers) {
  for (const auto style : {psNone, psPersistent, psUser, psDefinition, psLinkProperty, psLinkParameter, psCached}) {
    auto data = Make<PropertiesData>();
    data->SetupItem(style, {.Name = "A"});
    EXPECT_EQ(Bound(style, data)->Count(), 1) << static_cast<int>(style);
  }
}

TEST_F(PropertiesTest, IdentifierDefinitionComesFromTheClass) {
  const SampleDesign design;
  const auto first = design.Line->Properties();
  EXPECT_EQ(first->Style(), psIdentifier);
  EXPECT_EQ(first->Count(), 2);
  first->RenameItem("LineNo", "Number");
  EXPECT_EQ(first->Item(2)->Name(), "Number");
}

TEST_F(PropertiesTest, ModifiableAsksAllOrOne) {
  const auto properties = Transient();
  EXPECT_TRUE(properties->Modifiable(true));
  EXPECT_FALSE(properties->Modifiable(false));
  properties->SetupItem({.Name = "A"});
  properties->SetupItem({.Name = "B", .Modifiable = false});
  EXPECT_FALSE(properties->Modifiable(true));
  EXPECT_TRUE(properties->Modifiable(false));
  EXPECT_TRUE(SampleRows().Row(0)->Modifiable(true));
}

TEST_F(PropertiesTest, AnEmptyCollectionAnswersModifiableWithTheQuestion) {
  EXPECT_FALSE(Transient()->Modifiable(false));
  EXPECT_TRUE(Transient()->Modifiable(true));
}

TEST_F(PropertiesTest, EmptyValuesNeedsEveryMemberEmpty) {
  const auto properties = Transient();
  EXPECT_TRUE(properties->EmptyValues());
  properties->SetupItem({.Name = "A"});
  EXPECT_TRUE(properties->EmptyValues());
  properties->SetupItem({.Name = "B", .Value = 1});
  EXPECT_FALSE(properties->EmptyValues());
}

TEST_F(PropertiesTest, RequiresValuesWhenAMemberDoes) {
  const auto properties = Transient();
  properties->SetupItem({.Name = "A"});
  EXPECT_FALSE(properties->RequiresValues());
  properties->SetupItem({.Name = "B", .Flags = pfInput | pfRequired});
  EXPECT_TRUE(properties->RequiresValues());
}

TEST_F(PropertiesTest, FreeDirtyAndDirtyValuesAreTwoQuestions) {
  const auto properties = Transient();
  properties->SetupItem({.Name = "A"});
  properties->ClearDirty();
  EXPECT_FALSE(properties->Dirty());
  properties->Item("A")->SetCaption("c");
  EXPECT_TRUE(properties->Dirty());
  EXPECT_FALSE(properties->DirtyValues());
  properties->ClearDirty();
  properties->Item("A")->SetValue(1);
  EXPECT_TRUE(properties->DirtyValues());
}

TEST_F(PropertiesTest, BoundDirtyIsThatOfTheRow) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  row->Item("Name")->SetCaption("c");
  EXPECT_FALSE(row->Dirty());
  row->Item("Name")->SetValue("Eve");
  EXPECT_TRUE(row->Dirty());
  EXPECT_TRUE(row->DirtyValues());
  EXPECT_FALSE(rows.Row(1)->Dirty());
}

TEST_F(PropertiesTest, ReturnValueParameterIsTheFirstAndOnlyOfUnboundOnes) {
  const auto properties = Transient();
  EXPECT_FALSE(properties->ReturnValueParameter());
  properties->SetupItem({.Name = "A", .Flags = pfInput});
  properties->SetupItem({.Name = "B", .Flags = pfReturnValue | pfOutput});
  properties->SetupItem({.Name = "C", .Flags = pfReturnValue});
  EXPECT_EQ(properties->ReturnValueParameter()->Name(), "B");
  const SampleRows rows;
  rows.Row(0)->Item("Id")->SetFlags(pfReturnValue);
  EXPECT_FALSE(rows.Row(0)->ReturnValueParameter());
}

TEST_F(PropertiesTest, BoundNamesComeFromTheRow) {
  const SampleRows rows(efUpdate);
  const auto row = rows.Row(0);
  EXPECT_EQ(row->Name(), "Get");
  EXPECT_EQ(rows.Rows->GetPersistentProperties(0, "Key")->Name(), "Key");
  EXPECT_EQ(row->ServerName(), "Sales");
  EXPECT_EQ(row->ClassName(), "Order");
  EXPECT_EQ(row->ActionName(), "Get");
  EXPECT_EQ(row->DatabaseName(), "");
  EXPECT_EQ(row->Engine(), engODBC);
  EXPECT_EQ(row->EngineName(), "Generic ODBC");
  EXPECT_EQ(row->EditFlags(), efUpdate);
  EXPECT_EQ(row->EditFlagsDisplay(), "Update");
}

TEST_F(PropertiesTest, APropertiesNameOfTheActionIsConsultedByNothing) {
  const SampleRows rows;
  rows.Action->SetPropertiesName("Row");
  EXPECT_EQ(rows.Row(0)->Name(), "Get");
}

TEST_F(PropertiesTest, FreeEditFlagsAreTheOrOfTheMembers) {
  const SampleRows rows(efUpdate | efInsert);
  const auto properties = Transient();
  properties->SetupItem({.Name = "A"});
  EXPECT_EQ(properties->EditFlags(), efNone);
  properties->Add(rows.Row(0)->Item("Id")->Copy());
  EXPECT_EQ(properties->EditFlags(), efUpdate | efInsert);
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

TEST_F(PropertiesTest, StatisticsAreMadeOnceAndKept) {
  const auto properties = Transient();
  EXPECT_EQ(properties->Statistics(), properties->Statistics());
}

TEST_F(PropertiesTest, CopyOfARowIsFreeOfIt) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  const auto copy = row->Copy();
  EXPECT_FALSE(copy->IsBound());
  EXPECT_EQ(copy->Style(), psNone);
  EXPECT_EQ(copy->Name(), "Get");
  EXPECT_EQ(copy->ActionName(), "Get");
  EXPECT_EQ(copy->Item("Name")->Value().AsText(), "Ada");
  copy->Item("Name")->SetValue("Eve");
  EXPECT_EQ(row->Item("Name")->Value().AsText(), "Ada");
  ExpectRaised(errNotSupported_Rename, [&] { copy->RenameItem("Name", "N"); });
}

TEST_F(PropertiesTest, CopyTakesTheNameGiven) { EXPECT_EQ(Transient()->Copy("N")->Name(), "N"); }

TEST_F(PropertiesTest, DetailsBeginByStyle) {
  const SampleDesign design;
  EXPECT_EQ(Transient()->Details(), "Properties Count 0");
  EXPECT_EQ(Bound(psUser)->Details(), "User Properties Count 0");
  const auto parameters = design.Order->Actions()->Item("Get")->Sources()->Item()->Parameters();
  EXPECT_TRUE(parameters->Details().starts_with("Parameter Definition Properties Count "));
  EXPECT_TRUE(design.Order->Properties()->Details().starts_with("Identifier Definition Properties Count 1 for '"));
  EXPECT_NE(design.Order->Properties()->Details().find("' Source of 'Order'\r\n    Property: 'Id'"), std::string::npos);
}

TEST_F(PropertiesTest, DetailsOfARowTellItsAction) {
  const SampleRows rows;
  EXPECT_TRUE(rows.Row(0)->Details().starts_with("Persistent Properties Count 7 built using " + rows.Action->Details() +
                                                 "\r\n    Property: 'Id'  Value: 1"));
}

TEST_F(PropertiesTest, ParentsReachTheMembers) {
  const SampleDesign design;
  const auto properties = Bound(psUser);
  const auto member = properties->SetupItem({.Name = "A"});
  Parents parents;
  parents.Server = design.Sales->Data();
  properties->SetParents(psNone, parents);
  EXPECT_EQ(member->ServerName(), "Sales");
  ExpectRaised(errParent_Server, [&] { properties->SetParents(psNone, parents); }, {.Text = "Server: 'Sales'"});
  properties->ClearParents(psNone, ParentSlots::All());
  EXPECT_EQ(member->ServerName(), "");
}

}  // namespace
}  // namespace velmoria::test
