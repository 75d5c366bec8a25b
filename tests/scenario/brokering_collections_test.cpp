#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/bound_orders.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

using GetBusinessObjectsTest = BrokeringTest;

TEST_F(GetBusinessObjectsTest, WholeResultIsOneCollection) {
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  EXPECT_EQ(orders->Count(), 3);
  EXPECT_EQ(Ids(*orders), "1,2,3");
  EXPECT_EQ(orders->Name(), "orders");
  EXPECT_EQ(Value(orders->Item("2"), "Name"), Variant("Ben"));
}

TEST_F(GetBusinessObjectsTest, ClassAloneTakesTheDefaultAction) {
  shop_.Design.Order->SetDefaultActionName("All");
  EXPECT_EQ(Framework{}.GetBusinessObjects({.ClassName = "Order"})->Count(), 3);
}

TEST_F(GetBusinessObjectsTest, GivenNameWins) {
  EXPECT_EQ(Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = "Mine"})->Name(),
            "Mine");
}

TEST_F(GetBusinessObjectsTest, ParametersChooseTheRows) {
  const auto orders = Framework{}.GetBusinessObjects(
      {.ClassName = "Order", .ActionName = "Named", .Parameters = shop_.NamedParameters("Ben")});
  EXPECT_EQ(Ids(*orders), "2,3");
}

TEST_F(GetBusinessObjectsTest, NoRowIsAnEmptyCollection) {
  const auto items = Framework{}.GetBusinessObjects({.ClassName = "Item"});
  EXPECT_EQ(items->Count(), 0);
  EXPECT_EQ(Ids(*items), "");
}

TEST_F(GetBusinessObjectsTest, PagesAreReadAsTheyAreNeeded) {
  shop_.AddOrders(95);
  shop_.OrderAction("All")->SetObjectBuffer(10);
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  EXPECT_EQ(orders->Count(), 95);
  for (const int position : {11, 95, 3, 50}) EXPECT_EQ(IdOf(*orders->Item(position)), position);
  EXPECT_EQ(IdOf(*orders->Item("77")), 77);
  int visited = 0;
  for (const auto& order : *orders) EXPECT_EQ(IdOf(*order), ++visited);
  EXPECT_EQ(visited, 95);
  ExpectRaised(errPersistence_Row, [&] { orders->Item(96); });
}

TEST_F(GetBusinessObjectsTest, ObjectBufferArgumentHasNoEffect) {
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All", .ObjectBuffer = 1});
  EXPECT_NE(orders->SetupItem(), nullptr) << "the whole result is at hand";
}

TEST_F(GetBusinessObjectsTest, ObjectTypeIsTheArgumentsThenTheContextsThenTheActions) {
  const auto context = NewContext();
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Order"})->ObjectType(), otModel);
  context->SetObjectType(otBusiness);
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Order"})->ObjectType(), otBusiness);
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Order", .ObjectType = otModel})->ObjectType(), otModel);
  EXPECT_EQ(context->ObjectType(), otBusiness);
}

TEST_F(GetBusinessObjectsTest, CollectionTypeIsTheArgumentsThenTheContextsThenTheActions) {
  shop_.OrderAction("Get")->SetCollectionType(cltDispatcher);
  const auto context = NewContext();
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Order"})->CollectionType(), cltDispatcher);
  context->SetCollectionType(cltOptimized);
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Order"})->CollectionType(), cltOptimized);
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Order", .CollectionType = cltInitialized})->CollectionType(),
            cltInitialized);
}

TEST_F(GetBusinessObjectsTest, KeyFormatIsTheArgumentsOrACopyOfTheContexts) {
  const auto context = NewContext();
  const KeyFormatPtr own = Framework{}.CreateKeyFormat({.Separator = "-"});
  const KeyFormatPtr given = Framework{}.CreateKeyFormat({.Separator = "+"});
  context->SetKeyFormat(own);
  const auto copied = context->GetBusinessObjects({.ClassName = "Line"})->KeyFormat();
  EXPECT_NE(copied, own);
  EXPECT_EQ(copied->Separator(), "-");
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Line", .KeyFormat = given})->KeyFormat(), given);
}

TEST_F(GetBusinessObjectsTest, DispatcherGivesAnotherObjectOfTheSameRowOnEveryPage) {
  shop_.AddOrders(25);
  shop_.OrderAction("All")->SetObjectBuffer(10);
  const auto orders =
      Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All", .CollectionType = cltDispatcher});
  for (const int position : {1, 25, 12, 1}) {
    const auto order = orders->Item(position);
    EXPECT_EQ(IdOf(*order), position);
    EXPECT_NE(orders->Item(position), order);
  }
  EXPECT_EQ(IdOf(*orders->Item("24")), 24);
}

TEST_F(GetBusinessObjectsTest, InitializedCollectionNeedsTheDatabaseNoMoreOnceItIsThere) {
  shop_.AddOrders(25);
  shop_.OrderAction("All")->SetObjectBuffer(10);
  const auto orders =
      Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All", .CollectionType = cltInitialized});
  EXPECT_EQ(orders->Statistics()->Item("Build Initialized Collection")->SubjectCount(), 25);
  shop_.File.Run("drop table orders");
  EXPECT_EQ(IdOf(*orders->Item(25)), 25);
  EXPECT_EQ(IdOf(*orders->Item("2")), 2);
}

using LoadBusinessObjectsTest = BrokeringTest;

TEST_F(LoadBusinessObjectsTest, SecondLoadUnderTheSameNameReachesTheDatabaseNoMore) {
  const auto context = NewContext();
  const auto first = context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = "Mine"});
  shop_.File.Run("drop table orders");
  EXPECT_EQ(context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = "Mine"}), first);
  EXPECT_EQ(context->Item("Mine"), first);
  EXPECT_TRUE(
      Thrown([&] { context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = "New"}); }));
}

TEST_F(LoadBusinessObjectsTest, CollectionIsAddedWithItsEventsAndAtItsPlace) {
  const auto context = NewContext();
  std::string heard;
  context->AfterAdd += [&](IBusinessObjects& item) { heard += item.Name() + ";"; };
  context->LoadBusinessObjects({.ClassName = "Order", .Name = "Second"});
  context->LoadBusinessObjects({.ClassName = "Line", .Name = "First"}, {.Before = 1});
  EXPECT_EQ(heard, "Second;First;");
  EXPECT_EQ(context->Item(1)->Name(), "First");
}

TEST_F(LoadBusinessObjectsTest, ContextWithoutAddRefusesWhatItHasLoaded) {
  const auto context = NewContext({.SupportsAdd = false});
  ExpectRaised(errNotSupported_Add, [&] { context->LoadBusinessObjects({.ClassName = "Order"}); });
  EXPECT_EQ(context->Count(), 0);
}

TEST_F(LoadBusinessObjectsTest, KeyFormatArgumentGoesUnusedForTheContextsOwn) {
  const auto context = NewContext();
  const KeyFormatPtr own = Framework{}.CreateKeyFormat({.Separator = "-"});
  context->SetKeyFormat(own);
  const auto lines =
      context->LoadBusinessObjects({.ClassName = "Line", .KeyFormat = Framework{}.CreateKeyFormat({.Separator = "+"})});
  EXPECT_EQ(lines->KeyFormat(), own);
}

TEST_F(LoadBusinessObjectsTest, CollectionWithoutANameIsReadAgainAndThenRefusedAsTheSecondOfThatName) {
  const auto context = NewContext();
  context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "Bare"});
  EXPECT_EQ(context->Item(1)->Name(), "");
  ExpectReported(RuntimeFailure::KeyInUse,
                 [&] { context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "Bare"}); });
}

TEST_F(LoadBusinessObjectsTest, ListenersAreAskedUnderNameAndActionBeforeTheDatabaseIs) {
  const auto context = NewContext();
  std::string heard;
  context->ItemNotFound += [&](const Variant& index, IBusinessObjectsPtr&) { heard += index.AsText() + ";"; };
  context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = "Mine"});
  EXPECT_EQ(heard, "Mine;All;");
}

}  // namespace
}  // namespace velmoria::test
