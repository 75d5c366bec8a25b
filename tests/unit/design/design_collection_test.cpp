#include "velmoria/design/design_collection.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/design/design_collection_fixture.h"
#include "velmoria/core/messages.h"
#include "velmoria/properties/properties.h"

namespace velmoria::test {
namespace {

TYPED_TEST_SUITE(EveryDesignCollection, DesignSamples);

TYPED_TEST(EveryDesignCollection, FindsItsMembersByKey) {
  const auto collection = this->Filled();
  EXPECT_EQ(collection->Count(), 3);
  EXPECT_EQ(TypeParam::KeyOf(*collection->Item(TypeParam::Index(2))), TypeParam::KeyText(2));
}

TYPED_TEST(EveryDesignCollection, FindMissesInSilence) {
  EXPECT_FALSE(this->Filled()->Find(TypeParam::Index(5)));
  EXPECT_EQ(this->apartment_.Messages().Count(), 0);
}

TYPED_TEST(EveryDesignCollection, BeforeAndAfterPlaceAMember) {
  const auto collection = this->Filled();
  collection->SetupItem(TypeParam::Fields(4), {.Before = TypeParam::KeyText(1)});
  collection->SetupItem(TypeParam::Fields(5), {.After = TypeParam::KeyText(1)});
  EXPECT_EQ(this->Keys(*collection), this->KeyTexts({4, 1, 5, 2, 3}));
}

TYPED_TEST(EveryDesignCollection, AnEmptyBeforeBesideAfterIsNotGiven) {
  const auto collection = this->Filled();
  collection->Add(this->Free(4), {.Before = Variant(), .After = TypeParam::KeyText(1)});
  EXPECT_EQ(this->Keys(*collection), this->KeyTexts({1, 4, 2, 3}));
}

TYPED_TEST(EveryDesignCollection, PositionsReachTheDefinitionsToo) {
  const auto collection = this->Filled();
  collection->Add(this->Free(4), {.Before = TypeParam::KeyText(2)});
  EXPECT_EQ(collection->Data()->KeyAt(2), TypeParam::KeyText(4));
}

TYPED_TEST(EveryDesignCollection, RekeyingKeepsThePosition) {
  const auto collection = this->Filled();
  TypeParam::Rekey(*collection, 2, 4);
  EXPECT_EQ(this->Keys(*collection), this->KeyTexts({1, 4, 3}));
  EXPECT_EQ(collection->Data()->KeyAt(2), TypeParam::KeyText(4));
  EXPECT_EQ(TypeParam::KeyOf(*collection->Item(TypeParam::Index(4))), TypeParam::KeyText(4));
}

TYPED_TEST(EveryDesignCollection, RemoveTakesTheMemberOutOfTheDefinitionsToo) {
  const auto collection = this->Filled();
  collection->Remove(TypeParam::Index(2));
  EXPECT_EQ(this->Keys(*collection), this->KeyTexts({1, 3}));
  EXPECT_EQ(collection->Data()->Count(), 2U);
}

TYPED_TEST(EveryDesignCollection, ARemovedMemberMayBeAddedElsewhere) {
  const auto collection = this->Filled();
  const auto member = collection->Item(TypeParam::Index(2));
  static_cast<void>(member->UserProperties());
  collection->Remove(TypeParam::Index(2));
  const auto other = TypeParam::Bound();
  other->Add(member);
  EXPECT_EQ(other->Item(TypeParam::Index(2)), member);
  EXPECT_EQ(other->Data()->Count(), 1U);
}

TYPED_TEST(EveryDesignCollection, WithoutSupportsAddNothingIsAddedOrMade) {
  const auto collection = this->Filled();
  collection->SetSupportsAdd(false);
  ExpectRaised(zErrors{15082}, [&] { collection->Add(this->Free(4)); }, {.Text = ".Add", .Count = 1});
  ExpectRaised(zErrors{15082}, [&] { collection->SetupItem(TypeParam::Fields(4)); },
               {.Text = ".SetupItem", .Count = 1});
  EXPECT_EQ(this->Keys(*collection), this->KeyTexts({1, 2, 3}));
}

TYPED_TEST(EveryDesignCollection, WithoutSupportsRemoveNothingIsRemoved) {
  const auto collection = this->Filled();
  collection->SetSupportsRemove(false);
  ExpectRaised(zErrors{15083}, [&] { collection->Remove(TypeParam::Index(1)); }, {.Text = ".Remove", .Count = 1});
  EXPECT_EQ(collection->Count(), 3);
}

TYPED_TEST(EveryDesignCollection, LockedStillAcceptsAddAndRemove) {
  const auto collection = this->Filled();
  collection->SetLocked(true);
  collection->Add(this->Free(4));
  collection->Remove(TypeParam::Index(1));
  EXPECT_EQ(this->Keys(*collection), this->KeyTexts({2, 3, 4}));
}

TYPED_TEST(EveryDesignCollection, LockedGuardsWhatTheCollectionSupports) {
  const auto collection = this->Filled();
  collection->SetLocked(true);
  ExpectRaised(zErrors{15002}, [&] { collection->SetSupportsAdd(false); }, {.Text = ".SupportsAdd (Let)", .Count = 1});
  ExpectRaised(zErrors{15002}, [&] { collection->SetSupportsRemove(false); },
               {.Text = ".SupportsRemove (Let)", .Count = 1});
  collection->SetLocked(false);
  collection->SetSupportsAdd(false);
  EXPECT_FALSE(collection->SupportsAdd());
  EXPECT_TRUE(collection->SupportsRemove());
}

TYPED_TEST(EveryDesignCollection, LockedDoesNotReachTheMembers) {
  const auto collection = this->Filled();
  collection->SetLocked(true);
  EXPECT_FALSE(collection->Item(TypeParam::Index(1))->Locked());
}

TYPED_TEST(EveryDesignCollection, SetupWorksOnceBeforeFirstUse) {
  const auto fresh = Make<typename TypeParam::Collection>();
  fresh->Setup(true, true, false);
  EXPECT_TRUE(fresh->Locked());
  EXPECT_TRUE(fresh->SupportsAdd());
  EXPECT_FALSE(fresh->SupportsRemove());
  ExpectRaised(zErrors{15002}, [&] { fresh->Setup(false, true, true); }, {.Text = ".Setup", .Count = 1});
}

TYPED_TEST(EveryDesignCollection, SetupIsRefusedOnABuiltOrBoundCollection) {
  const auto built = Make<typename TypeParam::Collection>();
  EXPECT_EQ(built->Count(), 0);
  ExpectRaised(zErrors{15002}, [&] { built->Setup(false, true, true); });
  ExpectRaised(zErrors{15002}, [&] { this->Filled()->Setup(false, true, true); });
}

TYPED_TEST(EveryDesignCollection, ARefusalDoesNotBuildTheList) {
  const auto collection = Make<typename TypeParam::Collection>();
  const auto definitions = this->Filled()->Data();
  collection->Bind(definitions);
  collection->SetLocked(true);
  ExpectRaised(zErrors{15002}, [&] { collection->SetSupportsAdd(false); });
  definitions->Remove(TypeParam::KeyText(1));
  EXPECT_EQ(collection->Count(), 2);
}

TYPED_TEST(EveryDesignCollection, ANewCollectionSupportsBoth) {
  const auto fresh = Make<typename TypeParam::Collection>();
  EXPECT_TRUE(fresh->SupportsAdd());
  EXPECT_TRUE(fresh->SupportsRemove());
  EXPECT_FALSE(fresh->Locked());
}

TYPED_TEST(EveryDesignCollection, ATransientCollectionHasNoDefinitions) {
  const auto transient = Make<typename TypeParam::Collection>();
  const auto made = transient->SetupItem(TypeParam::Fields(1));
  EXPECT_FALSE(transient->Data());
  EXPECT_EQ(transient->Item(TypeParam::Index(1)), made);
}

TYPED_TEST(EveryDesignCollection, ANewMemberIsDirtyAndBearsTheMoment) {
  const auto member = this->Filled()->Item(TypeParam::Index(1));
  EXPECT_TRUE(member->Dirty());
  EXPECT_EQ(member->DateCreated(), this->apartment_.Clock().Time);
}

TYPED_TEST(EveryDesignCollection, ANewMemberWasSavedByNobodyAndOnlyARootShowsTheMomentInstead) {
  const auto member = this->Filled()->Item(TypeParam::Index(1));
  constexpr bool isRoot = requires { TypeParam::Kind::RootRaises; };
  EXPECT_EQ(member->ModifiedBy(), "");
  EXPECT_EQ(member->DateModified(), isRoot ? this->apartment_.Clock().Time : Date());
}

TYPED_TEST(EveryDesignCollection, CopyIsNewDirtyAndOutsideAnyCollection) {
  const auto collection = this->Filled();
  const auto member = collection->Item(TypeParam::Index(1));
  member->SetDescription("as it was");
  this->apartment_.Clock().Advance(60);
  const auto copy = member->Copy(TypeParam::Key(4));
  EXPECT_EQ(TypeParam::KeyOf(*copy), TypeParam::KeyText(4));
  EXPECT_EQ(copy->Description(), "as it was");
  EXPECT_TRUE(copy->Dirty());
  EXPECT_EQ(copy->DateCreated(), this->apartment_.Clock().Time);
  EXPECT_NE(member->DateCreated(), copy->DateCreated());
  EXPECT_EQ(collection->Count(), 3);
}

TYPED_TEST(EveryDesignCollection, CopyWithoutKeyKeepsTheKey) {
  EXPECT_EQ(TypeParam::KeyOf(*this->Filled()->Item(TypeParam::Index(2))->Copy()), TypeParam::KeyText(2));
}

TYPED_TEST(EveryDesignCollection, ACopyIsIndependent) {
  const auto member = this->Filled()->Item(TypeParam::Index(1));
  const auto copy = member->Copy();
  copy->SetDescription("another");
  EXPECT_EQ(member->Description(), "");
}

TYPED_TEST(EveryDesignCollection, TheDefinitionsCopyKeepsOrderAndKeys) {
  const auto collection = this->Filled();
  TypeParam::Rekey(*collection, 2, 4);
  const auto copy = collection->Data()->Copy();
  ASSERT_EQ(copy->Count(), 3U);
  EXPECT_EQ(copy->KeyAt(2), TypeParam::KeyText(4));
  EXPECT_NE(copy->At(2), collection->Data()->At(2));
}

TYPED_TEST(EveryDesignCollection, SeveralFacadesShareOneDefinition) {
  const auto facade = this->Free(1);
  const auto other = Make<typename TypeParam::Kind::Facade>();
  other->Bind(facade->Data(), Parents());
  other->SetDescription("seen");
  EXPECT_EQ(facade->Description(), "seen");
}

TYPED_TEST(EveryDesignCollection, AFacadeOnItsOwnMakesAnEmptyDefinition) {
  const auto alone = Make<typename TypeParam::Kind::Facade>();
  EXPECT_EQ(alone->Description(), "");
  EXPECT_FALSE(alone->Dirty());
}

TYPED_TEST(EveryDesignCollection, SettingLockedToItsPresentValueMakesDirty) {
  const auto alone = Make<typename TypeParam::Kind::Facade>();
  alone->SetLocked(false);
  EXPECT_TRUE(alone->Dirty());
}

TYPED_TEST(EveryDesignCollection, SettingAPresentValueChangesNothing) {
  const auto alone = Make<typename TypeParam::Kind::Facade>();
  alone->SetDescription("");
  EXPECT_FALSE(alone->Dirty());
  alone->SetDescription("new");
  EXPECT_TRUE(alone->Dirty());
}

TYPED_TEST(EveryDesignCollection, UserPropertiesAreChangedWhileLocked) {
  const auto member = this->Filled()->Item(TypeParam::Index(1));
  member->SetLocked(true);
  member->UserProperties()->SetupItem({.Name = "Note"});
  EXPECT_EQ(member->UserProperties()->Count(), 1);
  EXPECT_EQ(member->UserProperties()->Style(), psUser);
}

TYPED_TEST(EveryDesignCollection, UserPropertiesMakeTheObjectDirty) {
  const auto alone = Make<typename TypeParam::Kind::Facade>();
  static_cast<void>(alone->UserProperties()->Count());
  EXPECT_FALSE(alone->Dirty());
  alone->UserProperties()->SetupItem({.Name = "Note"});
  EXPECT_TRUE(alone->Dirty());
}

}  // namespace
}  // namespace velmoria::test
