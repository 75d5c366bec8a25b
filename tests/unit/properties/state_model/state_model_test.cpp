// Random sequences of acts on a Property or Properties, played on the real thing and on a model of it side by side.
//
// property_model, collection_model   what is expected, written down a second time and as plainly as can be
// state_acts                         what can be done, and how a sequence of it is drawn from a seed
// state_stage                        plays a sequence on both and compares all that can be asked after each step
// shrink                             cuts a sequence that fails down to what the failure takes

#include <algorithm>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/shrink.h"
#include "tests/unit/properties/state_model/state_stage.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

constexpr StateSubject kProperty{.Called = "Property"};
constexpr StateSubject kParameter{.Called = "parameter", .Style = psParameter};
constexpr StateSubject kTransient{.Called = "transient Properties", .IsCollection = true};
constexpr StateSubject kUser{.Called = "user Properties", .Style = psUser, .IsCollection = true, .Defined = true};
constexpr StateSubject kPersistent{
    .Called = "persistent Properties without a row", .Style = psPersistent, .IsCollection = true, .Defined = true};
constexpr StateSubject kCached{.Called = "cached Properties", .Style = psCached, .IsCollection = true, .Defined = true};
constexpr StateSubject kWritten{.Called = "cached Properties with an Identifier",
                                .Style = psCached,
                                .IsCollection = true,
                                .Defined = true,
                                .Routed = true};

/// A sequence on which code and model part, cut down to what it takes.
struct Found {
  StateSequence Sequence;
  StateDifference Difference;
};

std::optional<Found> FindDifference(const StateSubject& subject, std::uint64_t seed, std::uint64_t count,
                                    Mistake wrong = Mistake::None) {
  StateWorld world;
  for (const auto last = seed + count; seed < last; ++seed) {
    auto sequence = DrawnSequence(subject, seed);
    if (!Play(world, sequence, wrong)) continue;
    sequence.Operations = Shrunk(sequence.Operations, [&](const auto& operations) {
      auto shorter = sequence;
      shorter.Operations = operations;
      return Play(world, shorter, wrong).has_value();
    });
    const auto difference = Play(world, sequence, wrong);
    return Found{sequence, *difference};
  }
  return std::nullopt;
}

std::string Report(const Found& found) {
  return "step " + std::to_string(found.Difference.Step) + ": " + found.Difference.What + "\n" + Shown(found.Sequence);
}

// Code and model

struct Run {
  StateSubject Subject;
  std::uint64_t Seed;
  std::uint64_t Count;
};

void PrintTo(const Run& run, std::ostream* stream) {
  *stream << run.Count << " sequences of " << run.Subject.Called << " from seed " << run.Seed;
}

class StateModelTest : public testing::TestWithParam<Run> {};

TEST_P(StateModelTest, CodeAndModelAgreeOnEveryStepOfRandomSequences) {
  const auto found = FindDifference(GetParam().Subject, GetParam().Seed, GetParam().Count);
  EXPECT_FALSE(found) << Report(*found);
}

INSTANTIATE_TEST_SUITE_P(Lone, StateModelTest,
                         testing::Values(Run{kProperty, 1'000'000, 12'000}, Run{kProperty, 2'000'000, 12'000},
                                         Run{kProperty, 3'000'000, 12'000}, Run{kProperty, 4'000'000, 12'000},
                                         Run{kParameter, 5'000'000, 12'000}));

INSTANTIATE_TEST_SUITE_P(Collection, StateModelTest,
                         testing::Values(Run{kTransient, 6'000'000, 5'000}, Run{kTransient, 7'000'000, 5'000},
                                         Run{kUser, 8'000'000, 5'000}, Run{kUser, 9'000'000, 5'000},
                                         Run{kPersistent, 10'000'000, 5'000}, Run{kCached, 11'000'000, 5'000},
                                         Run{kCached, 12'000'000, 5'000}, Run{kWritten, 13'000'000, 5'000},
                                         Run{kWritten, 14'000'000, 5'000}));

// The finding of differences

struct WrongModel {
  Mistake Wrong;
  StateSubject Subject;
  std::size_t Operations;  // what the difference takes at most
  const char* Shows;       // a part of the report
};

void PrintTo(const WrongModel& model, std::ostream* stream) { *stream << "a report with: " << model.Shows; }

class WrongModelTest : public testing::TestWithParam<WrongModel> {};

TEST_P(WrongModelTest, AWrongModelIsFoundAndTheSequenceIsCutDown) {
  const auto found = FindDifference(GetParam().Subject, 1, 2'000, GetParam().Wrong);
  ASSERT_TRUE(found);
  EXPECT_LE(found->Sequence.Operations.size(), GetParam().Operations) << Report(*found);
  EXPECT_EQ(found->Difference.Step, found->Sequence.Operations.size());
  EXPECT_NE(Report(*found).find(GetParam().Shows), std::string::npos) << Report(*found);
}

INSTANTIATE_TEST_SUITE_P(
    Table, WrongModelTest,
    testing::Values(WrongModel{Mistake::UndoRestoresState, kProperty, 1, "StateFlags is 4, expected 34"},
                    WrongModel{Mistake::OldValueIsTheFirst, kProperty, 2, "OldValue is "},
                    WrongModel{Mistake::UpdateEndsClean, kProperty, 1, "Dirty is True, expected False"},
                    WrongModel{Mistake::NumbersAreEqualAcrossTypes, kProperty, 2, "will be "},
                    WrongModel{Mistake::CancelledValueIsStored, kProperty, 3, "listeners of values cancel"},
                    WrongModel{Mistake::DefaultValueStamps, kProperty, 2, "DefaultValue ="},
                    WrongModel{Mistake::RenamedMemberMovesToTheEnd, kUser, 1, "RenameItem"},
                    WrongModel{Mistake::DeleteAsksAgain, kCached, 2, "before pending delete"},
                    WrongModel{Mistake::RefusedPositionLeavesTheDefinition, kUser, 1, "1. Add "}));

TEST(ShrunkTest, KeepsWhatTheFailureNeedsInItsOrder) {
  std::vector<int> steps;
  for (int step = 0; step < 100; ++step) steps.push_back(step);
  const auto needs = [](const std::vector<int>& rest, int step) {
    return std::find(rest.begin(), rest.end(), step) != rest.end();
  };
  const auto shrunk =
      Shrunk(steps, [&](const auto& rest) { return needs(rest, 3) && needs(rest, 57) && needs(rest, 99); });
  EXPECT_EQ(shrunk, (std::vector<int>{3, 57, 99}));
}

TEST(ShrunkTest, LeavesNothingWhenNothingIsNeeded) {
  EXPECT_TRUE(Shrunk(std::vector<int>{1, 2, 3}, [](const auto&) { return true; }).empty());
}

TEST(DrawnSequenceTest, SequencesMeetEveryRefusalAndEveryStatement) {
  StateWorld world;
  for (const auto& subject : {kProperty, kParameter, kTransient, kUser, kPersistent, kCached, kWritten}) {
    for (std::uint64_t seed = 0; seed < 500; ++seed) Play(world, DrawnSequence(subject, seed));
  }
  std::set<std::int32_t> refusals;
  for (const auto number :
       {errVelmoria_Unknown,    errVelmoria_Locked,     errAdd_Property,        errProperty_Value,
        errProperty_DataType,   errProperty_Modify,     errItem_Property,       errNotSupported_Add,
        errNotSupported_Remove, errNotSupported_Rename, errNotSupported_Insert, errNotSupported_Update,
        errPersistence_Deleted, errProperties_Update,   errProperties_Delete,   errRename_Property,
        errValue_Size,          errValue_Required,      errValue_ZeroLength,    errValue_BLOB,
        errProperties_Transient}) {
    refusals.insert(static_cast<std::int32_t>(number));
  }
  EXPECT_EQ(world.Raised, refusals);
  EXPECT_EQ(world.Written, (std::set<std::string>{"DELETE", "INSERT", "UPDATE"}));
}

TEST(DrawnSequenceTest, ASeedMeansTheSameSequence) {
  EXPECT_EQ(Shown(DrawnSequence(kUser, 5)), Shown(DrawnSequence(kUser, 5)));
  EXPECT_NE(Shown(DrawnSequence(kUser, 5)), Shown(DrawnSequence(kUser, 6)));
}

}  // namespace
}  // namespace velmoria::test
