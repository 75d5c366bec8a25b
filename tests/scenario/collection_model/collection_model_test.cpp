// Random sequences of acts on a bound and a hand-filled collection over the rows of a table, played on the real thing
// over a database and on a model of it side by side.

#include <optional>
#include <ostream>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/collection_model/collection_stage.h"
#include "tests/support/shrink.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

/// The report of the first sequence on which both part, cut down to what it takes.
std::optional<std::string> FindDifference(std::uint64_t seed, std::uint64_t count, const CollectionKind& kind,
                                          CollectionMistake wrong = CollectionMistake::None) {
  RowWorld world;
  return FirstDifference(seed, count, DrawnCollectionSteps,
                         [&](const auto& steps) { return Play(world, steps, kind, wrong); });
}

struct Run {
  std::uint64_t Seed;
  std::uint64_t Count;
  CollectionKind Kind;
};

void PrintTo(const Run& run, std::ostream* stream) {
  *stream << run.Count << " sequences from seed " << run.Seed << " on " << CollectionTypeName(run.Kind.CollectionType)
          << " collections in pages of " << run.Kind.Buffer;
}

class CollectionModelTest : public testing::TestWithParam<Run> {};

TEST_P(CollectionModelTest, CollectionsObjectsAndTableAgreeWithTheModelAfterEveryStep) {
  const auto found = FindDifference(GetParam().Seed, GetParam().Count, GetParam().Kind);
  EXPECT_FALSE(found) << *found;
}

// A dispatcher of Models keeps the first one of each row, one of no object type keeps none.
INSTANTIATE_TEST_SUITE_P(Types, CollectionModelTest,
                         testing::Values(Run{1'000'000, 5'000, {cltOptimized, otModel, 0}},
                                         Run{1'100'000, 5'000, {cltOptimized, otModel, 1}},
                                         Run{1'200'000, 5'000, {cltOptimized, otModel, 2}},
                                         Run{1'300'000, 5'000, {cltOptimized, otDefault, 3}},
                                         Run{1'400'000, 5'000, {cltDispatcher, otModel, 0}},
                                         Run{1'500'000, 5'000, {cltDispatcher, otModel, 2}},
                                         Run{1'600'000, 5'000, {cltDispatcher, otDefault, 2}},
                                         Run{1'700'000, 5'000, {cltInitialized, otModel, 0}},
                                         Run{1'800'000, 5'000, {cltInitialized, otModel, 2}},
                                         Run{1'900'000, 5'000, {cltInitialized, otDefault, 3}}));

class WrongCollectionModelTest : public testing::TestWithParam<CollectionMistake> {};

TEST_P(WrongCollectionModelTest, MistakeOfTheModelIsFound) {
  EXPECT_TRUE(FindDifference(1, 1'000, {cltOptimized, otModel, 2}, GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Table, WrongCollectionModelTest,
                         testing::Values(CollectionMistake::ObjectIsBuiltAgain, CollectionMistake::SearchStartsAnew,
                                         CollectionMistake::KeyFollowsTheValue,
                                         CollectionMistake::FailureIsPassedOver));

TEST(DrawnCollectionStepsTest, SequencesMeetEveryRefusal) {
  RowWorld world;
  for (std::uint64_t seed = 0; seed < 800; ++seed) {
    const auto type = seed % 3 == 0 ? cltDispatcher : cltOptimized;
    Play(world, DrawnCollectionSteps(seed), {type, otModel, seed % 2 == 0 ? 0 : 2});
  }
  std::set<std::int32_t> refusals{0};
  for (const auto number :
       {errVelmoria_Unknown, errAdd_BusinessObject, errBusinessObjects_Buffer, errItem_BusinessObject,
        errNotSupported_Add, errNotSupported_Remove, errNotSupported_SetupBusinessObject,
        errNotSupported_CollectionType, errPersistence_Row, errPersistence_Insert, errPersistence_Update,
        errPersistence_Delete, errPersistence_Deleted, errValue_Required, errValue_Size}) {
    refusals.insert(static_cast<std::int32_t>(number));
  }
  EXPECT_EQ(world.Raised, refusals);
}

}  // namespace
}  // namespace velmoria::test
