#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

using LoadPropertiesTest = BrokeringTest;

TEST_F(LoadPropertiesTest, SecondLoadReturnsTheSameCollectionWithoutTheDatabase) {
  const auto order = Order(1);
  const PropertyContextPtr context = order->GetModel()->PropertyContext();
  const auto detail = context->LoadProperties({.ActionName = "Detail"});
  shop_.File.Run("drop table details");
  EXPECT_EQ(context->LoadProperties({.ActionName = "Detail"}), detail);
  EXPECT_EQ(order->PropertiesCount(), 2);
}

TEST_F(LoadPropertiesTest, LoadedCollectionJoinsWithoutEvents) {
  const auto context = Order(1)->GetModel()->PropertyContext();
  bool heard = false;
  context->BeforeAdd += [&](Properties&, bool&) { heard = true; };
  context->SetSupportsAdd(false);
  EXPECT_EQ(context->LoadProperties({.ActionName = "Detail", .Name = "Mine"}, {.Before = 1})->Name(), "Mine");
  EXPECT_EQ(context->Item(1)->Name(), "Mine");
  EXPECT_FALSE(heard);
}

TEST_F(LoadPropertiesTest, ModelLoadsPropertiesByTheNameOfAnAction) {
  const auto order = Order(1);
  EXPECT_EQ(order->Properties("Detail")->Item("Note")->Value(), Variant("ring twice"));
  EXPECT_EQ(order->Properties("Detail"), order->Properties(2));
  EXPECT_EQ(Value(order, "Note"), Variant("ring twice"));
  EXPECT_EQ(order->FindProperty(4), order->Properties(2)->Item(1));
}

TEST_F(LoadPropertiesTest, GetPropertiesAddsNothing) {
  const auto order = Order(1);
  const auto detail = order->GetModel()->PropertyContext()->GetProperties("Detail");
  EXPECT_EQ(detail->Item("Note")->Value(), Variant("ring twice"));
  EXPECT_EQ(order->PropertiesCount(), 1);
}

TEST_F(LoadPropertiesTest, ListenerThatFailsDoesNotKeepTheCollectionFromBeingLoaded) {
  const auto context = Order(1)->GetModel()->PropertyContext();
  context->ItemNotFound += [&](const Variant&, PropertiesPtr&) { Fail(RuntimeFailure::DeviceError); };
  EXPECT_EQ(context->LoadProperties({.ActionName = "Detail"})->Item("Note")->Value(), Variant("ring twice"));
  EXPECT_EQ(Order(1)->Properties("Detail")->Count(), 2);
}

TEST_F(LoadPropertiesTest, LoadWithBothPositionsIsRefusedOnceTheRowIsThere) {
  const auto context = Order(1)->GetModel()->PropertyContext();
  ExpectRaised(errAdd_Properties, [&] { context->LoadProperties({.ActionName = "Detail"}, {.Before = 1, .After = 1}); },
               {.Text = "Name: 'Detail'  Before: '1'  After: '1'"});
  EXPECT_EQ(context->Count(), 1);
}

TEST_F(LoadPropertiesTest, NewPropertiesJoinEmptyAndAreInsertedWithTheObject) {
  const auto order = Order(3);
  const PropertyContextPtr context = order->GetModel()->PropertyContext();
  const auto detail = context->LoadNewProperties({.ActionName = "Detail"});
  EXPECT_EQ(detail->StateFlags(), sfNew);
  EXPECT_TRUE(detail->EmptyValues());
  EXPECT_EQ(context->LoadNewProperties({.ActionName = "Detail"}), detail);
  EXPECT_EQ(order->Properties("Detail"), detail);
  detail->Item("Id")->SetValue(3);
  detail->Item("Note")->SetValue("mind the step");
  order->Update();
  EXPECT_EQ(shop_.File.Column("select Note from details where Id = 3"), "mind the step");
}

TEST_F(LoadPropertiesTest, GetNewPropertiesAddsNothingAndTakesAName) {
  const auto order = Order(3);
  const auto context = order->GetModel()->PropertyContext();
  EXPECT_EQ(context->GetNewProperties("Detail", "Mine")->Name(), "Mine");
  EXPECT_EQ(context->GetNewProperties("Detail")->StateFlags(), sfNew);
  EXPECT_EQ(order->PropertiesCount(), 1);
}

TEST_F(LoadPropertiesTest, NewPropertiesJoinWithoutEventsWhereThePositionSays) {
  const auto context = Order(3)->GetModel()->PropertyContext();
  bool heard = false;
  context->BeforeAdd += [&](Properties&, bool&) { heard = true; };
  context->SetSupportsAdd(false);
  context->LoadNewProperties({.ActionName = "Detail", .Name = "Mine"}, {.Before = 1});
  EXPECT_EQ(context->Item(1)->Name(), "Mine");
  EXPECT_FALSE(heard);
}

TEST_F(LoadPropertiesTest, NoRowAndSeveralRowsAreReported) {
  const auto none = Order(3)->GetModel()->PropertyContext();
  ExpectRaised(errPersistence_Get, [&] { none->LoadProperties({.ActionName = "Detail"}); });
  const auto two = Order(2)->GetModel()->PropertyContext();
  ExpectRaised(errMismatch_Count, [&] { two->LoadProperties({.ActionName = "Detail"}); }, {.Text = "2"});
  EXPECT_EQ(two->Count(), 1);
}

TEST_F(LoadPropertiesTest, SeveralRowsPassUnnoticedInPagesOfOne) {
  shop_.OrderAction("Detail")->SetObjectBuffer(1);
  EXPECT_EQ(Order(2)->Properties("Detail")->Item("Note")->Value(), Variant("fragile"));
}

TEST_F(LoadPropertiesTest, NameThatGivesNoSingleRowIsTheMissingCollectionOfAModel) {
  ExpectRaised(errItem_Properties, [&] { Order(3)->Properties("Detail"); }, {.Text = "Index: 'Detail'"});
}

TEST_F(LoadPropertiesTest, ParametersAreUsedInsteadOfTheIdentity) {
  const auto context = Order(1)->GetModel()->PropertyContext();
  EXPECT_EQ(context->GetProperties("Named", shop_.NamedParameters("Cyd"))->Item("Id")->Value(), Variant(3));
}

TEST_F(LoadPropertiesTest, UpdateOfTheObjectWritesEveryCollection) {
  const auto order = Order(1);
  order->Properties("Detail")->Item("Note")->SetValue("knock");
  order->FindProperty("Name")->SetValue("Ann");
  order->Update();
  EXPECT_EQ(shop_.File.Column("select Note from details where Id = 1"), "knock");
  EXPECT_EQ(shop_.File.Column("select Name from orders where Id = 1"), "Ann");
}

}  // namespace
}  // namespace velmoria::test
