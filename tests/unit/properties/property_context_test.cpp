#include "velmoria/properties/property_context.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/properties/property_context_fixture.h"

namespace velmoria::test {
namespace {

TEST_F(PropertyContextTest, TransientContextRefusesToLoadBeforeItSaysThatItIsTransient) {
  EXPECT_FALSE(context_->SupportsLoad());
  ExpectRaised(errProperties_Load, [&] { context_->LoadProperties({.ActionName = "Detail"}); }, {.Count = 1});
  context_->SetSupportsLoad(true);
  ExpectRaised(errPropertyContext_Transient, [&] { context_->LoadProperties({.ActionName = "Detail"}); }, {.Count = 1});
}

TEST_F(PropertyContextTest, TransientContextRefusesToLoadNewOnesInTheSameOrder) {
  ExpectRaised(errProperties_Load, [&] { context_->LoadNewProperties({.ActionName = "Detail"}); }, {.Count = 1});
  context_->SetSupportsLoad(true);
  ExpectRaised(errPropertyContext_Transient, [&] { context_->LoadNewProperties({.ActionName = "Detail"}); },
               {.Count = 1});
}

TEST_F(PropertyContextTest, TransientContextHasNoBroker) {
  const std::pair<const char*, void (*)(PropertyContext&)> routines[] = {
      {"GetProperties", [](PropertyContext& c) { c.GetProperties("Detail"); }},
      {"GetNewProperties", [](PropertyContext& c) { c.GetNewProperties("Detail"); }},
      {"ActionName", [](PropertyContext& c) { c.ActionName(); }},
      {"SetActionName", [](PropertyContext& c) { c.SetActionName("Detail"); }},
      {"Parameters", [](PropertyContext& c) { c.Parameters(); }},
      {"SetParameters", [](PropertyContext& c) { c.SetParameters(Values("p")); }},
  };
  for (const auto& [name, routine] : routines) {
    SCOPED_TRACE(name);
    ExpectRaised(errPropertyContext_Transient, [&] { routine(*context_); }, {.Count = 1});
  }
  EXPECT_EQ(context_->Identifier(), nullptr);
}

TEST_F(PropertyContextTest, CollectionsAreFoundByNameAndPosition) {
  const auto a = Values("A");
  context_->Add(a);
  context_->SetupItem(Values("B"));
  EXPECT_EQ(context_->Item("a"), a);
  EXPECT_EQ(context_->Item(1), a);
  EXPECT_EQ(context_->Count(), 2);
  EXPECT_EQ(Names(*context_), "AB");
}

TEST_F(PropertyContextTest, UnknownCollectionIsShownByTheTypeOfTheIndex) {
  const std::pair<Variant, const char*> cases[] = {
      {5, "Index: 5"},     {5.5, "Index: 5.5"},         {5.5F, "Index: 5.5"},
      {"x", "Index: 'x'"}, {true, "Index: (Boolean)"},  {Variant(), "Index: (Empty)"},
      {0, "Index: 0"},     {Variant::Null(), "(Null)"}, {IdentifierPtr{}, "Index: (Nothing)"}};
  for (const auto& [index, text] : cases) {
    SCOPED_TRACE(text);
    ExpectRaised(errItem_Properties, [&] { context_->Item(index); }, {.Text = text, .Count = 1});
  }
}

TEST_F(PropertyContextTest, ListenerOfItemNotFoundSuppliesTheCollection) {
  const auto supplied = Values("A");
  context_->ItemNotFound += [&](const Variant& index, PropertiesPtr& Item) {
    if (index.AsText() == "A") Item = supplied;
  };
  EXPECT_EQ(context_->Item("A"), supplied);
  EXPECT_EQ(context_->Count(), 0);
  ExpectRaised(errItem_Properties, [&] { context_->Item("B"); });
}

TEST_F(PropertyContextTest, AddPlacesByPosition) {
  context_->Add(Values("A"));
  context_->Add(Values("C"));
  context_->Add(Values("B"), {.Before = "C"});
  context_->Add(Values("D"), {.After = 3});
  EXPECT_EQ(Names(*context_), "ABCD");
}

TEST_F(PropertyContextTest, AddWithBothPositionsIsRefused) {
  ExpectRaised(errAdd_Properties, [&] { context_->Add(Values("A"), {.Before = 1, .After = 2}); },
               {.Text = "Passing both Before and After arguments is not allowed.", .Count = 1});
  ExpectRaised(errAdd_Properties, [&] { context_->SetupItem(Values("A"), {.Before = 1, .After = "B"}); },
               {.Text = "PropertyContext. Name: 'A'  Before: '1'  After: 'B'"});
  EXPECT_EQ(context_->Count(), 0);
}

TEST_F(PropertyContextTest, AddBesideACollectionThatIsNotThereFails) {
  context_->Add(Values("A"));
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { context_->Add(Values("B"), {.After = "Z"}); });
  ExpectReported(RuntimeFailure::SubscriptOutOfRange, [&] { context_->Add(Values("B"), {.Before = 2}); });
  EXPECT_EQ(Names(*context_), "A");
}

TEST_F(PropertyContextTest, AddOfANameInUseFails) {
  context_->Add(Values("A"));
  ExpectReported(RuntimeFailure::KeyInUse, [&] { context_->Add(Values("a")); });
}

TEST_F(PropertyContextTest, AddOfNoneIsAnObjectNotSet) {
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->Add({}); });
}

TEST_F(PropertyContextTest, AddIsRefusedBeforeAnyEventWhenNotSupported) {
  bool asked = false;
  context_->BeforeAdd += [&](Properties&, bool&) { asked = true; };
  context_->SetSupportsAdd(false);
  ExpectRaised(errNotSupported_Add, [&] { context_->Add(Values("A")); });
  EXPECT_FALSE(asked);
}

TEST_F(PropertyContextTest, CancelledAddAndRemoveChangeNothingAndEndSilently) {
  std::string heard;
  context_->Add(Values("A"));
  context_->BeforeAdd += [](Properties&, bool& Cancel) { Cancel = true; };
  context_->BeforeRemove += [](Properties&, bool& Cancel) { Cancel = true; };
  context_->AfterAdd += [&](Properties&) { heard += "added"; };
  context_->AfterRemove += [&](Properties&) { heard += "removed"; };
  context_->Add(Values("B"));
  context_->Remove("A");
  EXPECT_EQ(Names(*context_), "A");
  EXPECT_EQ(heard, "");
}

TEST_F(PropertyContextTest, CollectionThatAListenerLetsGoOfIsAddedAllTheSame) {
  std::vector<PropertiesPtr> mine{Values("A")};
  context_->BeforeAdd += [&](Properties&, bool&) { mine.clear(); };
  context_->Add(mine.front());
  EXPECT_EQ(Names(*context_), "A");
}

TEST_F(PropertyContextTest, AddAndRemoveAreHeard) {
  std::string heard;
  context_->AfterAdd += [&](Properties& item) { heard += "+" + item.Name(); };
  context_->AfterRemove += [&](Properties& item) { heard += "-" + item.Name(); };
  context_->Add(Values("A"));
  context_->Remove(1);
  EXPECT_EQ(heard, "+A-A");
  EXPECT_EQ(context_->Count(), 0);
}

TEST_F(PropertyContextTest, RemoveIsRefusedWhenNotSupported) {
  context_->Add(Values("A"));
  context_->SetSupportsRemove(false);
  ExpectRaised(errNotSupported_Remove, [&] { context_->Remove("A"); });
}

TEST_F(PropertyContextTest, RemoveOfAnUnknownCollectionRaisesTheMissAndHoldsItsOwnNumberBesideIt) {
  const auto error = Thrown([&] { context_->Remove("x"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15071);
  const MessagePtr own = apartment_.Messages().Item("15141");
  ASSERT_NE(own, nullptr);
  EXPECT_EQ(own->Description(), "Problem removing Properties from PropertyContext. Index: 'x'");
  EXPECT_EQ(apartment_.Messages().Count(), 2);
}

TEST_F(PropertyContextTest, FailureWhileRemovingIsRaisedAsTheRemovalsOwnNumber) {
  context_->Add(Values("A"));
  context_->BeforeRemove += [](Properties&, bool&) { Fail(RuntimeFailure::DeviceError); };
  ExpectRaised(errRemove_Properties, [&] { context_->Remove(1); }, {.Text = "Index: 1", .Count = 2});
}

TEST_F(PropertyContextTest, CollectionThatWasRenamedSinceCannotBeRemoved) {
  const auto values = Values("A");
  context_->Add(values);
  values->SetName("B");
  ExpectRaised(errRemove_Properties, [&] { context_->Remove("A"); }, {.Text = "Index: 'A'", .Count = 2});
  EXPECT_EQ(context_->Item("A"), values);
}

TEST_F(PropertyContextTest, WhatAListenerSuppliesIsNoCollectionToRemove) {
  context_->ItemNotFound += [](const Variant&, PropertiesPtr& Item) { Item = Values("B"); };
  ExpectRaised(errRemove_Properties, [&] { context_->Remove(7); }, {.Text = "Index: 7"});
}

TEST_F(PropertyContextTest, ListenersSeeTheCollectionInBetween) {
  std::string heard;
  context_->BeforeAdd += [&](Properties& item, bool&) { heard += item.Name() + std::to_string(context_->Count()); };
  context_->AfterAdd += [&](Properties&) { heard += std::to_string(context_->Count()); };
  context_->BeforeRemove += [&](Properties&, bool&) { heard += std::to_string(context_->Count()); };
  context_->AfterRemove += [&](Properties&) { heard += std::to_string(context_->Count()); };
  context_->Add(Values("A"));
  context_->Remove("a");
  EXPECT_EQ(heard, "A0110");
}

TEST_F(PropertyContextTest, LockedGuardsNoMember) {
  context_->SetLocked(true);
  context_->Add(Values("A"));
  context_->Remove("A");
  EXPECT_EQ(context_->Count(), 0);
}

TEST_F(PropertyContextTest, LockedContextRefusesItsSettings) {
  const auto locked =
      Framework{}.CreatePropertyContext({.Locked = true, .SupportsAdd = false, .SupportsRemove = false});
  EXPECT_FALSE(locked->SupportsAdd() || locked->SupportsRemove() || locked->SupportsLoad());
  ExpectRaised(errVelmoria_Locked, [&] { locked->SetSupportsAdd(true); });
  ExpectRaised(errVelmoria_Locked, [&] { locked->SetSupportsRemove(true); });
  ExpectRaised(errVelmoria_Locked, [&] { locked->SetSupportsLoad(true); });
  ExpectRaised(errVelmoria_Locked, [&] { locked->Setup(false, true, true); },
               {.Text = "This property is locked and cannot be changed."});
  locked->SetLocked(false);
  locked->SetSupportsAdd(true);
  EXPECT_TRUE(locked->SupportsAdd());
}

TEST_F(PropertyContextTest, DetailsOfATransientContextTellItsCollections) {
  context_->Add(Values("A", {Number("Id", 1)}));
  context_->Add(Values("B"));
  EXPECT_EQ(context_->Details(),
            "Properties Count 2\r\n    Properties Count 1 for Properties 'A'"
            "\r\n    Properties Count 0 for Properties 'B'");
}

TEST_F(PropertyContextTest, ModifiableAsksAllOrAny) {
  EXPECT_TRUE(context_->Modifiable(true));
  EXPECT_FALSE(context_->Modifiable(false));
  const auto fixed = Values("A", {Number("Id", 1)});
  fixed->Item("Id")->SetModifiable(false);
  context_->Add(fixed);
  context_->Add(Values("B", {Number("Id", 1)}));
  EXPECT_FALSE(context_->Modifiable(true));
  EXPECT_TRUE(context_->Modifiable(false));
}

}  // namespace
}  // namespace velmoria::test
