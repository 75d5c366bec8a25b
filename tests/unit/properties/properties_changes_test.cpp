#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/unit/properties/user_properties_fixture.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertiesChangesTest : public UserPropertiesFixture {};

// Remove

TEST_F(PropertiesChangesTest, RemoveTakesTheMemberOutOfTheDefinitionAndFromItsParents) {
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

TEST_F(PropertiesChangesTest, RemoveByAnyKey) {
  transient_->SetupItem({.Name = "A", .SourceName = "s"});
  transient_->SetupItem({.Name = "B"});
  transient_->Remove(PropertyKey{.SourceName = "s"});
  transient_->Remove(1);
  EXPECT_EQ(transient_->Count(), 0);
}

TEST_F(PropertiesChangesTest, RemoveOfAnUnknownMemberIsAProblemOfFinding) {
  ExpectRaised(errItem_Property, [&] { transient_->Remove("A"); }, {.Text = "Index: 'A'", .Count = 2});
}

TEST_F(PropertiesChangesTest, RemoveWithoutSupportIsRefused) {
  transient_->SetupItem({.Name = "A"});
  transient_->SetSupportsRemove(false);
  ExpectRaised(errNotSupported_Remove, [&] { transient_->Remove("A"); }, {.Text = "Properties.Remove", .Count = 1});
  ExpectRaised(errNotSupported_Remove, [&] { transient_->Remove("Unknown"); }, {.Count = 1});
  EXPECT_EQ(transient_->Count(), 1);
}

TEST_F(PropertiesChangesTest, FailureWhileRemovingIsItsOwnProblem) {
  transient_->SetupItem({.Name = "A"});
  transient_->BeforeRemove += [](Property&, bool&) { Fail(RuntimeFailure::DivisionByZero); };
  const PropertyKey key{.Index = "A", .SourceName = "s", .SourceKey = "t.c"};
  ExpectRaised(
      errRemove_Property, [&] { transient_->Remove(key); },
      {.Text = "Problem removing Property.  Index: 'A'  SourceName: 's'  SourceKey: 't.c'  Parameter: (Nothing)",
       .Count = 2});
  EXPECT_EQ(transient_->Count(), 1);
}

TEST_F(PropertiesChangesTest, CauseOfAFailedRemoveStandsBesideItAsAWarning) {
  transient_->SetupItem({.Name = "A"});
  transient_->BeforeRemove += [](Property&, bool&) { Fail(RuntimeFailure::DivisionByZero); };
  EXPECT_TRUE(Thrown([&] { transient_->Remove("A"); }));
  EXPECT_EQ(Framework().Messages()->Item("11")->SeverityFlags(), svfWarning);
  EXPECT_EQ(Framework().Messages()->Item("15142")->SeverityFlags(), svfError);
}

TEST_F(PropertiesChangesTest, WhatAListenerSuppliesIsNoMemberToRemove) {
  user_->SetupItem({.Name = "A"});
  const auto supplied = New("A");
  user_->ItemNotFound += [&](const PropertyKey&, PropertyPtr& item) { item = supplied; };
  ExpectRaised(errRemove_Property, [&] { user_->Remove("X"); }, {.Text = "Index: 'X'"});
  EXPECT_EQ(DefinedOrder(), "A");
}

TEST_F(PropertiesChangesTest, MemberWhoseNameWasChangedLeavesWithItsDefinition) {
  for (const char* name : {"A", "B"}) user_->SetupItem({.Name = name});
  user_->Item("A")->SetName("Z");
  user_->Remove("A");
  EXPECT_EQ(Order(user_), "B");
  EXPECT_EQ(DefinedOrder(), "B");
}

TEST_F(PropertiesChangesTest, RemovedDefinitionIsInNoListAndStaysWhole) {
  const auto member = user_->SetupItem({.Name = "A", .Value = 1, .Caption = "c"});
  user_->Remove("A");
  EXPECT_EQ(member->OrderNumber(), 0);
  EXPECT_EQ(member->Value().AsLong(), 1);
  EXPECT_EQ(member->Caption(), "c");
  EXPECT_TRUE(data_->Dirty());
  user_->Add(member);
  EXPECT_EQ(Order(user_), "A");
}

TEST_F(PropertiesChangesTest, DefinitionThatAnotherCollectionRemovedIsAProblemOfFinding) {
  user_->SetupItem({.Name = "A"});
  const auto other = Over(data_);
  EXPECT_EQ(other->Count(), 1);
  user_->Remove("A");
  ExpectRaised(errItem_Property, [&] { other->Remove("A"); }, {.Count = 2});
  EXPECT_EQ(Order(other), "A");
}

TEST_F(PropertiesChangesTest, RemovingAMemberOfATransientCollectionLeavesItsParentsAndStyle) {
  const SampleDesign design;
  const auto taken = design.Line->Properties()->Item(1);
  transient_->AddShared(taken);
  transient_->Remove(1);
  EXPECT_EQ(taken->ClassName(), "Line");
  EXPECT_EQ(taken->Data()->Style(), psIdentifier);
}

TEST_F(PropertiesChangesTest, RemoveByAParameterThatAnswersToNobodyIsItsOwnProblem) {
  ExpectRaised(errRemove_Property, [&] { transient_->Remove(PropertyKey{.Parameter = New("X")}); });
}

TEST_F(PropertiesChangesTest, CancelInRemoveIsSilent) {
  int after = 0;
  user_->SetupItem({.Name = "A"});
  user_->BeforeRemove += [](Property&, bool& Cancel) { Cancel = true; };
  user_->AfterRemove += [&](Property&) { ++after; };
  user_->Remove("A");
  EXPECT_EQ(Order(user_), "A");
  EXPECT_EQ(DefinedOrder(), "A");
  EXPECT_EQ(after, 0);
}

TEST_F(PropertiesChangesTest, RemoveTellsTheListenersTheMember) {
  std::string told;
  transient_->SetupItem({.Name = "A"});
  transient_->BeforeRemove += [&](Property& item, bool&) { told += "before " + item.Name(); };
  transient_->AfterRemove += [&](Property& item) { told += " after " + item.Name(); };
  transient_->Remove(1);
  EXPECT_EQ(told, "before A after A");
}

// Rename

TEST_F(PropertiesChangesTest, RenameKeepsThePosition) {
  for (const char* name : {"A", "B", "C"}) user_->SetupItem({.Name = name});
  user_->RenameItem("B", "X");
  EXPECT_EQ(Order(user_), "AXC");
  EXPECT_EQ(DefinedOrder(), "AXC");
  EXPECT_EQ(user_->Item("x")->Name(), "X");
  EXPECT_FALSE(user_->Find({.Index = "B"}));
  user_->RenameItem("A", "First");
  user_->RenameItem("C", "Last");
  EXPECT_EQ(Order(user_), "FirstXLast");
  EXPECT_EQ(DefinedOrder(), "FirstXLast");
}

TEST_F(PropertiesChangesTest, RenameLeavesTheMemberItself) {
  const auto member = user_->SetupItem({.Name = "A", .Value = 1});
  user_->RenameItem("a", "B");
  EXPECT_EQ(user_->Item("B"), member);
  EXPECT_EQ(member->Name(), "B");
  EXPECT_EQ(member->Value().AsLong(), 1);
  EXPECT_TRUE(data_->Dirty());
}

TEST_F(PropertiesChangesTest, RenameBeforeTheMembersWereAskedForFindsThem) {
  data_->SetupItem(psUser, {.Name = "A"});
  user_->RenameItem("A", "B");
  EXPECT_EQ(Order(user_), "B");
}

TEST_F(PropertiesChangesTest, RenameInATransientCollectionIsRefused) {
  transient_->SetupItem({.Name = "A"});
  ExpectRaised(errNotSupported_Rename, [&] { transient_->RenameItem("A", "B"); },
               {.Text = "Properties.RenameItem", .Count = 1});
  ExpectRaised(errNotSupported_Rename, [&] { transient_->RenameItem("Unknown", "A"); });
  EXPECT_EQ(Order(transient_), "A");
}

TEST_F(PropertiesChangesTest, RenameToATakenNameIsRefused) {
  for (const char* name : {"A", "B"}) user_->SetupItem({.Name = name});
  ExpectRaised(errRename_Property, [&] { user_->RenameItem("A", "b"); }, {.Text = "Name: 'A'  NewName: 'b'"});
  ExpectRaised(errRename_Property, [&] { user_->RenameItem("A", "A"); });
  ExpectRaised(errRename_Property, [&] { user_->RenameItem("A", "a"); });
  EXPECT_EQ(Order(user_), "AB");
  EXPECT_EQ(DefinedOrder(), "AB");
}

TEST_F(PropertiesChangesTest, NamesThatOnlyTheCollectionOrOnlyTheDefinitionHasAreRefusedBeforeAnythingChanges) {
  user_->SetupItem({.Name = "A"});
  const auto other = Over(data_);
  EXPECT_EQ(other->Count(), 1);
  user_->SetupItem({.Name = "B"});
  ExpectRaised(errItem_Property, [&] { other->RenameItem("B", "C"); }, {.Text = "Index: 'B'"});
  user_->Remove("A");
  user_->SetupItem({.Name = "Z"});
  ExpectRaised(errRename_Property, [&] { other->RenameItem("Z", "A"); }, {.Text = "Name: 'Z'  NewName: 'A'"});
  EXPECT_EQ(DefinedOrder(), "BZ");
}

TEST_F(PropertiesChangesTest, ATakenNameIsRefusedAheadOfAnUnknownOrLockedMember) {
  for (const char* name : {"A", "B"}) user_->SetupItem({.Name = name})->SetLocked(true);
  ExpectRaised(errRename_Property, [&] { user_->RenameItem("A", "b"); });
  ExpectRaised(errRename_Property, [&] { user_->RenameItem("X", "b"); });
}

TEST_F(PropertiesChangesTest, RenameOfAnUnknownMemberTellsNoListener) {
  int events = 0;
  user_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { ++events; };
  ExpectRaised(errItem_Property, [&] { user_->RenameItem("X", "Y"); }, {.Text = "Index: 'X'"});
  EXPECT_EQ(events, 0);
}

TEST_F(PropertiesChangesTest, RenameOfALockedMemberChangesNothing) {
  user_->SetupItem({.Name = "A"})->SetLocked(true);
  ExpectRaised(errVelmoria_Locked, [&] { user_->RenameItem("A", "B"); }, {.Text = "Property.Name (Let)", .Count = 1});
  EXPECT_EQ(DefinedOrder(), "A");
}

}  // namespace
}  // namespace velmoria::test
