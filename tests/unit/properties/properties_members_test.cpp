#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertiesMembersTest : public testing::Test {
 protected:
  PropertiesMembersTest() : transient_(Framework().CreateProperties()), data_(Make<PropertiesData>()) {
    user_ = Make<Properties>();
    user_->Bind({.Style = psUser, .PropertiesData = data_});
  }
  static PropertyPtr New(const std::string& name) { return Framework().CreateProperty({.Name = name}); }
  static std::string Order(const PropertiesPtr& properties) {
    std::string names;
    for (const auto& item : *properties) names += item->Name();
    return names;
  }
  std::string DefinedOrder() const {
    std::string names;
    for (const auto& item : *data_) names += item->Name();
    return names;
  }

  ScopedApartment apartment_;
  PropertiesPtr transient_;
  PropertiesDataPtr data_;
  PropertiesPtr user_;  // over data_
};

TEST_F(PropertiesMembersTest, AddJoinsTheCollectionAndItsDefinition) {
  const auto item = New("A");
  user_->Add(item);
  EXPECT_EQ(user_->Item("A"), item);
  EXPECT_EQ(data_->Item("A"), item->Data());
  EXPECT_EQ(item->Data()->Style(), psUser);
  EXPECT_EQ(item->OrderNumber(), 1);
}

TEST_F(PropertiesMembersTest, OnePositionReachesTheDefinition) {
  for (const char* name : {"A", "C"}) user_->Add(New(name));
  user_->Add(New("B"), {.Before = "C"});
  user_->SetupItem({.Name = "D"}, {.After = 1});
  EXPECT_EQ(Order(user_), "ADBC");
  EXPECT_EQ(DefinedOrder(), "ADBC");
}

TEST_F(PropertiesMembersTest, BothPositionsAreRefusedWhenTheDefinitionHasTakenTheItemAlready) {
  user_->Add(New("A"));
  ExpectRaised(errAdd_Property, [&] { user_->Add(New("B"), {.Before = 1, .After = "A"}); },
               {.Text = "Name: 'B'  Before: '1'  After: 'A'"});
  EXPECT_EQ(Order(user_), "A");
  EXPECT_EQ(DefinedOrder(), "AB");
}

TEST_F(PropertiesMembersTest, BothPositionsInSetupItemLeaveNoHalfMadeMember) {
  user_->Add(New("A"));
  ExpectRaised(errAdd_Property, [&] { user_->SetupItem({.Name = "B"}, {.Before = 1, .After = 1}); });
  EXPECT_EQ(DefinedOrder(), "A");
}

TEST_F(PropertiesMembersTest, EmptyPositionsCountAsNotGiven) {
  transient_->Add(New("A"));
  transient_->Add(New("B"), {.Before = Variant(), .After = Variant()});
  EXPECT_EQ(Order(transient_), "AB");
}

TEST_F(PropertiesMembersTest, UnknownPositionFails) {
  ExpectReported(RuntimeFailure::SubscriptOutOfRange, [&] { transient_->Add(New("A"), {.Before = 3}); });
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { transient_->Add(New("A"), {.After = "X"}); });
}

TEST_F(PropertiesMembersTest, NamesThatDifferOnlyByCaseAreDuplicates) {
  transient_->Add(New("A"));
  ExpectReported(RuntimeFailure::KeyInUse, [&] { transient_->Add(New("a")); });
  ExpectReported(RuntimeFailure::KeyInUse, [&] { transient_->SetupItem({.Name = "a"}); });
  EXPECT_EQ(transient_->Count(), 1);
}

TEST_F(PropertiesMembersTest, DuplicateInSetupItemLeavesTheFirstDefinition) {
  user_->SetupItem({.Name = "A", .Caption = "first"});
  ExpectReported(RuntimeFailure::KeyInUse, [&] { user_->SetupItem({.Name = "a"}); });
  EXPECT_EQ(data_->Item("A")->Caption(), "first");
}

TEST_F(PropertiesMembersTest, AddOfNothingIsAnObjectNotSet) {
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { transient_->Add({}); });
}

TEST_F(PropertiesMembersTest, AddWithoutSupportIsRefusedAndMakesNothing) {
  user_->SetSupportsAdd(false);
  ExpectRaised(errNotSupported_Add, [&] { user_->Add(New("A")); });
  ExpectRaised(errNotSupported_Add, [&] { user_->SetupItem({.Name = "A"}); });
  EXPECT_EQ(data_->Count(), 0);
}

TEST_F(PropertiesMembersTest, CancelInAddIsSilent) {
  int after = 0;
  user_->BeforeAdd += [](Property& item, bool& Cancel) { Cancel = item.Name() == "A"; };
  user_->AfterAdd += [&](Property&) { ++after; };
  user_->Add(New("A"));
  EXPECT_EQ(data_->Count(), 0);
  user_->Add(New("B"));
  EXPECT_EQ(Order(user_), "B");
  EXPECT_EQ(after, 1);
}

TEST_F(PropertiesMembersTest, CancelInSetupItemLeavesTheDefinitionBehind) {
  user_->BeforeAdd += [](Property&, bool& Cancel) { Cancel = true; };
  EXPECT_FALSE(user_->SetupItem({.Name = "A"}));
  EXPECT_EQ(user_->Count(), 0);
  EXPECT_EQ(DefinedOrder(), "A");
}

TEST_F(PropertiesMembersTest, CancelInSetupItemOfATransientCollectionFails) {
  transient_->BeforeAdd += [](Property&, bool& Cancel) { Cancel = true; };
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { transient_->SetupItem({.Name = "A"}); });
}

TEST_F(PropertiesMembersTest, SetupItemTakesTheEngineOfTheSourceThenItsOwnThenTheCollections) {
  const auto collection = Framework().CreateProperties({.Engine = engSybase});
  EXPECT_EQ(collection->SetupItem({.Name = "A"})->Engine(), engSybase);
  EXPECT_EQ(collection->SetupItem({.Name = "B", .Engine = engOracle})->Engine(), engOracle);
  const SampleDesign design;
  const auto parameters = design.Order->Actions()->Item("Get")->Sources()->Item()->Parameters();
  EXPECT_EQ(parameters->SetupItem({.Name = "P", .Engine = engOracle})->Data()->Engine(), engODBC);
}

TEST_F(PropertiesMembersTest, SetupItemPassesTheFailureOfADefaultValue) {
  ExpectRaised(errProperty_DataType,
               [&] { user_->SetupItem({.Name = "A", .DataType = dtLongInteger, .DefaultValue = "abc"}); });
  EXPECT_EQ(data_->Count(), 0);
}

TEST_F(PropertiesMembersTest, ItemThatHasAParentAlreadyIsRefused) {
  const SampleDesign design;
  const auto identifiers = design.Order->Properties();
  const auto taken = design.Line->Properties()->Item(1);
  ExpectRaised(errParent_Server, [&] { identifiers->Add(taken); }, {.Text = "Server: 'Sales'"});
}

// Remove

TEST_F(PropertiesMembersTest, RemoveTakesTheMemberOutOfTheDefinitionAndFromItsParents) {
  const SampleDesign design;
  const auto identifiers = design.Line->Properties();
  const auto member = identifiers->Item("OrderId");
  identifiers->Remove("OrderId");
  EXPECT_EQ(Order(identifiers), "LineNo");
  EXPECT_EQ(identifiers->Data()->Count(), 1);
  EXPECT_EQ(member->ClassName(), "");
  EXPECT_EQ(member->Data()->Style(), psNonPersistent);
  EXPECT_EQ(identifiers->Item(1)->OrderNumber(), 1);
}

TEST_F(PropertiesMembersTest, RemoveByAnyKey) {
  transient_->SetupItem({.Name = "A", .SourceName = "s"});
  transient_->SetupItem({.Name = "B"});
  transient_->Remove(PropertyKey{.SourceName = "s"});
  transient_->Remove(1);
  EXPECT_EQ(transient_->Count(), 0);
}

TEST_F(PropertiesMembersTest, RemoveOfAnUnknownMemberIsAProblemOfFinding) {
  ExpectRaised(errItem_Property, [&] { transient_->Remove("A"); }, {.Text = "Index: 'A'"});
}

TEST_F(PropertiesMembersTest, RemoveWithoutSupportIsRefused) {
  transient_->SetupItem({.Name = "A"});
  transient_->SetSupportsRemove(false);
  ExpectRaised(errNotSupported_Remove, [&] { transient_->Remove("A"); });
  EXPECT_EQ(transient_->Count(), 1);
}

TEST_F(PropertiesMembersTest, FailureWhileRemovingIsItsOwnProblem) {
  transient_->SetupItem({.Name = "A"});
  transient_->BeforeRemove += [](Property&, bool&) { Fail(RuntimeFailure::DivisionByZero); };
  ExpectRaised(errRemove_Property, [&] { transient_->Remove("A"); }, {.Text = "Index: 'A'"});
}

TEST_F(PropertiesMembersTest, RemoveByAParameterThatAnswersToNobodyIsItsOwnProblem) {
  ExpectRaised(errRemove_Property, [&] { transient_->Remove(PropertyKey{.Parameter = New("X")}); });
}

TEST_F(PropertiesMembersTest, CancelInRemoveIsSilent) {
  int after = 0;
  user_->SetupItem({.Name = "A"});
  user_->BeforeRemove += [](Property&, bool& Cancel) { Cancel = true; };
  user_->AfterRemove += [&](Property&) { ++after; };
  user_->Remove("A");
  EXPECT_EQ(Order(user_), "A");
  EXPECT_EQ(DefinedOrder(), "A");
  EXPECT_EQ(after, 0);
}

TEST_F(PropertiesMembersTest, RemoveTellsTheListenersTheMember) {
  std::string told;
  transient_->SetupItem({.Name = "A"});
  transient_->BeforeRemove += [&](Property& item, bool&) { told += "before " + item.Name(); };
  transient_->AfterRemove += [&](Property& item) { told += " after " + item.Name(); };
  transient_->Remove(1);
  EXPECT_EQ(told, "before A after A");
}

// Rename

TEST_F(PropertiesMembersTest, RenameKeepsThePosition) {
  for (const char* name : {"A", "B", "C"}) user_->SetupItem({.Name = name});
  user_->RenameItem("B", "X");
  EXPECT_EQ(Order(user_), "AXC");
  EXPECT_EQ(DefinedOrder(), "AXC");
  EXPECT_EQ(user_->Item("x")->Name(), "X");
  EXPECT_FALSE(user_->Find({.Index = "B"}));
}

TEST_F(PropertiesMembersTest, RenameInATransientCollectionIsRefused) {
  transient_->SetupItem({.Name = "A"});
  ExpectRaised(errNotSupported_Rename, [&] { transient_->RenameItem("A", "B"); });
}

TEST_F(PropertiesMembersTest, RenameToATakenNameIsRefused) {
  for (const char* name : {"A", "B"}) user_->SetupItem({.Name = name});
  ExpectRaised(errRename_Property, [&] { user_->RenameItem("A", "b"); }, {.Text = "Name: 'A'  NewName: 'b'"});
  EXPECT_EQ(Order(user_), "AB");
}

TEST_F(PropertiesMembersTest, ATakenNameIsRefusedAheadOfAnUnknownOrLockedMember) {
  for (const char* name : {"A", "B"}) user_->SetupItem({.Name = name})->SetLocked(true);
  ExpectRaised(errRename_Property, [&] { user_->RenameItem("A", "b"); });
  ExpectRaised(errRename_Property, [&] { user_->RenameItem("X", "b"); });
}

TEST_F(PropertiesMembersTest, RenameOfAnUnknownMemberTellsNoListener) {
  int events = 0;
  user_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { ++events; };
  ExpectRaised(errItem_Property, [&] { user_->RenameItem("X", "Y"); }, {.Text = "Index: 'X'"});
  EXPECT_EQ(events, 0);
}

TEST_F(PropertiesMembersTest, RenameOfALockedMemberChangesNothing) {
  user_->SetupItem({.Name = "A"})->SetLocked(true);
  ExpectRaised(errVelmoria_Locked, [&] { user_->RenameItem("A", "B"); }, {.Text = "Property.Name (Let)", .Count = 1});
  EXPECT_EQ(DefinedOrder(), "A");
}

// Rows

TEST_F(PropertiesMembersTest, MemberAddedToARowStaysFreeStanding) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  const auto extra = New("Extra");
  extra->SetValue(5);
  row->Add(extra);
  EXPECT_EQ(row->Count(), 8);
  EXPECT_EQ(row->Item("Extra")->Value().AsLong(), 5);
  EXPECT_EQ(row->Item("Name")->Value().AsText(), "Ada");
  EXPECT_EQ(row->Item("Amount")->Value().AsDouble(), 12.5);
}

TEST_F(PropertiesMembersTest, LiveMemberOfARowKeepsItsStyleInAnotherCollection) {
  const SampleRows rows;
  transient_->Add(rows.Row(0)->Item("Id"));
  EXPECT_EQ(rows.Column("Id").Style(), psPersistent);
}

TEST_F(PropertiesMembersTest, SharedMemberJoinsWithoutEvents) {
  int events = 0;
  transient_->BeforeAdd += [&](Property&, bool&) { ++events; };
  const auto item = New("A");
  transient_->AddShared(item);
  EXPECT_EQ(transient_->Item("A"), item);
  EXPECT_EQ(item->Data()->Style(), psNonPersistent);
  EXPECT_EQ(events, 0);
}

}  // namespace
}  // namespace velmoria::test
