#include <stdexcept>
#include <string>

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
  ExpectRaised(errPersistence_Update, [&] { orders->Update(); });
  EXPECT_EQ(shop_.File.Column("select Total from orders order by Id"), "7.0|99.0|NULL");
  EXPECT_TRUE(orders->Item(2)->Dirty());
}

/// The whole table as one collection, with every write to it noted.
class CollectionPersistenceTest : public BrokeringTest {
 protected:
  CollectionPersistenceTest() { shop_.NoteWrites(); }
  static IBusinessObjectsPtr Orders(zCollectionTypes collectionType = cltDefault) {
    return Framework{}.GetBusinessObjects(
        {.ClassName = "Order", .ActionName = "All", .CollectionType = collectionType});
  }
  static BusinessObjects& Heard(const IBusinessObjectsPtr& orders) { return dynamic_cast<BusinessObjects&>(*orders); }
  static void SetTotals(IBusinessObjects& orders, double total) {
    for (const auto& order : orders) order->FindProperty("Total")->SetValue(total);
  }
  void Guard(const std::string& operation, const std::string& row) {
    shop_.File.Run("create trigger guard before " + operation + " on orders when " + row +
                   ".Id = 2 begin select raise(abort, 'no'); end");
  }
  void DropGuard() { shop_.File.Run("drop trigger guard"); }
  std::string Totals() { return shop_.File.Column("select Total from orders order by Id"); }
};

TEST_F(CollectionPersistenceTest, CancelledMemberIsSkippedTheOthersAreWrittenAndAfterUpdateIsRaised) {
  const auto orders = Orders();
  SetTotals(*orders, 7.0);
  bool after = false;
  Heard(orders).BeforeItemUpdate += [](IBusinessObject& item, bool& Cancel) { Cancel = Value(&item, "Id") == 2; };
  Heard(orders).AfterUpdate += [&] { after = true; };
  orders->Update();
  EXPECT_EQ(Totals(), "7.0|99.0|7.0");
  EXPECT_TRUE(after);
  EXPECT_TRUE(orders->Item(2)->Dirty());
}

TEST_F(CollectionPersistenceTest, CancelledUpdateWritesNothing) {
  const auto orders = Orders();
  SetTotals(*orders, 7.0);
  Heard(orders).BeforeUpdate += [](bool& Cancel) { Cancel = true; };
  orders->Update();
  EXPECT_EQ(shop_.Writes(), "");
  EXPECT_TRUE(orders->Dirty());
}

TEST_F(CollectionPersistenceTest, UntouchedCollectionRaisesNoEventOfAMemberAndSendsNoStatement) {
  const auto orders = Orders(cltOptimized);
  std::string heard;
  Heard(orders).BeforeUpdate += [&](bool&) { heard += "before "; };
  Heard(orders).BeforeItemUpdate += [&](IBusinessObject&, bool&) { heard += "member "; };
  Heard(orders).AfterUpdate += [&] { heard += "after"; };
  apartment_.Messages().Clear();
  orders->Update();
  EXPECT_EQ(heard, "before after");
  EXPECT_EQ(apartment_.Messages().Count(), 0);
  EXPECT_EQ(shop_.Writes(), "");
}

TEST_F(CollectionPersistenceTest, MemberKeptFromDeletionStaysInTheDatabase) {
  const auto orders = Orders();
  Heard(orders).BeforeItemPendingDelete +=
      [](IBusinessObject& item, bool& Cancel) { Cancel = Value(&item, "Id") == 2; };
  orders->Delete();
  EXPECT_EQ(shop_.Writes(), "") << "it is only flagged";
  orders->Update();
  EXPECT_EQ(shop_.Writes(), "delete1|delete3");
}

TEST_F(CollectionPersistenceTest, FlaggedMemberUnderAnActionWithoutEfDeleteIsNotVisited) {
  const auto orders = Orders();
  orders->Item(2)->Delete();
  shop_.OrderAction("All")->SetEditFlags(efUpdate | efInsert);
  orders->Update();
  EXPECT_EQ(shop_.Writes(), "");
  EXPECT_EQ(orders->Item(2)->StateFlags(), sfpersistent | sfpendingdelete);
}

TEST_F(CollectionPersistenceTest, MembersWithoutEfDeleteArePassedSilently) {
  shop_.OrderAction("All")->SetEditFlags(efUpdate);
  const auto orders = Orders();
  orders->Delete();
  EXPECT_EQ(orders->StateFlags(), sfpersistent);
  EXPECT_EQ(apartment_.Messages().SeverityFlags() & svfError, svfNone);
}

TEST_F(CollectionPersistenceTest, AfterAFailedUpdateTheNextOneWritesOnlyTheRest) {
  Guard("update", "new");
  const auto orders = Orders();
  SetTotals(*orders, 7.0);
  bool after = false;
  Heard(orders).AfterUpdate += [&] { after = true; };
  ExpectRaised(errPersistence_Update, [&] { orders->Update(); });
  EXPECT_EQ(shop_.Writes(), "update1");
  EXPECT_FALSE(after);
  DropGuard();
  orders->Update();
  EXPECT_EQ(shop_.Writes(), "update1|update2|update3");
  EXPECT_TRUE(after);
}

TEST_F(CollectionPersistenceTest, AfterAFailedUpdateUndoGivesUpOnlyTheRest) {
  Guard("update", "new");
  const auto orders = Orders();
  SetTotals(*orders, 7.0);
  ExpectRaised(errPersistence_Update, [&] { orders->Update(); });
  orders->Undo();
  EXPECT_FALSE(orders->Dirty());
  DropGuard();
  orders->Update();
  EXPECT_EQ(Totals(), "7.0|99.0|NULL");
}

TEST_F(CollectionPersistenceTest, DeletionThatFailsHalfWayLeavesTheRestFlagged) {
  Guard("delete", "old");
  const auto orders = Orders();
  orders->Delete();
  ExpectRaised(errPersistence_Delete, [&] { orders->Update(); });
  EXPECT_EQ(shop_.Writes(), "delete1");
  EXPECT_EQ(orders->Item(1)->StateFlags(), sfdeleted);
  EXPECT_EQ(orders->Item(2)->StateFlags(), sfpersistent | sfpendingdelete);
  EXPECT_EQ(orders->Item(3)->StateFlags(), sfpersistent | sfpendingdelete);
  DropGuard();
  orders->Update();
  EXPECT_EQ(shop_.Writes(), "delete1|delete2|delete3");
}

TEST_F(CollectionPersistenceTest, NewObjectThatTheDatabaseRefusesIsCorrectedAndInsertedWithTheOthers) {
  const auto orders = Orders();
  const auto first = orders->SetupItem();
  const auto second = orders->SetupItem();
  first->FindProperty("Id")->SetValue(2);
  second->FindProperty("Id")->SetValue(41);
  ExpectRaised(errPersistence_Insert, [&] { orders->Update(); });
  EXPECT_EQ(first->StateFlags(), sfNew | sfdirty);
  EXPECT_EQ(shop_.Writes(), "");
  first->FindProperty("Id")->SetValue(40);
  orders->Update();
  EXPECT_EQ(shop_.Writes(), "insert40|insert41");
  EXPECT_EQ(orders->StateFlags(), sfpersistent);
}

TEST_F(CollectionPersistenceTest, NewObjectUnderAnActionWithoutEfInsertIsRefusedByItsOwnUpdate) {
  shop_.OrderAction("All")->SetEditFlags(efUpdate | efDelete);
  const auto orders = Orders();
  orders->SetupItem()->FindProperty("Id")->SetValue(40);
  ExpectRaised(errNotSupported_Insert, [&] { orders->Update(); }, {.Text = "Action: 'All'"});
  EXPECT_EQ(shop_.Writes(), "");
}

TEST_F(CollectionPersistenceTest, NewObjectThatIsDeletedNeverReachesTheDatabase) {
  const auto orders = Orders();
  const auto order = orders->SetupItem();
  order->FindProperty("Id")->SetValue(40);
  order->Delete();
  orders->Update();
  EXPECT_EQ(order->StateFlags() & sfdeleted, sfdeleted);
  EXPECT_EQ(shop_.Writes(), "");
}

TEST_F(CollectionPersistenceTest, ChangesOnPagesLeftBehindAreWritten) {
  shop_.AddOrders(25);
  shop_.File.Run("delete from writes");
  shop_.OrderAction("All")->SetObjectBuffer(10);
  const auto orders = Orders();
  for (const int position : {25, 3, 14}) orders->Item(position)->FindProperty("Total")->SetValue(7.0);
  orders->Update();
  EXPECT_EQ(shop_.Writes(), "update3|update14|update25") << "by row and not in the order of asking";
}

TEST_F(CollectionPersistenceTest, DispatcherRefusesADeleteBeforeAnyEvent) {
  const auto orders = Orders(cltDispatcher);
  bool asked = false;
  Heard(orders).BeforePendingDelete += [&](bool&) { asked = true; };
  ExpectRaised(errNotSupported_CollectionType, [&] { orders->Delete(); }, {.Text = "CollectionType: 'Dispatcher'"});
  EXPECT_FALSE(asked);
  EXPECT_EQ(orders->StateFlags(), sfpersistent);
}

TEST_F(CollectionPersistenceTest, ObjectsOfADispatcherAreWrittenOneByOne) {
  const auto orders = Orders(cltDispatcher);
  const auto order = orders->Item(2);
  order->FindProperty("Total")->SetValue(7.0);
  ExpectRaised(errNotSupported_CollectionType, [&] { orders->Update(); }, {.Text = "CollectionType: 'Dispatcher'"});
  EXPECT_EQ(shop_.Writes(), "");
  order->Update();
  EXPECT_EQ(shop_.Writes(), "update2");
}

TEST_F(CollectionPersistenceTest, TransactionOfTheCallerTakesHalfAnUpdateBackButNotTheStatesOfTheObjects) {
  const auto orders = Orders();
  SetTotals(*orders, 7.0);
  const ConnectionPtr connection = shop_.OrderAction("All")->Connection();
  Heard(orders).BeforeItemUpdate += [](IBusinessObject& item, bool&) {
    if (Value(&item, "Id") == 2) throw std::runtime_error("a listener's own trouble");
  };
  connection->TransBegin();
  EXPECT_TRUE(Thrown([&] { orders->Update(); }));
  connection->TransRollback();
  EXPECT_EQ(Totals(), "12.5|99.0|NULL");
  EXPECT_FALSE(orders->Item(1)->Dirty());
}

TEST_F(CollectionPersistenceTest, ThrowingListenerEndsTheWalkAndTheNextUpdateWritesTheRest) {
  const auto orders = Orders();
  SetTotals(*orders, 7.0);
  const auto token = Heard(orders).BeforeItemUpdate += [](IBusinessObject& item, bool&) {
    if (Value(&item, "Id") == 2) throw std::runtime_error("a listener's own trouble");
  };
  const auto error = Thrown([&] { orders->Update(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15000);
  EXPECT_EQ(shop_.Writes(), "update1");
  Heard(orders).BeforeItemUpdate -= token;
  orders->Update();
  EXPECT_EQ(shop_.Writes(), "update1|update2|update3");
}

}  // namespace
}  // namespace velmoria::test
