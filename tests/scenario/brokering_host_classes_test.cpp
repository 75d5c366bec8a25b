#include <filesystem>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/bound_orders.h"
#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"
#include "tests/support/host_collection.h"

namespace velmoria::test {
namespace {

class HostClassTest : public BrokeringTest {
 protected:
  HostClassTest() {
    shop_.Design.Order->SetActiveXClass("Order");
    shop_.Design.Order->SetActiveXCollection("Orders");
    HostOrder::FailsFrom = 0;
  }
  static IBusinessObjectsPtr Orders(zObjectTypes objectType = otBusiness) {
    return Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All", .ObjectType = objectType});
  }
};

TEST_F(HostClassTest, ObjectComesBackAroundItsModel) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  const auto order = Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ObjectType = otBusiness});
  EXPECT_NE(dynamic_cast<HostOrder*>(order.get()), nullptr);
  EXPECT_EQ(Value(order, "Name"), Variant("Ben"));
}

TEST_F(HostClassTest, UnknownClassIsReported) {
  ExpectRaised(errBusinessObject_Create,
               [] { Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ObjectType = otBusiness}); },
               {.Text = "ActiveXBusinessClass: 'Sales.Order'  Identifier: '2'"});
}

TEST_F(HostClassTest, RefusedModelIsReported) {
  const ComponentOffer<RefusingOrder> offer("Sales.Order");
  ExpectRaised(errBusinessObject_Initialize,
               [] { Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ObjectType = otBusiness}); },
               {.Text = "Identifier: '2'"});
}

TEST_F(HostClassTest, CollectionComesBackAroundItsBusinessObjects) {
  const ComponentOffer<HostOrder> order("Sales.Order");
  const ComponentOffer<HostCollection> offer("Sales.Orders");
  const auto orders = Orders();
  const auto* host = dynamic_cast<HostCollection*>(orders.get());
  ASSERT_NE(host, nullptr);
  EXPECT_EQ(host->GetBusinessObjects()->Count(), 3);
  EXPECT_EQ(orders->Item(1)->ObjectType(), otBusiness);
  EXPECT_EQ(Ids(*orders), "1,2,3");
}

TEST_F(HostClassTest, CollectionOfModelsIsReturnedUnwrapped) {
  const ComponentOffer<HostCollection> offer("Sales.Orders");
  EXPECT_EQ(dynamic_cast<HostCollection*>(Orders(otModel).get()), nullptr);
}

TEST_F(HostClassTest, UnknownCollectionIsReported) {
  ExpectRaised(errBusinessCollection_Create, [] { Orders(); }, {.Text = "Sales.Orders", .Count = 1});
}

TEST_F(HostClassTest, CollectionThatRefusesItsBusinessObjectsIsReported) {
  const ComponentOffer<RefusingCollection> offer("Sales.Orders");
  ExpectRaised(errBusinessCollection_Setup, [] { Orders(); }, {.Text = "Sales.Orders"});
}

TEST_F(HostClassTest, NewObjectComesBackAroundItsModelAndIsInserted) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  const auto order =
      Framework{}.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otBusiness});
  ASSERT_NE(dynamic_cast<HostOrder*>(order.get()), nullptr);
  order->FindProperty("Id")->SetValue(40);
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  EXPECT_EQ(shop_.File.Column("select Id from orders order by Id"), "1|2|3|40");
}

TEST_F(HostClassTest, TypeOfANewObjectDecidesForTheNextRequestThroughTheFramework) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  shop_.OrderAction("Get")->SetObjectType(otBusiness);
  EXPECT_EQ(Order(1)->ObjectType(), otBusiness);
  Framework{}.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otModel});
  EXPECT_EQ(Order(1)->ObjectType(), otModel) << "Models where host objects were due";
  Framework{}.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get"});
  EXPECT_EQ(Order(1)->ObjectType(), otBusiness) << "only the next new object puts it right";
}

TEST_F(HostClassTest, ContextStaysUsableBehindAClassThatThrowsInItsHandshake) {
  const auto context = NewContext({.ClassName = "Order"});
  {
    const ComponentOffer<RefusingOrder> offer("Sales.Order");
    ExpectRaised(errBusinessObject_Initialize,
                 [&] { context->GetBusinessObject({.KeyValue1 = 2, .ObjectType = otBusiness}); });
    ExpectRaised(errBusinessObject_Initialize, [&] { context->GetBusinessObject({.ObjectType = otBusiness}); });
  }
  const ComponentOffer<HostOrder> offer("Sales.Order");
  EXPECT_EQ(Value(context->GetBusinessObject({.ObjectType = otBusiness}), "Name"), Variant("Ben"));
}

TEST_F(HostClassTest, ContextStaysUsableBehindACollectionThatThrowsInItsHandshake) {
  const auto context = NewContext({.ClassName = "Order"});
  {
    const ComponentOffer<RefusingCollection> offer("Sales.Orders");
    ExpectRaised(
        errBusinessCollection_Setup, [&] { context->GetBusinessObjects({.ObjectType = otBusiness}); },
        {.Text = "Problem setting up the Line of Business Collection.  ActiveXBusinessCollection: Sales.Orders"});
    ExpectRaised(errBusinessCollection_Setup, [&] { context->LoadBusinessObjects({.ObjectType = otBusiness}); });
  }
  EXPECT_EQ(context->Count(), 0);
  const ComponentOffer<HostCollection> offer("Sales.Orders");
  EXPECT_EQ(context->LoadBusinessObjects({.ObjectType = otBusiness})->Count(), 3);
}

TEST_F(HostClassTest, NameOfTheCollectionHasTheServersComponentInFrontEvenOfADot) {
  shop_.Design.Order->SetActiveXCollection("Trade.Orders");
  ExpectRaised(errBusinessCollection_Create, [] { Orders(); }, {.Text = "Sales.Trade.Orders"});
  shop_.Design.Sales->SetActiveXComponent("");
  ExpectRaised(errBusinessCollection_Create, [] { Orders(); }, {.Text = "ActiveXBusinessCollection: Trade.Orders"});
}

/// Classes that nobody registered: the component is a shared library.
class ComponentLibraryTest : public HostClassTest {
 protected:
  ComponentLibraryTest() {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    Components::AddFolder((program.parent_path() / "components").string());
    shop_.Design.Sales->SetActiveXComponent("Trade");
  }
};

TEST_F(ComponentLibraryTest, ObjectIsOfTheLibrarysClass) {
  const auto order = Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ObjectType = otBusiness});
  EXPECT_EQ(order->ReportedType(), "Trade.Order");
  EXPECT_EQ(Value(order, "Name"), Variant("Ben"));
}

TEST_F(ComponentLibraryTest, CollectionAndItsMembersAreOfTheLibrarysClasses) {
  const auto orders = Orders();
  EXPECT_EQ(orders->ReportedType(), "Trade.Orders");
  EXPECT_EQ(orders->Item(3)->ReportedType(), "Trade.Order");
  EXPECT_EQ(Ids(*orders), "1,2,3");
}

TEST_F(ComponentLibraryTest, NewObjectIsOfTheLibrarysClassAndIsInserted) {
  const auto order =
      Framework{}.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otBusiness});
  EXPECT_EQ(order->ReportedType(), "Trade.Order");
  order->FindProperty("Id")->SetValue(40);
  order->Update();
  EXPECT_EQ(shop_.File.Column("select count(*) from orders"), "4");
}

TEST_F(ComponentLibraryTest, ClassThatThrowsInItsHandshakeLeavesTheLibraryUsable) {
  shop_.Design.Order->SetActiveXClass("Refusing");
  const auto create = [] {
    Framework{}.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otBusiness});
  };
  ExpectRaised(errBusinessObject_Initialize, create, {.Text = "Identifier: '0'"});
  shop_.Design.Order->SetActiveXClass("Order");
  EXPECT_NO_THROW(create());
}

TEST_F(ComponentLibraryTest, ClassThatTheLibraryDoesNotOfferIsReported) {
  shop_.Design.Order->SetActiveXClass("Nothing");
  ExpectRaised(
      errBusinessObject_Create,
      [] { Framework{}.CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otBusiness}); },
      {.Text = "ActiveXBusinessClass: 'Trade.Nothing'  Identifier: '0'"});
}

}  // namespace
}  // namespace velmoria::test
