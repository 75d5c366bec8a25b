#include "velmoria/platform/odbc/execution.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <gtest/gtest.h>
#include <sql.h>

#include "tests/support/fake_odbc.h"
#include "tests/support/forwarding_odbc.h"

namespace velmoria::test {
namespace {

/// A driver that prepares until it is cancelled.
class HangingPrepare final : public ForwardingOdbc {
 public:
  using ForwardingOdbc::ForwardingOdbc;

  Code Answer = SQL_SUCCESS;  // to a request to cancel

  Code Prepare(Handle, Char*, Number) override {
    std::unique_lock lock(guard_);
    isPreparing_ = true;
    change_.notify_all();
    change_.wait(lock, [this] { return isCancelled_; });
    return SQL_ERROR;
  }
  Code Cancel(Handle) override {
    const std::lock_guard lock(guard_);
    isCancelled_ = true;
    change_.notify_all();
    return Answer;
  }
  void AwaitPreparing() {
    std::unique_lock lock(guard_);
    change_.wait(lock, [this] { return isPreparing_; });
  }

 private:
  std::mutex guard_;
  std::condition_variable change_;
  bool isPreparing_ = false;
  bool isCancelled_ = false;
};

TEST(ExecutionTest, DriverThatHangsWhileItPreparesIsAskedToStop) {
  const auto fake = std::make_shared<FakeOdbc>();
  const auto driver = std::make_shared<HangingPrepare>(fake);
  odbc::Execution execution(driver, nullptr, "SELECT", true);
  driver->AwaitPreparing();
  EXPECT_TRUE(execution.Cancel());
  EXPECT_FALSE(execution.IsRunning());
  EXPECT_EQ(execution.Wait(), SQL_ERROR);
  EXPECT_EQ(fake->CallsOf["Execute"], 0);
}

TEST(ExecutionTest, ACancelThatTheDriverRefusesIsTold) {
  const auto driver = std::make_shared<HangingPrepare>(std::make_shared<FakeOdbc>());
  driver->Answer = SQL_ERROR;
  odbc::Execution execution(driver, nullptr, "SELECT", true);
  driver->AwaitPreparing();
  EXPECT_FALSE(execution.Cancel());
}

/// A driver that runs until it is cancelled, and notes when that is.
class RunsUntilCancelled final : public ForwardingOdbc {
 public:
  using ForwardingOdbc::ForwardingOdbc;

  std::atomic<bool> IsInTheCall{false};
  std::chrono::steady_clock::time_point CancelledAt{};

  Code ExecDirect(Handle, Char*, Number) override {
    IsInTheCall = true;
    isCancelled_.wait(false);
    return SQL_ERROR;
  }
  Code Cancel(Handle) override {
    CancelledAt = std::chrono::steady_clock::now();
    isCancelled_ = true;
    isCancelled_.notify_all();
    return SQL_SUCCESS;
  }

 private:
  std::atomic<bool> isCancelled_{false};
};

TEST(ExecutionTest, ADriverIsLeftItsTimeToSendAStatementBeforeItIsAskedToStop) {
  constexpr std::int32_t milliseconds = 20;
  const auto driver = std::make_shared<RunsUntilCancelled>(std::make_shared<FakeOdbc>());
  const auto begun = std::chrono::steady_clock::now();
  odbc::Execution execution(driver, nullptr, "SELECT", false, milliseconds);
  while (!driver->IsInTheCall) std::this_thread::yield();
  EXPECT_TRUE(execution.Cancel());
  // The call begins later than that, so a slow machine can only make it more.
  EXPECT_GE(driver->CancelledAt - begun, std::chrono::milliseconds(milliseconds));
}

}  // namespace
}  // namespace velmoria::test
