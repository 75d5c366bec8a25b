#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_bad_input_fixture.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

/// Listeners of a context that do what they should not.
class BadListenerTest : public BrokeringBadInputTest {
 protected:
  IBusinessObjectsPtr Load(const char* name = "Mine") {
    return context_->LoadBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = name});
  }
  std::string Held() const {
    std::string names;
    for (const auto& held : *context_) names += held->Name() + ";";
    return names;
  }
  [[noreturn]] static void Throw() { throw std::runtime_error("a listener's own trouble"); }
  template <class Call>
  void ExpectTrouble(Call call) {
    const auto error = Thrown(call);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->CatalogueNumber(), 15000);
    EXPECT_NE(error->Description().find("a listener's own trouble"), std::string::npos) << error->Description();
    apartment_.Messages().Clear();
  }
};

TEST_F(BadListenerTest, ListenerThatThrowsBeforeAnAddLeavesNothingHeld) {
  const auto token = context_->BeforeAdd += [](IBusinessObjects&, bool&) { Throw(); };
  ExpectTrouble([&] { Load(); });
  EXPECT_EQ(Held(), "");
  context_->BeforeAdd -= token;
  EXPECT_EQ(Load()->Count(), 3);
  EXPECT_EQ(Held(), "Mine;");
}

TEST_F(BadListenerTest, ListenerThatThrowsBehindAnAddLeavesTheCollectionHeld) {
  context_->AfterAdd += [](IBusinessObjects&) { Throw(); };
  ExpectTrouble([&] { Load(); });
  EXPECT_EQ(Held(), "Mine;");
  EXPECT_EQ(Load()->Count(), 3) << "it is found without another Add";
}

TEST_F(BadListenerTest, ListenerThatThrowsAroundARemoveIsReported) {
  Load();
  const auto token = context_->BeforeRemove += [](IBusinessObjects&, bool&) { throw 7; };
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { context_->Remove("Mine"); });
  EXPECT_EQ(Held(), "Mine;");
  context_->BeforeRemove -= token;
  context_->AfterRemove += [](IBusinessObjects&) { Throw(); };
  ExpectTrouble([&] { context_->Remove("Mine"); });
  EXPECT_EQ(Held(), "");
}

TEST_F(BadListenerTest, ListenerThatThrowsForAnUnknownItemIsReportedButLoadsAllTheSame) {
  context_->ItemNotFound += [](const Variant&, IBusinessObjectsPtr&) { Throw(); };
  ExpectTrouble([&] { context_->Item("Mine"); });
  EXPECT_EQ(Load()->Count(), 3);
  EXPECT_EQ(Held(), "Mine;");
}

TEST_F(BadListenerTest, VetoedCollectionIsHandedOutAndNotHeld) {
  context_->BeforeAdd += [](IBusinessObjects&, bool& Cancel) { Cancel = true; };
  EXPECT_EQ(Ids(*Load()), "1,2,3");
  EXPECT_EQ(Held(), "");
}

TEST_F(BadListenerTest, ListenerThatAddsAnotherOfThatNameMakesTheAddFail) {
  bool inside = false;
  context_->BeforeAdd += [&](IBusinessObjects& item, bool&) {
    if (std::exchange(inside, true)) return;
    context_->Add(Framework{}.CreateBusinessObjects({.Name = item.Name()}));
  };
  ExpectReported(RuntimeFailure::KeyInUse, [&] { Load(); });
  EXPECT_EQ(Held(), "Mine;");
  EXPECT_EQ(context_->Item(1)->Count(), 0);
}

TEST_F(BadListenerTest, ListenerThatLoadsIntoTheSameContextChangesItsSelectionOnly) {
  context_->AfterAdd += [&](IBusinessObjects& item) {
    if (item.Name() == "Mine") context_->LoadBusinessObjects({.ClassName = "Line", .Name = "Lines"});
  };
  EXPECT_EQ(Ids(*Load()), "1,2,3");
  EXPECT_EQ(Held(), "Mine;Lines;");
  EXPECT_EQ(context_->ClassName(), "Line");
}

TEST_F(BadListenerTest, ListenerThatRemovesWhatWasAddedHasItHandedOutAllTheSame) {
  context_->AfterAdd += [&](IBusinessObjects& item) { context_->Remove(item.Name()); };
  EXPECT_EQ(Ids(*Load()), "1,2,3");
  EXPECT_EQ(Held(), "");
}

TEST_F(BadListenerTest, ListenerThatLetsGoOfTheHandleDoesNotTakeTheCollectionAway) {
  IBusinessObjectsPtr orders = context_->GetBusinessObjects({.ClassName = "Order"});
  std::string heard;
  context_->BeforeAdd += [&](IBusinessObjects&, bool&) { orders.reset(); };
  context_->AfterAdd += [&](IBusinessObjects& item) { heard = item.Name(); };
  context_->Add(orders);
  EXPECT_EQ(heard, "orders");
  EXPECT_EQ(Ids(*context_->Item("orders")), "1,2,3");
}

TEST_F(BadListenerTest, ListenerThatRemovesTheSameCollectionMakesTheRemoveFail) {
  Load();
  bool inside = false;
  context_->BeforeRemove += [&](IBusinessObjects&, bool&) {
    if (!std::exchange(inside, true)) context_->Remove(1);
  };
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { context_->Remove(1); });
  EXPECT_EQ(Held(), "");
}

TEST_F(BadListenerTest, ListenerThatPutsAnotherInFrontDoesNotHaveThatOneRemoved) {
  Load();
  context_->BeforeRemove += [&](IBusinessObjects&, bool&) {
    context_->Add(Framework{}.CreateBusinessObjects({.Name = "First"}), {.Before = 1});
  };
  context_->Remove(1);
  EXPECT_EQ(Held(), "First;");
}

TEST_F(BadListenerTest, CollectionRenamedSinceItWasAddedIsRemovedAllTheSame) {
  const auto one = Framework{}.CreateBusinessObjects({.Name = "One"});
  const auto two = Framework{}.CreateBusinessObjects({.Name = "Two"});
  context_->Add(one);
  context_->Add(two);
  one->SetName("Two");
  context_->Remove("One");
  ASSERT_EQ(context_->Count(), 1);
  EXPECT_EQ(context_->Item("Two"), two);
}

TEST_F(BadListenerTest, ListenerThatEmptiesTheContextDuringItsWalkEndsNothing) {
  for (const char* name : {"A", "B"}) Load(name)->Item(1)->FindProperty("Total")->SetValue(7.0);
  std::string heard;
  context_->BeforeItemUpdate += [&](IBusinessObjects& item, bool&) {
    heard += item.Name();
    while (context_->Count() != 0) context_->Remove(1);
  };
  context_->Update();
  EXPECT_EQ(heard, "AB");
  EXPECT_EQ(shop_.File.Column("select Total from orders where Id = 1"), "7.0");
}

TEST_F(BadListenerTest, PositionThatIsNotThereLeavesTheCollectionReadButNotHeld) {
  const std::pair<Variant, RuntimeFailure> positions[] = {{9, RuntimeFailure::SubscriptOutOfRange},
                                                          {0, RuntimeFailure::SubscriptOutOfRange},
                                                          {"Nothing", RuntimeFailure::InvalidArgument},
                                                          {Variant::Null(), RuntimeFailure::TypeMismatch},
                                                          {Variant(context_), RuntimeFailure::TypeMismatch}};
  for (const auto& [position, failure] : positions) {
    SCOPED_TRACE(position.TypeName());
    ExpectReported(failure,
                   [&, where = position] { context_->LoadBusinessObjects({.ClassName = "Order"}, {.Before = where}); });
    EXPECT_EQ(Held(), "");
  }
  ExpectRaised(errAdd_BusinessObjects,
               [&] {
                 context_->LoadBusinessObjects({.ClassName = "Order"},
                                               {.Before = Variant(context_), .After = Variant::Null()});
               },
               {.Text = "Name: 'orders'  Before: (BusinessContext)  After: (Null)\r\nPassing both"});
}

TEST_F(BadListenerTest, SuppliedCollectionCannotBeRemovedForItIsNotHeld) {
  context_->ItemNotFound +=
      [&](const Variant&, IBusinessObjectsPtr& Item) { Item = Framework{}.CreateBusinessObjects({.Name = "Other"}); };
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { context_->Remove("Nothing"); });
}

}  // namespace
}  // namespace velmoria::test
