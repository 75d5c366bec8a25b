#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/scenario/row_model/row_model.h"
#include "tests/scenario/row_model/row_world.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::test {

struct RowAct;

/// One step of a sequence: an act and what it takes.
struct RowStep {
  const RowAct* Act = nullptr;
  std::size_t Row = 0;  // of all rows of all pages; they go round
  std::size_t Column = 0;
  Variant Value;
  std::int32_t Number = 0;
};

/// The same for a seed everywhere.
std::vector<RowStep> DrawnRowSteps(std::uint64_t seed);
std::string Shown(const std::vector<RowStep>& steps);

/// Plays a sequence on the real thing and on a model, in pages of `buffer` rows. Compares the rows after each step, and
/// the table after each that may write and at the end. Gives the first difference, or "".
std::string Play(RowWorld& world, const std::vector<RowStep>& steps, std::int32_t buffer,
                 RowMistake wrong = RowMistake::None);

}  // namespace velmoria::test
