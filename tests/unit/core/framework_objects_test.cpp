#include <new>

#include <gtest/gtest.h>

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

TEST_F(FrameworkObjectsTest, IdentifierOfAnUnknownClassInANamedServer) {
  ExpectRaised(errItem_Class, [&] { framework_.CreateIdentifier("Nothing", "Sales"); }, {.Count = 1});
}

TEST_F(FrameworkObjectsTest, IdentifierFromAnUnknownServer) {
  ExpectRaised(errItem_Server, [&] { framework_.CreateIdentifier("Order", "Nowhere"); }, {.Count = 1});
}

TEST_F(FrameworkObjectsTest, CollectionWithoutAClassIsTheFrameworksOwn) {
  const auto objects = framework_.CreateBusinessObjects({.Name = "Mine", .Locked = true, .SupportsRemove = false});
  EXPECT_EQ(objects->Name(), "Mine");
  EXPECT_TRUE(objects->Locked());
  EXPECT_TRUE(objects->SupportsAdd());
  EXPECT_FALSE(objects->SupportsRemove());
  EXPECT_NE(dynamic_cast<BusinessObjects*>(objects.get()), nullptr);
}

TEST_F(FrameworkObjectsTest, CollectionOfAClassWithoutAHostCollectionIsTheFrameworksOwn) {
  const auto objects = framework_.CreateBusinessObjects({.ClassName = "Order"});
  EXPECT_NE(dynamic_cast<BusinessObjects*>(objects.get()), nullptr);
}

TEST_F(FrameworkObjectsTest, CollectionOfAnUnknownClass) {
  ExpectRaised(errItem_Class, [&] { framework_.CreateBusinessObjects({.ClassName = "Nothing"}); },
               {.Text = std::string("Index: 'Nothing'") + kNoClass, .Count = 1});
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
  EXPECT_EQ(host->Inner()->Name(), "Mine");
}

TEST_F(FrameworkObjectsTest, HostCollectionWithABareNameIsOfTheNamedServersComponent) {
  design_.Order->SetActiveXCollection("Orders");
  const auto objects = framework_.CreateBusinessObjects({.ClassName = "Order", .ServerName = "Sales"});
  EXPECT_NE(dynamic_cast<HostCollection*>(objects.get()), nullptr);
}

TEST_F(FrameworkObjectsTest, BareNameOfAClassFoundByWalkingAsksForTheServerWithoutAName) {
  design_.Order->SetActiveXCollection("Orders");
  ExpectRaised(errItem_Server, [&] { framework_.CreateBusinessObjects({.ClassName = "Order"}); },
               {.Text = "Index: ''"});
}

TEST_F(FrameworkObjectsTest, HostCollectionThatNobodyOffers) {
  design_.Order->SetActiveXCollection("Sales.Unknown");
  ExpectRaised(errBusinessCollection_Create, [&] { framework_.CreateBusinessObjects({.ClassName = "Order"}); },
               {.Text = "Sales.Unknown", .Count = 1});
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
  ExpectRaised(errBusinessCollection_Setup, [&] { framework_.CreateBusinessObjects({.ClassName = "Order"}); },
               {.Text = "Sales.Refusing"});
}

TEST_F(FrameworkObjectsTest, ComponentThatIsNoCollectionCannotBeSetUp) {
  Components::Register<Stranger>("Sales.Stranger");
  design_.Order->SetActiveXCollection("Sales.Stranger");
  ExpectRaised(errBusinessCollection_Setup, [&] { framework_.CreateBusinessObjects({.ClassName = "Order"}); },
               {.Text = "Sales.Stranger"});
}

}  // namespace
}  // namespace velmoria::test
