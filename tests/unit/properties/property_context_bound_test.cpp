#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/properties/property_context_fixture.h"

namespace velmoria::test {
namespace {

TEST_F(BoundPropertyContextTest, FirstCollectionIsNamedLikeItsActionAndGivesTheIdentifier) {
  EXPECT_EQ(bound_->Item(1)->Name(), "Get");
  EXPECT_EQ(bound_->Identifier(), bound_->Item("Get")->Identifier());
  EXPECT_EQ(bound_->Identifier()->ClassName(), "Order");
  EXPECT_TRUE(bound_->SupportsAdd() && bound_->SupportsRemove() && bound_->SupportsLoad());
}

TEST_F(BoundPropertyContextTest, IdentifierStaysWhenOthersAreAdded) {
  const IdentifierPtr identifier = bound_->Identifier();
  bound_->Add(Row(1, "Other"), {.Before = 1});
  EXPECT_EQ(bound_->Identifier(), identifier);
}

TEST_F(BoundPropertyContextTest, DetailsTellTheIdentifier) {
  EXPECT_EQ(bound_->Details(),
            "Properties Count 1 for Identifier: 1042\r\n    Properties Count 2 for Properties 'Get'");
}

TEST_F(BoundPropertyContextTest, BrokerStartsFromTheServerAndClassOfTheIdentifier) {
  EXPECT_EQ(bound_->ActionName(), "");
  bound_->SetActionName("All");
  EXPECT_EQ(bound_->ActionName(), "All");
  ExpectRaised(errItem_Action, [&] { bound_->SetActionName("Nothing"); }, {.Text = "Index: 'Nothing'"});
  const auto parameters = Values("p");
  bound_->SetParameters(parameters);
  EXPECT_EQ(bound_->Parameters(), parameters);
}

TEST_F(BoundPropertyContextTest, LoadReturnsAHeldCollectionByNameThenByAction) {
  const auto detail = Row(1, "Detail");
  bound_->Add(detail);
  EXPECT_EQ(bound_->LoadProperties({.ActionName = "Detail"}), detail);
  EXPECT_EQ(bound_->LoadProperties({.ActionName = "Nothing", .Name = "Detail"}), detail);
  EXPECT_EQ(orders_.Database->Reads, 1);
}

TEST_F(BoundPropertyContextTest, LoadIsRefusedThoughTheCollectionIsHeld) {
  bound_->SetSupportsLoad(false);
  ExpectRaised(errProperties_Load, [&] { bound_->LoadProperties({.ActionName = "Get"}); }, {.Count = 1});
}

TEST_F(BoundPropertyContextTest, LoadOfNewOnesReturnsAHeldCollectionAndIsRefusedWithTheOthers) {
  const auto detail = Row(1, "Detail");
  bound_->Add(detail);
  EXPECT_EQ(bound_->LoadNewProperties({.ActionName = "Detail"}), detail);
  EXPECT_EQ(bound_->LoadNewProperties({.ActionName = "Nothing", .Name = "Detail"}), detail);
  bound_->SetSupportsLoad(false);
  ExpectRaised(errProperties_Load, [&] { bound_->LoadNewProperties({.ActionName = "Detail"}); }, {.Count = 1});
}

TEST_F(BoundPropertyContextTest, ListenerOfItemNotFoundSparesTheLoad) {
  const auto supplied = Values("Detail");
  bound_->ItemNotFound += [&](const Variant&, PropertiesPtr& Item) { Item = supplied; };
  EXPECT_EQ(bound_->LoadProperties({.ActionName = "Detail"}), supplied);
  EXPECT_EQ(bound_->LoadNewProperties({.ActionName = "Detail"}), supplied);
  EXPECT_EQ(bound_->Count(), 1);
}

TEST_F(BoundPropertyContextTest, NewPropertiesNeedAnActionThatBuildsThemAndInserts) {
  const auto action = orders_.Design.Order->Actions()->Item("All");
  action->SetEditFlags(efUpdate);
  ExpectRaised(errNotSupported_Insert, [&] { bound_->GetNewProperties("All"); },
               {.Text = "Action: 'All'  EditFlags: 'Update'"});
  action->SetUsageFlags(ufObjects);
  ExpectRaised(errNotSupported_Properties, [&] { bound_->GetNewProperties("All"); },
               {.Text = "Action: 'All'  UsageFlags: 'Business Objects'"});
}

TEST_F(BoundPropertyContextTest, UnknownActionIsReportedByEveryOperationThatLoads) {
  const std::pair<const char*, void (*)(PropertyContext&)> routines[] = {
      {"GetProperties", [](PropertyContext& c) { c.GetProperties("Nothing"); }},
      {"GetNewProperties", [](PropertyContext& c) { c.GetNewProperties("Nothing"); }},
      {"LoadProperties", [](PropertyContext& c) { c.LoadProperties({.ActionName = "Nothing"}); }},
      {"LoadNewProperties", [](PropertyContext& c) { c.LoadNewProperties({.ActionName = "Nothing"}); }},
  };
  for (const auto& [name, routine] : routines) {
    SCOPED_TRACE(name);
    ExpectRaised(errItem_Action, [&] { routine(*bound_); }, {.Text = "Index: 'Nothing'", .Count = 1});
  }
  EXPECT_EQ(bound_->Count(), 1);
}

TEST_F(BoundPropertyContextTest, ActionWithoutPropertiesUsageIsRefused) {
  orders_.Design.Order->Actions()->Item("All")->SetUsageFlags(ufObjects);
  ExpectRaised(errNotSupported_Properties, [&] { bound_->GetProperties("All"); },
               {.Text = "Action: 'All'  UsageFlags: 'Business Objects'"});
}

TEST_F(BoundPropertyContextTest, KeyIsThatOfTheIdentifier) {
  EXPECT_EQ(bound_->Key(), "1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .IncludeNames = true})), "Id|1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .Mixed = true})), "Sales|Order|1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .Mixed = true, .IncludeNames = true})), "Sales|Order|Id|1042");
}

TEST_F(BoundPropertyContextTest, PropertiesKeyJoinsTheNamedValues) {
  EXPECT_EQ(bound_->Key(Format({.Separator = "|"}, {"Name"})), "Order 1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|"}, {"Name", "Id"})), "Order 1042|1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .Mixed = true}, {"Id"})), "Sales|Order|1042");
  EXPECT_EQ(bound_->Key(Format({}, {"Id", "Name"})), "1042Order 1042");
}

TEST_F(BoundPropertyContextTest, PropertiesKeyPutsASeparatorBeforeTheFirstNameAndTwoBehindEachName) {
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .IncludeNames = true}, {"Id"})), "|Id||1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .IncludeNames = true}, {"Id", "Name"})),
            "|Id||1042|Name||Order 1042");
  EXPECT_EQ(bound_->Key(Format({.Separator = "|", .Mixed = true, .IncludeNames = true}, {"Id"})),
            "Sales|Order|Id||1042");
}

TEST_F(BoundPropertyContextTest, FormatWithoutStringKeysIsRefusedWithTheKeyItWouldHave) {
  ExpectRaised(errNotSupported_Key, [&] { bound_->Key(Format({.EmptyKey = true})); }, {.Text = "Key: '1042'"});
  ExpectRaised(errNotSupported_Key, [&] { bound_->Key(Format({.EmptyKey = true}, {"Name"})); },
               {.Text = "Key: 'Order 1042'"});
  EXPECT_EQ(bound_->Identifier()->Key(Format({.EmptyKey = true})), "1042");
}

TEST_F(BoundPropertyContextTest, NullFailsInAPropertiesKeyAndAddsNothingInAnIdentifierKey) {
  bound_->FindProperty("Id")->SetValue(Variant::Null());
  EXPECT_EQ(bound_->Key(Format({.Separator = "|"})), "");
  ExpectReported(RuntimeFailure::InvalidUseOfNull, [&] { bound_->Key(Format({.Separator = "|"}, {"Id"})); });
}

TEST_F(BoundPropertyContextTest, PropertiesKeyOfAPropertyThatIsNotThereIsReportedAsTheMiss) {
  ExpectRaised(errItem_Property, [&] { bound_->Key(Format({}, {"Colour"})); });
}

TEST_F(BoundPropertyContextTest, KeyWithoutIdentifierIsAnObjectNotSet) {
  context_->Add(Values("A", {Number("Id", 1)}));
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->Key(); });
  EXPECT_EQ(context_->Key(Format({}, {"Id"})), "1");
}

TEST_F(BoundPropertyContextTest, FlagsAreThoseOfAllCollectionsTogether) {
  bound_->Add(Row(1, "Other"));
  bound_->Item("Other")->Item("Name")->SetValue("new");
  EXPECT_EQ(bound_->StateFlags(), sfpersistent | sfdirty);
  EXPECT_EQ(bound_->StateFlagsDisplay(), velmoria::StateFlagsDisplay(sfpersistent | sfdirty));
  orders_.Action->SetEditFlags(efUpdate);
  EXPECT_EQ(bound_->EditFlags(), efUpdate);
  EXPECT_EQ(bound_->EditFlagsDisplay(), velmoria::EditFlagsDisplay(efUpdate));
  EXPECT_TRUE(bound_->Dirty());
  EXPECT_TRUE(bound_->DirtyValues());
}

}  // namespace
}  // namespace velmoria::test
