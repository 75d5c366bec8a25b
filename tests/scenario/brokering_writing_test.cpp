#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

using PersistenceTest = BrokeringTest;

TEST_F(PersistenceTest, ChangeIsReadBackThroughASecondConnection) {
  const auto order = Order(2);
  order->FindProperty("Name")->SetValue("O'Brien – Zoë");
  EXPECT_EQ(order->StateFlags(), sfpersistent | sfdirty);
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  const auto again = Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ActionName = "Check"});
  EXPECT_EQ(Value(again, "Name"), Variant("O'Brien – Zoë"));
  EXPECT_EQ(shop_.File.Column("select Name from orders order by Id"), "Ada|O'Brien – Zoë|Cyd");
}

TEST_F(PersistenceTest, ChangesOfSeveralMembersAreWrittenByTheCollection) {
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  orders->Item(1)->FindProperty("Total")->SetValue(1.5);
  orders->Item("3")->FindProperty("Total")->SetValue(3.5);
  orders->Update();
  EXPECT_FALSE(orders->Dirty());
  EXPECT_EQ(shop_.File.Column("select Total from orders order by Id"), "1.5|99.0|3.5");
}

TEST_F(PersistenceTest, NewObjectIsInserted) {
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  const auto order = orders->SetupItem();
  order->FindProperty("Id")->SetValue(40);
  order->FindProperty("Name")->SetValue("Dan");
  orders->Update();
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  EXPECT_EQ(orders->Item("40"), order);
  EXPECT_EQ(shop_.File.Column("select Name from orders where Id = 40"), "Dan");
}

TEST_F(PersistenceTest, NewObjectBehindTheLastPageIsInserted) {
  shop_.AddOrders(25);
  shop_.OrderAction("All")->SetObjectBuffer(10);
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  ExpectRaised(errBusinessObjects_Buffer, [&] { orders->SetupItem(); }, {.Text = "ObjectBuffer: 10."});
  orders->Item(orders->Count());
  const auto order = orders->SetupItem();
  order->FindProperty("Id")->SetValue(40);
  orders->Update();
  EXPECT_EQ(shop_.File.Column("select count(*) from orders"), "26");
}

TEST_F(PersistenceTest, DeletedObjectIsGoneWithTheNextUpdate) {
  const auto order = Order(2);
  order->Delete();
  EXPECT_EQ(shop_.File.Column("select count(*) from orders"), "3");
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfdeleted);
  EXPECT_EQ(shop_.File.Column("select Id from orders order by Id"), "1|3");
  ExpectRaised(errBusinessObject_Get, [&] { Order(2); });
}

TEST_F(PersistenceTest, WholeCollectionIsDeletedPageByPage) {
  shop_.AddOrders(25);
  shop_.OrderAction("All")->SetObjectBuffer(10);
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  orders->Delete();
  orders->Update();
  EXPECT_EQ(shop_.File.Column("select count(*) from orders"), "0");
}

TEST_F(PersistenceTest, UndoTakesADeletionBack) {
  const auto order = Order(2);
  order->Delete();
  order->Undo();
  order->Update();
  EXPECT_EQ(shop_.File.Column("select count(*) from orders"), "3");
}

TEST_F(PersistenceTest, UndoneChangeIsNotWrittenThoughTheValueStays) {
  const auto order = Order(2);
  order->FindProperty("Name")->SetValue("changed");
  order->Undo();
  EXPECT_FALSE(order->Dirty());
  order->Update();
  EXPECT_EQ(shop_.File.Column("select Name from orders where Id = 2"), "Ben");
}

TEST_F(PersistenceTest, FailedMemberEndsTheWalkAndWhatWasWrittenStays) {
  shop_.File.Run("create trigger guard before update on orders when new.Id = 2 begin select raise(abort, 'no'); end");
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  for (const auto& order : *orders) order->FindProperty("Total")->SetValue(7.0);
  EXPECT_EQ(Thrown([&] { orders->Update(); })->CatalogueNumber(), 15111);
  EXPECT_EQ(shop_.File.Column("select Total from orders order by Id"), "7.0|99.0|NULL");
  EXPECT_TRUE(orders->Item(2)->Dirty());
}

}  // namespace
}  // namespace velmoria::test
