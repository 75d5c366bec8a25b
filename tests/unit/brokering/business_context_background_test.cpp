#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/broker_fixture.h"

namespace velmoria::test {
namespace {

/// Requests whose result the driver opens in the background.
class BackgroundRequestTest : public BrokerTest {
 protected:
  BackgroundRequestTest() { Design(3); }
  ~BackgroundRequestTest() override { driver_->Release(); }
  IBusinessObjectsPtr Get(bool asyncFlag = true) {
    return context_->GetBusinessObjects({.ClassName = "Order", .AsyncFlag = asyncFlag});
  }
  static bool IsAwaited(IBusinessObjects& orders) { return orders.Details().starts_with("Business Object Count -1"); }
};

TEST_F(BackgroundRequestTest, CollectionIsThereWhileTheDatabaseIsAtWork) {
  driver_->Hold();
  const auto orders = Get();
  EXPECT_TRUE(IsAwaited(*orders));
  driver_->Release();
  EXPECT_EQ(Ids(*orders), "1,2,3");
  EXPECT_EQ(Statements(), 1U);
}

TEST_F(BackgroundRequestTest, LoadedCollectionIsHeldAtOnceAndAskedForOnce) {
  driver_->Hold();
  const GetBusinessObjectsArguments asked{.ClassName = "Order", .AsyncFlag = true, .Name = "Mine"};
  const auto orders = context_->LoadBusinessObjects(asked);
  EXPECT_EQ(context_->LoadBusinessObjects(asked), orders);
  EXPECT_EQ(context_->Item("Mine"), orders);
  driver_->Release();
  EXPECT_EQ(orders->Count(), 3);
  EXPECT_EQ(Statements(), 1U);
}

TEST_F(BackgroundRequestTest, SingleObjectAndNewOnesAreFetchedAtOnceWhateverTheFlagSays) {
  driver_->Rows.resize(1);
  EXPECT_EQ(IdOf(*context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1, .AsyncFlag = true})), 1);
  context_->Execute({.ClassName = "Order", .AsyncFlag = true});
  EXPECT_EQ(driver_->Misuses, 0);
}

TEST_F(BackgroundRequestTest, FailureOfTheDatabaseIsMetByTheRequestOrByWhoeverWaitsAndTheNextOneWorks) {
  driver_->FailName = "ExecDirect";
  ExpectRaised(errRDO_Table, [&] { Get()->Count(); }, {.Text = "orders"});
  driver_->FailName.clear();
  EXPECT_EQ(Ids(*Get()), "1,2,3");
}

TEST_F(BackgroundRequestTest, CollectionWhoseOpeningFailedTellsItOnceAndAsksAgainAtItsNextUse) {
  driver_->Hold();
  const auto orders = Get();
  driver_->Cancel(nullptr);  // what is held fails
  ExpectRaised(errRDO_Table, [&] { orders->Count(); }, {.Text = "orders"});
  driver_->Release();
  EXPECT_EQ(orders->Count(), 3);
  EXPECT_EQ(Ids(*orders), "1,2,3");
  EXPECT_EQ(Statements(), 2U);
}

TEST_F(BackgroundRequestTest, CollectionWhoseOpeningFailedIsReadInPagesAfterAll) {
  design_->Action->SetObjectBuffer(2);
  driver_->Hold();
  const auto orders = Get();
  driver_->Cancel(nullptr);
  ExpectRaised(errRDO_Table, [&] { orders->Item(3); }, {.Text = "orders"});
  driver_->Release();
  EXPECT_EQ(IdOf(*orders->Item(3)), 3);
  EXPECT_EQ(orders->Count(), 3);
}

TEST_F(BackgroundRequestTest, DatabaseThatStaysAwayIsToldByEveryUse) {
  driver_->Hold();
  const auto orders = Get();
  driver_->AwaitHeld();
  driver_->FailName = "ExecDirect";
  driver_->FailNameFrom = driver_->CallsOf["ExecDirect"] + 1;
  driver_->Cancel(nullptr);
  for (int use = 1; use <= 3; ++use) ExpectRaised(errRDO_Table, [&] { orders->Count(); }, {.Text = "orders"});
  driver_->Release();
  driver_->FailName.clear();
  EXPECT_EQ(Ids(*orders), "1,2,3");
  EXPECT_EQ(driver_->Misuses, 0);
}

TEST_F(BackgroundRequestTest, CollectionThatNobodyWaitsForIsLetGoOfQuietly) {
  driver_->Hold();
  Get().reset();
  driver_->Release();
  EXPECT_EQ(Ids(*Get()), "1,2,3");
  EXPECT_EQ(driver_->Misuses, 0);
}

TEST_F(BackgroundRequestTest, ReportOfAContextWaitsForNothing) {
  driver_->Hold();
  context_->LoadBusinessObjects({.ClassName = "Order", .AsyncFlag = true, .Name = "Mine"});
  ExpectRaised(errItem_BusinessObjects, [&] { context_->Item("Other"); }, {.Text = "'Other'"});
  driver_->Release();
  EXPECT_EQ(context_->Item("Mine")->Count(), 3);
}

TEST_F(BackgroundRequestTest, ReportOfAContextReadsNoResultToItsEnd) {
  design_->Action->SetObjectBuffer(1);
  driver_->Rows.resize(1);
  for (int number = 2; number <= 5000; ++number) driver_->Rows.push_back({std::to_string(number), "x"});
  context_->LoadBusinessObjects({.ClassName = "Order", .Name = "Mine"});
  const auto fetches = driver_->CallsOf["FetchScroll"];
  ExpectRaised(errItem_BusinessObjects, [&] { context_->Item("Other"); });
  EXPECT_EQ(driver_->CallsOf["FetchScroll"], fetches);
}

}  // namespace
}  // namespace velmoria::test
