#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/faulty_odbc.h"
#include "velmoria/core/catalogue.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {

/// An operation, tried in a World of its own for every failure that it may meet.
template <class World>
struct FaultedOperation {
  std::string Name;
  void (*Prepare)(World&);       // without failures; may be none
  std::string (*Run)(World&);    // what it brings
  std::string (*State)(World&);  // what a failure leaves as it was, in objects and database; may be none
  std::vector<zErrors> Errors;   // a failure is one of these
  bool Writes = false;           // an answer that is lost leaves open what the database has
  bool EndsElsewhere = false;    // what rows that end early bring is no beginning of the whole
  void (*GiveUp)(World&) = {};   // what a host does behind a failure that it does not try again
};

template <class World>
void PrintTo(const FaultedOperation<World>& operation, std::ostream* stream) {
  *stream << operation.Name;
}

struct FaultOutcome {
  std::string Brought{};
  std::optional<Error> Failure{};
};

void CheckFaultFailure(const Error& failure, const std::vector<zErrors>& allowed, FaultWay way);
/// Rows that end early are all that a driver without more data can bring about.
void CheckFaultBrought(const std::string& brought, const std::string& whole, FaultWay way);
void CheckFaultHandles(const FaultyOdbc& driver);

/// A position behind the rows that there were.
inline bool IsRowMissing(const Error& failure) {
  return failure.CatalogueNumber() == static_cast<std::int32_t>(errPersistence_Row);
}

/// Only an Error may leave the library.
template <class Routine>
FaultOutcome Attempt(Routine routine) {
  try {
    return {.Brought = routine()};
  } catch (const Error& error) { return {.Failure = error}; } catch (...) {
    ADD_FAILURE() << "something else than an Error left the library";
  }
  return {};
}

}  // namespace velmoria::test
