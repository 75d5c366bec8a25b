#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/bound_business_objects_fixture.h"

namespace velmoria::test {
namespace {

/// A collection over a result whose opening is still under way when it is asked for the first few times.
class WaitingTest : public BoundBusinessObjectsTest {
 protected:
  BusinessObjectsPtr Waiting(int polls, zCollectionTypes collectionType = cltOptimized) {
    orders_.Database->AsyncPolls = polls;
    auto collection = Make<BusinessObjects>();
    collection->SetupBound({.DatabaseAgent = orders_.Agent, .ObjectType = otModel, .CollectionType = collectionType});
    return collection;
  }
  std::int32_t Slept() const { return apartment_.Clock().SleptMilliseconds; }
};

TEST_F(WaitingTest, SetUpAsksOnceAndDoesNotWait) {
  const auto orders = Waiting(3);
  EXPECT_EQ(Slept(), 0);
  EXPECT_EQ(orders_.Database->AsyncPolls, 2);
  EXPECT_EQ(orders_.Database->Reads, 0);
}

TEST_F(WaitingTest, FirstUseSleepsATenthOfASecondBetweenLooksUntilTheResultIsThere) {
  const auto orders = Waiting(4);
  EXPECT_EQ(IdOf(*orders->Item(2)), 2);
  EXPECT_EQ(Slept(), 300);
  EXPECT_EQ(orders->Count(), 3);
  EXPECT_EQ(Slept(), 300);
}

TEST_F(WaitingTest, ResultThatIsThereAtSetUpIsTakenAtOnce) {
  const auto orders = Waiting(0);
  EXPECT_EQ(orders_.Database->Reads, 1);
  EXPECT_EQ(Ids(*orders), "1,2,3");
  EXPECT_EQ(Slept(), 0);
}

TEST_F(WaitingTest, EverythingThatNeedsRowsWaitsForThem) {
  const std::pair<const char*, void (*)(BusinessObjects&)> operations[] = {
      {"Count", [](BusinessObjects& each) { EXPECT_EQ(each.Count(), 3); }},
      {"Item", [](BusinessObjects& each) { EXPECT_EQ(IdOf(*each.Item(3)), 3); }},
      {"Item by key", [](BusinessObjects& each) { EXPECT_EQ(IdOf(*each.Item("3")), 3); }},
      {"NewEnum", [](BusinessObjects& each) { EXPECT_EQ(each.NewEnum().size(), 3U); }},
      {"SetupItem", [](BusinessObjects& each) { EXPECT_EQ(each.SetupItem()->StateFlags(), sfNew); }},
      {"Delete", [](BusinessObjects& each) { each.Delete(); }},
      {"StateFlags", [](BusinessObjects& each) { EXPECT_EQ(each.StateFlags(), sfpersistent); }},
      {"Modifiable", [](BusinessObjects& each) { EXPECT_TRUE(each.Modifiable()); }},
      {"Statistics", [](BusinessObjects& each) { EXPECT_NE(each.Statistics(), nullptr); }},
      {"CollectionType", [](BusinessObjects& each) { each.SetCollectionType(cltInitialized); }}};
  for (const auto& [name, operation] : operations) {
    SCOPED_TRACE(name);
    orders_.Fill({});
    const auto orders = Waiting(2);
    apartment_.Clock().SleptMilliseconds = 0;
    operation(*orders);
    EXPECT_EQ(Slept(), 100);
    EXPECT_EQ(orders_.Database->Reads, 1);
  }
}

TEST_F(WaitingTest, InitializedCollectionWaitsAtSetUp) {
  const auto orders = Waiting(2, cltInitialized);
  EXPECT_EQ(Slept(), 100);
  EXPECT_EQ(orders->Statistics()->Item("Build Initialized Collection")->SubjectCount(), 3);
}

TEST_F(WaitingTest, WhatNeedsNoRowsDoesNotWait) {
  const auto orders = Waiting(5);
  orders->Update();
  orders->Undo();
  EXPECT_FALSE(orders->Dirty());
  EXPECT_EQ(orders->EditFlags(), efAll);
  EXPECT_FALSE(orders->KeyFormat()->Locked());
  EXPECT_EQ(orders->Item(true), nullptr);
  EXPECT_EQ(Slept(), 0);
}

TEST_F(WaitingTest, DetailsOfAnAwaitedResultCountMinusOneInsteadOfWaiting) {
  EXPECT_EQ(Waiting(5)->Details(), "Business Object Count -1\r\nFake agent");
  EXPECT_EQ(Slept(), 0);
}

TEST_F(WaitingTest, FailureOfTheOpeningIsMetByWhoeverWaitsAndTheNextCallAsksAgain) {
  const auto orders = Waiting(2);
  orders_.Database->FailsReads = true;
  ExpectReported(RuntimeFailure::DriverFailure, [&] { orders->Count(); });
  orders_.Database->FailsReads = false;
  EXPECT_EQ(orders->Count(), 3);
}

TEST_F(WaitingTest, FailureOfTheOpeningIsToldToEveryCallUntilTheDatabaseIsBack) {
  const auto orders = Waiting(2);
  orders_.Database->FailsReads = true;
  for (int use = 1; use <= 3; ++use) ExpectReported(RuntimeFailure::DriverFailure, [&] { orders->Item(1); });
  EXPECT_EQ(orders->Details(), "Business Object Count -1\r\nFake agent");
  orders_.Database->FailsReads = false;
  EXPECT_EQ(Ids(*orders), "1,2,3");
  EXPECT_EQ(orders_.Database->Reads, 1);
}

TEST_F(WaitingTest, AgentThatIsOpeningNothingIsAskedForTheFirstPageAtSetUp) {
  const auto orders = Waiting(-1);
  EXPECT_EQ(orders_.Database->Reads, 1);
  EXPECT_EQ(Ids(*orders), "1,2,3");
  EXPECT_EQ(Slept(), 0);
}

TEST_F(WaitingTest, CollectionThatCannotHaveAResultIsRefusedAtSetUp) {
  const auto blind = Make<DatabaseAgent>();
  blind->Initialize(orders_.Action, nullptr);
  for (const auto& agent : {blind, DatabaseAgentPtr()}) {
    ExpectReported(RuntimeFailure::ObjectNotSet,
                   [&] { Make<BusinessObjects>()->SetupBound({.DatabaseAgent = agent, .ObjectType = otModel}); });
  }
}

}  // namespace
}  // namespace velmoria::test
