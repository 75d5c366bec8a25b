#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertiesItemsTest : public testing::Test {
 protected:
  PropertiesItemsTest() : properties_(Framework().CreateProperties()) {
    properties_->SetupItem({.Name = "A", .SourceName = "col_a", .SourceColumn = "ca", .SourceTable = "t"});
    properties_->SetupItem({.Name = "B", .SourceName = "col_b", .SourceColumn = "cb", .SourceTable = "t"});
  }
  static PropertyPtr New(const PropertyFields& fields) { return Framework().CreateProperty(fields); }

  ScopedApartment apartment_;
  PropertiesPtr properties_;
};

TEST_F(PropertiesItemsTest, FoundByPositionAndByNameWithoutRegardToCase) {
  EXPECT_EQ(properties_->Item(1)->Name(), "A");
  EXPECT_EQ(properties_->Item("b")->Name(), "B");
}

TEST_F(PropertiesItemsTest, FoundBySourceNameOrSourceKeyExactly) {
  EXPECT_EQ(properties_->Item(PropertyKey{.SourceName = "col_b"})->Name(), "B");
  EXPECT_EQ(properties_->Item(PropertyKey{.SourceKey = "t.ca"})->Name(), "A");
  EXPECT_EQ(properties_->Item(PropertyKey{.Index = "x", .SourceName = "none", .SourceKey = "t.cb"})->Name(), "B");
  ExpectRaised(errItem_Property, [&] { properties_->Item(PropertyKey{.SourceName = "COL_B"}); });
}

TEST_F(PropertiesItemsTest, MissRaisesTheEventFirstAndTheErrorSecond) {
  int events = 0;
  properties_->ItemNotFound += [&](const PropertyKey& key, PropertyPtr&) {
    ++events;
    EXPECT_EQ(key.Index.AsText(), "C");
    EXPECT_EQ(Framework().Messages()->Count(), 0);
  };
  ExpectRaised(errItem_Property, [&] { properties_->Item("C"); });
  EXPECT_EQ(events, 1);
}

TEST_F(PropertiesItemsTest, ListenerThatSuppliesTheItemPreventsTheError) {
  const auto supplied = New({.Name = "C"});
  properties_->ItemNotFound += [&](const PropertyKey&, PropertyPtr& item) { item = supplied; };
  EXPECT_EQ(properties_->Item("C"), supplied);
  EXPECT_EQ(Framework().Messages()->Count(), 0);
}

struct ShownIndex {
  const char* Name;
  Variant Index;
  const char* Text;
};

class PropertiesIndexTest : public PropertiesItemsTest, public testing::WithParamInterface<ShownIndex> {};

TEST_P(PropertiesIndexTest, MissShowsTheIndex) {
  ExpectRaised(
      errItem_Property, [&] { properties_->Item(GetParam().Index); },
      {.Text = std::string("Index: ") + GetParam().Text + "  SourceName: ''  SourceKey: ''  Parameter: (Nothing)"});
}

INSTANTIATE_TEST_SUITE_P(Table, PropertiesIndexTest,
                         testing::Values(ShownIndex{"Long", 9, "9"}, ShownIndex{"Double", 9.5, "9.5"},
                                         ShownIndex{"Text", "x", "'x'"}, ShownIndex{"Null", Variant::Null(), "'Null'"},
                                         ShownIndex{"Boolean", true, "'Boolean'"},
                                         ShownIndex{"Absent", Variant::Missing(), "'Error'"},
                                         ShownIndex{"Object", Variant(PropertyPtr()), "'Nothing'"}),
                         [](const auto& each) { return each.param.Name; });

TEST_F(PropertiesItemsTest, ParameterIsFoundByItsName) {
  EXPECT_EQ(properties_->Item(PropertyKey{.Parameter = New({.Name = "b"})})->Name(), "B");
}

TEST_F(PropertiesItemsTest, ParameterWithoutAKeyGivesNoneWithoutEventAndError) {
  int events = 0;
  properties_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { ++events; };
  EXPECT_FALSE(properties_->Item(PropertyKey{.Parameter = New({.Name = "x", .SourceName = "col_b"})}));
  EXPECT_EQ(events, 0);
  EXPECT_EQ(Framework().Messages()->Count(), 0);
}

TEST_F(PropertiesItemsTest, SourceNameOfAParameterOnlyOpensTheSearchBySourceKey) {
  const auto parameter = New({.Name = "x", .SourceName = "A", .SourceColumn = "cb", .SourceTable = "t"});
  EXPECT_EQ(properties_->Item(PropertyKey{.Parameter = parameter})->Name(), "B");
}

TEST_F(PropertiesItemsTest, ParameterWhoseSourceKeyNobodyHasRaisesEventAndError) {
  const auto parameter = New({.Name = "x", .SourceName = "A", .SourceColumn = "none", .SourceTable = "t"});
  int events = 0;
  properties_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { ++events; };
  ExpectRaised(errItem_Property, [&] { properties_->Item(PropertyKey{.Parameter = parameter}); },
               {.Text = "Parameter: " + parameter->Details()});
  EXPECT_EQ(events, 1);
}

TEST_F(PropertiesItemsTest, FindNeitherRaisesNorTellsListeners) {
  int events = 0;
  properties_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { ++events; };
  EXPECT_FALSE(properties_->Find({.Index = "C"}));
  EXPECT_EQ(events, 0);
  EXPECT_FALSE(properties_->FindRaising({.Index = "C"}));
  EXPECT_EQ(events, 1);
}

TEST_F(PropertiesItemsTest, WalkGoesInOrder) {
  std::string names;
  for (const auto& item : *properties_) names += item->Name();
  EXPECT_EQ(names, "AB");
}

// Rows

TEST_F(PropertiesItemsTest, RowMakesEachMemberOnce) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  EXPECT_EQ(row->Count(), 7);
  EXPECT_EQ(row->Item("name"), row->Item(2));
  EXPECT_EQ(row->Item(PropertyKey{.SourceKey = "orders.Name"}), row->Item(2));
  EXPECT_NE(row->Item(2), rows.Row(0)->Item(2));
}

TEST_F(PropertiesItemsTest, RowsShareTheirDefinitions) {
  const SampleRows rows;
  EXPECT_EQ(rows.Row(0)->Item(2)->Data(), rows.Row(1)->Item(2)->Data());
}

TEST_F(PropertiesItemsTest, RowMissRaisesAsAnyCollection) {
  const SampleRows rows;
  ExpectRaised(errItem_Property, [&] { rows.Row(0)->Item("Nope"); }, {.Text = "Index: 'Nope'"});
  ExpectRaised(errItem_Property, [&] { rows.Row(0)->Item(8); }, {.Text = "Index: 8"});
  ExpectRaised(errItem_Property, [&] { rows.Row(0)->Item(0); }, {.Text = "Index: 0"});
}

TEST_F(PropertiesItemsTest, RowKeepsItsMembersWhenAnotherRowRemovesAColumn) {
  const SampleRows rows;
  const auto first = rows.Row(0);
  const auto amount = first->Item("Amount");
  rows.Row(1)->Remove("Name");
  EXPECT_EQ(first->Count(), 6);
  EXPECT_EQ(first->Item("Amount"), amount);
  EXPECT_EQ(amount->Value().AsDouble(), 12.5);
  EXPECT_EQ(first->Item("Note")->Value().IsNull(), true);
}

}  // namespace
}  // namespace velmoria::test
