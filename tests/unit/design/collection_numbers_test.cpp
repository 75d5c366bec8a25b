#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/design/design_collection_fixture.h"
#include "velmoria/core/messages.h"

namespace velmoria::test {
namespace {

template <class Sample>
class CollectionNumbers : public EveryDesignCollection<Sample> {};

TYPED_TEST_SUITE(CollectionNumbers, DesignSamples);

TYPED_TEST(CollectionNumbers, AreTheFourOfTheKind) {
  constexpr auto numbers = TypeParam::Kind::Numbers;
  EXPECT_EQ(numbers.Adding, TypeParam::Raises.Adding);
  EXPECT_EQ(numbers.Finding, TypeParam::Raises.Finding);
  EXPECT_EQ(numbers.Removing, TypeParam::Raises.Removing);
  EXPECT_EQ(numbers.Rekeying, TypeParam::Raises.Rekeying);
}

TYPED_TEST(CollectionNumbers, ItemOfAnUnknownKeyRaisesTheKindsNumber) {
  const auto collection = this->Filled();
  ExpectRaised(TypeParam::Raises.Finding, [&] { collection->Item(TypeParam::Index(5)); },
               {.Text = TypeParam::Shown(5), .Count = 1});
}

TYPED_TEST(CollectionNumbers, SetupItemOfAKeyInUseRaisesTheKindsNumber) {
  const auto collection = this->Filled();
  ExpectRaised(TypeParam::Raises.Adding, [&] { collection->SetupItem(TypeParam::Fields(2)); },
               {.Text = TypeParam::ShownAdding(2) + "  Before: '(Missing)'  After: '(Missing)'"});
  EXPECT_EQ(this->Keys(*collection), this->KeyTexts({1, 2, 3}));
}

TYPED_TEST(CollectionNumbers, AddOfAKeyInUseRaisesTheKindsNumber) {
  const auto collection = this->Filled();
  ExpectRaised(TypeParam::Raises.Adding, [&] { collection->Add(this->Free(2)); }, {.Text = TypeParam::ShownAdding(2)});
  EXPECT_EQ(collection->Count(), 3);
}

TYPED_TEST(CollectionNumbers, TransientAddOfAKeyInUseRaisesTheKindsNumber) {
  const auto collection = Make<typename TypeParam::Collection>();
  collection->Add(this->Free(1));
  ExpectRaised(TypeParam::Raises.Adding, [&] { collection->Add(this->Free(1)); }, {.Text = TypeParam::ShownAdding(1)});
}

TYPED_TEST(CollectionNumbers, AddOfNothingRaisesTheKindsNumber) {
  ExpectRaised(TypeParam::Raises.Adding, [&] { TypeParam::Bound()->Add(nullptr); });
}

TYPED_TEST(CollectionNumbers, AddWithBothPositionsFailsAndNamesThem) {
  const auto collection = this->Filled();
  const Position both{TypeParam::KeyText(1), TypeParam::KeyText(2)};
  const auto shown = TypeParam::ShownAdding(4) + "  Before: '" + TypeParam::KeyText(1) + "'  After: '" +
                     TypeParam::KeyText(2) + "'\r\nPassing both Before and After arguments is not allowed.";
  ExpectRaised(TypeParam::Raises.Adding, [&] { collection->Add(this->Free(4), both); }, {.Text = shown, .Count = 1});
  ExpectRaised(TypeParam::Raises.Adding, [&] { collection->SetupItem(TypeParam::Fields(4), both); },
               {.Text = shown, .Count = 1});
}

TYPED_TEST(CollectionNumbers, AddAtAPositionThatIsNotThereRaisesTheKindsNumber) {
  const auto collection = this->Filled();
  ExpectRaised(TypeParam::Raises.Adding, [&] { collection->Add(this->Free(4), {.Before = TypeParam::KeyText(5)}); },
               {.Text = "Before: '" + TypeParam::KeyText(5) + "'"});
}

TYPED_TEST(CollectionNumbers, RekeyingToAKeyInUseRaisesTheKindsNumberAndChangesNothing) {
  const auto collection = this->Filled();
  ExpectRaised(TypeParam::Raises.Rekeying, [&] { TypeParam::Rekey(*collection, 1, 3); },
               {.Text = "'" + TypeParam::KeyText(1) + "'", .Count = 1});
  EXPECT_EQ(this->Keys(*collection), this->KeyTexts({1, 2, 3}));
}

TYPED_TEST(CollectionNumbers, RekeyingToTheSameKeyFails) {
  const auto collection = this->Filled();
  ExpectRaised(TypeParam::Raises.Rekeying, [&] { TypeParam::Rekey(*collection, 1, 1); });
}

TYPED_TEST(CollectionNumbers, RekeyingAnUnknownMemberRaisesTheKindsNumber) {
  const auto collection = this->Filled();
  ExpectRaised(TypeParam::Raises.Rekeying, [&] { TypeParam::Rekey(*collection, 4, 5); });
  EXPECT_EQ(this->Keys(*collection), this->KeyTexts({1, 2, 3}));
}

TYPED_TEST(CollectionNumbers, RekeyingWhatThisListDoesNotHaveRaisesTheKindsNumberAndStays) {
  const auto collection = this->Filled();
  collection->Data()->SetupItem(TypeParam::Fields(4));
  ExpectRaised(TypeParam::Raises.Rekeying, [&] { TypeParam::Rekey(*collection, 4, 5); },
               {.Text = "'" + TypeParam::KeyText(4) + "'", .Count = 2});
  EXPECT_EQ(this->Keys(*collection), this->KeyTexts({1, 2, 3}));
  EXPECT_EQ(collection->Data()->KeyAt(4), TypeParam::KeyText(5));
}

TYPED_TEST(CollectionNumbers, ATransientCollectionRefusesRekeying) {
  const auto collection = Make<typename TypeParam::Collection>();
  collection->Add(this->Free(1));
  ExpectRaised(TypeParam::ByEngine ? zErrors{15086} : zErrors{15085}, [&] { TypeParam::Rekey(*collection, 1, 2); },
               {.Count = 1});
}

TYPED_TEST(CollectionNumbers, RemoveOfAnUnknownKeyShowsTheErrorOfItem) {
  const auto collection = this->Filled();
  const auto error = Thrown([&] { collection->Remove(TypeParam::Index(5)); });
  ASSERT_TRUE(error);
  EXPECT_EQ(zErrors{error->CatalogueNumber()}, TypeParam::Raises.Finding);
  EXPECT_TRUE(this->apartment_.Messages().Item(std::to_string(static_cast<int>(TypeParam::Raises.Removing))));
  EXPECT_EQ(this->apartment_.Messages().Count(), 2);
}

TYPED_TEST(CollectionNumbers, RemoveOfWhatAnotherFacadeRemovedRaisesTheKindsNumber) {
  const auto collection = this->Filled();
  collection->Data()->Remove(TypeParam::KeyText(1));
  ExpectRaised(TypeParam::Raises.Removing, [&] { collection->Remove(TypeParam::Index(1)); },
               {.Text = TypeParam::Shown(1)});
}

}  // namespace
}  // namespace velmoria::test
