#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/broker_fixture.h"

namespace velmoria::test {
namespace {

constexpr const char* kText = "delete from orders where Id = ?";

/// A statement with one parameter, which changes rows and gives none.
class BusinessContextExecuteTest : public BrokerTest {
 protected:
  BusinessContextExecuteTest() {
    Design(0, {.SourceType = stSQL, .SourceText = kText});
    design_->Source->Parameters()->SetupItem(
        {.Name = "Id", .DataType = dtLongInteger, .SourceName = "Id", .Flags = pfInput | pfRequired});
  }
  PropertiesPtr Parameters(std::int32_t id) const {
    auto parameters = design_->Action->CreateParameters();
    parameters->Item("Id")->SetValue(id);
    return parameters;
  }
  std::size_t Executions() const {
    return static_cast<std::size_t>(std::count(driver_->Texts.begin(), driver_->Texts.end(), kText));
  }
};

TEST_F(BusinessContextExecuteTest, StatementIsRunOnceWithItsParameters) {
  context_->Execute({.ClassName = "Order", .Parameters = Parameters(7)});
  EXPECT_EQ(Executions(), 1U);
  ASSERT_EQ(driver_->Parameters.size(), 1U);
  EXPECT_FALSE(driver_->Parameters[0].IsNull);
}

TEST_F(BusinessContextExecuteTest, WithoutArgumentsTheSelectionHeldIsRepeated) {
  context_->Execute({.ClassName = "Order", .Parameters = Parameters(7)});
  context_->Execute();
  EXPECT_EQ(Executions(), 2U);
}

TEST_F(BusinessContextExecuteTest, ParametersAloneAreASelection) {
  context_->Execute({.ClassName = "Order", .Parameters = Parameters(7)});
  context_->Execute({.Parameters = Parameters(8)});
  EXPECT_EQ(context_->Parameters()->Item("Id")->Value(), Variant(8));
  EXPECT_EQ(Executions(), 2U);
}

TEST_F(BusinessContextExecuteTest, ActionThatIsNotForThisRefusesBeforeAnyDatabaseWork) {
  design_->Action->SetUsageFlags(ufObjects);
  ExpectRaised(
      errNotSupported_Execute, [&] { context_->Execute({.ClassName = "Order"}); },
      {.Text = "This Action does not support an Execute operation.  Action: 'Get'  UsageFlags: '", .Count = 1});
  EXPECT_TRUE(driver_->Connects.empty());
}

TEST_F(BusinessContextExecuteTest, WithoutAnySelectionItFailsAsObjectNotSet) {
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->Execute(); });
}

TEST_F(BusinessContextExecuteTest, ParameterWithoutItsValueIsReported) {
  ExpectRaised(errProperties_Required, [&] { context_->Execute({.ClassName = "Order"}); },
               {.Text = "Properties: 'Id'"});
}

TEST_F(BusinessContextExecuteTest, ClassWithoutIdentifierPropertiesIsRefusedEvenHere) {
  design_->Class->Properties()->Remove("Id");
  ExpectRaised(errRequires_Identifier, [&] { context_->Execute({.ClassName = "Order", .Parameters = Parameters(7)}); });
}

TEST_F(BusinessContextExecuteTest, StatementThatTheDatabaseRefusesIsReportedAndTheNextOneRuns) {
  driver_->FailName = "Execute";
  const auto failed = Thrown([&] { context_->Execute({.ClassName = "Order", .Parameters = Parameters(7)}); });
  driver_->FailName.clear();
  ASSERT_TRUE(failed);
  EXPECT_NE(failed->Description().find("fake failure"), std::string::npos) << failed->Description();
  EXPECT_NO_THROW(context_->Execute());
}

TEST_F(BusinessContextExecuteTest, ParameterThatTheStatementDoesNotDeclareIsLeftOut) {
  const auto parameters = Parameters(7);
  parameters->SetupItem({.Name = "Status", .Value = "open", .DataType = dtString});
  context_->Execute({.ClassName = "Order", .Parameters = parameters});
  EXPECT_EQ(driver_->Parameters.size(), 1U);
}

TEST_F(BusinessContextExecuteTest, IdentifierHeldByTheContextGoesBeforeTheNames) {
  design_->Server->Classes()->SetupItem({.Name = "Line", .DefaultActionName = "Get"});
  context_->SetClassName("Order");
  context_->SetIdentifier(design_->Class->CreateIdentifier(design_->Key(7)));
  context_->Execute({.ClassName = "Line"});
  EXPECT_EQ(context_->ClassName(), "Order");
  EXPECT_EQ(Executions(), 1U);
}

TEST_F(BusinessContextExecuteTest, WithParametersTheNamesCountAgain) {
  context_->SetClassName("Order");
  context_->SetIdentifier(design_->Class->CreateIdentifier(design_->Key(7)));
  ExpectRaised(errItem_Class, [&] { context_->Execute({.ClassName = "Line", .Parameters = Parameters(7)}); });
}

TEST_F(BusinessContextExecuteTest, NothingStaysOpenBehindIt) {
  context_->Execute({.ClassName = "Order", .Parameters = Parameters(7)});
  const auto handles = driver_->OpenHandles();
  context_->Execute();
  EXPECT_EQ(driver_->OpenHandles(), handles);
  EXPECT_EQ(driver_->Misuses, 0);
}

}  // namespace
}  // namespace velmoria::test
