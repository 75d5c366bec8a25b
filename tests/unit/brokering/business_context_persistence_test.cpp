#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/host_collection.h"
#include "tests/unit/brokering/bound_business_objects_fixture.h"

namespace velmoria::test {
namespace {

/// A context that holds the collections A and B, and tells what it raises.
class HeldCollectionsTest : public BoundBusinessObjectsTest {
 protected:
  HeldCollectionsTest() {
    context_->Add(a_);
    context_->Add(b_);
    context_->BeforeUpdate += [this](bool&) { heard_ += "<"; };
    context_->BeforeItemUpdate += [this](IBusinessObjects& item, bool&) { heard_ += item.Name(); };
    context_->AfterItemUpdate += [this](IBusinessObjects&) { heard_ += "."; };
    context_->AfterUpdate += [this] { heard_ += ">"; };
    context_->BeforePendingDelete += [this](bool&) { heard_ += "["; };
    context_->BeforeItemPendingDelete += [this](IBusinessObjects& item, bool&) { heard_ += item.Name(); };
    context_->AfterItemPendingDelete += [this](IBusinessObjects&) { heard_ += "."; };
    context_->AfterPendingDelete += [this] { heard_ += "]"; };
  }
  static void Change(const BusinessObjectsPtr& collection) {
    collection->Item(1)->FindProperty("Name")->SetValue("new");
  }

  BusinessObjectsPtr a_ = orders_.Collection({.Name = "A", .ObjectType = otModel});
  BusinessObjectsPtr b_ = orders_.Collection({.Name = "B", .ObjectType = otModel});
  BusinessContextPtr context_ = Framework{}.CreateBusinessContext();
  std::string heard_;
};

TEST_F(HeldCollectionsTest, UpdateWritesTheChangedOnesInOrder) {
  Change(b_);
  Change(a_);
  context_->Update();
  EXPECT_EQ(heard_, "<A.B.>");
  EXPECT_EQ(orders_.Database->Updates, 2);
}

TEST_F(HeldCollectionsTest, UpdatePassesOverTheUntouchedOnes) {
  Change(b_);
  context_->Update();
  EXPECT_EQ(heard_, "<B.>");
}

TEST_F(HeldCollectionsTest, CollectionCancelledByAListenerIsSkippedAndTheWalkGoesOn) {
  Change(a_);
  Change(b_);
  context_->BeforeItemUpdate += [](IBusinessObjects& item, bool& Cancel) { Cancel = item.Name() == "A"; };
  context_->Update();
  EXPECT_EQ(heard_, "<AB.>");
  EXPECT_EQ(orders_.Database->Updates, 1);
}

TEST_F(HeldCollectionsTest, CancelledUpdateEndsSilently) {
  Change(a_);
  context_->BeforeUpdate += [](bool& Cancel) { Cancel = true; };
  context_->Update();
  EXPECT_EQ(heard_, "<");
  EXPECT_EQ(orders_.Database->Writes(), 0);
}

TEST_F(HeldCollectionsTest, FailedUpdateEndsTheWalkWithoutTheEventsBehindIt) {
  Change(a_);
  Change(b_);
  orders_.Database->Refuses = true;
  EXPECT_TRUE(Thrown([&] { context_->Update(); }));
  EXPECT_EQ(heard_, "<A");
}

TEST_F(HeldCollectionsTest, DeleteFlagsEveryOneAndWritesNothing) {
  context_->Delete();
  EXPECT_EQ(heard_, "[A.B.]");
  EXPECT_TRUE(has(b_->Item(3)->StateFlags(), sfpendingdelete));
  EXPECT_EQ(orders_.Database->Writes(), 0);
}

TEST_F(HeldCollectionsTest, CollectionCancelledByAListenerIsNotFlagged) {
  context_->BeforeItemPendingDelete += [](IBusinessObjects& item, bool& Cancel) { Cancel = item.Name() == "A"; };
  context_->Delete();
  EXPECT_EQ(heard_, "[AB.]");
  EXPECT_FALSE(has(a_->Item(1)->StateFlags(), sfpendingdelete));
  EXPECT_TRUE(has(b_->Item(1)->StateFlags(), sfpendingdelete));
}

TEST_F(HeldCollectionsTest, CollectionThatMayNotBeDeletedIsPassedOverSilently) {
  orders_.Action->SetEditFlags(efUpdate);
  context_->Delete();
  EXPECT_EQ(heard_, "[]");
}

TEST_F(HeldCollectionsTest, CancelledDeleteFlagsNothing) {
  context_->BeforePendingDelete += [](bool& Cancel) { Cancel = true; };
  context_->Delete();
  EXPECT_EQ(heard_, "[");
  EXPECT_EQ(a_->StateFlags(), sfpersistent);
}

TEST_F(HeldCollectionsTest, UpdateAfterDeleteDeletesTheRows) {
  context_->Delete();
  context_->Update();
  EXPECT_EQ(orders_.Database->Deletes, 6);
}

TEST_F(HeldCollectionsTest, UndoTakesBackWhatIsNotWrittenWithoutEvents) {
  context_->Delete();
  heard_.clear();
  context_->Undo();
  EXPECT_EQ(a_->Item(1)->StateFlags(), sfpersistent);
  EXPECT_EQ(b_->Item(3)->StateFlags(), sfpersistent);
  EXPECT_EQ(heard_, "");
}

TEST_F(HeldCollectionsTest, RemovedCollectionIsWalkedNoMore) {
  Change(a_);
  context_->Remove("A");
  context_->Update();
  EXPECT_EQ(heard_, "<>");
}

TEST_F(HeldCollectionsTest, CollectionAddedByAListenerIsNotPartOfTheWalk) {
  Change(a_);
  const BusinessObjectsPtr late = orders_.Collection({.Name = "C", .ObjectType = otModel});
  Change(late);
  context_->BeforeItemUpdate += [&](IBusinessObjects&, bool&) {
    if (context_->Count() == 2) context_->Add(late);
  };
  context_->Update();
  EXPECT_EQ(heard_, "<A.>");
}

class FixedCollection final : public HostCollection {
 public:
  FixedCollection(std::string name, bool isModifiable) : name_(std::move(name)), isModifiable_(isModifiable) {}
  std::string Name() override { return name_; }
  bool Modifiable(bool) override { return isModifiable_; }

 private:
  std::string name_;
  bool isModifiable_;
};

TEST_F(HeldCollectionsTest, ModifiableIsThatOfAllOrOfAny) {
  const BusinessContextPtr context = Framework{}.CreateBusinessContext();
  EXPECT_TRUE(context->Modifiable());
  EXPECT_FALSE(context->Modifiable(false));
  context->Add(Make<FixedCollection>("open", true));
  context->Add(Make<FixedCollection>("shut", false));
  EXPECT_FALSE(context->Modifiable());
  EXPECT_TRUE(context->Modifiable(false));
  context->Remove("open");
  EXPECT_FALSE(context->Modifiable(false));
}

}  // namespace
}  // namespace velmoria::test
