#pragma once

#include <string>

#include "velmoria/core/catalogue.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::test {

/// What a model throws for a refusal: the catalogue number, 15000 for a failure of the run-time.
struct Refused {
  zErrors Number = errVelmoria_Unknown;
};

/// Ways for the model to be wrong on purpose, so that a test can see how a difference is found.
enum class Mistake {
  None,
  UndoRestoresState,
  OldValueIsTheFirst,
  UpdateEndsClean,
  NumbersAreEqualAcrossTypes,
  CancelledValueIsStored,
  DefaultValueStamps,
  RenamedMemberMovesToTheEnd,
  DeleteAsksAgain,
  RefusedPositionLeavesTheDefinition,
};

/// What the listeners of the value events do.
enum class Listener { Agrees, Cancels, FailsBefore, FailsAfter };

/// What a model acts in: the time, what listeners do, and what they are told of a step.
struct Scene {
  Variant Now;
  Listener OnValue = Listener::Agrees;
  bool Veto = false;  // of the listeners of a collection
  Mistake Wrong = Mistake::None;
  std::string Told;
  std::string Written;  // the statements sent
};

}  // namespace velmoria::test
