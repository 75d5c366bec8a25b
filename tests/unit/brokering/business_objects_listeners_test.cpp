#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/bound_business_objects_fixture.h"

namespace velmoria::test {
namespace {

/// Collections whose listeners do more than listen.
class ListenersTest : public BoundBusinessObjectsTest {
 protected:
  BusinessObjectsPtr Changed() const {
    auto collection = orders_.Collection({.ObjectType = otModel, .CollectionType = cltOptimized});
    for (const auto& order : *collection) order->FindProperty("Name")->SetValue("new name");
    return collection;
  }
  /// Filled by hand with the objects 1, 2 and 3.
  BusinessObjectsPtr Filled() const {
    auto collection = Make<BusinessObjects>();
    collection->SetupTransient("Mine", {}, true, false, {}, true);
    const auto bound = orders_.Collection();
    for (const auto& order : *bound) collection->Add(order);
    return collection;
  }
  [[noreturn]] static void Complain() { throw std::runtime_error("a listener's own trouble"); }
  static void ExpectComplaint(const std::optional<Error>& raised) {
    ASSERT_TRUE(raised);
    EXPECT_EQ(raised->CatalogueNumber(), 15000);
    EXPECT_NE(raised->Description().find("a listener's own trouble"), std::string::npos);
  }
  int Writes() const { return orders_.Database->Writes(); }
};

TEST_F(ListenersTest, ThrowingBeforeUpdateWritesNothingAndTheNextUpdateWritesAll) {
  const auto orders = Changed();
  const auto token = orders->BeforeUpdate += [](bool&) { Complain(); };
  ExpectComplaint(Thrown([&] { orders->Update(); }));
  EXPECT_EQ(Writes(), 0);
  orders->BeforeUpdate -= token;
  orders->Update();
  EXPECT_EQ(Writes(), 3);
}

TEST_F(ListenersTest, ThrowingBeforeItemUpdateEndsTheWalkThere) {
  const auto orders = Changed();
  bool after = false;
  orders->AfterUpdate += [&] { after = true; };
  const auto token = orders->BeforeItemUpdate += [](IBusinessObject& item, bool&) {
    if (IdOf(item) == 2) Complain();
  };
  ExpectComplaint(Thrown([&] { orders->Update(); }));
  EXPECT_EQ(Writes(), 1);
  EXPECT_FALSE(after);
  orders->BeforeItemUpdate -= token;
  orders->Update();
  EXPECT_EQ(Writes(), 3) << "the first is not written twice";
}

TEST_F(ListenersTest, ThrowingAfterItemUpdateLeavesThatMemberWritten) {
  const auto orders = Changed();
  const auto token = orders->AfterItemUpdate += [](IBusinessObject&) { Complain(); };
  ExpectComplaint(Thrown([&] { orders->Update(); }));
  EXPECT_EQ(Writes(), 1);
  EXPECT_FALSE(orders->Item(1)->Dirty());
  orders->AfterItemUpdate -= token;
  orders->Update();
  EXPECT_EQ(Writes(), 3);
}

TEST_F(ListenersTest, ThrowingAfterUpdateIsReportedThoughAllIsWritten) {
  const auto orders = Changed();
  orders->AfterUpdate += [] { Complain(); };
  ExpectComplaint(Thrown([&] { orders->Update(); }));
  EXPECT_EQ(Writes(), 3);
  EXPECT_FALSE(orders->Dirty());
}

TEST_F(ListenersTest, ThrowingBeforeItemPendingDeleteLeavesWhatWasFlagged) {
  const auto orders = Filled();
  orders->BeforeItemPendingDelete += [](IBusinessObject& item, bool&) {
    if (IdOf(item) == 2) Complain();
  };
  ExpectComplaint(Thrown([&] { orders->Delete(); }));
  EXPECT_EQ(orders->Item(1)->StateFlags(), sfpersistent | sfpendingdelete);
  EXPECT_EQ(orders->Item(2)->StateFlags(), sfpersistent);
  orders->Undo();
  EXPECT_EQ(orders->StateFlags(), sfpersistent);
}

TEST_F(ListenersTest, ThrowingAroundAddAndRemoveIsReported) {
  const auto orders = Filled();
  const auto first = orders->Item(1);
  const auto before = orders->BeforeAdd += [](IBusinessObject&, bool&) { Complain(); };
  orders->BeforeRemove += [](IBusinessObject&, bool&) { Complain(); };
  ExpectComplaint(Thrown([&] { orders->Add(first); }));
  ExpectComplaint(Thrown([&] { orders->Remove(1); }));
  orders->BeforeAdd -= before;
  EXPECT_EQ(Ids(*orders), "1,2,3");
}

TEST_F(ListenersTest, ThrowingAroundSetupItemIsReported) {
  const auto orders = orders_.Collection();
  const auto token = orders->BeforeSetupItem += [](bool&) { Complain(); };
  ExpectComplaint(Thrown([&] { orders->SetupItem(); }));
  EXPECT_EQ(orders->Count(), 3);
  orders->BeforeSetupItem -= token;
  orders->AfterSetupItem += [] { Complain(); };
  ExpectComplaint(Thrown([&] { orders->SetupItem(); }));
  EXPECT_EQ(orders->Count(), 4) << "the object is there";
  EXPECT_EQ(orders->Item(4)->StateFlags(), sfNew);
}

TEST_F(ListenersTest, ThrowingItemNotFoundIsReported) {
  const auto orders = Filled();
  orders->ItemNotFound += [](const Variant&, IBusinessObjectPtr&) { Complain(); };
  ExpectComplaint(Thrown([&] { orders->Item("9"); }));
  EXPECT_EQ(IdOf(*orders->Item("3")), 3);
}

TEST_F(ListenersTest, MemberRemovedDuringUpdateIsWrittenAllTheSame) {
  const auto orders = Filled();
  for (const auto& order : *orders) order->FindProperty("Name")->SetValue("new name");
  orders->BeforeUpdate += [&](bool&) { orders->Remove("2"); };
  orders->AfterItemUpdate += [&](IBusinessObject& item) {
    if (IdOf(item) == 1) orders->Remove("3");
  };
  orders->Update();
  EXPECT_EQ(orders_.Database->WrittenRows, (std::vector<std::int32_t>{0, 1, 2})) << "the members when it was called";
  EXPECT_EQ(Ids(*orders), "1");
}

TEST_F(ListenersTest, MemberAddedDuringUpdateWaitsForTheNextOne) {
  const auto orders = Changed();
  orders->AfterItemUpdate += [&](IBusinessObject& item) {
    if (IdOf(item) == 1) orders->SetupItem()->FindProperty("Id")->SetValue(77);
  };
  orders->Update();
  EXPECT_EQ(orders_.Database->Inserts, 0);
  orders->Update();
  EXPECT_EQ(orders_.Database->Inserts, 1);
}

TEST_F(ListenersTest, MemberRemovedDuringDeletePassesItsPlaceToTheNextWhichIsNotVisited) {
  const auto orders = Filled();
  const auto second = orders->Item(2);
  orders->AfterItemPendingDelete += [&](IBusinessObject& item) {
    if (IdOf(item) == 1) orders->Remove("1");
  };
  orders->Delete();
  EXPECT_EQ(second->StateFlags(), sfpersistent);
  EXPECT_EQ(orders->Item("3")->StateFlags(), sfpersistent | sfpendingdelete);
}

TEST_F(ListenersTest, ObjectMadeDuringDeleteIsVisitedAndGivenUp) {
  const auto orders = orders_.Collection();
  IBusinessObjectPtr made;
  orders->AfterItemPendingDelete += [&](IBusinessObject&) {
    if (!made) made = orders->SetupItem();
  };
  orders->Delete();
  EXPECT_EQ(made->StateFlags() & sfdeleted, sfdeleted);
  orders->Update();
  EXPECT_EQ(orders_.Database->Deletes, 3);
  EXPECT_EQ(orders_.Database->Inserts, 0);
}

TEST_F(ListenersTest, MemberThatAListenerRemovesByItselfIsNotThereToBeRemovedByKey) {
  const auto orders = Filled();
  bool inside = false;
  orders->BeforeRemove += [&](IBusinessObject&, bool&) {
    if (!std::exchange(inside, true)) orders->Remove("2");
  };
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { orders->Remove("2"); });
  EXPECT_EQ(Ids(*orders), "1,3");
}

TEST_F(ListenersTest, PositionIsTakenAnewAfterTheListenersOfRemove) {
  const auto orders = Filled();
  bool inside = false;
  orders->BeforeRemove += [&](IBusinessObject&, bool&) {
    if (!std::exchange(inside, true)) orders->Remove(1);
  };
  orders->Remove(1);
  EXPECT_EQ(Ids(*orders), "3");
  inside = false;
  ExpectReported(RuntimeFailure::SubscriptOutOfRange, [&] { orders->Remove(1); });
  EXPECT_EQ(orders->Count(), 0);
}

TEST_F(ListenersTest, ObjectThatAListenerAddsByItselfIsRefusedAsTheSecondUnderItsKey) {
  const auto orders = Filled();
  const auto first = orders->Item(1);
  orders->Remove(1);
  bool inside = false;
  orders->BeforeAdd += [&](IBusinessObject&, bool&) {
    if (!std::exchange(inside, true)) orders->Add(first);
  };
  ExpectReported(RuntimeFailure::KeyInUse, [&] { orders->Add(first); });
  EXPECT_EQ(Ids(*orders), "2,3,1");
}

TEST_F(ListenersTest, WalkOverTheMembersGoesOnThoughTheyAreRemoved) {
  const auto orders = Filled();
  std::string visited;
  for (const auto& order : *orders) {
    visited += order->Key();
    orders->Remove(1);
  }
  EXPECT_EQ(visited, "123");
  EXPECT_EQ(orders->Count(), 0);
}

TEST_F(ListenersTest, ListenerThatUpdatesTheWholeWritesEachMemberOnce) {
  const auto orders = Changed();
  orders->AfterItemUpdate += [&](IBusinessObject& item) {
    if (IdOf(item) == 1) orders->Update();
  };
  orders->Update();
  EXPECT_EQ(orders_.Database->WrittenRows, (std::vector<std::int32_t>{0, 1, 2}));
}

TEST_F(ListenersTest, MemberThatItsListenerDeletesIsDeletedByTheSameUpdate) {
  const auto orders = Changed();
  orders->BeforeItemUpdate += [](IBusinessObject& item, bool&) {
    if (IdOf(item) == 2) item.Delete();
  };
  orders->Update();
  EXPECT_EQ(orders_.Database->Updates, 2);
  EXPECT_EQ(orders_.Database->Deletes, 1);
  EXPECT_EQ(orders->Item(2)->StateFlags(), sfdeleted);
}

TEST_F(ListenersTest, MemberThatItsListenerUndoesIsHeardToTheEndButNotWritten) {
  const auto orders = Changed();
  int after = 0;
  orders->BeforeItemUpdate += [](IBusinessObject& item, bool&) { item.Undo(); };
  orders->AfterItemUpdate += [&](IBusinessObject&) { ++after; };
  orders->Update();
  EXPECT_EQ(Writes(), 0);
  EXPECT_EQ(after, 3);
}

TEST_F(ListenersTest, ListenerThatTakesItselfBackIsHeardOnce) {
  const auto orders = Changed();
  int heard = 0;
  EventToken token;
  token = orders->BeforeItemUpdate += [&](IBusinessObject&, bool&) {
    ++heard;
    orders->BeforeItemUpdate -= token;
  };
  orders->Update();
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(Writes(), 3);
}

TEST_F(ListenersTest, PagesThatAListenerTurnsDuringDeleteAreTurnedBack) {
  orders_.Fill({.Rows = 30, .Buffer = 10});
  const auto orders = orders_.Collection({.ObjectType = otModel, .CollectionType = cltOptimized});
  orders->AfterItemPendingDelete += [&](IBusinessObject&) { orders->Item(30); };
  orders->Delete();
  orders->Update();
  EXPECT_EQ(orders_.Database->Deletes, 30);
}

}  // namespace
}  // namespace velmoria::test
