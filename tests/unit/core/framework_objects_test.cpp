#include <new>

#include <gtest/gtest.h>

#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"
#include "tests/support/host_collection.h"
#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {
namespace {

constexpr const char* kNoClass = "\r\nCan't find Class in registered Servers.";

class Stranger : public Object {};

template <class Thrown>
class Stillborn : public Object {
 public:
  Stillborn() { throw Thrown{}; }
};

class FrameworkObjectsTest : public testing::Test {
 public:
  ~FrameworkObjectsTest() override {
    for (const char* name : {"Sales.Orders", "Sales.Refusing", "Sales.Stranger", "Sales.Stillborn"})
      Components::Unregister(name);
  }

 protected:
  FrameworkObjectsTest() { Components::Register<HostCollection>("Sales.Orders"); }

  ScopedApartment apartment_;
  Framework framework_;
  SampleDesign design_;
};

TEST_F(FrameworkObjectsTest, IdentifierIsOfTheNamedServersClass) {
  const auto identifier = framework_.CreateIdentifier("Order", "Sales");
  EXPECT_EQ(identifier->ServerName(), "Sales");
  EXPECT_EQ(identifier->ClassName(), "Order");
  EXPECT_EQ(identifier->Properties()->Item(1)->Name(), "Id");
}

TEST_F(FrameworkObjectsTest, IdentifierOfTheFirstServerThatHasTheClass) {
  design_.Stock->Classes()->SetupItem({.Name = "Order"});
  EXPECT_EQ(framework_.CreateIdentifier("Order")->ServerName(), "Sales");
  EXPECT_EQ(framework_.CreateIdentifier("Item")->ServerName(), "Stock");
  EXPECT_EQ(framework_.Messages()->Count(), 0);
}

TEST_F(FrameworkObjectsTest, IdentifierOfAnUnknownClassNamesNoServer) {
  ExpectRaised(errItem_Class, [&] { framework_.CreateIdentifier("Nothing"); },
               {.Text = std::string("Problem finding Class.  Index: 'Nothing'") + kNoClass, .Count = 1});
}

TEST_F(FrameworkObjectsTest, IdentifierOfAnUnknownClassInANamedServerIsRefused) {
  ExpectRaised(errItem_Class, [&] { framework_.CreateIdentifier("Nothing", "Sales"); }, {.Count = 1});
}

TEST_F(FrameworkObjectsTest, IdentifierFromAnUnknownServerIsRefused) {
  ExpectRaised(errItem_Server, [&] { framework_.CreateIdentifier("Order", "Nowhere"); },
               {.Text = "Problem finding Server.  Index: 'Nowhere'", .Count = 1});
}

TEST_F(FrameworkObjectsTest, NamedServerDecidesWhereSeveralHaveTheClass) {
  const auto order = design_.Stock->Classes()->SetupItem({.Name = "Order"});
  order->Properties()->SetupItem({.Name = "Number"});
  EXPECT_EQ(framework_.CreateIdentifier("Order", "Stock")->Properties()->Item(1)->Name(), "Number");
  EXPECT_EQ(framework_.CreateIdentifier("order", "stock")->ServerName(), "Stock");
}

TEST_F(FrameworkObjectsTest, IdentifierOfAClassWithoutIdentifierPropertiesIsRefusedOnBothRoads) {
  design_.Stock->Classes()->SetupItem({.Name = "Bare"});
  ExpectRaised(errRequires_Identifier, [&] { framework_.CreateIdentifier("Bare"); },
               {.Text = "Class: 'Bare'", .Count = 1});
  ExpectRaised(errRequires_Identifier, [&] { framework_.CreateIdentifier("Bare", "Stock"); },
               {.Text = "Class: 'Bare'", .Count = 1});
}

TEST_F(FrameworkObjectsTest, IdentifierOfTheEmptyClassNameIsNotFoundEither) {
  ExpectRaised(errItem_Class, [&] { framework_.CreateIdentifier(""); }, {.Text = "Index: ''\r\n", .Count = 1});
}

TEST_F(FrameworkObjectsTest, CollectionWithoutAClassIsTheFrameworksOwn) {
  const auto objects = framework_.CreateBusinessObjects({.Name = "Mine", .Locked = true, .SupportsRemove = false});
  EXPECT_EQ(objects->Name(), "Mine");
  EXPECT_TRUE(objects->Locked());
  EXPECT_TRUE(objects->SupportsAdd());
  EXPECT_FALSE(objects->SupportsRemove());
  EXPECT_NE(dynamic_cast<BusinessObjects*>(objects.get()), nullptr);
}

TEST_F(FrameworkObjectsTest, CollectionTakesKeyFormatAndStatistics) {
  const auto format = framework_.CreateKeyFormat({.Separator = "-"});
  const auto statistics = framework_.CreateStatistics();
  const auto objects = framework_.CreateBusinessObjects({.KeyFormat = format, .Statistics = statistics});
  EXPECT_EQ(objects->KeyFormat(), format);
  EXPECT_EQ(objects->Statistics(), statistics);
}

TEST_F(FrameworkObjectsTest, CollectionHasItsDefaults) {
  const auto objects = framework_.CreateBusinessObjects();
  EXPECT_EQ(objects->Name(), "");
  EXPECT_FALSE(objects->Locked());
  EXPECT_TRUE(objects->SupportsRemove());
  EXPECT_EQ(objects->Count(), 0);
}

TEST_F(FrameworkObjectsTest, UnknownServerWithoutAClassIsNotLookedFor) {
  EXPECT_TRUE(framework_.CreateBusinessObjects({.ServerName = "Nowhere"}));
}

TEST_F(FrameworkObjectsTest, CollectionOfAClassWithoutAHostCollectionIsTheFrameworksOwn) {
  const auto objects = framework_.CreateBusinessObjects({.ClassName = "Order"});
  EXPECT_NE(dynamic_cast<BusinessObjects*>(objects.get()), nullptr);
}

TEST_F(FrameworkObjectsTest, CollectionOfAnUnknownClassIsRefused) {
  ExpectRaised(errItem_Class, [&] { framework_.CreateBusinessObjects({.ClassName = "Nothing"}); },
               {.Text = std::string("Index: 'Nothing'") + kNoClass, .Count = 1});
}

TEST_F(FrameworkObjectsTest, CollectionOfAClassThatTheNamedServerDoesNotHave) {
  ExpectRaised(errItem_Class, [&] { framework_.CreateBusinessObjects({.ClassName = "Order", .ServerName = "Stock"}); },
               {.Text = std::string("Index: 'Order'") + kNoClass, .Count = 1});
}

TEST_F(FrameworkObjectsTest, UnknownServerOfACollectionCountsAsAnUnknownClass) {
  ExpectRaised(errItem_Class,
               [&] { framework_.CreateBusinessObjects({.ClassName = "Order", .ServerName = "Nowhere"}); },
               {.Text = kNoClass, .Count = 1});
}

TEST_F(FrameworkObjectsTest, HostCollectionWithAQualifiedNameStandsAroundTheFrameworksOwn) {
  design_.Order->SetActiveXCollection("Sales.Orders");
  const auto objects = framework_.CreateBusinessObjects({.ClassName = "Order", .Name = "Mine"});
  const auto* host = dynamic_cast<HostCollection*>(objects.get());
  ASSERT_NE(host, nullptr);
  EXPECT_EQ(host->GetBusinessObjects()->Name(), "Mine");
}

TEST_F(FrameworkObjectsTest, HostCollectionWithABareNameIsOfTheNamedServersComponent) {
  design_.Order->SetActiveXCollection("Orders");
  const auto objects = framework_.CreateBusinessObjects({.ClassName = "Order", .ServerName = "Sales"});
  EXPECT_NE(dynamic_cast<HostCollection*>(objects.get()), nullptr);
}

TEST_F(FrameworkObjectsTest, HostCollectionTakesEverythingButSupportsAdd) {
  design_.Order->SetActiveXCollection("Sales.Orders");
  const auto statistics = framework_.CreateStatistics();
  const auto objects = framework_.CreateBusinessObjects(
      {.ClassName = "Order", .Locked = true, .Statistics = statistics, .SupportsRemove = false});
  EXPECT_TRUE(objects->Locked());
  EXPECT_EQ(objects->Statistics(), statistics);
  EXPECT_TRUE(objects->SupportsAdd());
  EXPECT_FALSE(objects->SupportsRemove());
}

TEST_F(FrameworkObjectsTest, BareNameWithAnEmptyComponentKeepsItsDot) {
  const ComponentOffer<HostCollection> offer(".Orders");
  design_.Sales->SetActiveXComponent("");
  design_.Order->SetActiveXCollection("Orders");
  const auto objects = framework_.CreateBusinessObjects({.ClassName = "Order", .ServerName = "Sales"});
  EXPECT_NE(dynamic_cast<HostCollection*>(objects.get()), nullptr);
}

TEST_F(FrameworkObjectsTest, QualifiedNameDoesNotAskForTheNamedServersComponent) {
  design_.Sales->SetActiveXComponent("Other");
  design_.Order->SetActiveXCollection("Sales.Orders");
  const auto objects = framework_.CreateBusinessObjects({.ClassName = "Order", .ServerName = "Sales"});
  EXPECT_NE(dynamic_cast<HostCollection*>(objects.get()), nullptr);
}

TEST_F(FrameworkObjectsTest, BareNameOfAClassFoundByWalkingAsksForTheServerWithoutAName) {
  design_.Order->SetActiveXCollection("Orders");
  ExpectRaised(errItem_Server, [&] { framework_.CreateBusinessObjects({.ClassName = "Order"}); },
               {.Text = "Index: ''"});
}

TEST_F(FrameworkObjectsTest, HostCollectionThatNobodyOffersIsRefused) {
  design_.Order->SetActiveXCollection("Sales.Unknown");
  ExpectRaised(
      errBusinessCollection_Create, [&] { framework_.CreateBusinessObjects({.ClassName = "Order"}); },
      {.Text = "Problem creating Line of Business Collection.  ActiveXBusinessCollection: Sales.Unknown", .Count = 1});
}

TEST_F(FrameworkObjectsTest, MissingHostCollectionIsNamedAsTheClassNamesIt) {
  design_.Order->SetActiveXCollection("Unknown");
  const auto error = Thrown([&] { framework_.CreateBusinessObjects({.ClassName = "Order", .ServerName = "Sales"}); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15167);
  EXPECT_EQ(error->Description().find("Sales.Unknown"), std::string::npos);
}

TEST_F(FrameworkObjectsTest, HostCollectionThatFailsWhileItIsMadeCountsAsNotThere) {
  design_.Order->SetActiveXCollection("Sales.Stillborn");
  const auto create = [&] { framework_.CreateBusinessObjects({.ClassName = "Order"}); };
  Components::Register<Stillborn<std::bad_alloc>>("Sales.Stillborn");
  ExpectRaised(errBusinessCollection_Create, create, {.Text = "Sales.Stillborn", .Count = 1});
  Components::Register<Stillborn<int>>("Sales.Stillborn");
  ExpectRaised(errBusinessCollection_Create, create, {.Text = "Sales.Stillborn", .Count = 1});
}

TEST_F(FrameworkObjectsTest, NothingStaysSuspendedBehindASearch) {
  EXPECT_TRUE(Thrown([&] { framework_.CreateIdentifier("Nothing"); }));
  EXPECT_EQ(framework_.Messages()->SuspendRoutine(), "");
  EXPECT_TRUE(Thrown([&] { framework_.CreateBusinessObjects({.ClassName = "Nothing"}); }));
  EXPECT_EQ(framework_.Messages()->SuspendRoutine(), "");
}

TEST_F(FrameworkObjectsTest, RefusalNamesTheOperationOfTheFront) {
  EXPECT_TRUE(Thrown([&] { framework_.CreateIdentifier("Nothing"); }));
  const auto message = framework_.Messages()->Item("15065");
  EXPECT_EQ(message->TypeName() + "." + message->RoutineName(), "Framework.CreateIdentifier");
  EXPECT_EQ(message->TypeFlags(), tfVelmoria);
  EXPECT_EQ(message->StateDetails(), "");
}

TEST_F(FrameworkObjectsTest, HostCollectionThatRefusesItsSetup) {
  Components::Register<RefusingCollection>("Sales.Refusing");
  design_.Order->SetActiveXCollection("Sales.Refusing");
  ExpectRaised(
      errBusinessCollection_Setup, [&] { framework_.CreateBusinessObjects({.ClassName = "Order"}); },
      {.Text = "Problem setting up the Line of Business Collection.  ActiveXBusinessCollection: Sales.Refusing",
       .Count = 2});
}

TEST_F(FrameworkObjectsTest, RefusalOfAHostCollectionStandsBesideTheErrorAsAWarning) {
  const ComponentOffer<RefusingCollection> offer("Sales.Refusing");
  design_.Order->SetActiveXCollection("Sales.Refusing");
  EXPECT_TRUE(Thrown([&] { framework_.CreateBusinessObjects({.ClassName = "Order"}); }));
  const auto warning = framework_.Messages()->Item("5");
  ASSERT_TRUE(warning);
  EXPECT_EQ(warning->SeverityFlags(), svfWarning);
  EXPECT_EQ(warning->Description(), "no thanks");
  EXPECT_EQ(warning->RoutineName(), "CreateBusinessObjects");
}

// A host collection whose set-up asks the library for what is not there.
class SearchingCollection final : public HostCollection {
 public:
  void Setup(BusinessObjectsPtr) override { Framework().CreateIdentifier("Nothing"); }
};

TEST_F(FrameworkObjectsTest, ErrorOfTheLibraryInsideASetupStaysTheOneSeen) {
  const ComponentOffer<SearchingCollection> offer("Sales.Searching");
  design_.Order->SetActiveXCollection("Sales.Searching");
  ExpectRaised(errItem_Class, [&] { framework_.CreateBusinessObjects({.ClassName = "Order"}); },
               {.Text = "Index: 'Nothing'", .Count = 2});
}

TEST_F(FrameworkObjectsTest, ComponentThatIsNoCollectionCannotBeSetUp) {
  Components::Register<Stranger>("Sales.Stranger");
  design_.Order->SetActiveXCollection("Sales.Stranger");
  ExpectRaised(errBusinessCollection_Setup, [&] { framework_.CreateBusinessObjects({.ClassName = "Order"}); },
               {.Text = "Sales.Stranger"});
}

}  // namespace
}  // namespace velmoria::test
