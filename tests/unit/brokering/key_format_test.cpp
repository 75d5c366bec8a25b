#include "velmoria/brokering/key_format.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/brokering/key_format_data.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class KeyFormatTest : public testing::Test {
 protected:
  static KeyFormatPtr New(const KeyFormatFields& fields = {}) { return Framework().CreateKeyFormat(fields); }

  ScopedApartment apartment_;
};

TEST_F(KeyFormatTest, DefaultIsEmptyAndFalseThroughout) {
  const auto format = New();
  EXPECT_EQ(format->Name(), "");
  EXPECT_EQ(format->Separator(), "");
  EXPECT_FALSE(format->Mixed());
  EXPECT_FALSE(format->IncludeNames());
  EXPECT_FALSE(format->EmptyKey());
  EXPECT_FALSE(format->Locked());
}

TEST_F(KeyFormatTest, OneThatWasNotSetUpIsAPlainFormatToo) {
  const auto format = Make<KeyFormat>();
  EXPECT_EQ(format->Details(), New()->Details());
  format->SetSeparator("|");
  EXPECT_EQ(format->Separator(), "|");
}

TEST_F(KeyFormatTest, FormatMadeWithEmptyKeyIgnoresTheRest) {
  const auto format = New({.Name = "N", .Separator = "|", .Mixed = true, .IncludeNames = true, .EmptyKey = true});
  EXPECT_EQ(format->Name(), "N");
  EXPECT_EQ(format->Separator(), "");
  EXPECT_FALSE(format->Mixed());
  EXPECT_FALSE(format->IncludeNames());
  EXPECT_TRUE(format->EmptyKey());
}

TEST_F(KeyFormatTest, DefaultFormatOfTheApartmentIsAPlainOne) {
  const auto format = apartment_.State().DefaultKeyFormat;
  EXPECT_EQ(format->Details(), New()->Details());
  EXPECT_FALSE(format->EmptyKey());
  EXPECT_FALSE(format->Locked());
}

TEST_F(KeyFormatTest, SettersStore) {
  const auto format = New();
  format->SetName("N");
  format->SetSeparator("|");
  format->SetMixed(true);
  format->SetIncludeNames(true);
  EXPECT_EQ(format->Details(), "Identifier Key Mixed: True  Separator: '|'  IncludeNames: True  Name: 'N'");
}

TEST_F(KeyFormatTest, EmptyKeyRefusesAnotherValueAndTakesThePresentOne) {
  const auto format = New({.EmptyKey = true});
  format->SetSeparator("");
  format->SetMixed(false);
  format->SetIncludeNames(false);
  ExpectRaised(errKeyFormat_EmptyKey, [&] { format->SetSeparator("|"); }, {.Text = "Property: 'Separator'"});
  ExpectRaised(errKeyFormat_EmptyKey, [&] { format->SetMixed(true); }, {.Text = "Property: 'Mixed'"});
  ExpectRaised(errKeyFormat_EmptyKey, [&] { format->SetIncludeNames(true); }, {.Text = "Property: 'IncludeNames'"});
}

TEST_F(KeyFormatTest, EnteringTheEmptyKeyStateLeavesTheRestAndLeavingItClears) {
  const auto format = New({.Separator = "|", .Mixed = true, .IncludeNames = true});
  format->SetEmptyKey(true);
  EXPECT_TRUE(format->Mixed());
  EXPECT_EQ(format->Separator(), "|");
  format->SetEmptyKey(false);
  EXPECT_FALSE(format->Mixed());
  EXPECT_FALSE(format->IncludeNames());
  EXPECT_EQ(format->Separator(), "");
}

TEST_F(KeyFormatTest, PresentEmptyKeyChangesNothing) {
  const auto format = New({.Separator = "|", .Mixed = true});
  format->SetEmptyKey(false);
  EXPECT_TRUE(format->Mixed());
}

struct LockedRow {
  const char* Routine;
  void (*Present)(KeyFormat&);  // sets the value that is there
  void (*Another)(KeyFormat&);
};

constexpr LockedRow kSetters[] = {
    {"KeyFormat.Name (Let)", [](KeyFormat& format) { format.SetName(""); },
     [](KeyFormat& format) { format.SetName("N"); }},
    {"KeyFormat.Separator (Let)", [](KeyFormat& format) { format.SetSeparator(""); },
     [](KeyFormat& format) { format.SetSeparator("|"); }},
    {"KeyFormat.Mixed (Let)", [](KeyFormat& format) { format.SetMixed(false); },
     [](KeyFormat& format) { format.SetMixed(true); }},
    {"KeyFormat.IncludeNames (Let)", [](KeyFormat& format) { format.SetIncludeNames(false); },
     [](KeyFormat& format) { format.SetIncludeNames(true); }},
    {"KeyFormat.EmptyKey (Let)", [](KeyFormat& format) { format.SetEmptyKey(false); },
     [](KeyFormat& format) { format.SetEmptyKey(true); }},
};

TEST_F(KeyFormatTest, LockedRefusesEverySetterButLockedWhateverTheValue) {
  const auto format = New({.Locked = true});
  for (const auto& setter : kSetters) {
    ExpectRaised(errVelmoria_Locked, [&] { setter.Present(*format); }, {.Text = setter.Routine, .Count = 1});
    ExpectRaised(errVelmoria_Locked, [&] { setter.Another(*format); }, {.Text = setter.Routine, .Count = 1});
  }
  EXPECT_EQ(format->Details(), New()->Details());
  format->SetLocked(true);
  format->SetLocked(false);
  for (const auto& setter : kSetters) setter.Another(*format);
  EXPECT_EQ(format->Details(), "Empty Key Format Mixed: True  Separator: '|'  IncludeNames: True  Name: 'N'");
}

TEST_F(KeyFormatTest, LockedIsRefusedBeforeTheEmptyKeyIs) {
  const auto format = New({.EmptyKey = true, .Locked = true});
  ExpectRaised(errVelmoria_Locked, [&] { format->SetSeparator("|"); });
}

TEST_F(KeyFormatTest, ChangesStampTheDefinition) {
  const auto format = New();
  const auto data = format->Data();
  EXPECT_TRUE(data->Dirty());
  data->ClearDirty();
  format->SetSeparator("");
  EXPECT_FALSE(data->Dirty());
  format->SetSeparator("|");
  EXPECT_TRUE(data->Dirty());
  data->ClearDirty();
  format->Properties()->SetupItem({.Name = "A"});
  EXPECT_TRUE(data->Dirty());
  data->ClearDirty();
  EXPECT_FALSE(data->Dirty());
}

TEST_F(KeyFormatTest, EverySetterStampsAnotherValueAndLockedAnyValue) {
  for (const auto& setter : kSetters) {
    const auto format = New();
    format->Data()->ClearDirty();
    setter.Present(*format);
    EXPECT_FALSE(format->Data()->Dirty()) << setter.Routine;
    setter.Another(*format);
    EXPECT_TRUE(format->Data()->Dirty()) << setter.Routine;
  }
  const auto format = New();
  format->Data()->ClearDirty();
  format->SetLocked(false);
  EXPECT_TRUE(format->Data()->Dirty());
}

TEST_F(KeyFormatTest, CreationIsDated) {
  apartment_.Clock().Time = Date::From(1999, 12, 31, 23, 59, 58);
  EXPECT_EQ(Variant(New()->Data()->DateCreated()), Variant(Date::From(1999, 12, 31, 23, 59, 58)));
}

TEST_F(KeyFormatTest, PropertiesAreMadeOnceOverTheDefinition) {
  const auto format = New();
  EXPECT_EQ(format->Properties(), format->Properties());
  EXPECT_EQ(format->Properties()->Style(), psUser);
  format->Properties()->SetupItem({.Name = "A"});
  EXPECT_EQ(format->Data()->PropertiesData()->Count(), 1);
}

TEST_F(KeyFormatTest, CopyHasItsOwnDefinition) {
  const auto format = New({.Name = "N", .Separator = "|", .Mixed = true, .IncludeNames = true, .Locked = true});
  format->Properties()->SetupItem({.Name = "A"});
  const auto copy = format->Copy();
  EXPECT_EQ(copy->Details(), format->Details());
  EXPECT_TRUE(copy->Locked());
  EXPECT_EQ(copy->Properties()->Count(), 1);
  copy->SetLocked(false);
  copy->SetSeparator("-");
  EXPECT_EQ(format->Separator(), "|");
  EXPECT_EQ(format->Copy(false)->Properties()->Count(), 0);
}

TEST_F(KeyFormatTest, CopyOfAnEmptyKeyFormatIsOneTooAndLosesTheRest) {
  const auto format = New({.Name = "N", .Separator = "|", .Mixed = true, .IncludeNames = true});
  format->SetEmptyKey(true);
  const auto copy = format->Copy();
  EXPECT_EQ(copy->Details(), "Empty Key Format Mixed: False  Separator: ''  IncludeNames: False  Name: 'N'");
  EXPECT_EQ(format->Separator(), "|");
}

TEST_F(KeyFormatTest, CopyIsDirtyAndItsMembersAreItsOwn) {
  const auto format = New();
  format->Properties()->SetupItem({.Name = "A"})->Attributes()->SetupItem({.Name = "Colour"});
  const auto copy = format->Copy();
  EXPECT_TRUE(copy->Data()->Dirty());
  EXPECT_EQ(copy->Properties()->Item("A")->Attributes()->Count(), 1);
  copy->Properties()->Item("A")->SetCaption("c");
  EXPECT_EQ(format->Properties()->Item("A")->Caption(), "");
}

TEST_F(KeyFormatTest, DetailsTellTheKind) {
  EXPECT_EQ(New()->Details(), "Identifier Key Mixed: False  Separator: ''  IncludeNames: False  Name: ''");
  const auto named = New();
  named->Properties()->SetupItem({.Name = "A"});
  EXPECT_TRUE(named->Details().starts_with("Properties Key Mixed: "));
  EXPECT_TRUE(New({.EmptyKey = true})->Details().starts_with("Empty Key Format Mixed: "));
}

TEST_F(KeyFormatTest, DetailsOfTheDefinitionHaveKindsOfTheirOwnAndNoName) {
  EXPECT_EQ(New()->Data()->Details(), "Identifier Key -Mixed: False  Separator: ''  IncludeNames: False");
  const auto named = New();
  EXPECT_EQ(named->Properties()->Count(), 0);
  EXPECT_TRUE(named->Data()->Details().starts_with("Identifier Key -Mixed: "));
  named->Properties()->SetupItem({.Name = "A"});
  EXPECT_TRUE(named->Data()->Details().starts_with("Properties Key - Mixed: "));
  EXPECT_TRUE(New({.EmptyKey = true})->Data()->Details().starts_with("Empty Key DefinitionMixed: "));
}

TEST_F(KeyFormatTest, ParentIsGivenOnceAndReachesTheProperties) {
  const SampleDesign design;
  Parents parents;
  parents.Server = design.Sales->Data();
  const auto format = New();
  const auto member = format->Properties()->SetupItem({.Name = "A"});
  format->SetParents(parents);
  EXPECT_EQ(member->ServerName(), "Sales");
  ExpectRaised(errParent_Server, [&] { format->SetParents(parents); }, {.Text = "Server: 'Sales'"});
  format->ClearParents({.Server = true});
  EXPECT_EQ(member->ServerName(), "");
}

TEST_F(KeyFormatTest, ServerClassAndActionAreTestedInThatOrder) {
  const SampleDesign design;
  Parents parents;
  parents.Server = design.Sales->Data();
  parents.Class = design.Order->Data();
  parents.Action = design.Order->Actions()->Item("Get")->Data();
  const auto format = New();
  format->SetParents(parents);
  ExpectRaised(errParent_Server, [&] { format->SetParents(parents); }, {.Text = "KeyFormat.SetParents", .Count = 1});
  format->ClearParents({.Server = true});
  ExpectRaised(errParent_Class, [&] { format->SetParents(parents); }, {.Text = "Class: 'Order'"});
  format->ClearParents({.Class = true});
  ExpectRaised(errParent_Action, [&] { format->SetParents(parents); }, {.Text = "Action: 'Get'"});
  format->ClearParents({.Action = true});
  format->SetParents(parents);
  EXPECT_EQ(format->Properties()->ActionName(), "Get");
}

TEST_F(KeyFormatTest, FormatStaysTheParentOfItsProperties) {
  const auto format = New({.Name = "Keys"});
  const auto properties = format->Properties();
  Parents itself;
  itself.KeyFormat = format->Data();
  format->ClearParents(ParentSlots::All());
  ExpectRaised(errParent_KeyFormat, [&] { properties->SetParents(psNone, itself); }, {.Text = "'Keys'"});
}

TEST_F(KeyFormatTest, ParentsClearedBeforeThePropertiesAreMadeAreNotTheirs) {
  const SampleDesign design;
  Parents parents;
  parents.Server = design.Sales->Data();
  const auto format = New();
  format->SetParents(parents);
  format->ClearParents(ParentSlots::All());
  EXPECT_EQ(format->Properties()->ServerName(), "");
}

TEST_F(KeyFormatTest, CopyHasNoParents) {
  const SampleDesign design;
  Parents parents;
  parents.Server = design.Sales->Data();
  const auto format = New();
  format->SetParents(parents);
  EXPECT_EQ(format->Properties()->ServerName(), "Sales");
  EXPECT_EQ(format->Copy()->Properties()->ServerName(), "");
}

}  // namespace
}  // namespace velmoria::test
