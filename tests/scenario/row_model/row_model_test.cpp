// Random sequences of acts on the rows of a table, played on the real thing over a database and on a model of it side
// by side, page after page.

#include <optional>
#include <ostream>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/row_model/row_stage.h"
#include "tests/support/shrink.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

/// The report of the first sequence on which both part, cut down to what it takes.
std::optional<std::string> FindDifference(std::uint64_t seed, std::uint64_t count, std::int32_t buffer,
                                          RowMistake wrong = RowMistake::None) {
  RowWorld world;
  return FirstDifference(seed, count, DrawnRowSteps,
                         [&](const auto& steps) { return Play(world, steps, buffer, wrong); });
}

struct Run {
  std::uint64_t Seed;
  std::uint64_t Count;
  std::int32_t Buffer;
};

void PrintTo(const Run& run, std::ostream* stream) {
  *stream << run.Count << " sequences from seed " << run.Seed << " on pages of " << run.Buffer;
}

class RowModelTest : public testing::TestWithParam<Run> {};

TEST_P(RowModelTest, RowsAndTableAgreeWithTheModelAfterEveryStep) {
  const auto found = FindDifference(GetParam().Seed, GetParam().Count, GetParam().Buffer);
  EXPECT_FALSE(found) << *found;
}

INSTANTIATE_TEST_SUITE_P(Pages, RowModelTest,
                         testing::Values(Run{100'000, 5'000, 0}, Run{110'000, 5'000, 0}, Run{120'000, 5'000, 0},
                                         Run{200'000, 5'000, 1}, Run{300'000, 5'000, 2}, Run{310'000, 5'000, 2},
                                         Run{320'000, 5'000, 2}, Run{400'000, 5'000, 3}, Run{410'000, 5'000, 3},
                                         Run{500'000, 5'000, 4}));

class WrongRowModelTest : public testing::TestWithParam<RowMistake> {};

TEST_P(WrongRowModelTest, MistakeOfTheModelIsFound) { EXPECT_TRUE(FindDifference(1, 100, 0, GetParam())); }

INSTANTIATE_TEST_SUITE_P(Table, WrongRowModelTest,
                         testing::Values(RowMistake::UndoPutsValuesBack, RowMistake::FailedWriteEndsClean,
                                         RowMistake::FirstOldValueIsForgotten));

TEST(DrawnRowStepsTest, SequencesMeetEveryRefusal) {
  RowWorld world;
  for (std::uint64_t seed = 0; seed < 800; ++seed) Play(world, DrawnRowSteps(seed), seed % 2 == 0 ? 0 : 2);
  std::set<std::int32_t> refusals{0};
  for (const auto number : {errBusinessObjects_Buffer, errPersistence_Insert, errPersistence_Update,
                            errPersistence_Delete, errPersistence_Deleted, errValue_Required, errValue_Size}) {
    refusals.insert(static_cast<std::int32_t>(number));
  }
  EXPECT_EQ(world.Raised, refusals);
}

}  // namespace
}  // namespace velmoria::test
