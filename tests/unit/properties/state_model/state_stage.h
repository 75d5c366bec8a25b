#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "tests/support/fake_odbc.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "tests/unit/properties/state_model/state_acts.h"
#include "tests/unit/properties/state_model/state_scene.h"

namespace velmoria::test {

/// What sequences are played in: a clock that stands, a driver that takes every statement, a log that is off.
struct StateWorld {
  StateWorld();

  ScopedApartment Apartment;
  std::shared_ptr<FakeOdbc> Driver = std::make_shared<FakeOdbc>();
  OneAction Design;
  std::set<std::int32_t> Raised;  // the catalogue numbers met so far
  std::set<std::string> Written;  // the verbs of the statements
};

/// Where code and model part.
struct StateDifference {
  std::size_t Step = 0;  // the operation, from 1 on; 0 is the beginning
  std::string What;
};

/// Plays a sequence on the real thing and on a model and compares all that can be asked of both after each step. Gives
/// the first difference, or none.
std::optional<StateDifference> Play(StateWorld& world, const StateSequence& sequence, Mistake wrong = Mistake::None);

}  // namespace velmoria::test
