#include <cstdint>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/host_collection.h"
#include "tests/unit/brokering/business_context_fixture.h"

namespace velmoria::test {
namespace {

TEST_F(BusinessContextTest, HeldCollectionIsFoundByNameAndPosition) {
  const auto context = NewContext();
  const auto lines = Collection("Lines");
  context->Add(lines);
  EXPECT_EQ(context->Item("lines"), lines);
  EXPECT_EQ(context->Item(1), lines);
  EXPECT_EQ(context->Count(), 1);
}

TEST_F(BusinessContextTest, AddPlacesByPosition) {
  const auto context = NewContext();
  context->Add(Collection("A"));
  context->Add(Collection("C"));
  context->Add(Collection("B"), {.Before = "C"});
  context->Add(Collection("D"), {.After = 3});
  std::string names;
  for (const auto& held : *context) names += held->Name();
  EXPECT_EQ(names, "ABCD");
}

TEST_F(BusinessContextTest, AddWithBothPositionsIsRefused) {
  const auto context = NewContext();
  ExpectRaised(errAdd_BusinessObjects, [&] { context->Add(Collection("A"), {.Before = 1, .After = 2}); },
               {.Text = "Name: 'A'  Before: 1  After: 2\r\nPassing both Before and After arguments is not allowed."});
}

TEST_F(BusinessContextTest, AddOfANameInUseFails) {
  const auto context = NewContext();
  context->Add(Collection("A"));
  ExpectReported(RuntimeFailure::KeyInUse, [&] { context->Add(Collection("a")); });
}

TEST_F(BusinessContextTest, AddIsRefusedBeforeAnyEventWhenNotSupported) {
  const auto context = NewContext({.SupportsAdd = false});
  bool asked = false;
  context->BeforeAdd += [&](IBusinessObjects&, bool&) { asked = true; };
  EXPECT_FALSE(context->SupportsAdd());
  ExpectRaised(errNotSupported_Add, [&] { context->Add(Collection("A")); });
  EXPECT_FALSE(asked);
}

TEST_F(BusinessContextTest, CancelledAddAddsNothingSilently) {
  const auto context = NewContext();
  bool after = false;
  context->BeforeAdd += [](IBusinessObjects&, bool& Cancel) { Cancel = true; };
  context->AfterAdd += [&](IBusinessObjects&) { after = true; };
  context->Add(Collection("A"));
  EXPECT_EQ(context->Count(), 0);
  EXPECT_FALSE(after);
}

TEST_F(BusinessContextTest, RemoveTakesACollectionOut) {
  const auto context = NewContext();
  context->Add(Collection("A"));
  context->Remove("a");
  EXPECT_EQ(context->Count(), 0);
}

TEST_F(BusinessContextTest, RemoveIsHeardBeforeAndAfterAndNotAfterwardsWhenCancelled) {
  const auto context = NewContext();
  std::string heard;
  bool cancels = true;
  context->Add(Collection("A"));
  context->BeforeRemove += [&](IBusinessObjects& item, bool& Cancel) { heard += "-" + item.Name(), Cancel = cancels; };
  context->AfterRemove += [&](IBusinessObjects& item) { heard += item.Name() + std::to_string(context->Count()); };
  context->Remove("A");
  EXPECT_EQ(std::exchange(heard, {}), "-A");
  EXPECT_EQ(context->Count(), 1);
  cancels = false;
  context->Remove("A");
  EXPECT_EQ(heard, "-AA0");
}

TEST_F(BusinessContextTest, RemoveIsRefusedWhenNotSupported) {
  const auto context = NewContext({.SupportsRemove = false});
  ExpectRaised(errNotSupported_Remove, [&] { context->Remove(1); });
}

TEST_F(BusinessContextTest, ListenerOfItemNotFoundPreventsTheError) {
  const auto context = NewContext();
  const auto supplied = Collection("Lines");
  context->ItemNotFound += [&](const Variant&, IBusinessObjectsPtr& Item) { Item = supplied; };
  EXPECT_EQ(context->Item("Lines"), supplied);
}

TEST_F(BusinessContextTest, UnknownIndexIsShownByItsType) {
  const auto context = NewContext();
  const std::pair<Variant, const char*> cases[] = {{5, "Index: 5"},
                                                   {std::int16_t{5}, "Index: 5"},
                                                   {5.5F, "Index: 5.5"},
                                                   {Decimal::Parse("5"), "Index: 5"},
                                                   {Byte{5}, "Index: 5"},
                                                   {"x", "Index: 'x'"},
                                                   {5.5, "Index: (Double)"},
                                                   {true, "Index: (Boolean)"},
                                                   {Variant::Missing(), "Index: (Error)"},
                                                   {IdentifierPtr{}, "Index: (Nothing)"}};
  for (const auto& [index, text] : cases) {
    SCOPED_TRACE(text);
    ExpectRaised(errItem_BusinessObjects, [&] { context->Item(index); }, {.Text = text});
  }
}

/// A host's collection that takes everything out of its context whenever it is asked something.
class EmptyingCollection final : public HostCollection {
 public:
  explicit EmptyingCollection(BusinessContext& context) : context_(context) { Setup(Make<BusinessObjects>()); }
  std::int32_t Count() override { return Emptied().HostCollection::Count(); }
  bool Modifiable(bool all = true) override { return Emptied().HostCollection::Modifiable(all); }

 private:
  EmptyingCollection& Emptied() {
    while (context_.Count() != 0) context_.Remove(1);
    return *this;
  }
  BusinessContext& context_;
};

TEST_F(BusinessContextTest, CollectionThatEmptiesTheContextEndsNoWalk) {
  const auto context = NewContext();
  const auto hold = [&] {
    context->Add(Make<EmptyingCollection>(*context));
    context->Add(Collection("Last"));
  };
  hold();
  EXPECT_TRUE(context->Details().ends_with("    Business Object Count 0 for Business Objects 'Last'"));
  EXPECT_EQ(context->Count(), 0);
  hold();
  EXPECT_TRUE(context->Modifiable());
  EXPECT_EQ(context->Count(), 0);
}

TEST_F(BusinessContextTest, LoadingIsRefusedEvenForAHeldCollection) {
  const auto context = NewContext({.SupportsLoad = false});
  context->Add(Collection("Orders"));
  ExpectRaised(errBusinessObjects_Load, [&] { context->LoadBusinessObjects({.Name = "Orders"}); });
}

TEST_F(BusinessContextTest, LoadReturnsAHeldCollectionWithoutLookingAtTheArguments) {
  const auto context = NewContext();
  const auto held = Collection("Orders");
  context->Add(held);
  EXPECT_EQ(context->LoadBusinessObjects({.ClassName = "Nothing", .Name = "Orders"}), held);
  EXPECT_EQ(context->LoadBusinessObjects({.ActionName = "orders"}), held);
}

TEST_F(BusinessContextTest, MessagingIsSuspendedWhileAHeldCollectionIsLookedFor) {
  const auto context = NewContext();
  const auto supplied = Collection("Orders");
  std::string told;
  context->ItemNotFound += [&](const Variant& index, IBusinessObjectsPtr& Item) {
    told += index.AsText() + ": " + apartment_.Messages().SuspendRoutine() + "\n";
    if (index.AsText() == "Third") Item = supplied;
  };
  EXPECT_EQ(context->LoadBusinessObjects({.ActionName = "Third", .RelationshipName = "Second", .Name = "First"}),
            supplied);
  EXPECT_EQ(told,
            "First: BusinessContext.LoadBusinessObjects\nSecond: BusinessContext.LoadBusinessObjects\n"
            "Third: BusinessContext.LoadBusinessObjects\n");
  EXPECT_EQ(apartment_.Messages().SuspendRoutine(), "");
}

TEST_F(BusinessContextTest, ListenerThatThrowsWhileAHeldCollectionIsLookedForSuppliesNone) {
  const auto context = NewContext();
  const auto supplied = Collection("Orders");
  context->ItemNotFound += [&](const Variant& index, IBusinessObjectsPtr& Item) {
    if (index.AsText() == "First") Framework{}.CreateIdentifier("Nothing");
    Item = supplied;
  };
  EXPECT_EQ(context->LoadBusinessObjects({.ActionName = "Second", .Name = "First"}), supplied);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

}  // namespace
}  // namespace velmoria::test
