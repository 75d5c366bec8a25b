#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/unit/properties/user_properties_fixture.h"

namespace velmoria::test {
namespace {

class PropertiesMembersTest : public UserPropertiesFixture {};

TEST_F(PropertiesMembersTest, AddJoinsTheCollectionAndItsDefinition) {
  const auto item = New("A");
  user_->Add(item);
  EXPECT_EQ(user_->Item("A"), item);
  EXPECT_EQ(data_->Item("A"), item->Data());
  EXPECT_EQ(item->Data()->Style(), psUser);
  EXPECT_EQ(item->OrderNumber(), 1);
}

TEST_F(PropertiesMembersTest, AddTellsTheListenersBeforeAndAfterTheItemJoins) {
  const auto item = New("A");
  std::string told;
  user_->BeforeAdd += [&](Property& given, bool&) {
    EXPECT_EQ(&given, item.get());
    told += "before " + std::to_string(user_->Count()) + std::to_string(data_->Count());
  };
  user_->AfterAdd += [&](Property& given) {
    EXPECT_EQ(&given, item.get());
    told += " after " + std::to_string(user_->Count()) + std::to_string(data_->Count());
  };
  user_->Add(item);
  EXPECT_EQ(told, "before 00 after 11");
}

TEST_F(PropertiesMembersTest, AddedItemGetsTheParentsOfTheCollection) {
  const SampleDesign design;
  const auto item = New("Extra");
  design.Line->Properties()->Add(item);
  EXPECT_EQ(item->ServerName(), "Sales");
  EXPECT_EQ(item->ClassName(), "Line");
  EXPECT_EQ(item->Data()->Style(), psIdentifier);
  EXPECT_EQ(item->OrderNumber(), 3);
}

TEST_F(PropertiesMembersTest, AddToATransientCollectionSetsTheStyleAndNoParents) {
  const auto item = New("A");
  transient_->Add(item);
  EXPECT_EQ(item->Data()->Style(), psNone);
  EXPECT_EQ(item->OrderNumber(), 0);
}

TEST_F(PropertiesMembersTest, RefusedItemKeepsItsStyleAndIsFreeToJoinLater) {
  const SampleDesign design;
  const auto identifiers = design.Line->Properties();
  const auto item = New("LINENO");
  ExpectReported(RuntimeFailure::KeyInUse, [&] { identifiers->Add(item); });
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { identifiers->Add(item, {.After = "X"}); });
  EXPECT_EQ(item->ServerName(), "");
  EXPECT_EQ(item->Data()->Style(), psNonPersistent);
  EXPECT_EQ(identifiers->Data()->Count(), 2);
  item->SetName("Extra");
  identifiers->Add(item);
  EXPECT_EQ(item->ClassName(), "Line");
}

TEST_F(PropertiesMembersTest, DefinitionThatRefusesAnItemLeavesItFreeOfParents) {
  const SampleDesign design;
  const auto identifiers = design.Line->Properties();
  EXPECT_EQ(identifiers->Count(), 2);
  identifiers->Data()->SetupItem(psIdentifier, {.Name = "Late"});
  const auto item = New("Late");
  ExpectReported(RuntimeFailure::KeyInUse, [&] { identifiers->Add(item); });
  EXPECT_EQ(item->ClassName(), "");
  EXPECT_EQ(item->Data()->Style(), psNonPersistent);
}

TEST_F(PropertiesMembersTest, PositionThatOnlyTheDefinitionHasIsRefusedBeforeTheDefinitionChanges) {
  EXPECT_EQ(user_->Count(), 0);
  data_->SetupItem(psUser, {.Name = "Late"});
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { user_->Add(New("A"), {.Before = "Late"}); });
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { user_->SetupItem({.Name = "A"}, {.Before = "Late"}); });
  EXPECT_EQ(DefinedOrder(), "Late");
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
               {.Text = "Problem adding Property.  Name: 'B'  Before: '1'  After: 'A'\r\n"
                        "Passing both Before and After arguments is not allowed.",
                .Count = 1});
  EXPECT_EQ(Order(user_), "A");
  EXPECT_EQ(DefinedOrder(), "AB");
}

TEST_F(PropertiesMembersTest, BothPositionsAreRefusedByATransientCollection) {
  int after = 0;
  transient_->AfterAdd += [&](Property&) { ++after; };
  ExpectRaised(errAdd_Property, [&] { transient_->Add(New("B"), {.Before = 7, .After = Variant::Null()}); },
               {.Text = "Name: 'B'  Before: '7'  After: '(Null)'"});
  EXPECT_EQ(transient_->Count(), 0);
  EXPECT_EQ(after, 0);
}

TEST_F(PropertiesMembersTest, BothPositionsInSetupItemLeaveNoHalfMadeMember) {
  user_->Add(New("A"));
  int asked = 0;
  user_->BeforeAdd += [&](Property&, bool&) { ++asked; };
  ExpectRaised(errAdd_Property, [&] { user_->SetupItem({.Name = "B"}, {.Before = 1, .After = 2}); },
               {.Text = "Name: 'B'  Before: '1'  After: '2'\r\nPassing both Before and After"});
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(Order(user_), "A");
  EXPECT_EQ(DefinedOrder(), "A");
}

TEST_F(PropertiesMembersTest, EmptyPositionsCountAsNotGiven) {
  transient_->Add(New("A"));
  transient_->Add(New("B"), {.Before = Variant(), .After = Variant()});
  transient_->Add(New("C"), {.Before = "B", .After = Variant()});
  transient_->Add(New("D"), {.Before = Variant(), .After = 1});
  EXPECT_EQ(Order(transient_), "ADCB");
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
  int asked = 0;
  user_->BeforeAdd += [&](Property&, bool&) { ++asked; };
  user_->SetSupportsAdd(false);
  ExpectRaised(errNotSupported_Add, [&] { user_->Add(New("A")); }, {.Text = "Properties.Add", .Count = 1});
  ExpectRaised(errNotSupported_Add, [&] { user_->SetupItem({.Name = "A"}); }, {.Text = "Properties.SetupItem"});
  EXPECT_EQ(data_->Count(), 0);
  EXPECT_EQ(user_->Count(), 0);
  EXPECT_EQ(asked, 0);
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
  EXPECT_EQ(Framework().Messages()->Count(), 0);
}

TEST_F(PropertiesMembersTest, CancelInSetupItemLeavesTheDefinitionBehind) {
  int after = 0;
  user_->BeforeAdd += [](Property&, bool& Cancel) { Cancel = true; };
  user_->AfterAdd += [&](Property&) { ++after; };
  EXPECT_FALSE(user_->SetupItem({.Name = "A"}));
  EXPECT_EQ(user_->Count(), 0);
  EXPECT_EQ(DefinedOrder(), "A");
  EXPECT_EQ(after, 0);
  EXPECT_EQ(Framework().Messages()->Count(), 0);
}

TEST_F(PropertiesMembersTest, CancelInSetupItemOfATransientCollectionFails) {
  transient_->BeforeAdd += [](Property&, bool& Cancel) { Cancel = true; };
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { transient_->SetupItem({.Name = "A"}); });
  EXPECT_EQ(transient_->Count(), 0);
}

TEST_F(PropertiesMembersTest, SetupItemTellsTheListenersTheNewMember) {
  PropertyPtr before;
  PropertyPtr after;
  user_->BeforeAdd += [&](Property& item, bool&) {
    before = PropertyPtr(&item);
    EXPECT_EQ(user_->Count(), 0);
    EXPECT_EQ(data_->Count(), 1);
  };
  user_->AfterAdd += [&](Property& item) {
    after = PropertyPtr(&item);
    EXPECT_EQ(user_->Count(), 1);
  };
  const auto member = user_->SetupItem({.Name = "A"});
  EXPECT_EQ(before, member);
  EXPECT_EQ(after, member);
}

TEST_F(PropertiesMembersTest, ListenerThatFailsInSetupItemLeavesNothingBehind) {
  const auto before = user_->BeforeAdd += [](Property&, bool&) { Fail(RuntimeFailure::DivisionByZero); };
  ExpectReported(RuntimeFailure::DivisionByZero, [&] { user_->SetupItem({.Name = "A"}); });
  EXPECT_EQ(data_->Count(), 0);
  user_->BeforeAdd -= before;
  user_->AfterAdd += [](Property&) { Fail(RuntimeFailure::DivisionByZero); };
  ExpectReported(RuntimeFailure::DivisionByZero, [&] { user_->SetupItem({.Name = "A"}); });
  EXPECT_EQ(data_->Count(), 0);
  EXPECT_EQ(user_->Count(), 0);
}

TEST_F(PropertiesMembersTest, ListenerThatRemovesTheDefinitionItselfIsNoSecondFailure) {
  user_->BeforeAdd += [&](Property&, bool&) {
    data_->Remove("A");
    Fail(RuntimeFailure::DivisionByZero);
  };
  ExpectReported(RuntimeFailure::DivisionByZero, [&] { user_->SetupItem({.Name = "A"}); });
}

TEST_F(PropertiesMembersTest, SetupItemOfATransientCollectionMakesADefinitionOfItsOwn) {
  const auto member = transient_->SetupItem({.Name = "A", .Value = 1});
  EXPECT_EQ(member->Data()->Style(), psNone);
  EXPECT_EQ(member->OrderNumber(), 0);
  EXPECT_FALSE(transient_->Data());
}

TEST_F(PropertiesMembersTest, SetupItemStampsTheDefinition) {
  EXPECT_FALSE(data_->Dirty());
  user_->SetupItem({.Name = "A"});
  EXPECT_TRUE(data_->Dirty());
}

TEST_F(PropertiesMembersTest, SetupItemTakesTheEngineOfTheSourceThenItsOwnThenTheCollections) {
  const auto collection = Framework().CreateProperties({.Engine = engSybase});
  EXPECT_EQ(collection->SetupItem({.Name = "A"})->Engine(), engSybase);
  EXPECT_EQ(collection->SetupItem({.Name = "B", .Engine = engOracle})->Engine(), engOracle);
  const SampleDesign design;
  const auto parameters = design.Order->Actions()->Item("Get")->Sources()->Item()->Parameters();
  EXPECT_EQ(parameters->SetupItem({.Name = "P", .Engine = engOracle})->Data()->Engine(), engODBC);
}

TEST_F(PropertiesMembersTest, MemberMadeInARowHasTheEngineOfTheRow) {
  const SampleRows rows;
  EXPECT_EQ(rows.Row(0)->SetupItem({.Name = "Extra"})->Data()->Engine(), engODBC);
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

TEST_F(PropertiesMembersTest, LiveMemberOfARowThatJoinsADefinitionStillReadsItsColumn) {
  const SampleRows rows;
  const auto amount = rows.Row(0)->Item("Amount");
  user_->SetupItem({.Name = "First"});
  user_->Add(amount, {.Before = 1});
  user_->Remove("First");
  EXPECT_EQ(user_->Item("Amount"), amount);
  EXPECT_EQ(amount->OrderNumber(), 4);
  EXPECT_EQ(rows.Column("Amount").Style(), psPersistent);
  EXPECT_EQ(rows.Row(1)->Item("Amount")->Value().AsDouble(), 99);
}

TEST_F(PropertiesMembersTest, SharedMemberJoinsWithoutEvents) {
  int events = 0;
  transient_->BeforeAdd += [&](Property&, bool&) { ++events; };
  const auto item = New("A");
  transient_->AddShared(item);
  EXPECT_EQ(transient_->Item("A"), item);
  EXPECT_EQ(item->Data()->Style(), psNonPersistent);
  ExpectReported(RuntimeFailure::KeyInUse, [&] { transient_->AddShared(New("a")); });
  EXPECT_EQ(events, 0);
}

}  // namespace
}  // namespace velmoria::test
