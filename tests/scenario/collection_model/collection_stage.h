#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/scenario/collection_model/collection_model.h"
#include "tests/scenario/row_model/row_world.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::test {

struct CollectionAct;

/// One step of a sequence: an act and what it takes.
struct CollectionStep {
  const CollectionAct* Act = nullptr;
  std::size_t Object = 0;  // of those seen so far; they go round
  std::int32_t Position = 0;
  std::int32_t Other = 0;
  std::size_t Column = 0;
  Variant Value;
};

/// The same for a seed everywhere.
std::vector<CollectionStep> DrawnCollectionSteps(std::uint64_t seed);
std::string Shown(const std::vector<CollectionStep>& steps);

/// Plays a sequence on a bound and a transient collection and on a model of both. Compares what each step gives, raises
/// and tells, and the objects seen, behind each; the table behind each that may write, and at the end. Gives the first
/// difference, or "".
std::string Play(RowWorld& world, const std::vector<CollectionStep>& steps, const CollectionKind& kind,
                 CollectionMistake wrong = CollectionMistake::None);

}  // namespace velmoria::test
