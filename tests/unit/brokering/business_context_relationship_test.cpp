#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/navigation_fixture.h"

namespace velmoria::test {
namespace {

TEST_F(NavigationTest, RelationshipSelectsItsServerClassAndAction) {
  Relate({.Name = "Parts", .RelatedServerName = "Stock", .RelatedClassName = "Item", .RelatedActionName = "Get"});
  context_->SetRelationshipName("parts");
  EXPECT_EQ(Selected(), "Stock.Item.Get.Parts");
}

TEST_F(NavigationTest, RelationshipIsOneOfTheObjectsClassWhateverClassIsSelected) {
  Relate();
  context_->SetServerName("Stock");
  context_->SetClassName("Item");
  context_->SetRelationshipName("Lines");
  EXPECT_EQ(Selected(), "Sales.Line.Get.Lines");
}

TEST_F(NavigationTest, ContextOfNoObjectFollowsNoRelationship) {
  Relate();
  const BusinessContextPtr own = Framework{}.CreateBusinessContext({.ClassName = "Order"});
  const std::pair<const char*, BusinessContextPtr> contexts[] = {{"default", apartment_.State().BusinessContext},
                                                                 {"own", own}};
  for (const auto& [which, context] : contexts) {
    SCOPED_TRACE(which);
    ExpectRaised(errNotSupported_RelatedBusinessObjects, [&, use = context] { use->SetRelationshipName("Lines"); },
                 {.Count = 1});
  }
  EXPECT_EQ(own->ClassName(), "Order");
}

TEST_F(NavigationTest, SetupRefusesARelationshipWithoutAnObject) {
  ExpectRaised(errNotSupported_RelatedBusinessObjects,
               [&] { Framework{}.CreateBusinessContext({.RelationshipName = "Lines"}); });
}

TEST_F(NavigationTest, RelatedObjectsOfNoObjectAreRefused) {
  ExpectRaised(errNotSupported_RelatedBusinessObjects,
               [&] { Framework{}.CreateBusinessContext()->GetBusinessObjects({.RelationshipName = "Lines"}); });
}

TEST_F(NavigationTest, EveryUnknownNameIsReportedByTheOneWhoSoughtIt) {
  const std::tuple<zErrors, const char*, RelationshipFields> cases[] = {
      {errItem_Relationship, "Index: 'Wanted'", {.Name = "Other"}},
      {errItem_Server,
       "Index: 'Nowhere'",
       {.Name = "Wanted", .RelatedServerName = "Nowhere", .RelatedClassName = "Line", .RelatedActionName = "Get"}},
      {errItem_Class,
       "Index: 'Invoice'",
       {.Name = "Wanted", .RelatedServerName = "Sales", .RelatedClassName = "Invoice", .RelatedActionName = "Get"}},
      {errItem_Class,
       "Index: 'Invoice'\r\nCan't find Class in registered Servers.",
       {.Name = "Wanted", .RelatedClassName = "Invoice", .RelatedActionName = "Get"}},
      {errItem_Action,
       "Index: 'Nothing'",
       {.Name = "Wanted", .RelatedServerName = "Sales", .RelatedClassName = "Line", .RelatedActionName = "Nothing"}},
  };
  for (const auto& [number, text, fields] : cases) {
    SCOPED_TRACE(text);
    const RelationshipPtr relationship = Relate(fields);
    ExpectRaised(number, [&] { context_->SetRelationshipName("Wanted"); }, {.Text = text, .Count = 1});
    orders_.Design.Order->Relationships()->Remove(relationship->Name());
  }
}

TEST_F(NavigationTest, EmptyRelatedActionNameIsLookedUpLikeAnyName) {
  Relate({.Name = "Lines", .RelatedServerName = "Sales", .RelatedClassName = "Line"});
  ExpectRaised(errItem_Action, [&] { context_->SetRelationshipName("Lines"); }, {.Text = "Index: ''"});
}

TEST_F(NavigationTest, EmptyRelatedServerNameIsTheFirstServerThatHasTheClassAndNotTheObjectsOwn) {
  const ServerPtr archive = Framework{}.Servers()->SetupItem({.Name = "Archive"}, {.Before = 1});
  archive->Classes()->SetupItem({.Name = "Line"})->Actions()->SetupItem({.Name = "Get"});
  Relate({.Name = "Lines", .RelatedClassName = "Line", .RelatedActionName = "Get"});
  context_->SetRelationshipName("Lines");
  EXPECT_EQ(context_->ServerName(), "Archive");
}

TEST_F(NavigationTest, FailedRelationshipLeavesWhatItHasSelectedSoFar) {
  Relate({.Name = "Lines", .RelatedServerName = "Sales", .RelatedClassName = "Line", .RelatedActionName = "Nothing"});
  Relate({.Name = "Parts", .RelatedServerName = "Stock", .RelatedClassName = "Item", .RelatedActionName = "Get"});
  context_->SetRelationshipName("Parts");
  EXPECT_TRUE(Thrown([&] { context_->SetRelationshipName("Lines"); }));
  EXPECT_EQ(Selected(), "Sales.Line..");
}

TEST_F(NavigationTest, ChangeOfServerClassOrActionClearsTheRelationship) {
  Relate();
  const std::pair<const char*, void (*)(BusinessContext&)> changes[] = {
      {"server", [](BusinessContext& c) { c.SetServerName("Stock"); }},
      {"class", [](BusinessContext& c) { c.SetClassName("Order"); }},
      {"same class", [](BusinessContext& c) { c.SetClassName("Line"); }},
      {"same action", [](BusinessContext& c) { c.SetActionName("Get"); }}};
  for (const auto& [what, change] : changes) {
    context_->SetRelationshipName("Lines");
    change(*context_);
    EXPECT_EQ(context_->RelationshipName(), "") << what;
  }
}

TEST_F(NavigationTest, PresentServerNameLeavesTheRelationshipInPlace) {
  Relate();
  context_->SetRelationshipName("Lines");
  context_->SetServerName("Sales");
  EXPECT_EQ(Selected(), "Sales.Line.Get.Lines");
}

TEST_F(NavigationTest, RelationshipClearsIdentityParametersAndKeyValues) {
  Relate();
  context_->SetServerName("Sales");
  context_->SetClassName("Line");
  context_->SetActionName("Get");
  context_->SetKeyValue1(7);
  const PropertiesPtr former = context_->Parameters();
  context_->SetRelationshipName("Lines");
  EXPECT_EQ(context_->Identifier(), nullptr);
  EXPECT_TRUE(context_->KeyValue1().IsEmpty());
  EXPECT_NE(context_->Parameters(), former);
}

TEST_F(NavigationTest, ParametersAndIdentifierLeaveTheRelationshipInPlace) {
  Relate();
  context_->SetRelationshipName("Lines");
  context_->SetParameters(Framework{}.CreateProperties());
  EXPECT_EQ(context_->RelationshipName(), "Lines");
  context_->SetIdentifier(orders_.Design.Line->CreateIdentifier());
  EXPECT_EQ(Selected(), "Sales.Line.Get.Lines");
  EXPECT_EQ(context_->Parameters()->Count(), 3) << "both key parts of the line, and the order's";
}

TEST_F(NavigationTest, LockedRelationshipRefusesAnotherOne) {
  Relate();
  Relate({.Name = "Parts", .RelatedServerName = "Stock", .RelatedClassName = "Item", .RelatedActionName = "Get"});
  context_->Setup({.RelationshipName = "Lines", .RelationshipLocked = true});
  ExpectRaised(errVelmoria_Locked, [&] { context_->SetRelationshipName("Parts"); },
               {.Text = "This BusinessContext is set up to only use the 'Lines' Relationship", .Count = 1});
  EXPECT_EQ(Selected(), "Sales.Line.Get.Lines");
}

TEST_F(NavigationTest, LockedRelationshipWithoutAnyHasNoExtraText) {
  Relate();
  context_->SetRelationshipLocked(true);
  EXPECT_TRUE(Thrown([&] { context_->SetRelationshipName("Lines"); }));
  EXPECT_EQ(apartment_.Messages().Item("15002")->ExtraText(), "");
}

TEST_F(NavigationTest, UnknownRelationshipIsReportedBeforeTheLockIs) {
  context_->SetRelationshipLocked(true);
  ExpectRaised(errItem_Relationship, [&] { context_->SetRelationshipName("Nothing"); });
}

TEST_F(NavigationTest, RelationshipIsRefusedByTheLocksItMeets) {
  Relate();
  const std::tuple<const char*, const char*, BusinessContextFields> cases[] = {
      {"ServerName (Let)", "", {.ServerLocked = true}},
      {"ChangeClass", "'Item' Class", {.ServerName = "Stock", .ClassName = "Item", .ClassLocked = true}},
      {"ChangeClass", "'Line' Class", {.ServerName = "Sales", .ClassName = "Line", .ClassLocked = true}},
      {"ActionName (Let)", "", {.ActionLocked = true}},
      {"ChangeRelationship", "", {.RelationshipLocked = true}},
  };
  for (const auto& [routine, pinned, locks] : cases) {
    SCOPED_TRACE(routine);
    const auto order = NewOrder();
    const BusinessContextPtr context = order->GetModel()->BusinessContext();
    context->Setup(locks);
    EXPECT_TRUE(Thrown([&] { context->SetRelationshipName("Lines"); }));
    const MessagePtr message = apartment_.Messages().Item("15002");
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(message->RoutineName(), routine);
    EXPECT_NE(message->ExtraText().find(pinned), std::string::npos);
    apartment_.Messages().Clear();
  }
}

TEST_F(NavigationTest, SetupPinsTheRelationshipThatItNames) {
  Relate();
  context_->Setup({.RelationshipName = "Lines", .RelationshipLocked = true, .Locked = true});
  EXPECT_EQ(Selected(), "Sales.Line.Get.Lines");
  EXPECT_TRUE(context_->RelationshipLocked());
  ExpectRaised(errVelmoria_Locked, [&] { context_->SetRelationshipLocked(false); });
  EXPECT_TRUE(context_->RelationshipLocked());
}

TEST_F(NavigationTest, FailuresOfTheSelectionNameTheirRoutineAndTellTheContext) {
  const BusinessContextPtr own = Framework{}.CreateBusinessContext({.ServerName = "Sales"});
  EXPECT_TRUE(Thrown([&] { own->SetRelationshipName("Lines"); }));
  const MessagePtr message = apartment_.Messages().Item("15093");
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(message->TypeName() + "." + message->RoutineName(), "BusinessContext.RelationshipName (Let)");
  EXPECT_EQ(message->StateDetails(), own->Details());
}

TEST_F(NavigationTest, DetailsTellTheRelationshipBehindTheAction) {
  Relate();
  context_->Setup({.RelationshipName = "Lines", .RelationshipLocked = true});
  EXPECT_EQ(
      context_->Details(),
      "  Server: 'Sales'  Class: 'Line'  Action: 'Get'  Relationship: 'Lines' (Locked)  ObjectTypes: '(Default)'  "
      "CollectionType: ''");
}

TEST_F(NavigationTest, RelationshipOfARequestPassesOverItsOtherNames) {
  Relate();
  Thrown([&] {
    context_->GetBusinessObjects(
        {.ClassName = "Item", .ActionName = "Nothing", .RelationshipName = "Lines", .ServerName = "Stock"});
  });
  EXPECT_EQ(Selected(), "Sales.Line.Get.Lines");
}

TEST_F(NavigationTest, ParametersOfARequestGoBeforeTheLinks) {
  Relate();
  const PropertiesPtr given = Framework{}.CreateProperties();
  Thrown([&] { context_->GetBusinessObjects({.Parameters = given, .RelationshipName = "Lines"}); });
  EXPECT_EQ(Selected(), "Sales.Line.Get.Lines");
  EXPECT_EQ(context_->Parameters(), given);
}

TEST_F(NavigationTest, IdentifierOfARequestEndsTheRelationship) {
  Relate();
  context_->SetRelationshipName("Lines");
  Thrown([&] { context_->GetBusinessObject({.Identifier = orders_.Design.Line->CreateIdentifier()}); });
  EXPECT_EQ(Selected(), "Sales.Line.Get.");
  EXPECT_EQ(context_->Parameters()->Count(), 2);
}

TEST_F(NavigationTest, IdentifierOfARequestLeavesTheRelationshipOfALockedAction) {
  Relate();
  context_->SetRelationshipName("Lines");
  context_->SetActionLocked(true);
  Thrown([&] { context_->GetBusinessObject({.Identifier = orders_.Design.Line->CreateIdentifier()}); });
  EXPECT_EQ(Selected(), "Sales.Line.Get.Lines");
  EXPECT_EQ(context_->Parameters()->Count(), 3);
}

}  // namespace
}  // namespace velmoria::test
