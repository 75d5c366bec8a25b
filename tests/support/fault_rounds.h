#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/faulted_operation.h"

namespace velmoria::test {

/// Lets every call that an operation makes fail once, in every way that it can. Behind each failure the error, the
/// state, the next call and the handles are looked at.
///
/// A World is made over a driver, lives as long as the objects, and has: a static Driver(), the calls beneath; Ping(),
/// some other request that needs the database; kPing, what it brings.
template <class World>
class FaultRounds {
 public:
  explicit FaultRounds(const FaultedOperation<World>& operation) : operation_(operation) {}

  /// How many failures there were.
  int RunAll() {
    LookAtTheWhole();
    for (int call = 1; call <= static_cast<int>(calls_.size()) && !testing::Test::HasFailure(); ++call) {
      for (const auto way : {FaultWay::RefusedBefore, FaultWay::RefusedAfter, FaultWay::LostBefore, FaultWay::LostAfter,
                             FaultWay::NoData}) {
        const auto& name = calls_[static_cast<std::size_t>(call) - 1];
        if (!CanFail(name, way)) continue;
        const testing::ScopedTrace trace(
            __FILE__, __LINE__,
            operation_.Name + ": call " + std::to_string(call) + ", " + name + ", " + std::string(FaultWayName(way)));
        Try(call, way);
      }
    }
    return faults_;
  }

 private:
  std::string Seen(World& world) const { return operation_.State ? operation_.State(world) : std::string(); }
  FaultOutcome Run(World& world) const {
    return Attempt([&] { return operation_.Run(world); });
  }

  void LookAtTheWhole() {
    const auto driver = std::make_shared<FaultyOdbc>(World::Driver());
    {
      World world(driver);
      if (operation_.Prepare) operation_.Prepare(world);
      driver->Disarm();
      const auto outcome = Run(world);
      EXPECT_FALSE(outcome.Failure) << outcome.Failure->Description();
      calls_ = driver->Names();
      brought_ = outcome.Brought;
      state_ = Seen(world);
      EXPECT_EQ(world.Ping(), World::kPing);
    }
    CheckFaultHandles(*driver);
  }

  void Try(int call, FaultWay way) {
    const auto driver = std::make_shared<FaultyOdbc>(World::Driver());
    {
      World world(driver);
      if (operation_.Prepare) operation_.Prepare(world);
      const auto before = Seen(world);
      driver->Arm(call, way);
      const auto outcome = Run(world);
      if (driver->HasStruck()) ++faults_;
      driver->Disarm();
      if (outcome.Failure) {
        CheckFaultFailure(*outcome.Failure, operation_.Errors, way);
        if (!IsOpen(call, way)) { EXPECT_EQ(Seen(world), before); }
      } else {
        if (way != FaultWay::NoData || !operation_.EndsElsewhere) CheckFaultBrought(outcome.Brought, brought_, way);
      }
      GoOn(world, call, way, outcome);
    }
    CheckFaultHandles(*driver);
  }

  /// Whether nobody can tell what the database has: it has been told to write, and no answer came.
  bool IsOpen(int call, FaultWay way) const { return operation_.Writes && (IsAfter(way) || IsBehindWrite(call)); }

  bool IsBehindWrite(int call) const {
    const auto end = calls_.begin() + call - 1;
    if (*end == "RowCount" || *end == "MoreResults") return true;
    return *end == "SetConnectAttr" && std::find(calls_.begin(), end, "EndTran") != end;
  }

  void GoOn(World& world, int call, FaultWay way, const FaultOutcome& first) const {
    if (!operation_.GiveUp) {
      TryAgain(world, call, way, first);
    } else if (first.Failure) {
      operation_.GiveUp(world);
    }
    const auto next = Attempt([&] { return world.Ping(); });
    EXPECT_FALSE(next.Failure) << "the next request: " << next.Failure->Description();
    EXPECT_EQ(next.Brought, World::kPing);
  }

  void TryAgain(World& world, int call, FaultWay way, const FaultOutcome& first) const {
    const auto again = Run(world);
    if (IsOpen(call, way)) {
      if (again.Failure) CheckFaultFailure(*again.Failure, operation_.Errors, FaultWay::NoData);
      return;
    }
    // What has ended early, or has found nothing to write, is done.
    if (way == FaultWay::NoData && (!first.Failure || IsRowMissing(*first.Failure))) return;
    EXPECT_FALSE(again.Failure) << "tried again: " << again.Failure->Description();
    EXPECT_EQ(again.Brought, brought_) << "tried again";
    EXPECT_EQ(Seen(world), state_) << "tried again";
  }

  const FaultedOperation<World>& operation_;
  std::vector<std::string> calls_;
  std::string brought_;
  std::string state_;
  int faults_ = 0;
};

}  // namespace velmoria::test
