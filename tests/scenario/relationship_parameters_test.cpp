#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/bound_orders.h"
#include "tests/support/refusal.h"

namespace velmoria::test {
namespace {

/// The parameters that a selected relationship gives, and the rows that they find.
class RelationshipParametersTest : public BrokeringTest {
 protected:
  /// From one class to the Action "Get" of "Line", or to another.
  static RelationshipPtr Relate(const ClassPtr& from, const char* className = "Line", const char* action = "Get") {
    return from->Relationships()->SetupItem(
        {.Name = "Related", .RelatedServerName = "Sales", .RelatedClassName = className, .RelatedActionName = action});
  }
  /// Empty names stay without.
  static void AddLink(const RelationshipPtr& relationship, const std::string& property, const std::string& parameter) {
    const LinkPtr link = relationship->Links()->SetupItem({.Name = property + "-" + parameter});
    if (!property.empty()) link->Property()->SetName(property);
    if (!parameter.empty()) link->Parameter()->SetName(parameter);
  }
  /// The context of an object, its relationship selected and every message behind it.
  BusinessContextPtr Select(const IBusinessObjectPtr& object) const {
    const auto context = object->GetModel()->BusinessContext();
    apartment_.Messages().Clear();
    context->SetRelationshipName("Related");
    return context;
  }
  static std::string Names(const Properties& parameters) {
    std::string names;
    for (const auto& each : parameters) names += each->Name() + "=" + each->Value().AsText() + ";";
    return names;
  }
  static std::string Products(const BusinessContextPtr& context) {
    std::string products;
    for (const auto& line : context->GetBusinessObjects()) products += Value(line, "Product").AsText() + ";";
    return products;
  }
};

TEST_F(RelationshipParametersTest, WithoutLinksBothPartsOfTheIdentityBecomeParametersThoughTheActionHasNone) {
  Relate(shop_.Design.Line);
  const auto context = Select(Framework{}.GetBusinessObject({.ClassName = "Line", .KeyValue1 = 1, .KeyValue2 = 2}));
  EXPECT_EQ(Names(*context->Parameters()), "OrderId=1;LineNo=2;");
  EXPECT_EQ(context->Parameters()->Item(2)->Flags(), pfInput);
  EXPECT_EQ(Products(context), "Chair;");
}

TEST_F(RelationshipParametersTest, WithoutLinksParametersThatTheActionHasAreFilled) {
  Relate(shop_.Design.Order, "Order", "Named");
  shop_.OrderAction("Named")->Sources()->Item()->Parameters()->SetupItem({.Name = "Id", .DataType = dtLongInteger});
  EXPECT_EQ(Names(*Select(Order(2))->Parameters()), "Name=;Id=2;");
}

TEST_F(RelationshipParametersTest, LinkWithoutAPropertyFindsItsSourceThroughTheParameter) {
  AddLink(Relate(shop_.Design.Order, "Order", "Named"), "", "Name");
  const auto context = Select(Order(2));
  EXPECT_EQ(Names(*context->Parameters()), "Name=Ben;");
  EXPECT_EQ(Ids(*context->GetBusinessObjects()), "2,3");
}

TEST_F(RelationshipParametersTest, LinkToAnUnknownParameterAddsAnInputOfThatNameOverTheColumnOfTheProperty) {
  AddLink(Relate(shop_.Design.Order, "Order", "Detail"), "Id", "Owner");
  const auto context = Select(Order(2));
  const auto added = context->Parameters()->Item("Owner");
  EXPECT_EQ(Names(*context->Parameters()), "Owner=2;");
  EXPECT_EQ(added->Flags(), pfInput);
  EXPECT_EQ(added->DataType(), Order(2)->FindProperty("Id")->DataType());
  EXPECT_EQ(added->SourceColumn(), "Id");
  EXPECT_EQ(context->GetBusinessObjects()->Count(), 2);
  EXPECT_EQ(apartment_.Messages().Item("15129")->ExtraText(), "SELECT * FROM details WHERE Id = 2");
}

TEST_F(RelationshipParametersTest, LinkWhosePropertyIsNowhereIsReportedWithItsNamesAndTheStepInHand) {
  AddLink(Relate(shop_.Design.Order), "Colour", "OrderId");
  const auto context = Select(Order(1));
  ExpectRefusal({errLink_Navigate,
                 "BusinessContext.PrepareRelationshipParameters",
                 "Problem navigating Relationship Link.  Relationship: 'Related'  Property: 'Colour'  Parameter: "
                 "'OrderId'",
                 {"Related", "Colour", "OrderId"},
                 "Property: 'Colour'  Parameter: 'OrderId'"},
                [&] { context->Parameters(); });
}

TEST_F(RelationshipParametersTest, LookUpsThatFailOnTheWayLeaveNoMessage) {
  const auto related = Relate(shop_.Design.Order);
  AddLink(related, "Colour", "OrderId");
  AddLink(related, "Id", "Other");
  shop_.Design.Line->Actions()->Item("Get")->Sources()->Item()->Parameters()->SetupItem(
      {.Name = "OrderId", .DataType = dtLongInteger});
  const auto order = Order(1);
  order->GetModel()->PropertyContext()->PropertyNotFound += [](const PropertyKey& key, PropertyPtr& Property) {
    if (key.Parameter->Name() == "OrderId") Property = Framework{}.CreateProperty({.Name = "Found", .Value = 7});
  };
  EXPECT_EQ(Names(*Select(order)->Parameters()), "OrderId=7;Other=1;");
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

}  // namespace
}  // namespace velmoria::test
