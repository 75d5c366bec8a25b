#include "velmoria/properties/parents_data.h"

#include <gtest/gtest.h>

#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"
#include "tests/unit/properties/every_parent.h"
#include "velmoria/brokering/key_format_data.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class ParentsTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  Parents all_ = EveryParent(SampleDesign());
};

TEST_F(ParentsTest, TakesWhatIsGivenIntoFreeSlots) {
  Parents parents;
  EXPECT_TRUE(parents.IsEmpty());
  EXPECT_FALSE(parents.Take(all_));
  EXPECT_EQ(parents.Server, all_.Server);
  EXPECT_EQ(parents.KeyFormat, all_.KeyFormat);
  EXPECT_FALSE(parents.IsEmpty());
}

TEST_F(ParentsTest, FirstFilledSlotInOrderIsTheConflict) {
  Parents parents = all_;
  for (const auto& row : kParentConflicts) {
    const auto conflict = parents.Take(all_);
    ASSERT_TRUE(conflict);
    EXPECT_EQ(conflict->Number, row.Number);
    EXPECT_EQ(conflict->Name, row.Name);
    parents.Clear(SlotOf(row));
  }
  EXPECT_FALSE(parents.Take(all_));
}

TEST_F(ParentsTest, ConflictTakesNothing) {
  Parents parents;
  parents.KeyFormat = all_.KeyFormat;
  EXPECT_TRUE(parents.Take(all_));
  EXPECT_FALSE(parents.Server);
}

TEST_F(ParentsTest, TakenInTurnWhatCameBeforeTheConflictStays) {
  Parents parents;
  parents.Class = all_.Class;
  const auto conflict = parents.TakeInTurn(all_);
  ASSERT_TRUE(conflict);
  EXPECT_EQ(conflict->Number, errParent_Class);
  EXPECT_EQ(parents.Server, all_.Server);
  EXPECT_FALSE(parents.Action);
}

TEST_F(ParentsTest, ClearEmptiesTheSlotsNamed) {
  Parents parents = all_;
  parents.Clear({.Server = true, .Database = true});
  EXPECT_FALSE(parents.Server);
  EXPECT_FALSE(parents.Database);
  EXPECT_TRUE(parents.Class);
  parents.Clear(ParentSlots::All());
  EXPECT_TRUE(parents.IsEmpty());
}

}  // namespace
}  // namespace velmoria::test
