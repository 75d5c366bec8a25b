#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/business_context_fixture.h"

namespace velmoria::test {
namespace {

TEST_F(BusinessContextTest, IdentifierBuildsTheParametersBeforeTheUsageOfTheActionIsAsked) {
  Framework{}.Databases()->Item("Shop")->SetAutoConnect(false);
  design_.Order->Actions()->Item("Get")->SetUsageFlags(ufProperties);
  const auto context = NewContext();
  ExpectRaised(errNotSupported_BusinessObjects,
               [&] { context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1}); });
  ExpectRaised(errNotSupported_AutoConnect,
               [&] { context->GetBusinessObject({.Identifier = design_.Order->CreateIdentifier()}); });
}

TEST_F(BusinessContextTest, KeyValuesCountOnlyBehindTheOneBefore) {
  const auto context = NewContext({.ClassName = "Line"});
  Thrown([&] { context->GetBusinessObject({.ClassName = "Line", .KeyValue1 = 7, .KeyValue3 = 9}); });
  EXPECT_EQ(context->KeyValue1(), Variant(7));
  EXPECT_TRUE(context->KeyValue2().IsEmpty());
  EXPECT_TRUE(context->KeyValue3().IsEmpty());
}

TEST_F(BusinessContextTest, LockedSelectionIsKeptSilentlyByARequest) {
  const auto context = NewContext({.ServerName = "Sales",
                                   .ServerLocked = true,
                                   .ClassName = "Order",
                                   .ClassLocked = true,
                                   .ActionName = "All",
                                   .ActionLocked = true});
  Thrown([&] { context->GetBusinessObjects({.ClassName = "Item", .ActionName = "Get", .ServerName = "Stock"}); });
  EXPECT_EQ(context->ServerName() + context->ClassName() + context->ActionName(), "SalesOrderAll");
}

TEST_F(BusinessContextTest, ActionThatBuildsNoObjectsRefusesBeforeAnyDatabaseWork) {
  design_.Order->Actions()->Item("Get")->SetUsageFlags(ufProperties);
  const auto context = NewContext();
  ExpectRaised(errNotSupported_BusinessObjects,
               [&] { context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1}); },
               {.Text = "Action: 'Get'  UsageFlags: 'Properties'"});
  ExpectRaised(errNotSupported_BusinessObjects, [&] { context->GetBusinessObjects({.ClassName = "Order"}); });
  EXPECT_EQ(Framework{}.ConnectionContext()->Item("")->Count(), 0);
}

TEST_F(BusinessContextTest, RequestWithoutAnySelectionFailsAsObjectNotSet) {
  const auto context = NewContext();
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context->GetBusinessObject(); });
}

TEST_F(BusinessContextTest, KeyValueOnAClassWithoutSingleActionFailsInTheLookup) {
  design_.Order->SetSingleActionName("");
  const auto context = NewContext();
  ExpectRaised(errItem_Action, [&] { context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1}); },
               {.Text = "Index: ''"});
}

TEST_F(BusinessContextTest, FailedOpenIsReportedAsTheConnection) {
  const auto context = NewContext();
  ExpectRaised(errRDO_Connection, [&] { context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1}); });
}

}  // namespace
}  // namespace velmoria::test
