#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/named_objects_fixture.h"

namespace velmoria::test {
namespace {

class BusinessObjectsPersistenceTest : public BusinessObjectsTest {
 protected:
  BusinessObjectsPersistenceTest() {
    for (const auto& member : {a_, b_, c_}) people_->Add(member);
    people_->BeforeUpdate += [this](bool&) { heard_ += "<"; };
    people_->BeforeItemUpdate += [this](IBusinessObject& item, bool&) { heard_ += item.Key(); };
    people_->AfterItemUpdate += [this](IBusinessObject&) { heard_ += "."; };
    people_->AfterUpdate += [this] { heard_ += ">"; };
  }

  BusinessObjectsPtr people_ = NewCollection();
  Ref<NamedObject> a_ = Named("a");
  Ref<NamedObject> b_ = Named("b");
  Ref<NamedObject> c_ = Named("c");
  std::string heard_;
};

TEST_F(BusinessObjectsPersistenceTest, UntouchedMembersAreNotVisited) {
  people_->Update();
  EXPECT_EQ(heard_, "<>");
}

TEST_F(BusinessObjectsPersistenceTest, DirtyMembersAreUpdatedInOrder) {
  a_->IsDirty = c_->IsDirty = true;
  people_->Update();
  EXPECT_EQ(heard_, "<a.c.>");
  EXPECT_EQ(a_->Updates + b_->Updates + c_->Updates, 2);
}

TEST_F(BusinessObjectsPersistenceTest, CancelledMemberIsSkippedAndTheOthersAreWritten) {
  a_->IsDirty = b_->IsDirty = c_->IsDirty = true;
  people_->BeforeItemUpdate += [](IBusinessObject& item, bool& Cancel) { Cancel = item.Key() == "b"; };
  people_->Update();
  EXPECT_EQ(heard_, "<a.bc.>");
  EXPECT_EQ(b_->Updates, 0);
}

TEST_F(BusinessObjectsPersistenceTest, CancelledUpdateWritesNothingAndEndsSilently) {
  a_->IsDirty = true;
  people_->BeforeUpdate += [](bool& Cancel) { Cancel = true; };
  people_->Update();
  EXPECT_EQ(heard_, "<");
}

TEST_F(BusinessObjectsPersistenceTest, FailureEndsTheWalkAndWhatWasWrittenStays) {
  a_->IsDirty = b_->IsDirty = c_->IsDirty = true;
  b_->Fails = true;
  ExpectReported(RuntimeFailure::DeviceError, [&] { people_->Update(); });
  EXPECT_EQ(heard_, "<a.b");
  EXPECT_EQ(a_->Updates, 1);
}

TEST_F(BusinessObjectsPersistenceTest, DirtyMemberWithoutEfUpdateIsPassedSilently) {
  a_->IsDirty = true;
  a_->Edits = efInsert;
  people_->Update();
  EXPECT_EQ(heard_, "<>");
}

TEST_F(BusinessObjectsPersistenceTest, PendingDeleteUnderAnActionWithoutEfDeleteIsNotVisited) {
  a_->State = b_->State = sfpersistent | sfpendingdelete;
  b_->Edits = efUpdate;
  people_->Update();
  EXPECT_EQ(heard_, "<a.>");
}

TEST_F(BusinessObjectsPersistenceTest, DeleteFlagsEachMemberThatMayBeDeleted) {
  b_->Edits = efUpdate;
  c_->State = sfdeleted;
  std::string heard;
  people_->BeforePendingDelete += [&](bool&) { heard += "<"; };
  people_->BeforeItemPendingDelete += [&](IBusinessObject& item, bool&) { heard += item.Key(); };
  people_->AfterItemPendingDelete += [&](IBusinessObject&) { heard += "."; };
  people_->AfterPendingDelete += [&] { heard += ">"; };
  people_->Delete();
  EXPECT_EQ(heard, "<a.>");
  EXPECT_EQ(a_->Deletes + b_->Deletes + c_->Deletes, 1);
}

TEST_F(BusinessObjectsPersistenceTest, DeleteEndsAtTheLastMemberThoughAListenerSuppliesMore) {
  people_->ItemNotFound += [&](const Variant&, IBusinessObjectPtr& Item) { Item = a_; };
  people_->Delete();
  EXPECT_EQ(a_->Deletes, 1);
}

TEST_F(BusinessObjectsPersistenceTest, UndoReachesEveryMemberWithoutEvents) {
  people_->Undo();
  EXPECT_EQ(a_->Undos + b_->Undos + c_->Undos, 3);
  EXPECT_EQ(heard_, "");
}

TEST_F(BusinessObjectsPersistenceTest, DirtyIsThatOfAnyMember) {
  EXPECT_FALSE(people_->Dirty());
  c_->IsDirty = true;
  EXPECT_TRUE(people_->Dirty());
}

TEST_F(BusinessObjectsPersistenceTest, HeldCollectionsOfAContextAreWalkedAlike) {
  auto context = Make<BusinessContext>();
  context->Add(people_);
  a_->IsDirty = true;
  context->Update();
  EXPECT_EQ(heard_, "<a.>");
  context->Undo();
  EXPECT_EQ(a_->Undos, 1);
  context->Delete();
  EXPECT_EQ(b_->Deletes, 1);
}

}  // namespace
}  // namespace velmoria::test
