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
  EXPECT_EQ(host->Inner()->Count(), 3);
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

}  // namespace
}  // namespace velmoria::test
