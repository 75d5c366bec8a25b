#include "velmoria/design/class.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/core/messages.h"

namespace velmoria::test {
namespace {

class ClassTest : public testing::Test {
 protected:
  ClassPtr AddClass(const ClassFields& fields) { return server_->Classes()->SetupItem(fields); }
  ClassPtr AddOrderLine() {
    const auto line = AddClass({.Name = "Line"});
    line->Properties()->SetupItem({.Name = "Order", .DataType = dtLongInteger, .Flags = pfInput});
    line->Properties()->SetupItem({.Name = "Number", .DataType = dtLongInteger, .Flags = pfInput | pfRequired});
    return line;
  }
  static PropertiesPtr Row(std::initializer_list<const char*> names) {
    auto row = Make<Properties>();
    for (const char* name : names) row->SetupItem({.Name = name, .DataType = dtLongInteger, .Flags = pfOutput});
    return row;
  }

  ScopedApartment apartment_;
  ServerPtr server_ = MakeDesign<ServerKind>({.Name = "Sales", .ActiveXComponent = "SalesLib"});
};

TEST_F(ClassTest, SetupItemStoresEveryField) {
  const auto order = AddClass({.Name = "Order",
                               .ActiveXClass = "COrder",
                               .ActiveXCollection = "COrders",
                               .Description = "d",
                               .SingleActionName = "One",
                               .NewActionName = "New",
                               .DefaultActionName = "All",
                               .Locked = true});
  EXPECT_EQ(order->Name(), "Order");
  EXPECT_EQ(order->ActiveXClass(), "COrder");
  EXPECT_EQ(order->ActiveXCollection(), "COrders");
  EXPECT_EQ(order->Description(), "d");
  EXPECT_EQ(order->SingleActionName(), "One");
  EXPECT_EQ(order->NewActionName(), "New");
  EXPECT_EQ(order->DefaultActionName(), "All");
  EXPECT_TRUE(order->Locked());
}

TEST_F(ClassTest, SettersStore) {
  const auto order = AddClass({.Name = "Order"});
  order->SetActiveXClass("COrder");
  order->SetActiveXCollection("COrders");
  order->SetSingleActionName("One");
  order->SetNewActionName("New");
  order->SetDefaultActionName("All");
  EXPECT_EQ(order->ActiveXClass() + order->ActiveXCollection(), "COrderCOrders");
  EXPECT_EQ(order->SingleActionName() + order->NewActionName() + order->DefaultActionName(), "OneNewAll");
}

TEST_F(ClassTest, ServerNameIsThatOfTheParent) {
  EXPECT_EQ(AddClass({.Name = "Order"})->ServerName(), "Sales");
  EXPECT_EQ(server_->Classes()->ServerName(), "Sales");
  EXPECT_EQ(Make<Class>()->ServerName(), "");
  EXPECT_EQ(Make<Classes>()->ServerName(), "");
}

TEST_F(ClassTest, ProgIdsPutTheComponentInFront) {
  const auto order = AddClass({.Name = "Order", .ActiveXClass = "COrder", .ActiveXCollection = "COrders"});
  EXPECT_EQ(order->ActiveXProgId(), "SalesLib.COrder");
  EXPECT_EQ(order->ActiveXCollectionProgId(), "SalesLib.COrders");
}

TEST_F(ClassTest, ProgIdWithoutAComponentIsTheBareClass) {
  server_->SetActiveXComponent("");
  EXPECT_EQ(AddClass({.Name = "Order", .ActiveXClass = "COrder"})->ActiveXProgId(), "COrder");
}

TEST_F(ClassTest, ProgIdIsEmptyWithoutAClassOrAServer) {
  EXPECT_EQ(AddClass({.Name = "Order"})->ActiveXProgId(), "");
  EXPECT_EQ(MakeDesign<ClassKind>({.Name = "Order", .ActiveXClass = "COrder"})->ActiveXProgId(), "");
}

TEST_F(ClassTest, TheCollectionsNameIsTakenAsItStandsEvenWithADot) {
  const auto order = AddClass({.Name = "Order", .ActiveXCollection = "Other.COrders"});
  EXPECT_EQ(order->ActiveXCollectionProgId(), "SalesLib.Other.COrders");
}

TEST_F(ClassTest, ANewClassHasNoIdentifier) {
  const auto order = AddClass({.Name = "Order"});
  EXPECT_EQ(order->Properties()->Count(), 0);
  ExpectRaised(zErrors{15160}, [&] { order->CreateIdentifier(); }, {.Text = "Class: 'Order'", .Count = 1});
}

TEST_F(ClassTest, PropertiesAreTheDefinitionOfTheIdentifier) {
  const auto line = AddOrderLine();
  EXPECT_EQ(line->Properties()->Style(), psIdentifier);
  EXPECT_EQ(line->Properties()->ServerName(), "Sales");
  EXPECT_EQ(line->Data()->PropertiesData()->Count(), 2);
}

TEST_F(ClassTest, AnIdentifierWithoutPropertiesHasItsOwn) {
  const auto line = AddOrderLine();
  const auto identifier = line->CreateIdentifier();
  EXPECT_EQ(identifier->ClassName(), "Line");
  EXPECT_EQ(identifier->ServerName(), "Sales");
  ASSERT_EQ(identifier->Properties()->Count(), 2);
  identifier->Properties()->Item(1)->SetValue(7);
  EXPECT_TRUE(line->Properties()->Item(1)->EmptyValue());
}

TEST_F(ClassTest, AnIdentifierSharesThePropertiesGivenInTheOrderOfTheDefinition) {
  const auto row = Row({"Text", "Number", "Order"});
  const auto identifier = AddOrderLine()->CreateIdentifier(row);
  ASSERT_EQ(identifier->Properties()->Count(), 2);
  EXPECT_EQ(identifier->Properties()->Item(1), row->Item("Order"));
  EXPECT_EQ(identifier->Properties()->Item(2), row->Item("Number"));
}

TEST_F(ClassTest, AnIdentifierAddsTheFlagsOfTheDefinition) {
  const auto row = Row({"Number", "Order"});
  AddOrderLine()->CreateIdentifier(row);
  EXPECT_EQ(row->Item("Number")->Flags(), pfOutput | pfInput | pfRequired);
}

TEST_F(ClassTest, AnIdentifierLeavesTheStyleOfSharedPropertiesAlone) {
  const auto row = Row({"Number", "Order"});
  const auto style = row->Item("Order")->Data()->Style();
  AddOrderLine()->CreateIdentifier(row);
  EXPECT_EQ(row->Item("Order")->Data()->Style(), style);
}

TEST_F(ClassTest, AMissingIdentifierPropertyIsNamed) {
  const auto line = AddOrderLine();
  const auto details = line->Data()->PropertiesData()->Item("Number")->Details();
  ExpectRaised(zErrors{15052}, [&] { line->CreateIdentifier(Row({"Order"})); },
               {.Text = "Property: '" + details + "'  Class: 'Line'", .Count = 1});
}

TEST_F(ClassTest, IdentifierPropertiesAreFoundByTheirSourceToo) {
  const auto line = AddClass({.Name = "Line"});
  line->Properties()->SetupItem({.Name = "Number", .SourceName = "line_no"});
  const auto row = Make<Properties>();
  const auto column = row->SetupItem({.Name = "Ln", .SourceName = "line_no"});
  EXPECT_EQ(line->CreateIdentifier(row)->Properties()->Item(1), column);
}

TEST_F(ClassTest, AListenerMaySupplyAMissingIdentifierProperty) {
  const auto line = AddOrderLine();
  const auto row = Row({"Order"});
  const auto supplied = Row({"Number"})->Item(1);
  row->ItemNotFound += [&](const PropertyKey&, PropertyPtr& item) { item = supplied; };
  EXPECT_EQ(line->CreateIdentifier(row)->Properties()->Item(2), supplied);
}

TEST_F(ClassTest, AListenerThatThrowsSuppliesNoIdentifierProperty) {
  const auto line = AddOrderLine();
  const auto row = Row({"Order"});
  row->ItemNotFound += [](const PropertyKey&, PropertyPtr&) { throw std::runtime_error("a listener's own trouble"); };
  ExpectRaised(errIdentifier_Property, [&] { line->CreateIdentifier(row); }, {.Text = "Class: 'Line'", .Count = 1});
}

TEST_F(ClassTest, MessagingIsSuspendedWhileAListenerIsAskedForAnIdentifierProperty) {
  const auto line = AddOrderLine();
  const auto row = Row({"Order"});
  std::string by;
  row->ItemNotFound += [&](const PropertyKey&, PropertyPtr& item) {
    by = apartment_.Messages().SuspendRoutine();
    item = Row({"Number"})->Item(1);
  };
  line->CreateIdentifier(row);
  EXPECT_EQ(by, "Class.CreateIdentifier");
  EXPECT_EQ(apartment_.Messages().SuspendRoutine(), "");
}

TEST_F(ClassTest, ACopyHasTheIdentifierTwiceAndNotTheUserProperties) {
  const auto line = AddOrderLine();
  line->UserProperties()->SetupItem({.Name = "Note"});
  const auto copy = line->Copy("Line2");
  ASSERT_EQ(copy->Properties()->Count(), 2);
  ASSERT_EQ(copy->UserProperties()->Count(), 2);
  EXPECT_EQ(copy->UserProperties()->Item(1)->Name(), "Order");
  EXPECT_NE(copy->UserProperties()->Item(1)->Data(), copy->Properties()->Item(1)->Data());
}

TEST_F(ClassTest, ARecursiveCopyTakesActions) {
  const auto order = AddClass({.Name = "Order"});
  order->Actions()->SetupItem({.Name = "Get"});
  EXPECT_EQ(order->Copy()->Actions()->Item("Get")->ClassName(), "Order");
  EXPECT_EQ(order->Copy("", false)->Actions()->Count(), 0);
}

TEST_F(ClassTest, AChangedIdentifierMakesTheClassDirty) {
  const auto order = Make<Class>();
  order->Properties()->SetupItem({.Name = "Id"});
  EXPECT_TRUE(order->Dirty());
}

}  // namespace
}  // namespace velmoria::test
