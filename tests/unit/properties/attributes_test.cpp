#include "velmoria/properties/attributes.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/attribute_data.h"
#include "velmoria/properties/attributes_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

constexpr const char* kBoth = "Passing both Before and After arguments is not allowed.";

class AttributesTest : public testing::Test {
 protected:
  static std::string Names(const Attributes& attributes) {
    std::string names;
    for (const auto& attribute : attributes) names += attribute->Name();
    return names;
  }
  static std::string Names(const AttributesData& attributes) {
    std::string names;
    for (const auto& attribute : attributes) names += attribute->Name();
    return names;
  }
  static AttributesPtr Filled(const AttributesPtr& attributes) {
    for (const char* name : {"A", "B", "C"}) attributes->SetupItem({.Name = name});
    return attributes;
  }
  AttributePtr Loose(const std::string& name) { return framework_.CreateAttribute({.Name = name}); }

  ScopedApartment apartment_;
  Framework framework_;
  AttributesPtr transient_ = Filled(framework_.CreateAttributes());
  PropertyPtr property_ = framework_.CreateProperty({.Name = "P"});
  AttributesPtr bound_ = Filled(property_->Attributes());
};

TEST_F(AttributesTest, MembersStandInOrderAndAreFoundByPositionAndName) {
  EXPECT_EQ(Names(*transient_), "ABC");
  EXPECT_EQ(transient_->Item(2)->Name(), "B");
  EXPECT_EQ(transient_->Item("c")->Name(), "C");
}

TEST_F(AttributesTest, MissIsRaisedWithTheIndexAsItsTypeShowsIt) {
  ExpectRaised(errItem_Attribute, [&] { transient_->Item("X"); }, {.Text = "Index: 'X'", .Count = 1});
  ExpectRaised(errItem_Attribute, [&] { transient_->Item(9); }, {.Text = "Index: 9", .Count = 1});
  ExpectRaised(errItem_Attribute, [&] { transient_->Item(Variant::Null()); }, {.Text = "Index: 'Null'", .Count = 1});
}

TEST_F(AttributesTest, MemberGoesBeforeOrAfterAnother) {
  transient_->SetupItem({.Name = "D"}, {.Before = "B"});
  transient_->Add(Loose("E"), {.After = 1});
  EXPECT_EQ(Names(*transient_), "AEDBC");
}

TEST_F(AttributesTest, BothPositionsAreRefused) {
  const Position both{.Before = 1, .After = "B"};
  ExpectRaised(errAdd_Attribute, [&] { transient_->SetupItem({.Name = "D"}, both); },
               {.Text = std::string("Name: 'D'  Before: '1'  After: 'B'\r\n") + kBoth, .Count = 1});
  ExpectRaised(errAdd_Attribute, [&] { bound_->Add(Loose("D"), both); }, {.Text = kBoth, .Count = 1});
  EXPECT_EQ(Names(*bound_), "ABC");
}

TEST_F(AttributesTest, NameInUseIsRefused) {
  ExpectRaised(errAdd_Attribute, [&] { transient_->SetupItem({.Name = "a"}); },
               {.Text = "Name: 'a'  Before: '(Missing)'  After: '(Missing)'"});
  ExpectRaised(errAdd_Attribute, [&] { bound_->SetupItem({.Name = "a"}); });
  EXPECT_EQ(bound_->Count(), 3);
  EXPECT_EQ(property_->Data()->AttributesData()->Count(), 3);
}

TEST_F(AttributesTest, PositionThatIsNotThereIsRefused) {
  ExpectRaised(errAdd_Attribute, [&] { transient_->Add(Loose("D"), {.Before = 7}); }, {.Text = "Before: '7'"});
  EXPECT_EQ(transient_->Count(), 3);
}

TEST_F(AttributesTest, NothingCannotBeAdded) {
  ExpectRaised(errAdd_Attribute, [&] { transient_->Add({}); });
}

TEST_F(AttributesTest, AddingAndRemovingCanBeForbidden) {
  transient_->SetSupportsAdd(false);
  transient_->SetSupportsRemove(false);
  ExpectRaised(errNotSupported_Add, [&] { transient_->Add(Loose("D")); }, {.Text = "Attributes.Add ", .Count = 1});
  ExpectRaised(errNotSupported_Add, [&] { transient_->SetupItem({.Name = "D"}); }, {.Count = 1});
  ExpectRaised(errNotSupported_Remove, [&] { transient_->Remove("A"); }, {.Count = 1});
  EXPECT_EQ(transient_->Count(), 3);
}

TEST_F(AttributesTest, LockedGuardsTheTwoMarksAlone) {
  transient_->SetLocked(true);
  ExpectRaised(errVelmoria_Locked, [&] { transient_->SetSupportsAdd(false); }, {.Text = "SupportsAdd (Let)"});
  ExpectRaised(errVelmoria_Locked, [&] { transient_->SetSupportsRemove(false); }, {.Text = "SupportsRemove (Let)"});
  transient_->SetupItem({.Name = "D"});
  transient_->Remove("A");
  EXPECT_EQ(Names(*transient_), "BCD");
}

TEST_F(AttributesTest, SetupIsRefusedOnceMembersAreThere) {
  ExpectRaised(errVelmoria_Locked, [&] { transient_->Setup(false, true, true); }, {.Text = "Attributes.Setup "});
}

TEST_F(AttributesTest, RemovedMemberIsGone) {
  transient_->Remove("B");
  transient_->Remove(1);
  EXPECT_EQ(Names(*transient_), "C");
}

TEST_F(AttributesTest, RemovingAnUnknownMemberShowsTheMissAndHoldsBothErrors) {
  const auto error = Thrown([&] { transient_->Remove("X"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15062);
  EXPECT_EQ(apartment_.Messages().Count(), 2);
  EXPECT_EQ(apartment_.Messages().Item("15132")->Description(), "Problem removing Attribute.  Index: 'X'");
}

TEST_F(AttributesTest, TransientCollectionRefusesToRename) {
  ExpectRaised(errNotSupported_Rename, [&] { transient_->RenameItem("A", "D"); }, {.Count = 1});
}

TEST_F(AttributesTest, MembersOfAPropertyAreItsDefinition) {
  const auto data = property_->Data()->AttributesData();
  EXPECT_EQ(Names(*data), "ABC");
  bound_->Add(Loose("D"), {.Before = 1});
  bound_->Remove("B");
  EXPECT_EQ(Names(*data), "DAC");
  EXPECT_EQ(Names(*bound_), "DAC");
}

TEST_F(AttributesTest, CollectionIsFilledFromTheDefinitionAtItsFirstUse) {
  Attributes other;
  other.Bind(property_->Data());
  property_->Data()->AttributesData()->SetupItem({.Name = "D"});
  EXPECT_EQ(Names(other), "ABCD");
}

TEST_F(AttributesTest, RenamedMemberKeepsItsPosition) {
  bound_->RenameItem("B", "X");
  EXPECT_EQ(Names(*bound_), "AXC");
  EXPECT_EQ(Names(*property_->Data()->AttributesData()), "AXC");
  EXPECT_EQ(bound_->Item("x")->Name(), "X");
  EXPECT_FALSE(bound_->Find("B"));
}

TEST_F(AttributesTest, RenamingToANameInUseIsRefusedEvenToItsOwnInAnotherCase) {
  ExpectRaised(errRename_Attribute, [&] { bound_->RenameItem("A", "B"); }, {.Text = "Name: 'A'  NewName: 'B'"});
  ExpectRaised(errRename_Attribute, [&] { bound_->RenameItem("A", "a"); });
  EXPECT_EQ(Names(*bound_), "ABC");
}

TEST_F(AttributesTest, RenamingAnUnknownMemberIsAMiss) {
  ExpectRaised(errItem_Attribute, [&] { bound_->RenameItem("X", "Y"); }, {.Text = "Index: 'X'"});
}

TEST_F(AttributesTest, ModifiableAsSoonAsOneMemberIs) {
  const auto attributes = framework_.CreateAttributes();
  EXPECT_FALSE(attributes->Modifiable());
  attributes->SetupItem({.Name = "A", .Modifiable = false});
  EXPECT_FALSE(attributes->Modifiable());
  attributes->SetupItem({.Name = "B"});
  EXPECT_TRUE(attributes->Modifiable());
}

TEST_F(AttributesTest, DetailsListTheMembers) {
  const auto attributes = framework_.CreateAttributes();
  attributes->SetupItem({.Name = "A", .Value = true, .DataType = dtBoolean});
  EXPECT_EQ(attributes->Details(), "Attributes Count 1\r\n    Attribute: 'A'  DataType: 'Boolean'  Value: 'True'");
}

TEST_F(AttributesTest, RefusedValueLeavesTheCollectionAsItWas) {
  ExpectRaised(errAttribute_DataType, [&] { bound_->SetupItem({.Name = "D", .Value = "x", .DataType = dtDate}); });
  EXPECT_EQ(Names(*bound_), "ABC");
  EXPECT_EQ(property_->Data()->AttributesData()->Count(), 3);
}

TEST_F(AttributesTest, RefusalNamesTheCollectionItsRoutineAndTheCause) {
  EXPECT_TRUE(Thrown([&] { bound_->SetupItem({.Name = "A"}); }));
  EXPECT_EQ(apartment_.Messages().Item("457")->SeverityFlags(), svfWarning);
  EXPECT_EQ(apartment_.Messages().Item("15004")->TypeName(), "Attributes");
  EXPECT_EQ(apartment_.Messages().Item("15004")->RoutineName(), "SetupItem");
}

TEST_F(AttributesTest, RemovedMemberLivesOnAndCanBeAddedAgain) {
  const auto member = bound_->Item("B");
  bound_->Remove("b");
  member->SetValue(1);
  bound_->Add(member, {.After = "C"});
  EXPECT_EQ(Names(*bound_), "ACB");
  EXPECT_EQ(bound_->Item("B"), member);
  EXPECT_EQ(property_->Data()->AttributesData()->Item(3)->Value(), Variant(1));
}

TEST_F(AttributesTest, FlagOfRemovalIsAskedBeforeTheMemberIsLookedFor) {
  bound_->SetSupportsRemove(false);
  ExpectRaised(errNotSupported_Remove, [&] { bound_->Remove("X"); }, {.Count = 1});
  bound_->SetSupportsAdd(false);
  ExpectRaised(errNotSupported_Add, [&] { bound_->SetupItem({.Name = "X"}, {.Before = 1, .After = 1}); });
}

TEST_F(AttributesTest, CollectionMadeForbiddingOrLockedIsSo) {
  const auto attributes = framework_.CreateAttributes(true, false);
  EXPECT_TRUE(attributes->Locked());
  EXPECT_TRUE(attributes->SupportsAdd());
  EXPECT_FALSE(attributes->SupportsRemove());
  ExpectRaised(errVelmoria_Locked, [&] { attributes->Setup(false, true, true); });
}

// Two collections over one definition, as two rows have them

class AttributesOfTwoTest : public AttributesTest {
 protected:
  AttributesOfTwoTest() {
    other_.Bind(property_->Data());
    EXPECT_EQ(Names(other_), "ABC");
  }

  Attributes other_;
};

TEST_F(AttributesOfTwoTest, NameThatTheDefinitionHasIsRefusedByBoth) {
  bound_->SetupItem({.Name = "D"});
  ExpectRaised(errAdd_Attribute, [&] { other_.SetupItem({.Name = "D"}); });
  EXPECT_EQ(Names(other_), "ABC");
  EXPECT_EQ(Names(*property_->Data()->AttributesData()), "ABCD");
}

TEST_F(AttributesOfTwoTest, PlaceThatOnlyOneOfThemHasChangesNeither) {
  bound_->SetupItem({.Name = "D"});
  ExpectRaised(errAdd_Attribute, [&] { other_.SetupItem({.Name = "E"}, {.Before = "D"}); });
  ExpectRaised(errAdd_Attribute, [&] { other_.Add(Loose("E"), {.After = 4}); });
  EXPECT_EQ(Names(other_), "ABC");
  EXPECT_EQ(Names(*property_->Data()->AttributesData()), "ABCD");
}

TEST_F(AttributesOfTwoTest, RenamingWhatOnlyOneOfThemHasChangesNeither) {
  bound_->SetupItem({.Name = "D"});
  ExpectRaised(errItem_Attribute, [&] { other_.RenameItem("D", "E"); }, {.Text = "Index: 'D'"});
  ExpectRaised(errRename_Attribute, [&] { other_.RenameItem("A", "D"); });
  bound_->Remove("A");
  ExpectRaised(errRename_Attribute, [&] { other_.RenameItem("B", "A"); }, {.Text = "NewName: 'A'"});
  EXPECT_EQ(Names(other_), "ABC");
  EXPECT_EQ(Names(*property_->Data()->AttributesData()), "BCD");
}

TEST_F(AttributesOfTwoTest, MemberThatTheDefinitionLostCannotBeRemoved) {
  bound_->Remove("A");
  ExpectRaised(errItem_Attribute, [&] { other_.Remove("A"); });
  EXPECT_EQ(Names(other_), "ABC");
}

TEST_F(AttributesOfTwoTest, ValueIsTheSameInBoth) {
  bound_->Item("A")->SetValue(7);
  EXPECT_EQ(other_.Item("A")->Value(), Variant(7));
}

TEST_F(AttributesTest, DefinitionIsDirtyWhenMembersComeGoOrChange) {
  const auto data = property_->Data()->AttributesData();
  data->ClearDirty();
  EXPECT_FALSE(data->Dirty());
  bound_->Item("A")->SetValue(1);
  EXPECT_TRUE(data->Dirty());
  data->ClearDirty();
  bound_->Remove("A");
  EXPECT_TRUE(data->Dirty());
  data->ClearDirty();
  data->SetupItem({.Name = "Loaded"}, {}, true);
  EXPECT_FALSE(data->Dirty());
}

TEST_F(AttributesTest, CopyOfTheDefinitionIsItsOwn) {
  const auto copy = property_->Data()->AttributesData()->Copy();
  bound_->Item("A")->SetValue(7);
  bound_->Remove("B");
  EXPECT_EQ(Names(*copy), "ABC");
  EXPECT_TRUE(copy->Item("A")->Value().IsEmpty());
  EXPECT_FALSE(copy->Dirty());
}

TEST_F(AttributesTest, DefinitionRefusesWhatTheCollectionRefuses) {
  const auto data = property_->Data()->AttributesData();
  ExpectRaised(errAdd_Attribute, [&] { data->SetupItem({.Name = "D"}, {.Before = 1, .After = 1}); },
               {.Text = "AttributesData.SetupItem"});
  ExpectRaised(errItem_Attribute, [&] { data->Item("X"); }, {.Text = "AttributesData.Item"});
  ExpectRaised(errItem_Attribute, [&] { data->Remove("X"); }, {.Count = 2});
}

}  // namespace
}  // namespace velmoria::test
