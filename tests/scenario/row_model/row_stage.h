#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "tests/scenario/row_model/row_model.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/sqlite_file.h"
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

/// What sequences are played in: a database file, and a design over it.
struct RowWorld {
  RowWorld();

  SqliteFile File;
  ScopedApartment Apartment;
  OneAction Design;
  std::set<std::int32_t> Raised;  // the catalogue numbers met so far, 0 for none
};

/// Plays a sequence on the real thing and on a model, in pages of `buffer` rows, and compares rows and table after each
/// step. Gives the first difference, or "".
std::string Play(RowWorld& world, const std::vector<RowStep>& steps, std::int32_t buffer,
                 RowMistake wrong = RowMistake::None);

}  // namespace velmoria::test
