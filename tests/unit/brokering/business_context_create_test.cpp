#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/broker_fixture.h"

namespace velmoria::test {
namespace {

/// New objects over three rows, which no new object shows.
class BusinessContextCreateTest : public BrokerTest {
 protected:
  BusinessContextCreateTest() { Design(3); }
  IBusinessObjectPtr Create(zObjectTypes objectType = otDefault) {
    return context_->CreateBusinessObject({.ClassName = "Order", .ObjectType = objectType});
  }
  static std::string NameOf(IBusinessObject& object) { return object.FindProperty("Name")->Value().AsText(); }
};

TEST_F(BusinessContextCreateTest, NewObjectHasTheColumnsOfTheActionAndNoValues) {
  const auto order = Create();
  EXPECT_EQ(order->PropertyCount(), 2);
  EXPECT_TRUE(order->FindProperty("Id")->EmptyValue());
  EXPECT_TRUE(order->FindProperty("Name")->EmptyValue());
  EXPECT_EQ(order->StateFlags(), sfNew);
  EXPECT_FALSE(order->Dirty());
  EXPECT_EQ(order->EditFlags(), efAll);
}

TEST_F(BusinessContextCreateTest, NewObjectIsAModelOfCachedPropertiesUnderTheNameOfTheAction) {
  for (const auto& order : {Create(), Create()}) {
    const auto properties = order->Properties("Get");
    EXPECT_EQ(properties->Style(), psCached);
    EXPECT_EQ(properties->ActionName(), "Get");
    EXPECT_EQ(order->PropertiesCount(), 1);
    EXPECT_EQ(order->ParentIdentifier(), nullptr);
    ExpectRaised(errVelmoria_Locked, [&] { properties->SetLocked(true); });
  }
}

TEST_F(BusinessContextCreateTest, IdentityFollowsTheValuesOfTheNewObject) {
  for (const auto& order : {Create(), Create()}) {
    EXPECT_EQ(order->Identifier()->ServerName() + "." + order->Identifier()->ClassName(), "Sales.Order");
    EXPECT_EQ(order->Key(), "0") << "an unset number reads as zero";
    order->FindProperty("Id")->SetValue(42);
    EXPECT_EQ(order->Key(), "42");
    EXPECT_EQ(order->StateFlags(), sfNew | sfdirty);
  }
}

TEST_F(BusinessContextCreateTest, SecondObjectOfAServerThatUsesMetaDataAsksTheDatabaseNothing) {
  Create();
  const auto calls = driver_->CallCount;
  EXPECT_GT(calls, 0);
  Create();
  EXPECT_EQ(driver_->CallCount, calls);
}

TEST_F(BusinessContextCreateTest, ColumnsLoadedAheadSpareTheFirstQueryToo) {
  design_->Server->ActionMetaDataLoad();
  const auto calls = driver_->CallCount;
  const auto order = Create();
  EXPECT_EQ(driver_->CallCount, calls);
  EXPECT_EQ(order->PropertyCount(), 2);
  EXPECT_EQ(order->StateFlags(), sfNew);
}

TEST_F(BusinessContextCreateTest, ColumnsThatWereDroppedAreReadAgain) {
  Create();
  const auto statements = Statements();
  design_->Server->ActionMetaDataClear();
  EXPECT_EQ(Create()->PropertyCount(), 2);
  EXPECT_GT(Statements(), statements);
}

TEST_F(BusinessContextCreateTest, KeptColumnsWithoutMembersAreReadAgain) {
  design_->Action->SetSchemaCache(Framework{}.CreateProperties());
  EXPECT_EQ(Create()->PropertyCount(), 2);
  EXPECT_EQ(design_->Action->SchemaCache()->Count(), 2);
}

TEST_F(BusinessContextCreateTest, NewObjectsShareNoValuesWithOneAnother) {
  for (int i = 0; i < 3; ++i) {
    const auto order = Create();
    EXPECT_EQ(NameOf(*order), "");
    order->FindProperty("Name")->SetValue("changed");
  }
}

TEST_F(BusinessContextCreateTest, WithoutMetaDataEveryNewObjectIsARowOfAQueryOfItsOwn) {
  design_->Server->SetUseMetaData(false);
  const auto first = Create();
  const auto statements = Statements();
  const auto second = Create();
  EXPECT_GT(Statements(), statements);
  EXPECT_EQ(second->Properties(1)->Style(), psPersistent);
  EXPECT_EQ(second->StateFlags(), sfNew);
  EXPECT_EQ(second->Properties("Get")->Identifier(), second->Identifier());
  second->FindProperty("Id")->SetValue(42);
  EXPECT_EQ(second->Key() + " " + first->Key(), "42 0");
  EXPECT_EQ(design_->Action->SchemaCache(), nullptr);
}

TEST_F(BusinessContextCreateTest, WithoutMetaDataABufferSmallerThanTheTableRefusesEveryNewObject) {
  design_->Action->SetObjectBuffer(2);
  EXPECT_EQ(Create()->StateFlags(), sfNew);
  design_->Server->SetUseMetaData(false);
  ExpectRaised(errBusinessObjects_Buffer, [&] { Create(); }, {.Text = "ObjectBuffer: 2."});
}

TEST_F(BusinessContextCreateTest, ActionThatDoesNotInsertRefusesBeforeAnyDatabaseWork) {
  design_->Action->SetEditFlags(efUpdate | efDelete);
  ExpectRaised(errNotSupported_Insert, [&] { Create(); },
               {.Text = "This Action does not support creating or inserting new business objects.  Action: 'Get'  "
                        "EditFlags: 'Delete; Update'",
                .Count = 1});
  EXPECT_TRUE(driver_->Connects.empty());
}

TEST_F(BusinessContextCreateTest, UsageOfTheActionIsNotAsked) {
  design_->Action->SetUsageFlags(ufNone);
  EXPECT_EQ(Create()->StateFlags(), sfNew);
}

TEST_F(BusinessContextCreateTest, NamesSelectTheNewActionOfTheClass) {
  design_->Class->SetNewActionName("New");
  const auto action = design_->Class->Actions()->SetupItem(
      {.Name = "New", .DatabaseName = "Shop", .EditFlags = efInsert, .ObjectType = otModel});
  action->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = "orders"});
  EXPECT_EQ(Create()->Properties(1)->ActionName(), "New");
  EXPECT_EQ(context_->ActionName(), "New");
  context_->CreateBusinessObject({.ClassName = "Order", .ActionName = "Get"});
  EXPECT_EQ(context_->ActionName(), "Get");
}

TEST_F(BusinessContextCreateTest, WithoutNamesTheDefaultActionIsSelectedAndNotTheNewOne) {
  design_->Class->SetNewActionName("Nowhere");
  context_->SetClassName("Order");
  context_->CreateBusinessObject();
  EXPECT_EQ(context_->ActionName(), "Get");
}

TEST_F(BusinessContextCreateTest, WithoutNamesTheSelectionHeldIsRepeated) {
  Create();
  const auto again = context_->CreateBusinessObject();
  EXPECT_EQ(again->Identifier()->ClassName(), "Order");
  EXPECT_EQ(again->StateFlags(), sfNew);
}

TEST_F(BusinessContextCreateTest, WithoutAnySelectionItFailsAsObjectNotSet) {
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->CreateBusinessObject(); });
}

TEST_F(BusinessContextCreateTest, LockWithoutAnActionFailsAsObjectNotSet) {
  context_->SetActionLocked(true);
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { Create(); });
}

TEST_F(BusinessContextCreateTest, LockedActionThatLostItsClassFailsAsObjectNotSet) {
  context_->GetBusinessObjects({.ClassName = "Order"});
  context_->SetActionLocked(true);
  for (const bool usesMetaData : {true, false}) {
    design_->Server->SetUseMetaData(usesMetaData);
    ExpectRaised(errItem_Class, [&] { context_->SetClassName("Nothing"); });
    ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->CreateBusinessObject(); });
  }
}

TEST_F(BusinessContextCreateTest, ClassThatLeftItsServerIsReported) {
  context_->SetClassName("Order");
  design_->Server->Classes()->Remove("Order");
  ExpectRaised(errItem_Class, [&] { context_->CreateBusinessObject(); }, {.Text = "Index: 'Order'"});
}

TEST_F(BusinessContextCreateTest, ClassWithoutNewActionFailsInTheLookup) {
  design_->Class->SetNewActionName("");
  ExpectRaised(errItem_Action, [&] { Create(); }, {.Text = "Index: ''"});
}

TEST_F(BusinessContextCreateTest, ServerThatIsNoLongerRegisteredIsReported) {
  Create();
  Framework{}.Servers()->Remove("Sales");
  ExpectRaised(errItem_Server, [&] { context_->CreateBusinessObject(); }, {.Text = "Index: 'Sales'"});
}

TEST_F(BusinessContextCreateTest, ResultWithoutAKeyColumnIsReported) {
  driver_->Columns = {{"Number", kInteger}, {"Name", kVarchar, 40}};
  ExpectRaised(errIdentifier_Property, [&] { Create(); }, {.Text = "Class: 'Order'"});
}

TEST_F(BusinessContextCreateTest, FailedQueryIsReportedAndTheContextStaysUsable) {
  driver_->FailName = "ExecDirect";
  const auto failed = Thrown([&] { Create(); });
  driver_->FailName.clear();
  ASSERT_TRUE(failed);
  EXPECT_EQ(failed->CatalogueNumber(), static_cast<int>(errRDO_Table));
  EXPECT_EQ(context_->CreateBusinessObject()->StateFlags(), sfNew);
}

TEST_F(BusinessContextCreateTest, ObjectTypeOfTheCallStaysInTheContext) {
  design_->Action->SetObjectType(otBusiness);
  Create(otModel);
  EXPECT_EQ(context_->ObjectType(), otModel);
  EXPECT_EQ(context_->GetBusinessObjects({.ClassName = "Order"})->ObjectType(), otModel);
  EXPECT_EQ(Create()->ObjectType(), otModel);
}

TEST_F(BusinessContextCreateTest, ObjectTypeOfTheActionStaysInTheContext) {
  Create();
  EXPECT_EQ(context_->ObjectType(), otModel);
}

TEST_F(BusinessContextCreateTest, ObjectTypeStaysEvenInALockedContext) {
  context_->SetLocked(true);
  Create(otModel);
  EXPECT_EQ(context_->ObjectType(), otModel);
}

TEST_F(BusinessContextCreateTest, RefusedCallLeavesTheObjectTypeAlone) {
  design_->Action->SetEditFlags(efUpdate);
  EXPECT_TRUE(Thrown([&] { Create(otModel); }));
  EXPECT_EQ(context_->ObjectType(), otDefault);
}

TEST_F(BusinessContextCreateTest, WithoutAnyObjectTypeItIsAModel) {
  design_->Action->SetObjectType(otDefault);
  EXPECT_EQ(Create()->ObjectType(), otModel);
  EXPECT_EQ(context_->ObjectType(), otDefault);
}

TEST_F(BrokerTest, CounterThatTheDatabaseAssignsComesBackIntoTheNewObject) {
  Design(0, {.Engine = engSQLServer});
  design_->Class->Properties()->Item("Id")->SetFlags(pfInput | pfcounter);
  const auto order = context_->CreateBusinessObject({.ClassName = "Order"});
  order->FindProperty("Name")->SetValue("Dan");
  driver_->Columns = {{"Id", kInteger}};
  driver_->Rows = {{"77"}};
  order->Update();
  EXPECT_EQ(order->Key(), "77");
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  EXPECT_EQ(order->FindProperty("Name")->Value(), Variant("Dan"));
}

class NewPropertiesTest : public BusinessContextCreateTest {
 protected:
  PropertiesPtr New(const std::string& actionName = "Get", const std::string& name = {}) {
    return context_->GetNewProperties({}, actionName, name);
  }
};

TEST_F(NewPropertiesTest, TheyAreANewRowUnderTheName) {
  context_->SetClassName("Order");
  const auto properties = New("Get", "Fresh");
  EXPECT_EQ(properties->Name(), "Fresh");
  EXPECT_EQ(properties->StateFlags(), sfNew);
  EXPECT_EQ(properties->Style(), psPersistent) << "they are never made from the columns that are kept";
  EXPECT_EQ(New()->Name(), "Get");
}

TEST_F(NewPropertiesTest, IdentifierSelectsTheClass) {
  const auto identifier = design_->Class->CreateIdentifier(design_->Key(7));
  EXPECT_EQ(context_->GetNewProperties(identifier, {}, {})->ActionName(), "Get");
  EXPECT_EQ(context_->Identifier(), identifier);
}

TEST_F(NewPropertiesTest, WithoutNamesTheSelectionHeldIsRepeated) {
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { New(""); });
  context_->SetClassName("Order");
  EXPECT_EQ(New("")->ActionName(), "Get");
}

TEST_F(NewPropertiesTest, ActionThatBuildsNoneOrInsertsNoneRefusesBeforeAnyDatabaseWork) {
  context_->SetClassName("Order");
  design_->Action->SetUsageFlags(ufObjects);
  design_->Action->SetEditFlags(efUpdate);
  ExpectRaised(
      errNotSupported_Properties, [&] { New(); },
      {.Text = "This Action does not support the building of Property Collections.  Action: 'Get'", .Count = 1});
  design_->Action->SetUsageFlags(ufProperties);
  ExpectRaised(errNotSupported_Insert, [&] { New(); }, {.Text = "Action: 'Get'  EditFlags: 'Update'", .Count = 1});
  EXPECT_TRUE(driver_->Connects.empty());
}

TEST_F(NewPropertiesTest, BufferSmallerThanTheTableRefusesThem) {
  context_->SetClassName("Order");
  design_->Action->SetObjectBuffer(2);
  ExpectRaised(errBusinessObjects_Buffer, [&] { New(); }, {.Text = "ObjectBuffer: 2."});
}

class HostObjectCreateTest : public BusinessContextCreateTest {
 protected:
  HostObjectCreateTest() {
    design_->Class->SetActiveXClass("Trade.Order");
    HostOrder::FailsFrom = 0;
  }
};

TEST_F(HostObjectCreateTest, HostObjectIsMadeByItsComponentNameAroundTheModel) {
  const ComponentOffer<HostOrder> offer("Trade.Order");
  const auto order = Create(otBusiness);
  EXPECT_NE(dynamic_cast<HostOrder*>(order.get()), nullptr);
  EXPECT_EQ(order->GetModel()->StateFlags(), sfNew);
  EXPECT_EQ(context_->ObjectType(), otBusiness);
}

TEST_F(HostObjectCreateTest, UnknownClassIsReportedWithItsNameAndTheKeyAndWithoutAState) {
  EXPECT_TRUE(Thrown([&] { Create(otBusiness); }));
  const MessagePtr told = apartment_.Messages().Item("15023");
  EXPECT_EQ(told->Description(),
            "Problem creating Line of Business object.  ActiveXBusinessClass: 'Trade.Order'  Identifier: '0'");
  EXPECT_EQ(told->StateDetails(), "");
}

TEST_F(HostObjectCreateTest, ClassThatFailsWhileItIsMadeCountsAsNotCreated) {
  const ComponentOffer<HostOrder> offer("Trade.Order");
  HostOrder::FailsFrom = 1;
  HostOrder::Made = 0;
  ExpectRaised(errBusinessObject_Create, [&] { Create(otBusiness); }, {.Count = 1});
}

TEST_F(HostObjectCreateTest, ComponentThatIsNoBusinessObjectCountsAsNotCreated) {
  const ComponentOffer<UnrelatedThing> offer("Trade.Order");
  ExpectRaised(errBusinessObject_Create, [&] { Create(otBusiness); });
}

TEST_F(HostObjectCreateTest, ClassThatThrowsInItsHandshakeIsReportedWithTheKey) {
  const ComponentOffer<RefusingOrder> offer("Trade.Order");
  ExpectRaised(errBusinessObject_Initialize, [&] { Create(otBusiness); },
               {.Text = "Problem initializing Line of Business object with a Model.  Identifier: '0'", .Count = 2});
}

TEST_F(HostObjectCreateTest, BusinessTypeStaysEvenWhenItsClassCannotBeMade) {
  ExpectRaised(errBusinessObject_Create, [&] { Create(otBusiness); });
  EXPECT_EQ(context_->ObjectType(), otBusiness);
}

TEST_F(HostObjectCreateTest, AfterAClassThatThrewTheContextStaysUsable) {
  {
    const ComponentOffer<RefusingOrder> offer("Trade.Order");
    ExpectRaised(errBusinessObject_Initialize, [&] { Create(otBusiness); });
  }
  EXPECT_EQ(apartment_.Messages().SuspendRoutine(), "");
  EXPECT_EQ(Create(otModel)->StateFlags(), sfNew);
  EXPECT_EQ(IdOf(*context_->GetBusinessObjects({.ClassName = "Order"})->Item(3)), 3);
}

TEST_F(HostObjectCreateTest, ModelIsCreatedThoughTheHostClassIsNotThere) {
  EXPECT_EQ(Create(otModel)->ObjectType(), otModel);
}

}  // namespace
}  // namespace velmoria::test
