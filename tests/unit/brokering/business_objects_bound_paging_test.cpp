#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PagedBusinessObjectsTest : public testing::Test {
 protected:
  static std::string IdsTo(int last) {
    std::string ids = "1";
    for (int id = 2; id <= last; ++id) ids += "," + std::to_string(id);
    return ids;
  }

  ScopedApartment apartment_;
  BoundOrders orders_{{.Rows = 30, .Buffer = 10}};
  BusinessObjectsPtr collection_ = orders_.Collection();
};

TEST_F(PagedBusinessObjectsTest, CountIsThatOfTheWholeResult) { EXPECT_EQ(collection_->Count(), 30); }

TEST_F(PagedBusinessObjectsTest, ItemIsTheRowOfThatNumberThoughPagesAreNumberedOneShort) {
  for (const int position : {1, 10, 11, 12, 20, 21, 30}) EXPECT_EQ(IdOf(*collection_->Item(position)), position);
  EXPECT_EQ(orders_.Database->Reads, 3);
}

TEST_F(PagedBusinessObjectsTest, ItemOfCountIsTheLastRow) {
  EXPECT_EQ(IdOf(*collection_->Item(collection_->Count())), 30);
}

TEST_F(PagedBusinessObjectsTest, RangeForVisitsEveryRowOnceAndEnds) {
  EXPECT_EQ(Ids(*collection_), IdsTo(30));
  EXPECT_EQ(orders_.Database->Reads, 3);
}

TEST_F(PagedBusinessObjectsTest, SecondWalkOverTheObjectsHeldReadsNothing) {
  Ids(*collection_);
  EXPECT_EQ(Ids(*collection_), IdsTo(30));
  EXPECT_EQ(orders_.Database->Reads, 3);
}

TEST_F(PagedBusinessObjectsTest, GoingBackStartsAgainFromTheFirstPage) {
  collection_->Item(25);
  ASSERT_EQ(orders_.Database->Reads, 3);
  EXPECT_EQ(IdOf(*collection_->Item(15)), 15);
  EXPECT_EQ(orders_.Database->Reads, 5);
}

TEST_F(PagedBusinessObjectsTest, DispatcherGoesBackAndForth) {
  const auto dispatcher = orders_.Collection({.ObjectType = otModel, .CollectionType = cltDispatcher});
  for (const int position : {25, 5, 15, 30, 1}) EXPECT_EQ(IdOf(*dispatcher->Item(position)), position);
}

TEST_F(PagedBusinessObjectsTest, RowsBeyondEitherEndAreNotThereAndNothingReadsOn) {
  ExpectRaised(errPersistence_Row, [&] { collection_->Item(31); }, {.Text = "Row: 10  Count: 10"});
  EXPECT_EQ(orders_.Database->Reads, 3);
  ExpectRaised(errPersistence_Row, [&] { collection_->Item(1000); });
  ExpectRaised(errPersistence_Row, [&] { collection_->Item(0); }, {.Text = "Row: -1  Count: 10"});
  ExpectRaised(errPersistence_Row, [&] { collection_->Item(-5); });
  EXPECT_EQ(orders_.Database->Reads, 3);
}

TEST_F(PagedBusinessObjectsTest, PagesOfOneRowAreWalkedToTheEnd) {
  orders_.Fill({.Rows = 5, .Buffer = 1});
  const auto orders = orders_.Collection();
  EXPECT_EQ(IdOf(*orders->Item(5)), 5);
  EXPECT_EQ(IdOf(*orders->Item(2)), 2);
  ExpectRaised(errPersistence_Row, [&] { orders->Item(6); });
  EXPECT_EQ(Ids(*orders), "1,2,3,4,5");
}

TEST_F(PagedBusinessObjectsTest, LastPageMayBeShorter) {
  orders_.Fill({.Rows = 23, .Buffer = 10});
  const auto orders = orders_.Collection();
  EXPECT_EQ(IdOf(*orders->Item(23)), 23);
  ExpectRaised(errPersistence_Row, [&] { orders->Item(24); }, {.Text = "Row: 3  Count: 3"});
  EXPECT_EQ(Ids(*orders_.Collection()), IdsTo(23));
}

TEST_F(PagedBusinessObjectsTest, KeyIsFoundAcrossPages) {
  EXPECT_EQ(IdOf(*collection_->Item("27")), 27);
  EXPECT_EQ(IdOf(*collection_->Item("3")), 3);
  ExpectRaised(errItem_BusinessObject, [&] { collection_->Item("31"); }, {.Text = "Index: '31'", .Count = 1});
}

TEST_F(PagedBusinessObjectsTest, SameRowOfTwoPagesIsTwoObjectsUnderTwoKeys) {
  const auto first = collection_->Item(1);
  const auto eleventh = collection_->Item(11);
  EXPECT_NE(first, eleventh);
  EXPECT_EQ(collection_->Item("1"), first);
  EXPECT_EQ(collection_->Item("11"), eleventh);
}

TEST_F(PagedBusinessObjectsTest, SetupItemNeedsTheEndOfTheResultWhichTheLastItemReaches) {
  ExpectRaised(errBusinessObjects_Buffer, [&] { collection_->SetupItem(); }, {.Text = "ObjectBuffer: 10."});
  collection_->Item(collection_->Count());
  const auto order = collection_->SetupItem();
  EXPECT_EQ(order->StateFlags(), sfNew);
  EXPECT_EQ(collection_->Item(31), order);
}

TEST_F(PagedBusinessObjectsTest, LastItemReachesTheEndAgainThoughItIsHeldAlready) {
  collection_->Item(30);
  collection_->Item(5);
  ExpectRaised(errBusinessObjects_Buffer, [&] { collection_->SetupItem(); });
  collection_->Item(30);
  EXPECT_NE(collection_->SetupItem(), nullptr);
}

TEST_F(PagedBusinessObjectsTest, NewObjectsMadeBeforeAndAfterGoingBackAreBothHeldAndInserted) {
  const auto add = [&](std::int32_t id) {
    collection_->Item(30);
    const auto order = collection_->SetupItem();
    order->FindProperty("Id")->SetValue(id);
    return order;
  };
  const auto first = add(77);
  collection_->Item(5);
  const auto second = add(78);
  EXPECT_EQ(collection_->Item(31), first);
  EXPECT_EQ(collection_->Item(32), second);
  collection_->Update();
  EXPECT_EQ(orders_.Database->Inserts, 2);
}

TEST_F(PagedBusinessObjectsTest, DeleteReachesEveryPageAndUpdateWritesEachRowThroughItsOwn) {
  collection_->Delete();
  collection_->Update();
  EXPECT_EQ(orders_.Database->Deletes, 30);
  EXPECT_EQ(orders_.Database->WrittenRows[11], 1) << "row 12 is the second of its page";
}

TEST_F(PagedBusinessObjectsTest, CountThatIsNotToldYetIsWalkedToTheLastRow) {
  orders_.Database->TotalRows = -1;
  EXPECT_EQ(collection_->Count(), -1);
  EXPECT_EQ(Ids(*collection_), IdsTo(30));
  EXPECT_EQ(collection_->Statistics()->Item("Build Optimized Collection")->SubjectCount(), 30);
}

TEST_F(PagedBusinessObjectsTest, DatabaseThatVanishesBetweenPagesIsReportedAndTheNextCallWorks) {
  const auto tenth = collection_->Item(10);
  orders_.Database->FailsReads = true;
  ExpectReported(RuntimeFailure::DriverFailure, [&] { collection_->Item(11); });
  ExpectReported(RuntimeFailure::DriverFailure, [&] { collection_->NewEnum(); });
  EXPECT_EQ(collection_->Item(10), tenth);
  orders_.Database->FailsReads = false;
  EXPECT_EQ(IdOf(*collection_->Item(11)), 11);
}

TEST_F(PagedBusinessObjectsTest, SearchThatTheDatabaseInterruptsFindsNothingAndTheNextOneGoesOn) {
  EXPECT_EQ(IdOf(*collection_->Item("8")), 8);
  orders_.Database->FailsReads = true;
  ExpectRaised(errItem_BusinessObject, [&] { collection_->Item("27"); }, {.Text = "Index: '27'", .Count = 1});
  orders_.Database->FailsReads = false;
  EXPECT_EQ(IdOf(*collection_->Item("27")), 27);
}

TEST_F(PagedBusinessObjectsTest, DeleteTakesAPageThatCannotBeReadForTheEndOfTheRows) {
  collection_->Item(10);
  orders_.Database->FailsReads = true;
  bool after = false;
  collection_->AfterPendingDelete += [&] { after = true; };
  collection_->Delete();
  EXPECT_TRUE(after);
  orders_.Database->FailsReads = false;
  collection_->Update();
  EXPECT_EQ(orders_.Database->Deletes, 10);
}

TEST_F(PagedBusinessObjectsTest, PageThatCannotBeReadLeavesThePageHeld) {
  collection_->Item(15);
  orders_.Database->FailsReads = true;
  ExpectReported(RuntimeFailure::DriverFailure, [&] { collection_->Item(3); });
  EXPECT_EQ(IdOf(*collection_->Item(16)), 16);
}

}  // namespace
}  // namespace velmoria::test
