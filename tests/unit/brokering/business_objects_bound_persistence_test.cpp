#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/bound_business_objects_fixture.h"

namespace velmoria::test {
namespace {

class SetupItemTest : public BoundBusinessObjectsTest {
 protected:
  BusinessObjectsPtr collection_ = orders_.Collection();
};

TEST_F(SetupItemTest, MakesANewObjectBehindTheRows) {
  const auto order = collection_->SetupItem();
  EXPECT_EQ(order->StateFlags(), sfNew);
  EXPECT_EQ(collection_->Count(), 4);
  EXPECT_EQ(collection_->Item(4), order);
}

TEST_F(SetupItemTest, NewObjectIsFoundByTheKeyItHasBeenGiven) {
  const auto order = collection_->SetupItem();
  order->FindProperty("Id")->SetValue(77);
  EXPECT_EQ(collection_->Item("77"), order);
}

TEST_F(SetupItemTest, NewObjectIsFoundBeforeAnotherThatWasGivenTheSameKey) {
  const auto order = collection_->SetupItem();
  EXPECT_TRUE(Thrown([&] { collection_->Item("9"); })) << "every row has been seen, the new one, too";
  collection_->Item(1)->FindProperty("Id")->SetValue(77);
  order->FindProperty("Id")->SetValue(77);
  EXPECT_EQ(collection_->Item("77"), order);
  EXPECT_EQ(collection_->Item("1"), collection_->Item(1)) << "still known by the key it was seen with";
}

TEST_F(SetupItemTest, NewObjectIsInsertedByUpdate) {
  const auto order = collection_->SetupItem();
  order->FindProperty("Id")->SetValue(77);
  collection_->Update();
  EXPECT_EQ(orders_.Database->Inserts, 1);
  EXPECT_EQ(order->StateFlags(), sfpersistent);
}

TEST_F(SetupItemTest, NewObjectUnderAnActionWithoutEfUpdateIsPassedOverSilently) {
  orders_.Action->SetEditFlags(efInsert);
  collection_->SetupItem()->FindProperty("Id")->SetValue(77);
  collection_->Update();
  EXPECT_EQ(orders_.Database->Writes(), 0);
}

TEST_F(SetupItemTest, ListenersHearOfItAndMayCancel) {
  std::string heard;
  const auto token = collection_->AfterSetupItem += [&] { heard += "after"; };
  collection_->SetupItem();
  EXPECT_EQ(heard, "after");
  collection_->AfterSetupItem -= token;
  collection_->BeforeSetupItem += [](bool& Cancel) { Cancel = true; };
  EXPECT_EQ(collection_->SetupItem(), nullptr);
  EXPECT_EQ(collection_->Count(), 4);
}

TEST_F(SetupItemTest, DeletedNewObjectNoLongerAnswersToAKey) {
  const auto order = collection_->SetupItem();
  order->FindProperty("Id")->SetValue(77);
  order->Delete();
  EXPECT_EQ(order->StateFlags() & sfdeleted, sfdeleted);
  ExpectRaised(errItem_BusinessObject, [&] { collection_->Item("77"); }, {.Count = 1});
}

class BoundPersistenceTest : public BoundBusinessObjectsTest {
 protected:
  BoundPersistenceTest() {
    collection_->BeforeUpdate += [this](bool&) { heard_ += "<"; };
    collection_->BeforeItemUpdate += [this](IBusinessObject& item, bool&) { heard_ += item.Key(); };
    collection_->AfterItemUpdate += [this](IBusinessObject&) { heard_ += "."; };
    collection_->AfterUpdate += [this] { heard_ += ">"; };
  }
  BusinessObjectsPtr collection_ = orders_.Collection({.ObjectType = otModel, .CollectionType = cltOptimized});
  std::string heard_;
};

TEST_F(BoundPersistenceTest, UpdateOfAnUntouchedCollectionVisitsNoMember) {
  collection_->Update();
  EXPECT_EQ(heard_, "<>");
  EXPECT_EQ(orders_.Database->Reads, 1);
}

TEST_F(BoundPersistenceTest, UpdateWritesTheChangedMembers) {
  collection_->Item(3)->FindProperty("Name")->SetValue("new name");
  EXPECT_TRUE(collection_->Dirty());
  collection_->Update();
  EXPECT_EQ(heard_, "<3.>");
  EXPECT_EQ(orders_.Database->WrittenRows, std::vector<std::int32_t>{2});
  EXPECT_FALSE(collection_->Dirty());
}

TEST_F(BoundPersistenceTest, DeleteBuildsAndFlagsEveryRowAndUpdateDeletesThem) {
  collection_->Delete();
  EXPECT_EQ(collection_->StateFlags(), sfpersistent | sfpendingdelete);
  EXPECT_EQ(orders_.Database->Writes(), 0);
  collection_->Update();
  EXPECT_EQ(orders_.Database->Deletes, 3);
}

TEST_F(BoundPersistenceTest, UndoTakesTheDeletionBack) {
  collection_->Delete();
  collection_->Undo();
  EXPECT_EQ(collection_->StateFlags(), sfpersistent);
  collection_->Update();
  EXPECT_EQ(orders_.Database->Writes(), 0);
}

TEST_F(BoundPersistenceTest, UndoRestoresChangesAndGivesNewObjectsUpWithoutEvents) {
  const auto first = collection_->Item(1);
  const auto added = collection_->SetupItem();
  first->FindProperty("Name")->SetValue("new name");
  added->FindProperty("Id")->SetValue(77);
  collection_->Undo();
  EXPECT_EQ(first->StateFlags(), sfpersistent);
  EXPECT_EQ(added->StateFlags(), sfdeleted);
  EXPECT_EQ(heard_, "");
}

TEST_F(BoundPersistenceTest, UndoEndsAtAMemberThatIsGoneFromTheDatabase) {
  for (const auto& order : *collection_) order->FindProperty("Name")->SetValue("new name");
  collection_->Item(2)->Delete();
  collection_->Item(2)->Update();
  ExpectRaised(errPersistence_Deleted, [&] { collection_->Undo(); });
  EXPECT_EQ(collection_->Item(1)->StateFlags(), sfpersistent);
  EXPECT_EQ(collection_->Item(3)->StateFlags(), sfpersistent | sfdirty);
}

TEST_F(BoundPersistenceTest, SecondUpdatePassesDeletedMembersOver) {
  collection_->Delete();
  collection_->Update();
  heard_.clear();
  collection_->Update();
  EXPECT_EQ(heard_, "<>");
  EXPECT_EQ(collection_->StateFlags(), sfdeleted);
}

TEST_F(BoundPersistenceTest, ChangedMemberThatIsFlaggedIsDeletedAndNotUpdated) {
  collection_->Item(2)->FindProperty("Name")->SetValue("new name");
  collection_->Item(2)->Delete();
  collection_->Update();
  EXPECT_EQ(orders_.Database->Deletes, 1);
  EXPECT_EQ(orders_.Database->Updates, 0);
}

TEST_F(BoundPersistenceTest, OtherKeysAreStillFoundAfterARowHasBeenDeleted) {
  const auto second = collection_->Item(2);
  second->Delete();
  second->Update();
  EXPECT_EQ(IdOf(*collection_->Item("3")), 3);
  ExpectRaised(errItem_BusinessObject, [&] { collection_->Item("9"); }, {.Count = 1});
}

TEST_F(BoundPersistenceTest, DeletedObjectStaysUnderTheKeyItWasSeenWith) {
  const auto second = collection_->Item(2);
  second->Delete();
  second->Update();
  EXPECT_EQ(collection_->Item("2"), second);
  EXPECT_EQ(second->StateFlags(), sfdeleted);
}

}  // namespace
}  // namespace velmoria::test
