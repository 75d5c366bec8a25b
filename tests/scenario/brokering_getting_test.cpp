#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/refusal.h"

namespace velmoria::test {
namespace {

using GetBusinessObjectTest = BrokeringTest;

TEST_F(GetBusinessObjectTest, ObjectIsFoundByOneKeyValue) {
  const auto order = Order(2);
  EXPECT_EQ(Value(order, "Name"), Variant("Ben"));
  EXPECT_EQ(order->ObjectType(), otModel);
  EXPECT_EQ(order->Key(), "2");
}

TEST_F(GetBusinessObjectTest, ObjectIsFoundByTwoKeyValues) {
  const auto line = Framework{}.GetBusinessObject({.ClassName = "Line", .KeyValue1 = 1, .KeyValue2 = 2});
  EXPECT_EQ(Value(line, "Product"), Variant("Chair"));
}

TEST_F(GetBusinessObjectTest, SurplusKeyValueIsIgnored) {
  EXPECT_EQ(Value(Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 3, .KeyValue2 = 9}), "Name"),
            Variant("Cyd"));
}

TEST_F(GetBusinessObjectTest, ObjectIsFoundByIdentifier) {
  const IdentifierPtr identifier = shop_.Design.Order->CreateIdentifier();
  identifier->Properties()->Item("Id")->SetValue(3);
  EXPECT_EQ(Value(Framework{}.GetBusinessObject({.Identifier = identifier}), "Name"), Variant("Cyd"));
}

TEST_F(GetBusinessObjectTest, ObjectIsFoundAgainByTheIdentifierOfAnother) {
  const auto again = NewContext()->GetBusinessObject({.Identifier = Order(2)->Identifier()});
  EXPECT_EQ(Value(again, "Name"), Variant("Ben"));
}

TEST_F(GetBusinessObjectTest, ObjectIsFoundByParameters) {
  const auto order = Framework{}.GetBusinessObject(
      {.ClassName = "Order", .ActionName = "Named", .Parameters = shop_.NamedParameters("Cyd")});
  EXPECT_EQ(Value(order, "Id"), Variant(3));
}

TEST_F(GetBusinessObjectTest, ParametersAloneAreIgnoredAndTheSelectionIsRepeated) {
  const auto context = NewContext();
  context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1});
  EXPECT_EQ(Value(context->GetBusinessObject({.Parameters = shop_.NamedParameters("Cyd")}), "Name"), Variant("Ada"));
}

TEST_F(GetBusinessObjectTest, CallWithoutArgumentsRepeatsTheFirstOnAContextOfOnesOwn) {
  const auto context = NewContext();
  const auto first = context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2});
  const auto second = context->GetBusinessObject();
  EXPECT_NE(first, second);
  EXPECT_EQ(second->Key(), "2");
}

TEST_F(GetBusinessObjectTest, CallWithoutArgumentsThroughTheFrameworkNeverRepeatsForItForgetsTheServer) {
  Order(2);
  ExpectReported(RuntimeFailure::ObjectNotSet, [] { Framework{}.GetBusinessObject({}); });
}

TEST_F(GetBusinessObjectTest, ServerOfTheFirstClassStaysAndHidesTheClassesOfOthers) {
  const auto context = NewContext();
  context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2});
  ExpectRaised(errItem_Class, [&] { context->GetBusinessObject({.ClassName = "Item", .KeyValue1 = 1}); },
               {.Text = "Index: 'Item'"});
}

TEST_F(GetBusinessObjectTest, NoRowIsReportedWithTheParametersAsState) {
  const auto context = NewContext();
  const auto error = Thrown([&] { context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 77}); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15025);
  const MessagePtr message = apartment_.Messages().Item("15025");
  EXPECT_EQ(message->StateDetails(), context->Parameters()->Details());
  EXPECT_NE(message->StateDetails().find("77"), std::string::npos);
}

TEST_F(GetBusinessObjectTest, SeveralRowsAreAnErrorAndNoFirstRowAnswer) {
  ExpectRaised(errMismatch_Count, [] { Framework{}.GetBusinessObject({.ClassName = "Order", .ActionName = "All"}); },
               {.Text = "3"});
}

TEST_F(GetBusinessObjectTest, SeveralRowsAreCountedBeyondTheFirstPage) {
  shop_.OrderAction("All")->SetObjectBuffer(1);
  ExpectRaised(errMismatch_Count, [] { Framework{}.GetBusinessObject({.ClassName = "Order", .ActionName = "All"}); },
               {.Text = "3"});
}

TEST_F(GetBusinessObjectTest, ActionThatBuildsNoObjectsIsRefused) {
  shop_.OrderAction("Get")->SetUsageFlags(ufProperties);
  ExpectRaised(errNotSupported_BusinessObjects, [&] { Order(1); }, {.Text = "Action: 'Get'"});
}

TEST_F(GetBusinessObjectTest, FailedCallLeavesTheContextUsable) {
  const auto context = NewContext();
  ExpectRaised(errBusinessObject_Get, [&] { context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 77}); });
  EXPECT_EQ(context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1})->Key(), "1");
}

TEST_F(GetBusinessObjectTest, ObjectReachedThroughAnotherKnowsItsParent) {
  const auto order = Order(1);
  const auto line =
      order->GetModel()->BusinessContext()->GetBusinessObject({.ClassName = "Line", .KeyValue1 = 1, .KeyValue2 = 1});
  EXPECT_EQ(line->ParentIdentifier(), order->Identifier());
  EXPECT_EQ(order->ParentIdentifier(), nullptr);
}

using FailingDatabaseTest = BrokeringTest;

TEST_F(FailingDatabaseTest, MissingTableIsReportedWithTheDriversOwnWordsAndTheNextCallWorks) {
  shop_.File.Run("alter table orders rename to hidden");
  const auto error = Thrown([&] { Order(1); });
  ASSERT_TRUE(error);
  EXPECT_NE(error->CatalogueNumber(), 0);
  EXPECT_NE(error->CatalogueNumber(), 15000);
  EXPECT_TRUE(WarnedOf("no such table")) << apartment_.Messages().Details();
  apartment_.Messages().Clear();
  shop_.File.Run("alter table hidden rename to orders");
  EXPECT_EQ(Order(1)->Key(), "1");
}

}  // namespace
}  // namespace velmoria::test
