#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class HostObjectsTest : public testing::Test {
 protected:
  HostObjectsTest() {
    orders_.Design.Order->SetActiveXClass("Order");
    HostOrder::Made = 0;
    HostOrder::FailsFrom = 0;
  }
  BusinessObjectsPtr Collection(zObjectTypes objectType, zCollectionTypes collectionType = cltOptimized) const {
    return orders_.Collection({.ObjectType = objectType, .CollectionType = collectionType});
  }
  static bool IsHostOrder(const IBusinessObjectPtr& object) {
    return dynamic_cast<HostOrder*>(object.get()) != nullptr;
  }

  ScopedApartment apartment_;
  BoundOrders orders_;
};

TEST_F(HostObjectsTest, HostObjectIsMadeByItsComponentNameAroundTheModel) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  const auto order = Collection(otBusiness)->Item(2);
  ASSERT_TRUE(IsHostOrder(order));
  EXPECT_EQ(order->ObjectType(), otBusiness);
  EXPECT_EQ(order->GetModel()->ObjectType(), otModel);
  EXPECT_EQ(IdOf(*order), 2);
}

TEST_F(HostObjectsTest, KeptHostObjectIsTheSameEachTime) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  const auto orders = Collection(otBusiness);
  EXPECT_EQ(orders->Item(1), orders->Item("1"));
  EXPECT_EQ(HostOrder::Made, 1);
}

TEST_F(HostObjectsTest, ModelTypeNeverAsksForAHostObject) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  Collection(otModel)->NewEnum();
  EXPECT_EQ(HostOrder::Made, 0);
}

TEST_F(HostObjectsTest, UnknownComponentIsReportedWithItsNameAndTheKey) {
  const auto orders = Collection(otBusiness);
  ExpectRaised(errBusinessObject_Create, [&] { orders->Item(2); },
               {.Text = "ActiveXBusinessClass: 'Sales.Order'  Identifier: '2'", .Count = 1});
}

TEST_F(HostObjectsTest, ClassWithoutActiveXClassIsReportedForBusinessObjects) {
  orders_.Design.Order->SetActiveXClass("");
  ExpectRaised(errBusinessObject_Create, [&] { Collection(otBusiness)->Item(1); },
               {.Text = "ActiveXBusinessClass: ''  Identifier: '1'"});
}

TEST_F(HostObjectsTest, HostClassThatFailsWhileItIsMadeCountsAsNotCreated) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  HostOrder::FailsFrom = 1;
  ExpectRaised(errBusinessObject_Create, [&] { Collection(otBusiness)->Item(1); });
}

TEST_F(HostObjectsTest, ComponentThatIsNoBusinessObjectCountsAsNotCreated) {
  const ComponentOffer<UnrelatedThing> offer("Sales.Order");
  ExpectRaised(errBusinessObject_Create, [&] { Collection(otBusiness)->Item(1); });
}

TEST_F(HostObjectsTest, UnknownComponentIsReportedForBusinessObjectsOnly) {
  EXPECT_NE(Collection(otModel)->Item(1), nullptr);
  EXPECT_NE(Collection(otDefault)->Item(1), nullptr);
  ExpectRaised(errBusinessObject_Create, [&] { Collection(otBusiness)->Item(1); });
}

TEST_F(HostObjectsTest, WithoutAnObjectTypeOfItsOwnTheCollectionServesAndKeepsTheModel) {
  const auto orders = Collection(otDefault);
  const auto order = orders->Item(1);
  EXPECT_EQ(order->ObjectType(), otModel);
  EXPECT_EQ(orders->Item(1), order);
}

TEST_F(HostObjectsTest, WithoutAnObjectTypeOfItsOwnItTriesTheHostClassFirst) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  EXPECT_TRUE(IsHostOrder(Collection(otDefault)->Item(1)));
}

TEST_F(HostObjectsTest, HostClassThatRefusesItsModelIsReported) {
  const ComponentOffer<RefusingOrder> offer("Sales.Order");
  const auto orders = Collection(otBusiness);
  ExpectRaised(errBusinessObject_Initialize, [&] { orders->Item(2); }, {.Text = "Identifier: '2'", .Count = 2});
}

TEST_F(HostObjectsTest, FailureOfTheHostClassIsHeldAsAWarningBesideTheNumber) {
  const ComponentOffer<RefusingOrder> offer("Sales.Order");
  EXPECT_TRUE(Thrown([&] { Collection(otBusiness)->Item(2); }));
  const MessagePtr cause = apartment_.Messages().Item("5");
  EXPECT_EQ(cause->SeverityFlags(), svfWarning);
  EXPECT_EQ(cause->Description(), "no thanks");
}

TEST_F(HostObjectsTest, NewObjectOfBusinessTypeIsAHostObject) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  const auto order = Collection(otBusiness)->SetupItem();
  EXPECT_TRUE(IsHostOrder(order));
  EXPECT_EQ(order->StateFlags(), sfNew);
}

TEST_F(HostObjectsTest, NewObjectRaisesTheSameNumbers) {
  ExpectRaised(errBusinessObject_Create, [&] { Collection(otBusiness)->SetupItem(); });
  const ComponentOffer<RefusingOrder> offer("Sales.Order");
  ExpectRaised(errBusinessObject_Initialize, [&] { Collection(otBusiness)->SetupItem(); });
}

TEST_F(HostObjectsTest, NewObjectOfAnyOtherTypeIsAModelThoughTheHostClassIsThere) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  EXPECT_EQ(Collection(otDefault)->SetupItem()->ObjectType(), otModel);
}

TEST_F(HostObjectsTest, KeyAskedForTwiceComesFromTheKeyMapWithoutScanning) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  const auto dispatcher = Collection(otBusiness, cltDispatcher);
  dispatcher->Item("3");
  EXPECT_EQ(HostOrder::Made, 3);
  EXPECT_EQ(IdOf(*dispatcher->Item("3")), 3);
  EXPECT_EQ(HostOrder::Made, 4);
  EXPECT_EQ(IdOf(*dispatcher->Item("1")), 1);
  EXPECT_EQ(HostOrder::Made, 5);
}

TEST_F(HostObjectsTest, ScanGoesOnWhereTheLastOneEnded) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  const auto dispatcher = Collection(otBusiness, cltDispatcher);
  dispatcher->Item("2");
  EXPECT_EQ(HostOrder::Made, 2);
  dispatcher->Item("3");
  EXPECT_EQ(HostOrder::Made, 4) << "the last row examined and the one behind it";
}

TEST_F(HostObjectsTest, DispatcherOfHostObjectsKeepsNothingInMemory) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  const auto dispatcher = Collection(otBusiness, cltDispatcher);
  dispatcher->Item(1);
  EXPECT_FALSE(dispatcher->KeyFormat()->Locked());
  dispatcher->SetCollectionType(cltOptimized);
  EXPECT_EQ(dispatcher->Item(1), dispatcher->Item(1));
}

TEST_F(HostObjectsTest, DeleteTakesAnObjectThatCannotBeMadeForTheEndOfTheRows) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  HostOrder::FailsFrom = 3;
  const auto orders = Collection(otBusiness);
  int flagged = 0;
  orders->AfterItemPendingDelete += [&](IBusinessObject&) { ++flagged; };
  orders->Delete();
  EXPECT_EQ(flagged, 2);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(HostObjectsTest, WalkPassesOnTheFailureOfAnObjectThatCannotBeMade) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  HostOrder::FailsFrom = 3;
  const auto orders = Collection(otBusiness);
  ExpectRaised(errBusinessObject_Create, [&] { orders->NewEnum(); });
}

TEST_F(HostObjectsTest, MessagingIsSuspendedOnlyWhileTheHostObjectIsMade) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  Collection(otBusiness)->Item(1);
  EXPECT_EQ(apartment_.Messages().SuspendRoutine(), "");
  HostOrder::FailsFrom = 1;
  EXPECT_TRUE(Thrown([&] { Collection(otBusiness)->Item(1); }));
  EXPECT_EQ(apartment_.Messages().SuspendRoutine(), "");
}

}  // namespace
}  // namespace velmoria::test
