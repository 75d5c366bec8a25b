#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/properties/property_context_fixture.h"

namespace velmoria::test {
namespace {

class FindPropertyTest : public PropertyContextTest {
 protected:
  FindPropertyTest() {
    context_->Add(first_);
    context_->Add(second_);
  }
  PropertiesPtr first_ = Values("First", {Number("Id", 1), Number("Total", 2)});
  PropertiesPtr second_ = Values("Second", {Number("Total", 3), Number("Note", 4)});
};

TEST_F(FindPropertyTest, NumberCountsOverAllCollectionsAsOneList) {
  EXPECT_EQ(context_->PropertyCount(), 4);
  EXPECT_EQ(context_->FindProperty(2), first_->Item(2));
  EXPECT_EQ(context_->FindProperty(3), second_->Item(1));
  EXPECT_EQ(context_->FindProperty(4.0), second_->Item(2));
}

TEST_F(FindPropertyTest, NameInBothCollectionsIsThatOfTheFirst) {
  EXPECT_EQ(context_->FindProperty("total"), first_->Item("Total"));
  EXPECT_EQ(context_->FindProperty("Note"), second_->Item("Note"));
}

TEST_F(FindPropertyTest, ParameterIsSoughtByItsIdentityInEveryCollection) {
  const PropertyPtr parameter = Framework{}.CreateProperty({.Name = "Note", .DataType = dtLongInteger});
  EXPECT_EQ(context_->FindProperty({.Parameter = parameter}), second_->Item("Note"));
}

TEST_F(FindPropertyTest, SourceNameFindsWhatTheIndexDoesNot) {
  context_->Add(Values("Third", {{.Name = "Placed", .DataType = dtDate, .SourceName = "order_date"}}));
  EXPECT_EQ(context_->FindProperty({.Index = "none", .SourceName = "order_date"})->Name(), "Placed");
}

TEST_F(FindPropertyTest, MissIsReportedWithAllThatWasAskedFor) {
  const std::pair<PropertyKey, const char*> cases[] = {
      {{.Index = "x"}, "Index: 'x'  SourceName: ''  SourceKey: ''  Parameter: (Nothing)"},
      {{.Index = "x", .SourceName = "s", .SourceKey = "t.s"}, "Index: 'x'  SourceName: 's'  SourceKey: 't.s'"},
      {{.Index = 5}, "Index: 5 "},
      {{.Index = 0}, "Index: 0 "},
      {{.Index = -1}, "Index: -1 "},
      {{.Index = 1e12}, "Index: 1000000000000 "},
      {{.Index = Variant()}, "Index: 'Empty'"},
      {{.Index = Variant::Null()}, "Index: 'Null'"},
      {{.Index = IdentifierPtr{}}, "Index: 'Nothing'"},
  };
  for (const auto& [key, text] : cases) {
    SCOPED_TRACE(text);
    ExpectRaised(errItem_Property, [&] { context_->FindProperty(key); }, {.Text = text, .Count = 1});
  }
}

TEST_F(FindPropertyTest, MissOfAParameterIsReportedWithItsDetails) {
  const PropertyPtr parameter = Framework{}.CreateProperty({.Name = "Colour", .DataType = dtString});
  ExpectRaised(errItem_Property, [&] { context_->FindProperty({.Parameter = parameter}); },
               {.Text = "Index: 'Error'  SourceName: ''  SourceKey: ''  Parameter: " + parameter->Details()});
}

TEST_F(FindPropertyTest, ListenerOfPropertyNotFoundSuppliesTheMember) {
  const PropertyPtr supplied = Framework{}.CreateProperty(Number("Extra", 9));
  context_->PropertyNotFound += [&](const PropertyKey& key, PropertyPtr& Property) {
    if (key.Index.AsText() == "Extra") Property = supplied;
  };
  EXPECT_EQ(context_->FindProperty("Extra"), supplied);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
  ExpectRaised(errItem_Property, [&] { context_->FindProperty("Other"); });
}

TEST_F(FindPropertyTest, ListenerOfACollectionSuppliesTheMemberBeforeTheNextIsLookedThrough) {
  const PropertyPtr supplied = Framework{}.CreateProperty(Number("Note", 9));
  first_->ItemNotFound += [&](const PropertyKey&, PropertyPtr& item) { item = supplied; };
  EXPECT_EQ(context_->FindProperty("Note"), supplied);
}

TEST_F(FindPropertyTest, ListenerOfACollectionThatFailsCountsAsAMissOfThatCollection) {
  first_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { Framework{}.Servers()->Item(99); };
  EXPECT_EQ(context_->FindProperty("Note"), second_->Item("Note"));
  EXPECT_EQ(apartment_.Messages().Count(), 0);
  ExpectRaised(errItem_Property, [&] { context_->FindProperty("x"); }, {.Text = "Index: 'x'", .Count = 1});
}

TEST_F(FindPropertyTest, CollectionsThatAListenerAddsAreLookedThroughToo) {
  first_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) {
    for (const char* name : {"A", "B", "C", "D", "E", "F", "G"}) context_->Add(Values(name, {Number(name, 1)}));
  };
  const PropertyPtr found = context_->FindProperty("G");
  EXPECT_EQ(found, context_->Item("G")->Item("G"));
}

TEST_F(FindPropertyTest, CollectionThatItsListenerRemovesPassesItsPlaceToTheNextWhichIsNotAsked) {
  first_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { context_->Remove("First"); };
  ExpectRaised(errItem_Property, [&] { context_->FindProperty("Note"); }, {.Text = "Index: 'Note'", .Count = 1});
  EXPECT_EQ(context_->FindProperty("Note"), second_->Item("Note"));
}

TEST_F(FindPropertyTest, FailureOfTheContextsOwnListenerIsPassedOn) {
  context_->PropertyNotFound += [](const PropertyKey&, PropertyPtr&) { Fail(RuntimeFailure::DeviceError); };
  ExpectReported(RuntimeFailure::DeviceError, [&] { context_->FindProperty("x"); });
}

TEST_F(FindPropertyTest, NumberIsSoughtWithoutAskingTheCollections) {
  bool asked = false;
  first_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { asked = true; };
  context_->FindProperty(3);
  EXPECT_FALSE(asked);
}

TEST_F(FindPropertyTest, EachCollectionIsAskedBeforeTheContextsOwnEvent) {
  std::string heard;
  first_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { heard += "1"; };
  second_->ItemNotFound += [&](const PropertyKey&, PropertyPtr&) { heard += "2"; };
  context_->PropertyNotFound += [&](const PropertyKey&, PropertyPtr&) { heard += "context"; };
  ExpectRaised(errItem_Property, [&] { context_->FindProperty("x"); });
  EXPECT_EQ(heard, "12context");
}

}  // namespace
}  // namespace velmoria::test
