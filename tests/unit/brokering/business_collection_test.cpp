#include "velmoria/brokering/business_collection.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

struct Operation {
  const char* Called;
  void (*Do)(IBusinessObjects& objects);
};

void PrintTo(const Operation& operation, std::ostream* stream) { *stream << operation.Called; }

// All of the interface but the handshake.
constexpr Operation kOperations[] = {
    {"Name", [](IBusinessObjects& objects) { objects.Name(); }},
    {"SetName", [](IBusinessObjects& objects) { objects.SetName("x"); }},
    {"Count", [](IBusinessObjects& objects) { objects.Count(); }},
    {"Item", [](IBusinessObjects& objects) { objects.Item(1); }},
    {"NewEnum", [](IBusinessObjects& objects) { objects.NewEnum(); }},
    {"begin", [](IBusinessObjects& objects) { objects.begin(); }},
    {"Add", [](IBusinessObjects& objects) { objects.Add(Make<BusinessObject>()); }},
    {"Remove", [](IBusinessObjects& objects) { objects.Remove(1); }},
    {"SetupItem", [](IBusinessObjects& objects) { objects.SetupItem(); }},
    {"Update", [](IBusinessObjects& objects) { objects.Update(); }},
    {"Delete", [](IBusinessObjects& objects) { objects.Delete(); }},
    {"Undo", [](IBusinessObjects& objects) { objects.Undo(); }},
    {"Dirty", [](IBusinessObjects& objects) { objects.Dirty(); }},
    {"Modifiable", [](IBusinessObjects& objects) { objects.Modifiable(); }},
    {"EditFlags", [](IBusinessObjects& objects) { objects.EditFlags(); }},
    {"StateFlags", [](IBusinessObjects& objects) { objects.StateFlags(); }},
    {"Details", [](IBusinessObjects& objects) { objects.Details(); }},
    {"CollectionType", [](IBusinessObjects& objects) { objects.CollectionType(); }},
    {"SetCollectionType", [](IBusinessObjects& objects) { objects.SetCollectionType(cltOptimized); }},
    {"ObjectType", [](IBusinessObjects& objects) { objects.ObjectType(); }},
    {"KeyFormat", [](IBusinessObjects& objects) { objects.KeyFormat(); }},
    {"SetKeyFormat", [](IBusinessObjects& objects) { objects.SetKeyFormat({}); }},
    {"Statistics", [](IBusinessObjects& objects) { objects.Statistics(); }},
    {"Locked", [](IBusinessObjects& objects) { objects.Locked(); }},
    {"SetLocked", [](IBusinessObjects& objects) { objects.SetLocked(true); }},
    {"SupportsAdd", [](IBusinessObjects& objects) { objects.SupportsAdd(); }},
    {"SetSupportsAdd", [](IBusinessObjects& objects) { objects.SetSupportsAdd(true); }},
    {"SupportsRemove", [](IBusinessObjects& objects) { objects.SupportsRemove(); }},
    {"SetSupportsRemove", [](IBusinessObjects& objects) { objects.SetSupportsRemove(true); }},
};

class OperationBeforeSetupTest : public testing::TestWithParam<Operation> {
 protected:
  ScopedApartment apartment_;
};

TEST_P(OperationBeforeSetupTest, IsAnObjectNotSetAndLeavesNoMessage) {
  const auto orders = Make<BusinessCollection>();
  const auto error = Thrown([&] { GetParam().Do(*orders); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Number(), 91);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

INSTANTIATE_TEST_SUITE_P(Table, OperationBeforeSetupTest, testing::ValuesIn(kOperations));

class BusinessCollectionTest : public testing::Test {
 protected:
  static Ref<BusinessCollection> Around(const BusinessObjectsPtr& inner) {
    const auto collection = Make<BusinessCollection>();
    collection->Setup(inner);
    return collection;
  }
  static BusinessObjectsPtr HandFilled() {
    return dynamic_pointer_cast<BusinessObjects>(Framework{}.CreateBusinessObjects({.Name = "Mine"}));
  }

  ScopedApartment apartment_;
  BoundOrders rows_;
  BusinessObjectsPtr bound_ = rows_.Collection();
  Ref<BusinessCollection> orders_ = Around(bound_);
  BusinessObjectsPtr free_ = HandFilled();
  Ref<BusinessCollection> mine_ = Around(free_);
};

TEST_F(BusinessCollectionTest, KeepsTheBusinessObjectsThatTheHandshakeGives) {
  EXPECT_EQ(orders_->GetBusinessObjects(), bound_);
  EXPECT_EQ(orders_->ReportedType(), "BusinessCollection");
  EXPECT_EQ(Make<BusinessCollection>()->GetBusinessObjects(), nullptr);
}

TEST_F(BusinessCollectionTest, AnswersWithTheMembersOfItsBusinessObjects) {
  EXPECT_EQ(orders_->Count(), 3);
  EXPECT_EQ(orders_->Item("2"), bound_->Item(2));
  EXPECT_EQ(orders_->NewEnum(), bound_->NewEnum());
  EXPECT_EQ(orders_->Details(), bound_->Details());
  EXPECT_EQ(orders_->Statistics(), bound_->Statistics());
}

TEST_F(BusinessCollectionTest, AnswersWithTheStateOfItsBusinessObjects) {
  orders_->Item(1)->FindProperty("Name")->SetValue("new");
  rows_.Action->SetEditFlags(efUpdate);
  EXPECT_TRUE(orders_->Dirty());
  EXPECT_EQ(orders_->StateFlags(), sfpersistent | sfdirty);
  EXPECT_EQ(orders_->EditFlags(), efUpdate);
  EXPECT_TRUE(orders_->Modifiable());
  EXPECT_EQ(orders_->ObjectType(), otModel);
}

TEST_F(BusinessCollectionTest, ModifiableTellsAllFromAny) {
  ASSERT_EQ(mine_->Count(), 0) << "an empty collection answers with the question";
  EXPECT_TRUE(mine_->Modifiable());
  EXPECT_FALSE(mine_->Modifiable(false));
}

TEST_F(BusinessCollectionTest, AddsAndRemovesInItsBusinessObjects) {
  mine_->Add(bound_->Item(1));
  mine_->Add(bound_->Item(2), {.Before = 1});
  EXPECT_EQ(Ids(*free_), "2,1");
  mine_->Remove(1);
  EXPECT_EQ(Ids(*free_), "1");
}

TEST_F(BusinessCollectionTest, HandsItsSettingsOn) {
  mine_->SetName("Yours");
  mine_->SetSupportsAdd(false);
  mine_->SetSupportsRemove(false);
  const auto format = Framework{}.CreateKeyFormat({.Separator = "-"});
  mine_->SetKeyFormat(format);
  mine_->SetLocked(true);
  orders_->SetCollectionType(cltDispatcher);
  EXPECT_EQ(free_->Name(), "Yours");
  EXPECT_FALSE(free_->SupportsAdd() || free_->SupportsRemove());
  EXPECT_EQ(free_->KeyFormat(), format);
  EXPECT_TRUE(free_->Locked());
  EXPECT_EQ(bound_->CollectionType(), cltDispatcher);
}

TEST_F(BusinessCollectionTest, AnswersWithTheSettingsOfItsBusinessObjects) {
  free_->SetLocked(true);
  EXPECT_EQ(mine_->Name(), "Mine");
  EXPECT_TRUE(mine_->Locked());
  EXPECT_TRUE(mine_->SupportsAdd() && mine_->SupportsRemove());
  EXPECT_FALSE(orders_->SupportsAdd() || orders_->SupportsRemove());
  EXPECT_EQ(mine_->KeyFormat(), free_->KeyFormat());
  EXPECT_EQ(mine_->CollectionType(), cltInitialized);
}

TEST_F(BusinessCollectionTest, WritesDeletesAndTakesBackThroughItsBusinessObjects) {
  orders_->Item(1)->FindProperty("Name")->SetValue("new");
  orders_->Update();
  EXPECT_EQ(rows_.Database->Updates, 1);
  orders_->Delete();
  EXPECT_EQ(bound_->Item(3)->StateFlags(), sfpersistent | sfpendingdelete);
  orders_->Undo();
  EXPECT_EQ(bound_->Item(3)->StateFlags(), sfpersistent);
}

TEST_F(BusinessCollectionTest, MakesNewObjectsInItsBusinessObjects) {
  const auto added = orders_->SetupItem();
  EXPECT_EQ(added->StateFlags(), sfNew);
  EXPECT_TRUE(has(bound_->StateFlags(), sfNew));
}

TEST_F(BusinessCollectionTest, FailureIsThatOfItsBusinessObjects) {
  ExpectRaised(errPersistence_Row, [&] { orders_->Item(4); }, {.Text = "Row: 3  Count: 3"});
}

TEST_F(BusinessCollectionTest, IsWalkedAsItsBusinessObjectsAre) {
  std::string seen;
  for (const auto& order : *orders_) seen += order->Key();
  for (const auto& order : orders_) seen += order->Key();
  EXPECT_EQ(seen, "123123");
}

TEST_F(BusinessCollectionTest, DroppedDuringTheWalkIsWalkedToTheEnd) {
  bound_.reset();
  std::string seen;
  for (const auto& order : orders_) {
    orders_.reset();
    seen += order->Key();
  }
  EXPECT_EQ(seen, "123");
}

TEST_F(BusinessCollectionTest, NobodyButTheWalkNeedsToHoldIt) {
  std::string seen;
  for (const auto& order : Around(rows_.Collection())) seen += order->Key();
  EXPECT_EQ(seen, "123");
}

/// A host class with a setup and a walk of its own.
class LastFirst final : public BusinessCollection {
 public:
  void Setup(BusinessObjectsPtr businessObjects) override {
    BusinessCollection::Setup(std::move(businessObjects));
    SetName("Last first");
  }
  std::vector<IBusinessObjectPtr> NewEnum() override {
    auto members = BusinessCollection::NewEnum();
    return {members.rbegin(), members.rend()};
  }
};

TEST_F(BusinessCollectionTest, ClassMayLookAtItsDataBehindTheSetupOfTheBase) {
  const auto reversed = Make<LastFirst>();
  reversed->Setup(free_);
  EXPECT_EQ(free_->Name(), "Last first");
}

TEST_F(BusinessCollectionTest, WalkFollowsTheClassThatOrdersItsMembersAnew) {
  free_->Add(bound_->Item(1));
  free_->Add(bound_->Item(2));
  const auto reversed = Make<LastFirst>();
  reversed->Setup(free_);
  std::string seen;
  for (const auto& order : reversed) seen += order->Key();
  EXPECT_EQ(seen, "21");
}

}  // namespace
}  // namespace velmoria::test
