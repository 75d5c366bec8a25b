#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/bound_business_objects_fixture.h"

namespace velmoria::test {
namespace {

class DispatcherTest : public BoundBusinessObjectsTest {
 protected:
  BusinessObjectsPtr dispatcher_ = orders_.Collection({.ObjectType = otModel, .CollectionType = cltDispatcher});
};

TEST_F(DispatcherTest, GivesAnotherObjectEachTime) {
  const auto first = dispatcher_->Item(1);
  EXPECT_NE(dispatcher_->Item(1), first);
  EXPECT_EQ(IdOf(*dispatcher_->Item(1)), 1);
}

TEST_F(DispatcherTest, RefusesWhatNeedsMembersBeforeAnyEvent) {
  bool asked = false;
  dispatcher_->BeforeUpdate += [&](bool&) { asked = true; };
  dispatcher_->BeforePendingDelete += [&](bool&) { asked = true; };
  const RaisedExpectation expected{.Text = "CollectionType: 'Dispatcher'", .Count = 1};
  ExpectRaised(errNotSupported_CollectionType, [&] { dispatcher_->Update(); }, expected);
  ExpectRaised(errNotSupported_CollectionType, [&] { dispatcher_->Delete(); }, expected);
  ExpectRaised(errNotSupported_CollectionType, [&] { dispatcher_->Undo(); }, expected);
  ExpectRaised(errNotSupported_CollectionType, [&] { dispatcher_->Dirty(); }, expected);
  ExpectRaised(errNotSupported_CollectionType, [&] { dispatcher_->NewEnum(); }, expected);
  EXPECT_FALSE(asked);
}

TEST_F(DispatcherTest, RefusalNamesTheOperationOfTheInterface) {
  const std::pair<const char*, void (*)(BusinessObjects&)> operations[] = {
      {"IBusinessObjects_Update", [](BusinessObjects& each) { each.Update(); }},
      {"IBusinessObjects_Delete", [](BusinessObjects& each) { each.Delete(); }},
      {"IBusinessObjects_Undo", [](BusinessObjects& each) { each.Undo(); }},
      {"IBusinessObjects_Dirty (Get)", [](BusinessObjects& each) { each.Dirty(); }},
  };
  for (const auto& [routine, operation] : operations) {
    EXPECT_TRUE(Thrown([&] { operation(*dispatcher_); }));
    EXPECT_EQ(apartment_.Messages().Item("15098")->RoutineName(), routine);
    apartment_.Messages().Clear();
  }
}

TEST_F(DispatcherTest, StateFlagsStayThoseOfTheRows) {
  const auto order = dispatcher_->Item(1);
  order->FindProperty("Name")->SetValue("changed");
  EXPECT_EQ(order->StateFlags(), sfdirty | sfpersistent);
  EXPECT_EQ(dispatcher_->StateFlags(), sfpersistent);
}

TEST_F(DispatcherTest, FirstModelOfARowGoesToTheObjectsInMemoryAllTheSame) {
  EXPECT_FALSE(dispatcher_->KeyFormat()->Locked());
  dispatcher_->Item(1);
  EXPECT_TRUE(dispatcher_->KeyFormat()->Locked());
}

TEST_F(DispatcherTest, HeldInAContextItRefusesTheUpdateOfAll) {
  const auto context = Make<BusinessContext>();
  context->Add(dispatcher_);
  ExpectRaised(errNotSupported_CollectionType, [&] { context->Update(); });
}

}  // namespace
}  // namespace velmoria::test
