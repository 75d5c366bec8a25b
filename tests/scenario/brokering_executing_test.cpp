#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

class ExecutingTest : public BrokeringTest {
 protected:
  ActionPtr Statement(const char* name, const char* text) const {
    const ActionPtr action =
        shop_.Design.Order->Actions()->SetupItem({.Name = name, .DatabaseName = "Shop", .UsageFlags = ufExecute});
    action->Sources()->SetupItem({.Engine = engODBC, .SourceType = stSQL, .SourceText = text});
    return action;
  }
  std::string Totals() { return shop_.File.Column("select Total from orders order by Id"); }
};

TEST_F(ExecutingTest, StatementWithoutParametersIsRun) {
  Statement("Clear", "delete from lines");
  NewContext()->Execute({.ClassName = "Order", .ActionName = "Clear"});
  EXPECT_EQ(shop_.File.Column("select count(*) from lines"), "0");
}

TEST_F(ExecutingTest, ParametersAreSentInTheirOrder) {
  const auto action = Statement("Raise", "update orders set Total = Total + ? where Id >= ?");
  const SourcePtr source = action->Sources()->Item();
  source->Parameters()->SetupItem({.Name = "Amount", .DataType = dtDouble, .Flags = pfInput});
  source->Parameters()->SetupItem({.Name = "From", .DataType = dtLongInteger, .Flags = pfInput});
  const PropertiesPtr parameters = action->CreateParameters();
  parameters->Item("Amount")->SetValue(0.5);
  parameters->Item("From")->SetValue(2);
  NewContext()->Execute({.ClassName = "Order", .ActionName = "Raise", .Parameters = parameters});
  EXPECT_EQ(Totals(), "12.5|99.5|NULL");
}

TEST_F(ExecutingTest, IdentifierOfTheContextGivesTheParameter) {
  const auto action = Statement("Drop", "delete from orders where Id = ?");
  action->Sources()->Item()->Parameters()->SetupItem(
      {.Name = "Id", .DataType = dtLongInteger, .SourceName = "Id", .Flags = pfInput});
  const auto context = NewContext({.ClassName = "Order"});
  context->SetIdentifier(Order(2)->Identifier());
  context->Execute({.ActionName = "Drop"});
  EXPECT_EQ(shop_.File.Column("select Id from orders order by Id"), "1|3");
}

TEST_F(ExecutingTest, RefusedStatementIsReportedAndTheContextStaysUsable) {
  Statement("Wrong", "update nowhere set Total = 1");
  Statement("Right", "update orders set Total = 1");
  const auto context = NewContext();
  const auto error = Thrown([&] { context->Execute({.ClassName = "Order", .ActionName = "Wrong"}); });
  ASSERT_TRUE(error);
  EXPECT_NE(error->Description().find("nowhere"), std::string::npos) << error->Description();
  context->Execute({.ActionName = "Right"});
  EXPECT_EQ(Totals(), "1.0|1.0|1.0");
}

TEST_F(ExecutingTest, StatementThatGivesRowsIsRunAndItsRowsAreDropped) {
  Statement("Look", "select * from orders");
  const auto context = NewContext();
  EXPECT_NO_THROW(context->Execute({.ClassName = "Order", .ActionName = "Look"}));
  EXPECT_NO_THROW(context->Execute());
}

}  // namespace
}  // namespace velmoria::test
