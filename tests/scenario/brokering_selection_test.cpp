#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/bound_orders.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

/// What a context selects, and what of it a request then finds.
class SelectionTest : public BrokeringTest {
 protected:
  IdentifierPtr IdentifierOf(std::int32_t id) const {
    const IdentifierPtr identifier = shop_.Design.Order->CreateIdentifier();
    identifier->Properties()->Item("Id")->SetValue(id);
    return identifier;
  }
  /// How many connections the group without a name has.
  static std::int32_t Connections() { return Framework{}.ConnectionContext()->Item("")->Count(); }

  BusinessContextPtr context_ = NewContext();
};

TEST_F(SelectionTest, PresentServerNameLeavesTheClassAndItsKeyInPlace) {
  context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2});
  context_->SetServerName("Sales");
  EXPECT_EQ(context_->ClassName(), "Order");
  EXPECT_EQ(context_->GetBusinessObject()->Key(), "2");
}

TEST_F(SelectionTest, ClassNameWithoutAServerNameFillsInTheServerWhereTheClassWasFound) {
  shop_.File.Run("insert into items values (7, 'Lamp')");
  context_->SetClassName("Item");
  EXPECT_EQ(context_->ServerName(), "Stock");
  EXPECT_EQ(Value(context_->GetBusinessObject(), "Name"), Variant("Lamp"));
}

TEST_F(SelectionTest, LockedActionSurvivesAnotherClassAndStillReadsItsOwnTable) {
  const auto context = NewContext({.ClassName = "Order", .ActionName = "All", .ActionLocked = true});
  context->SetClassName("Line");
  EXPECT_EQ(context->ClassName() + "." + context->ActionName(), "Line.All");
  EXPECT_EQ(context->GetBusinessObjects()->Name(), "orders");
}

TEST_F(SelectionTest, ParametersEmptyTheIdentifier) {
  context_->SetIdentifier(IdentifierOf(2));
  context_->SetParameters(shop_.Design.Order->CreateIdentifier()->Properties());
  EXPECT_EQ(context_->Identifier(), nullptr);
}

TEST_F(SelectionTest, IdentifierEmptiesTheParametersAndOthersAreBuiltFromIt) {
  context_->SetClassName("Order");
  context_->SetActionName("Named");
  const PropertiesPtr given = shop_.NamedParameters("Cyd");
  context_->SetParameters(given);
  context_->SetIdentifier(IdentifierOf(2));
  EXPECT_NE(context_->Parameters(), given);
  EXPECT_EQ(context_->Parameters()->Item("Id")->Value(), Variant(2));
}

TEST_F(SelectionTest, KeyValuesBeyondTheIdentifierAreIgnored) {
  const auto line = context_->GetBusinessObject(
      {.ClassName = "Line", .KeyValue1 = 1, .KeyValue2 = 2, .KeyValue3 = 9, .KeyValue4 = "nine"});
  EXPECT_EQ(Value(line, "Product"), Variant("Chair"));
  EXPECT_EQ(context_->Parameters()->Count(), 2);
  EXPECT_EQ(context_->KeyValue3(), Variant(9)) << "it is held all the same";
}

TEST_F(SelectionTest, DefaultContextOfTheFrameworkFollowsNoRelationship) {
  ExpectRaised(errNotSupported_RelatedBusinessObjects,
               [&] { apartment_.State().BusinessContext->SetRelationshipName("Lines"); }, {.Count = 1});
  ExpectRaised(errNotSupported_RelatedBusinessObjects,
               [] { Framework{}.GetBusinessObjects({.RelationshipName = "Lines"}); });
}

TEST_F(SelectionTest, ContextSetUpWithoutAddSaysSoAndRefusesBeforeAnyEvent) {
  const auto context = NewContext({.SupportsAdd = false});
  bool heard = false;
  context->BeforeAdd += [&](IBusinessObjects&, bool&) { heard = true; };
  EXPECT_FALSE(context->SupportsAdd());
  ExpectRaised(errNotSupported_Add, [&] { context->Add(context_->GetBusinessObjects({.ClassName = "Order"})); });
  EXPECT_FALSE(heard);
}

TEST_F(SelectionTest, ListenerOfItemNotFoundMaySupplyACollectionThatItReads) {
  const auto other = NewContext();
  context_->ItemNotFound += [&](const Variant& index, IBusinessObjectsPtr& Item) {
    Item = other->GetBusinessObjects({.ClassName = index.AsText()});
  };
  EXPECT_EQ(Ids(*context_->Item("Order")), "1,2,3");
  EXPECT_EQ(context_->Count(), 0) << "what is supplied is not held";
}

TEST_F(SelectionTest, LockWithoutAnActionRefusesToChooseOneForTheParameters) {
  const auto context = NewContext({.ClassName = "Order", .ActionLocked = true});
  ExpectRaised(errVelmoria_Locked, [&] { context->Parameters(); }, {.Count = 1});
}

TEST_F(SelectionTest, RequestWithoutArgumentsOnAFreshContextFailsAsObjectNotSet) {
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->GetBusinessObject(); });
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->GetBusinessObjects(); });
  EXPECT_EQ(context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2})->Key(), "2");
}

TEST_F(SelectionTest, KeyValueOnAClassWithoutASingleActionIsLookedUpUnderTheEmptyName) {
  shop_.Design.Order->SetSingleActionName("");
  ExpectRaised(errItem_Action, [&] { context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2}); },
               {.Text = "Problem finding Action.  Index: ''"});
  EXPECT_EQ(context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ActionName = "Get"})->Key(), "2");
}

TEST_F(SelectionTest, ActionThatBuildsNoObjectsRefusesOneAndManyBeforeAnyDatabaseWork) {
  shop_.OrderAction("Get")->SetUsageFlags(ufProperties | ufExecute);
  const RaisedExpectation words{.Text = "Action: 'Get'  UsageFlags: 'Properties; Execute'", .Count = 1};
  ExpectRaised(
      errNotSupported_BusinessObjects, [&] { context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2}); },
      words);
  ExpectRaised(errNotSupported_BusinessObjects, [&] { context_->GetBusinessObjects({.ClassName = "Order"}); }, words);
  EXPECT_EQ(Connections(), 0);
}

TEST_F(SelectionTest, ContextWithoutLoadRefusesEvenWhatItHolds) {
  const auto held = context_->LoadBusinessObjects({.ClassName = "Order", .Name = "Mine"});
  context_->SetSupportsLoad(false);
  ExpectRaised(errBusinessObjects_Load, [&] { context_->LoadBusinessObjects({.Name = "Mine"}); }, {.Count = 1});
  EXPECT_EQ(context_->Item("Mine"), held);
}

TEST_F(SelectionTest, ObjectTypeOfANewObjectStaysForLaterRequests) {
  shop_.OrderAction("Get")->SetObjectType(otBusiness);
  shop_.OrderAction("All")->SetObjectType(otBusiness);
  context_->CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otModel});
  EXPECT_EQ(context_->ObjectType(), otModel);
  EXPECT_EQ(context_->GetBusinessObjects({.ClassName = "Order", .ActionName = "All"})->ObjectType(), otModel);
  EXPECT_EQ(context_->CreateBusinessObject()->ObjectType(), otModel);
}

TEST_F(SelectionTest, TwoUnnamedActionsCollideInOneContext) {
  shop_.OrderAction("Detail")->SetBusinessObjectsName("");
  context_->LoadBusinessObjects({.ClassName = "Order", .ActionName = "Bare"});
  ExpectReported(RuntimeFailure::KeyInUse,
                 [&] { context_->LoadBusinessObjects({.ClassName = "Order", .ActionName = "Detail"}); });
  EXPECT_EQ(context_->Count(), 1);
}

TEST_F(SelectionTest, NewObjectWithoutNamesTakesTheSingleActionWhereAKeyIsHeld) {
  shop_.Design.Order->SetSingleActionName("All");
  shop_.Design.Order->SetNewActionName("Nowhere");
  context_->SetClassName("Order");
  context_->SetKeyValue1(2);
  context_->CreateBusinessObject();
  EXPECT_EQ(context_->ActionName(), "All");
  EXPECT_EQ(context_->KeyValue1(), Variant(2)) << "the Action is stored directly";
}

}  // namespace
}  // namespace velmoria::test
