#include <gtest/gtest.h>

#include "tests/support/bound_orders.h"
#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/broker_fixture.h"

namespace velmoria::test {
namespace {

using BusinessContextBrokerTest = BrokerTest;

TEST_F(BusinessContextBrokerTest, RefusedUsageReachesNoDatabase) {
  Design(1);
  design_->Action->SetUsageFlags(ufExecute);
  ExpectRaised(errNotSupported_BusinessObjects, [&] { context_->GetBusinessObject({.ClassName = "Order"}); });
  ExpectRaised(errNotSupported_BusinessObjects, [&] { context_->GetBusinessObjects({.ClassName = "Order"}); });
  EXPECT_TRUE(driver_->Connects.empty());
}

TEST_F(BusinessContextBrokerTest, OneObjectIsOneStatement) {
  Design(1);
  EXPECT_EQ(IdOf(*context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1})), 1);
  EXPECT_EQ(Statements(), 1U);
}

TEST_F(BusinessContextBrokerTest, SecondLoadUnderTheSameNameIsNoStatement) {
  Design(3);
  const auto first = context_->LoadBusinessObjects({.ClassName = "Order", .Name = "Mine"});
  const auto statements = Statements();
  EXPECT_EQ(context_->LoadBusinessObjects({.ClassName = "Order", .Name = "Mine"}), first);
  EXPECT_EQ(Statements(), statements);
}

TEST_F(BusinessContextBrokerTest, SecondLoadOfPropertiesIsNoStatement) {
  Design(1);
  const auto order = context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1});
  const auto context = order->GetModel()->PropertyContext();
  const auto detail = context->LoadProperties({.ActionName = "Get", .Name = "Detail"});
  const auto statements = Statements();
  EXPECT_EQ(context->LoadProperties({.ActionName = "Get", .Name = "Detail"}), detail);
  EXPECT_EQ(Statements(), statements);
}

TEST_F(BusinessContextBrokerTest, ParametersAloneDoNotSelectProperties) {
  Design(1);
  const auto order = context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1});
  const auto context = order->GetModel()->PropertyContext();
  context->GetProperties("Get");
  const PropertiesPtr before = context->Parameters();
  context->GetProperties("", design_->Key(9));
  EXPECT_EQ(context->Parameters(), before);
}

TEST_F(BusinessContextBrokerTest, WalkOverPagesIsOneStatement) {
  Design(500, {.ObjectBuffer = 50});
  const auto orders = context_->GetBusinessObjects({.ClassName = "Order"});
  EXPECT_EQ(orders->NewEnum().size(), 500U);
  EXPECT_EQ(Statements(), 1U);
}

TEST_F(BusinessContextBrokerTest, DatabaseThatVanishesBetweenTwoPagesIsReportedAndTheNextCallWorks) {
  Design(3000, {.ObjectBuffer = 20});
  const auto orders = context_->GetBusinessObjects({.ClassName = "Order"});
  const auto first = orders->Item(1);
  driver_->FailName = "FetchScroll";
  ExpectRaised(errRDO_Resultset, [&] { orders->Item(2900); });
  EXPECT_EQ(orders->Item(1), first);
  EXPECT_EQ(first->FindProperty("Name")->Value(), Variant("Order 1"));
  driver_->FailName.clear();
  EXPECT_EQ(IdOf(*orders->Item(2900)), 2900);
  EXPECT_EQ(IdOf(*orders->Item(30)), 30);
}

TEST_F(BusinessContextBrokerTest, DriversOwnWordsStandBesideTheNumberAsWarnings) {
  Design(3000, {.ObjectBuffer = 20});
  const auto orders = context_->GetBusinessObjects({.ClassName = "Order"});
  orders->Item(1);
  driver_->FailName = "FetchScroll";
  driver_->Diagnostics = {{"08S01", 17, "the line is cut"}};
  EXPECT_TRUE(Thrown([&] { orders->Item(2900); }));
  const MessagePtr told = apartment_.Messages().Item("17");
  ASSERT_NE(told, nullptr) << apartment_.Messages().Details();
  EXPECT_EQ(told->SeverityFlags(), svfWarning);
  EXPECT_NE(told->Description().find("the line is cut"), std::string::npos);
}

TEST_F(BusinessContextBrokerTest, NothingStaysOpenBehindTheObjects) {
  Design(3);
  const auto idle = [&] { context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1, .ActionName = "Get"}); };
  EXPECT_TRUE(Thrown(idle));
  apartment_.Messages().Clear();
  const auto handles = driver_->OpenHandles();
  for (int i = 0; i < 5; ++i) Thrown(idle);
  EXPECT_EQ(driver_->OpenHandles(), handles);
  EXPECT_EQ(driver_->Misuses, 0);
}

TEST_F(BusinessContextBrokerTest, ContextHoldsWhatItHasLoadedAndNotWhatItHasGot) {
  Design(3000, {.ObjectBuffer = 20});
  context_->GetBusinessObjects({.ClassName = "Order"}).reset();
  const auto handles = driver_->OpenHandles();
  auto got = context_->GetBusinessObjects({.ClassName = "Order"});
  EXPECT_GT(driver_->OpenHandles(), handles);
  got.reset();
  EXPECT_EQ(driver_->OpenHandles(), handles);
  context_->LoadBusinessObjects({.ClassName = "Order", .Name = "Mine"});
  EXPECT_GT(driver_->OpenHandles(), handles);
  context_->Remove("Mine");
  EXPECT_EQ(driver_->OpenHandles(), handles);
}

TEST_F(BusinessContextBrokerTest, LockedActionThatLostItsClassFailsAsObjectNotSet) {
  Design(1);
  context_->GetBusinessObjects({.ClassName = "Order"});
  context_->SetActionLocked(true);
  ExpectRaised(errItem_Class, [&] { context_->SetClassName("Nothing"); });
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->GetBusinessObject(); });
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->GetBusinessObjects(); });
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->Execute(); });
  context_->SetClassName("Order");
  EXPECT_EQ(IdOf(*context_->GetBusinessObject()), 1);
}

}  // namespace
}  // namespace velmoria::test
