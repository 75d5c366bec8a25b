#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/design/design_collection_fixture.h"

namespace velmoria::test {
namespace {

template <class Sample>
class NamesOfMembers : public EveryDesignCollection<Sample> {
 protected:
  static auto Named(const std::string& name) {
    auto fields = Sample::Fields(1);
    fields.Name = name;
    return fields;
  }
};

using NamedSamples =
    testing::Types<ServerSample, ClassSample, ActionSample, RelationshipSample, LinkSample, DatabaseSample>;
TYPED_TEST_SUITE(NamesOfMembers, NamedSamples);

TYPED_TEST(NamesOfMembers, ThatDifferInCaseOnlyAreTheSame) {
  const auto collection = TypeParam::Bound();
  const auto first = collection->SetupItem(this->Named("Load"));
  ExpectRaised(TypeParam::Raises.Adding, [&] { collection->SetupItem(this->Named("LOAD")); }, {.Text = "'LOAD'"});
  ExpectRaised(TypeParam::Raises.Adding,
               [&] { collection->Add(MakeDesign<typename TypeParam::Kind>(this->Named("loaD"))); }, {.Text = "'loaD'"});
  EXPECT_EQ(collection->Count(), 1);
  EXPECT_EQ(collection->Data()->Count(), 1U);
  EXPECT_EQ(collection->Item("lOAD"), first);
}

TYPED_TEST(NamesOfMembers, ARenameIntoAnotherCaseOfATakenNameChangesNothing) {
  const auto collection = TypeParam::Bound();
  for (const char* name : {"Load", "Save"}) collection->SetupItem(this->Named(name));
  ExpectRaised(TypeParam::Raises.Rekeying, [&] { collection->RenameItem("Load", "SAVE"); },
               {.Text = "Name: 'Load'  NewName: 'SAVE'", .Count = 1});
  EXPECT_EQ(this->Keys(*collection), "Load Save ");
}

TYPED_TEST(NamesOfMembers, MayHoldAnyCharacters) {
  const std::string names[] = {"it's \"quoted\"",
                               "two\r\nlines",
                               "|1| |2|",
                               "Gr\xC3\xB6\xC3\x9F"
                               "e",
                               " blanks ",
                               std::string("nul\0in", 6),
                               "broken \xFF\xC3",
                               "1",
                               std::string(70'000, 'x')};
  const auto collection = TypeParam::Bound();
  for (const auto& name : names) collection->SetupItem(this->Named(name));
  for (const auto& name : names) {
    EXPECT_EQ(collection->Item(name)->Name(), name);
    collection->RenameItem(name, name + "!");
    collection->Remove(name + "!");
  }
  EXPECT_EQ(collection->Count(), 0);
}

TYPED_TEST(NamesOfMembers, OfDigitsAreNoPositions) {
  const auto collection = TypeParam::Bound();
  collection->SetupItem(this->Named("2"));
  const auto second = collection->SetupItem(this->Named("1"));
  EXPECT_EQ(collection->Item("1"), second);
  EXPECT_EQ(collection->Item(2), second);
}

template <class Sample>
class EmptyNames : public NamesOfMembers<Sample> {};

using BelowARoot = testing::Types<ClassSample, ActionSample, RelationshipSample, LinkSample>;
TYPED_TEST_SUITE(EmptyNames, BelowARoot);

TYPED_TEST(EmptyNames, AreNamesLikeAnyOther) {
  const auto collection = TypeParam::Bound();
  const auto nameless = collection->SetupItem(this->Named(""));
  EXPECT_EQ(collection->Item(""), nameless);
  ExpectRaised(TypeParam::Raises.Adding, [&] { collection->SetupItem(this->Named("")); }, {.Text = "Name: ''"});
  collection->RenameItem("", "a");
  EXPECT_EQ(this->Keys(*collection), "a ");
}

template <class Sample>
class EnginesOfMembers : public EveryDesignCollection<Sample> {};

using EngineSamples = testing::Types<SourceSample, ConnectorSample>;
TYPED_TEST_SUITE(EnginesOfMembers, EngineSamples);

TYPED_TEST(EnginesOfMembers, OutsideOneToFiveAreRefusedAndChangeNothing) {
  const auto collection = this->Filled();
  for (const int engine : {0, 6, 7, 8, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    ExpectRaised(zErrors{15054}, [&] { collection->SetupItem(TypeParam::Fields(engine)); },
                 {.Text = "Engine: " + std::to_string(engine), .Count = 1});
  }
  EXPECT_EQ(this->Keys(*collection), this->KeyTexts({1, 2, 3}));
  EXPECT_EQ(collection->Data()->Count(), 3U);
}

TYPED_TEST(EnginesOfMembers, AreChangedToAnyNumberWithoutATest) {
  const auto collection = this->Filled();
  collection->ChangeItemEngine(engODBC, engInformix);
  collection->ChangeItemEngine(engSQLServer, zEngines{-1});
  EXPECT_EQ(this->Keys(*collection), this->KeyTexts({1, 6, -1}));
}

TYPED_TEST(EnginesOfMembers, ThatAreNoEngineAreNotFound) {
  const auto collection = this->Filled();
  ExpectRaised(TypeParam::Raises.Finding, [&] { collection->Item(zEngines{99}); },
               {.Text = "Engine: 99  Index: 99", .Count = 1});
}

class CopiedEngines : public testing::Test {
 protected:
  ScopedApartment apartment_;
};

TEST_F(CopiedEngines, ASourceIsCopiedWithAnEngineThatCarriesNone) {
  const auto sources = SourceSample::Bound();
  sources->SetupItem(SourceSample::Fields(2));
  sources->ChangeItemEngine(engODBC, engInformix);
  EXPECT_EQ(sources->Data()->Copy()->At(1)->Engine(), engInformix);
}

TEST_F(CopiedEngines, AConnectorIsNotForItGoesThroughItsDefaultsAgain) {
  const auto connectors = ConnectorSample::Bound();
  connectors->SetupItem(ConnectorSample::Fields(2));
  connectors->ChangeItemEngine(engODBC, engInformix);
  ExpectRaised(zErrors{15054}, [&] { connectors->Data()->Copy(); }, {.Text = "Engine: 6"});
}

}  // namespace
}  // namespace velmoria::test
