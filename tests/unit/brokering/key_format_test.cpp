#include "velmoria/brokering/key_format.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/brokering/key_format_data.h"
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

TEST_F(KeyFormatTest, FormatMadeWithEmptyKeyIgnoresTheRest) {
  const auto format = New({.Name = "N", .Separator = "|", .Mixed = true, .IncludeNames = true, .EmptyKey = true});
  EXPECT_EQ(format->Name(), "N");
  EXPECT_EQ(format->Separator(), "");
  EXPECT_FALSE(format->Mixed());
  EXPECT_FALSE(format->IncludeNames());
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

TEST_F(KeyFormatTest, LockedRefusesEverySetterButLocked) {
  const auto format = New({.Locked = true});
  ExpectRaised(errVelmoria_Locked, [&] { format->SetName("N"); });
  ExpectRaised(errVelmoria_Locked, [&] { format->SetSeparator(""); });
  ExpectRaised(errVelmoria_Locked, [&] { format->SetMixed(false); });
  ExpectRaised(errVelmoria_Locked, [&] { format->SetIncludeNames(false); });
  ExpectRaised(errVelmoria_Locked, [&] { format->SetEmptyKey(false); });
  format->SetLocked(false);
  format->SetName("N");
  EXPECT_EQ(format->Name(), "N");
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

TEST_F(KeyFormatTest, CopyOfAnEmptyKeyFormatIsOneToo) { EXPECT_TRUE(New({.EmptyKey = true})->Copy()->EmptyKey()); }

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

}  // namespace
}  // namespace velmoria::test
