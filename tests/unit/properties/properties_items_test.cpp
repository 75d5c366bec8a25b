#include <functional>
#include <optional>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/properties/property_data.h"
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
  ExpectRaised(errItem_Property, [&] { properties_->Item(PropertyKey{.SourceKey = "T.CA"}); });
}

TEST_F(PropertiesItemsTest, AnIndexThatIsThereGoesBeforeTheNamesOfTheSource) {
  EXPECT_EQ(properties_->Item(PropertyKey{.Index = "B", .SourceName = "col_a", .SourceKey = "t.ca"})->Name(), "B");
  EXPECT_EQ(properties_->Item(PropertyKey{.Index = 2, .SourceName = "col_a"})->Name(), "B");
}

TEST_F(PropertiesItemsTest, FirstMemberWithEitherNameOfTheSourceWins) {
  EXPECT_EQ(properties_->Item(PropertyKey{.SourceName = "col_b", .SourceKey = "t.ca"})->Name(), "A");
  EXPECT_EQ(properties_->Item(PropertyKey{.SourceName = "col_a", .SourceKey = "t.cb"})->Name(), "A");
}

TEST_F(PropertiesItemsTest, MemberWithoutASourceIsNotFoundByEmptyNames) {
  properties_->SetupItem({.Name = "C"});
  ExpectRaised(errItem_Property,
               [&] { properties_->Item(PropertyKey{.Index = "x", .SourceName = "", .SourceKey = ""}); });
  ExpectRaised(errItem_Property, [&] { properties_->Item(PropertyKey{.SourceKey = "."}); });
}

TEST_F(PropertiesItemsTest, MissRaisesTheEventFirstAndTheErrorSecond) {
  int events = 0;
  properties_->ItemNotFound += [&](const PropertyKey& key, PropertyPtr&) {
    ++events;
    EXPECT_EQ(key.Index.AsText(), "C");
    EXPECT_EQ(Framework().Messages()->Count(), 0);
    EXPECT_EQ(Framework().Messages()->SuspendRoutine(), "");
  };
  ExpectRaised(errItem_Property, [&] { properties_->Item("C"); }, {.Count = 1});
  EXPECT_EQ(events, 1);
}

TEST_F(PropertiesItemsTest, ListenerThatSuppliesTheItemPreventsTheError) {
  const auto supplied = New({.Name = "C"});
  properties_->ItemNotFound += [&](const PropertyKey&, PropertyPtr& item) { item = supplied; };
  EXPECT_EQ(properties_->Item("C"), supplied);
  EXPECT_EQ(Framework().Messages()->Count(), 0);
}

TEST_F(PropertiesItemsTest, LastListenerDecidesWhatIsSupplied) {
  properties_->ItemNotFound += [&](const PropertyKey&, PropertyPtr& item) { item = New({.Name = "C"}); };
  properties_->ItemNotFound += [&](const PropertyKey&, PropertyPtr& item) { item.reset(); };
  ExpectRaised(errItem_Property, [&] { properties_->Item("C"); });
}

TEST_F(PropertiesItemsTest, MissInsideASuspensionOfOthersStillRaisesItsOwnNumberAndRecordsNothing) {
  std::optional<Error> error;
  {
    Suspension quiet{"Somebody.Else"};
    error = Thrown([&] { properties_->Item("C"); });
  }
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), static_cast<std::int32_t>(errItem_Property));
  EXPECT_EQ(error->Description(),
            "Problem finding Property.  Index: 'C'  SourceName: ''  SourceKey: ''  Parameter: (Nothing)");
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
                         testing::Values(ShownIndex{"Integer", std::int16_t{9}, "9"}, ShownIndex{"Long", -9, "-9"},
                                         ShownIndex{"Single", 9.5F, "9.5"}, ShownIndex{"Double", 9.25, "9.25"},
                                         ShownIndex{"Currency", Currency{95000}, "9.5"},
                                         ShownIndex{"Decimal", Decimal::Parse("9.10"), "9.10"},
                                         ShownIndex{"Byte", Byte{9}, "9"}, ShownIndex{"Text", "x", "'x'"},
                                         ShownIndex{"DigitsAreAText", "1", "'1'"}, ShownIndex{"NoText", "", "''"},
                                         ShownIndex{"Empty", Variant(), "'Empty'"},
                                         ShownIndex{"Null", Variant::Null(), "'Null'"},
                                         ShownIndex{"Boolean", true, "'Boolean'"},
                                         ShownIndex{"Date", Date::From(1998, 6, 1), "'Date'"},
                                         ShownIndex{"Bytes", std::vector<Byte>{1}, "'Byte()'"},
                                         ShownIndex{"Values", Variant::ArrayOfValues({1}), "'Variant()'"},
                                         ShownIndex{"Absent", Variant::Missing(), "'Error'"},
                                         ShownIndex{"Nothing", Variant(PropertyPtr()), "'Nothing'"}),
                         [](const auto& each) { return each.param.Name; });

TEST_F(PropertiesItemsTest, MissShowsAnObjectByItsClass) {
  ExpectRaised(errItem_Property, [&] { properties_->Item(Variant(properties_)); }, {.Text = "Index: 'Properties'"});
}

TEST_F(PropertiesItemsTest, MissShowsTheNamesOfTheSource) {
  ExpectRaised(
      errItem_Property, [&] { properties_->Item(PropertyKey{.Index = 9, .SourceName = "col_z", .SourceKey = "t.z"}); },
      {.Text = "Problem finding Property.  Index: 9  SourceName: 'col_z'  SourceKey: 't.z'  Parameter: (Nothing)"});
}

TEST_F(PropertiesItemsTest, ParameterIsFoundByItsName) {
  EXPECT_EQ(properties_->Item(PropertyKey{.Parameter = New({.Name = "b"})})->Name(), "B");
}

TEST_F(PropertiesItemsTest, BesideAParameterTheOtherKeysAreNotLookedAt) {
  const PropertyKey key{.Index = 1, .SourceName = "col_a", .SourceKey = "t.ca", .Parameter = New({.Name = "B"})};
  EXPECT_EQ(properties_->Item(key)->Name(), "B");
  EXPECT_FALSE(properties_->Item(PropertyKey{.Index = 1, .SourceName = "col_a", .Parameter = New({.Name = "x"})}));
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

TEST_F(PropertiesItemsTest, SourceNameOfAParameterOpensTheSearchWithoutRegardToCase) {
  const auto parameter = New({.Name = "x", .SourceName = "a", .SourceColumn = "cb", .SourceTable = "t"});
  EXPECT_EQ(properties_->Item(PropertyKey{.Parameter = parameter})->Name(), "B");
}

TEST_F(PropertiesItemsTest, FirstMemberWithTheSourceKeyOfTheParameterWins) {
  properties_->SetupItem({.Name = "C", .SourceColumn = "cb", .SourceTable = "t"});
  const auto parameter = New({.Name = "x", .SourceName = "C", .SourceColumn = "cb", .SourceTable = "t"});
  EXPECT_EQ(properties_->Item(PropertyKey{.Parameter = parameter})->Name(), "B");
}

TEST_F(PropertiesItemsTest, ParameterWithoutASourceKeyGetsTheFirstMemberWithoutOne) {
  for (const char* name : {"C", "D"}) properties_->SetupItem({.Name = name});
  EXPECT_EQ(properties_->Item(PropertyKey{.Parameter = New({.Name = "x", .SourceName = "A"})})->Name(), "C");
}

TEST_F(PropertiesItemsTest, ListenerMaySupplyWhatAParameterDoesNotFind) {
  const auto supplied = New({.Name = "C"});
  properties_->ItemNotFound += [&](const PropertyKey&, PropertyPtr& item) { item = supplied; };
  const auto parameter = New({.Name = "x", .SourceName = "A"});
  EXPECT_EQ(properties_->Item(PropertyKey{.Parameter = parameter}), supplied);
}

TEST_F(PropertiesItemsTest, ParameterWhoseSourceKeyNobodyHasRaisesEventAndError) {
  const auto parameter = New({.Name = "x", .SourceName = "A", .SourceColumn = "none", .SourceTable = "t"});
  int events = 0;
  properties_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { ++events; };
  ExpectRaised(errItem_Property, [&] { properties_->Item(PropertyKey{.Parameter = parameter}); },
               {.Text = "Index: 'Error'  SourceName: ''  SourceKey: ''  Parameter: " + parameter->Details()});
  EXPECT_EQ(events, 1);
}

TEST_F(PropertiesItemsTest, FindNeitherRaisesNorTellsListeners) {
  int events = 0;
  properties_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { ++events; };
  EXPECT_FALSE(properties_->Find({.Index = "C"}));
  EXPECT_EQ(events, 0);
  EXPECT_FALSE(properties_->FindOrAsk({.Index = "C"}));
  EXPECT_EQ(events, 1);
}

TEST_F(PropertiesItemsTest, WalkGoesInOrder) {
  std::string names;
  for (const auto& item : *properties_) names += item->Name();
  EXPECT_EQ(names, "AB");
  const auto none = Framework().CreateProperties();
  EXPECT_EQ(none->begin(), none->end());
}

TEST_F(PropertiesItemsTest, IteratorsStepEitherWay) {
  auto next = properties_->begin();
  EXPECT_EQ((*next++)->Name(), "A");
  EXPECT_EQ((*next)->Name(), "B");
  EXPECT_EQ(++next, properties_->end());
}

TEST_F(PropertiesItemsTest, CollectionWhoseDefinitionsCannotBeMadeMembersFailsEachTime) {
  auto data = Make<PropertiesData>();
  for (const char* name : {"A", "B"}) data->SetupItem(psUser, {.Name = name});
  data->Item("A")->SetName("B");
  const auto properties = Make<Properties>();
  properties->Bind({.Style = psUser, .PropertiesData = data});
  const std::function<void()> routines[] = {[&] { properties->Count(); },
                                            [&] { properties->begin(); },
                                            [&] { properties->end(); },
                                            [&] { properties->Item(1); },
                                            [&] { properties->Add(New({.Name = "C"})); },
                                            [&] { properties->SetupItem({.Name = "C"}); },
                                            [&] { properties->RenameItem("A", "C"); },
                                            [&] { properties->Copy(); },
                                            [&] { properties->Modifiable(); },
                                            [&] { properties->Dirty(); },
                                            [&] { properties->DirtyValues(); },
                                            [&] { properties->EmptyValues(); },
                                            [&] { properties->RequiresValues(); },
                                            [&] { properties->EditFlags(); },
                                            [&] { properties->StateFlags(); },
                                            [&] { properties->ReturnValueParameter(); },
                                            [&] { properties->PropertiesMatch(properties_); },
                                            [&] { properties->Undo(); }};
  for (int time = 1; time <= 2; ++time) {
    for (const auto& routine : routines) ExpectReported(RuntimeFailure::KeyInUse, routine);
  }
  ExpectRaised(errRemove_Property, [&] { properties->Remove(1); });
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

TEST_F(PropertiesItemsTest, RowFollowsAColumnThatAnotherRowRenames) {
  const SampleRows rows;
  const auto first = rows.Row(0);
  const auto name = first->Item("Name");
  rows.Row(1)->RenameItem("Name", "Who");
  EXPECT_EQ(first->Item("who"), name);
  EXPECT_EQ(name->Value().AsText(), "Ada");
  ExpectRaised(errItem_Property, [&] { first->Item("Name"); });
}

TEST_F(PropertiesItemsTest, ColumnThatTookTheNameOfARemovedOneIsAnotherMember) {
  const SampleRows rows;
  const auto first = rows.Row(0);
  const auto name = first->Item("Name");
  rows.Row(1)->Remove("Name");
  const auto definition = rows.Row(1)->SetupItem({.Name = "Name"})->Data();
  EXPECT_NE(first->Item("Name"), name);
  EXPECT_EQ(first->Item("Name")->Data(), definition);
}

TEST_F(PropertiesItemsTest, RowLooksForItsParametersAsAnyCollection) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  EXPECT_EQ(row->Item(PropertyKey{.Parameter = New({.Name = "NAME"})}), row->Item(2));
  const auto other = New({.Name = "x", .SourceName = "Id", .SourceColumn = "Name", .SourceTable = "orders"});
  EXPECT_EQ(row->Item(PropertyKey{.Parameter = other}), row->Item(2));
  EXPECT_FALSE(row->Item(PropertyKey{.Parameter = New({.Name = "x"})}));
}

}  // namespace
}  // namespace velmoria::test
