#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/properties/property_context_fixture.h"

namespace velmoria::test {
namespace {

class PropertyContextWalkTest : public BoundPropertyContextTest {
 protected:
  PropertyContextWalkTest() {
    bound_->Add(Row(1, "Other"));
    bound_->BeforeUpdate += [this](bool&) { heard_ += "<"; };
    bound_->BeforeItemUpdate += [this](Properties& item, bool&) { heard_ += item.Name(); };
    bound_->AfterItemUpdate += [this](Properties&) { heard_ += "."; };
    bound_->AfterUpdate += [this] { heard_ += ">"; };
    bound_->BeforePendingDelete += [this](bool&) { heard_ += "["; };
    bound_->BeforeItemPendingDelete += [this](Properties& item, bool&) { heard_ += item.Name(); };
    bound_->AfterItemPendingDelete += [this](Properties&) { heard_ += ","; };
    bound_->AfterPendingDelete += [this] { heard_ += "]"; };
  }
  void Change(const char* collection) { bound_->Item(collection)->Item("Name")->SetValue("new"); }
  std::string heard_;
};

TEST_F(PropertyContextWalkTest, UntouchedCollectionsAreNotVisited) {
  bound_->Update();
  EXPECT_EQ(heard_, "<>");
}

TEST_F(PropertyContextWalkTest, ChangedCollectionsAreWritten) {
  Change("Other");
  bound_->Update();
  EXPECT_EQ(heard_, "<Other.>");
  EXPECT_EQ(orders_.Database->WrittenRows, std::vector<std::int32_t>{1});
}

TEST_F(PropertyContextWalkTest, CancelledCollectionIsSkippedAndTheOthersAreWritten) {
  Change("Get");
  Change("Other");
  bound_->BeforeItemUpdate += [](Properties& item, bool& Cancel) { Cancel = item.Name() == "Get"; };
  bound_->Update();
  EXPECT_EQ(heard_, "<GetOther.>");
  EXPECT_EQ(orders_.Database->WrittenRows, std::vector<std::int32_t>{1});
}

TEST_F(PropertyContextWalkTest, CancelledUpdateWritesNothingAndEndsSilently) {
  Change("Get");
  bound_->BeforeUpdate += [](bool& Cancel) { Cancel = true; };
  bound_->Update();
  EXPECT_EQ(heard_, "<");
  EXPECT_EQ(orders_.Database->Writes(), 0);
}

TEST_F(PropertyContextWalkTest, FailureEndsTheWalk) {
  Change("Get");
  Change("Other");
  orders_.Database->Refuses = true;
  EXPECT_TRUE(Thrown([&] { bound_->Update(); }));
  EXPECT_EQ(heard_, "<Get");
}

TEST_F(PropertyContextWalkTest, DeleteFlagsEachCollectionAndUpdateDeletes) {
  bound_->Delete();
  EXPECT_EQ(heard_, "[Get,Other,]");
  EXPECT_EQ(orders_.Database->Writes(), 0);
  bound_->Update();
  EXPECT_EQ(orders_.Database->Deletes, 2);
}

TEST_F(PropertyContextWalkTest, SecondDeleteFindsNothingLeftToFlag) {
  bound_->Delete();
  heard_.clear();
  bound_->Delete();
  EXPECT_EQ(heard_, "[]");
}

TEST_F(PropertyContextWalkTest, WithoutEfDeleteNothingIsFlaggedAndNoErrorTells) {
  orders_.Action->SetEditFlags(efUpdate);
  bound_->Delete();
  EXPECT_EQ(heard_, "[]");
  EXPECT_EQ(bound_->StateFlags(), sfpersistent);
}

TEST_F(PropertyContextWalkTest, UndoHasNoEvents) {
  bound_->Delete();
  heard_.clear();
  bound_->Undo();
  EXPECT_EQ(heard_, "");
  EXPECT_EQ(bound_->StateFlags(), sfpersistent);
}

}  // namespace
}  // namespace velmoria::test
