#include <gtest/gtest.h>

#include "velmoria/data/row_changes_impl.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {
namespace {

using List = RowChanges::List;

TEST(RowChangesTest, ListsKeepTheOrderOfAddition) {
  RowChanges changes;
  for (const int row : {5, 1, 3}) changes.Enter(List::New, row);
  changes.Leave(List::New, 5);
  changes.Enter(List::New, 5);
  EXPECT_EQ(changes.Rows(List::New), (std::vector<std::int32_t>{1, 3, 5}));
}

TEST(RowChangesTest, ListsAreApart) {
  RowChanges changes;
  changes.Enter(List::Pending, 1);
  EXPECT_TRUE(changes.IsIn(List::Pending, 1));
  EXPECT_FALSE(changes.IsIn(List::Deleted, 1));
  EXPECT_TRUE(changes.Any(List::Pending));
  EXPECT_FALSE(changes.Any(List::Deleted));
}

TEST(RowChangesTest, EnteringTwiceFails) {
  RowChanges changes;
  changes.Enter(List::Deleted, 1);
  EXPECT_THROW(changes.Enter(List::Deleted, 1), Error);
  EXPECT_EQ(changes.Rows(List::Deleted).size(), 1U);
}

TEST(RowChangesTest, LeavingWithoutBeingInDoesNothing) {
  RowChanges changes;
  changes.Leave(List::Dirty, 1);
  EXPECT_EQ(changes.Find(1), nullptr);
}

TEST(RowChangesTest, RowThatIsNoLongerDirtyForgetsItsOldValues) {
  RowChanges changes;
  auto& row = changes.Touch(1, 2);
  row.Cells[0] = {.Present = 2, .Old = 1, .Stored = true};
  changes.Enter(List::Dirty, 1);
  changes.Leave(List::Dirty, 1);
  EXPECT_TRUE(changes.Find(1)->Cells[0].Old.IsEmpty());
  EXPECT_EQ(changes.Find(1)->Cells[0].Present.AsLong(), 2);
}

TEST(RowChangesTest, RowThatWasLookedForInVainIsFoundOnceItIsTouched) {
  RowChanges changes;
  EXPECT_EQ(changes.Find(7), nullptr);
  auto& touched = changes.Touch(7, 2);
  EXPECT_EQ(changes.Find(7), &touched);
  EXPECT_EQ(changes.Find(8), nullptr);
  changes.Enter(List::New, 8);
  EXPECT_TRUE(changes.IsIn(List::New, 8));
  EXPECT_EQ(changes.Find(7), &touched);
}

}  // namespace
}  // namespace velmoria::test
