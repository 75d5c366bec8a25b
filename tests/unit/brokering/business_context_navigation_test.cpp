#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/navigation_fixture.h"

namespace velmoria::test {
namespace {

class LinkedNavigationTest : public NavigationTest {
 protected:
  PropertiesPtr Follow() const {
    context_->SetRelationshipName("Lines");
    return context_->Parameters();
  }

  RelationshipPtr lines_ = Relate();
};

TEST_F(LinkedNavigationTest, LinkGivesTheParameterTheValueOfTheProperty) {
  LineTakes({.Name = "OrderId", .DataType = dtLongInteger});
  AddLink(lines_, "Id", "OrderId");
  const PropertiesPtr parameters = Follow();
  EXPECT_EQ(parameters->Count(), 1);
  EXPECT_EQ(parameters->Item("OrderId")->Value(), Variant(1042));
}

TEST_F(LinkedNavigationTest, EveryLinkIsFollowedInOrder) {
  LineTakes({.Name = "OrderId", .DataType = dtLongInteger});
  AddLink(lines_, "Name", "OrderName");
  AddLink(lines_, "Id", "OrderId");
  AddLink(lines_, "Id", "Second");
  const PropertiesPtr parameters = Follow();
  EXPECT_EQ(parameters->Item("OrderId")->Value(), Variant(1042));
  EXPECT_EQ(parameters->Item(2)->Name(), "OrderName");
  EXPECT_EQ(parameters->Item(3)->Name(), "Second");
}

TEST_F(LinkedNavigationTest, ParameterUnknownToTheActionIsAddedUnderItsNameAsAnInputLikeTheProperty) {
  AddLink(lines_, "Id", "OrderId");
  const PropertyPtr added = Follow()->Item("OrderId");
  const PropertyPtr source = order_->FindProperty("Id");
  EXPECT_EQ(added->Value(), Variant(1042));
  EXPECT_EQ(added->Flags(), pfInput);
  EXPECT_TRUE(added->Modifiable());
  EXPECT_EQ(added->DataType(), dtLongInteger);
  EXPECT_EQ(added->SourceColumn(), source->SourceColumn());
  EXPECT_EQ(added->SourceDataType(), source->SourceDataType());
  EXPECT_EQ(added->SourceName(), "");
  EXPECT_EQ(added->Operator(), "=");
}

TEST_F(LinkedNavigationTest, AddedParameterIsNoneOfTheActionsOwn) {
  AddLink(lines_, "Id", "OrderId");
  Follow();
  EXPECT_EQ(orders_.Design.Line->Actions()->Item("Get")->Sources()->Item()->Parameters()->Count(), 0);
}

TEST_F(LinkedNavigationTest, LinkWithoutAPropertyFindsItThroughTheParameter) {
  LineTakes({.Name = "Id", .DataType = dtLongInteger});
  AddLink(lines_, "", "Id");
  EXPECT_EQ(Follow()->Item("Id")->Value(), Variant(1042));
}

TEST_F(LinkedNavigationTest, LinkWhosePropertyIsNowhereFindsItThroughTheParameter) {
  LineTakes({.Name = "Id", .DataType = dtLongInteger});
  AddLink(lines_, "Nothing", "Id");
  EXPECT_EQ(Follow()->Item("Id")->Value(), Variant(1042));
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(LinkedNavigationTest, LinkWithoutAParameterAddsOneNamedLikeTheProperty) {
  AddLink(lines_, "Name", "");
  EXPECT_EQ(Follow()->Item("Name")->Value(), Variant("Order 1042"));
}

TEST_F(LinkedNavigationTest, LinkWithoutAParameterFailsWhenTheActionTakesThatNameAlready) {
  LineTakes({.Name = "Id", .DataType = dtLongInteger});
  AddLink(lines_, "Id", "");
  EXPECT_TRUE(Thrown([&] { Follow(); }));
  EXPECT_NE(apartment_.Messages().Item("457"), nullptr);
  EXPECT_NE(apartment_.Messages().Item("15057"), nullptr);
}

TEST_F(LinkedNavigationTest, LinkWhosePropertyIsNowhereIsReportedWithBothNamesAndTheStep) {
  LineTakes({.Name = "OrderId", .DataType = dtLongInteger});
  AddLink(lines_, "Colour", "OrderId");
  ExpectRaised(errLink_Navigate, [&] { Follow(); },
               {.Text = "Relationship: 'Lines'  Property: 'Colour'  Parameter: 'OrderId'\r\n"
                        "Property: 'Colour'  Parameter: 'OrderId'"});
}

TEST_F(LinkedNavigationTest, FailedLinkIsOneErrorBesideItsCauseAsAWarning) {
  AddLink(lines_, "Colour", "OrderId");
  EXPECT_TRUE(Thrown([&] { Follow(); }));
  Messages& messages = apartment_.Messages();
  EXPECT_EQ(messages.Count(), 2) << messages.Details();
  EXPECT_EQ(messages.Item("91")->SeverityFlags(), svfWarning);
  const MessagePtr error = messages.Item("15057");
  EXPECT_EQ(error->SeverityFlags(), svfError);
  EXPECT_EQ(error->TypeFlags(), tfVelmoria);
  EXPECT_EQ(error->TypeName() + "." + error->RoutineName(), "BusinessContext.PrepareRelationshipParameters");
  EXPECT_EQ(error->ExtraText(), "Property: 'Colour'  Parameter: 'OrderId'");
  EXPECT_EQ(error->Replace1() + "/" + error->Replace2() + "/" + error->Replace3(), "Lines/Colour/OrderId");
  EXPECT_NE(error->StateDetails().find("  Relationship: 'Lines'"), std::string::npos);
}

TEST_F(LinkedNavigationTest, LinkThatNamesNothingIsReportedWithEmptyNames) {
  AddLink(lines_, "", "");
  ExpectRaised(errLink_Navigate, [&] { Follow(); }, {.Text = "Property: ''  Parameter: ''"});
}

TEST_F(LinkedNavigationTest, ReportIsOfTheLinkThatFailedAndTheEarlierOnesAreDone) {
  AddLink(lines_, "Id", "OrderId");
  AddLink(lines_, "Colour", "Shade");
  ExpectRaised(errLink_Navigate, [&] { Follow(); }, {.Text = "Property: 'Colour'  Parameter: 'Shade'"});
  EXPECT_EQ(context_->Parameters()->Count(), 1) << "what the first Link filled is held, and is not built again";
  EXPECT_EQ(context_->Parameters()->Item("OrderId")->Value(), Variant(1042));
}

TEST_F(LinkedNavigationTest, ValueThatTheParameterRefusesKeepsItsOwnNumber) {
  LineTakes({.Name = "OrderId", .DataType = dtLongInteger});
  AddLink(lines_, "Name", "OrderId");
  ExpectRaised(errProperty_DataType, [&] { Follow(); });
}

TEST_F(LinkedNavigationTest, DeletedObjectLeadsNowhereUnderItsOwnNumber) {
  AddLink(lines_, "Id", "OrderId");
  order_->Delete();
  order_->Update();
  ExpectRaised(errPersistence_Deleted, [&] { Follow(); });
}

TEST_F(LinkedNavigationTest, FailedLookUpLeavesNoMessage) {
  AddLink(lines_, "Id", "OrderId");
  Follow();
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(LinkedNavigationTest, MessagingIsSuspendedWhileAListenerIsAskedAndNotBehindIt) {
  AddLink(lines_, "Colour", "Shade");
  std::string suspended;
  order_->PropertyContext()->PropertyNotFound +=
      [&](const PropertyKey&, PropertyPtr&) { suspended = apartment_.Messages().SuspendRoutine(); };
  EXPECT_TRUE(Thrown([&] { Follow(); }));
  EXPECT_EQ(suspended, "BusinessContext.PrepareRelationshipParameters");
  EXPECT_EQ(apartment_.Messages().SuspendRoutine(), "");
}

TEST_F(LinkedNavigationTest, ListenerOfTheObjectMaySupplyTheProperty) {
  AddLink(lines_, "Colour", "Shade");
  const PropertyPtr colour = Framework{}.CreateProperty({.Name = "Colour", .Value = "red", .DataType = dtString});
  order_->PropertyContext()->PropertyNotFound += [&](const PropertyKey&, PropertyPtr& Property) { Property = colour; };
  EXPECT_EQ(Follow()->Item("Shade")->Value(), Variant("red"));
}

TEST_F(LinkedNavigationTest, ListenerThatFailsSuppliesNothing) {
  AddLink(lines_, "Colour", "Shade");
  order_->PropertyContext()->PropertyNotFound +=
      [](const PropertyKey&, PropertyPtr&) { Fail(RuntimeFailure::Overflow); };
  ExpectRaised(errLink_Navigate, [&] { Follow(); });
}

TEST_F(LinkedNavigationTest, BuiltParametersDoNotFollowTheObjectUntilTheRelationshipIsNamedAgain) {
  AddLink(lines_, "Name", "OrderName");
  const PropertiesPtr built = Follow();
  order_->FindProperty("Name")->SetValue("new");
  EXPECT_EQ(context_->Parameters(), built);
  EXPECT_EQ(built->Item("OrderName")->Value(), Variant("Order 1042"));
  EXPECT_EQ(Follow()->Item("OrderName")->Value(), Variant("new"));
}

TEST_F(LinkedNavigationTest, NullOfTheObjectGoesIntoTheParameter) {
  AddLink(lines_, "Name", "OrderName");
  order_->FindProperty("Name")->SetValue(Variant::Null());
  EXPECT_TRUE(Follow()->Item("OrderName")->Value().IsNull());
}

class IdentityNavigationTest : public NavigationTest {
 protected:
  IdentityNavigationTest() {
    orders_.Design.Order->Properties()->SetupItem(
        {.Name = "Name", .DataType = dtString, .SourceName = "Name", .SourceColumn = "Name", .Flags = pfInput});
    order_ = NewOrder()->GetModel();
    context_ = order_->BusinessContext();
    Relate();
  }
  PropertiesPtr Follow() const {
    context_->SetRelationshipName("Lines");
    return context_->Parameters();
  }
};

TEST_F(IdentityNavigationTest, RelationshipWithoutLinksAddsEveryPartOfTheIdentity) {
  const PropertiesPtr parameters = Follow();
  ASSERT_EQ(parameters->Count(), 2);
  EXPECT_EQ(parameters->Item("Id")->Value(), Variant(1042));
  EXPECT_EQ(parameters->Item("Name")->Value(), Variant("Order 1042"));
  const PropertyPtr id = parameters->Item("Id");
  EXPECT_EQ(id->Flags(), pfInput);
  EXPECT_TRUE(id->Modifiable());
  EXPECT_EQ(id->DataType(), dtLongInteger);
  EXPECT_EQ(id->SourceColumn(), order_->FindProperty("Id")->SourceColumn());
  EXPECT_EQ(id->SourceDataType(), order_->FindProperty("Id")->SourceDataType());
}

TEST_F(IdentityNavigationTest, RelationshipWithoutLinksFillsTheParametersThatAreThere) {
  LineTakes({.Name = "Name", .DataType = dtString});
  LineTakes({.Name = "Limit", .DataType = dtLongInteger});
  const PropertiesPtr parameters = Follow();
  ASSERT_EQ(parameters->Count(), 3);
  EXPECT_EQ(parameters->Item(1)->Value(), Variant("Order 1042"));
  EXPECT_TRUE(parameters->Item("Limit")->EmptyValue());
  EXPECT_EQ(parameters->Item(3)->Value(), Variant(1042));
}

TEST_F(IdentityNavigationTest, MissingParametersLeaveNoMessage) {
  Follow();
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(IdentityNavigationTest, FailureWithoutLinksIsAnObjectNotSetBesideItsCauseAndNoFailureOfALink) {
  LineTakes({.Name = "Name", .DataType = dtLongInteger});
  ExpectRaised(errProperty_DataType, [&] {
    try {
      Follow();
    } catch (const Error&) {
      EXPECT_NE(apartment_.Messages().Item("91"), nullptr);
      EXPECT_EQ(apartment_.Messages().Item("15057"), nullptr);
      throw;
    }
  });
}

}  // namespace
}  // namespace velmoria::test
