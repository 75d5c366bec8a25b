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

/// A driver that writes a statement for a while before the server has it, and then waits until it is cancelled.
class SlowToSend final : public ForwardingOdbc {
 public:
  using ForwardingOdbc::ForwardingOdbc;

  std::atomic<bool> IsInTheCall{false};
  std::atomic<bool> WasMixed{false};  // a request to cancel came while the statement was being written

  Code ExecDirect(Handle, Char*, Number) override {
    IsInTheCall = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    isSent_ = true;
    isCancelled_.wait(false);
    return SQL_ERROR;
  }
  Code Cancel(Handle) override {
    if (!isSent_) WasMixed = true;
    isCancelled_ = true;
    isCancelled_.notify_all();
    return SQL_SUCCESS;
  }

 private:
  std::atomic<bool> isSent_{false};
  std::atomic<bool> isCancelled_{false};
};

TEST(ExecutionTest, ARequestToStopLeavesTheDriverTimeToSendWhatItStops) {
  const auto driver = std::make_shared<SlowToSend>(std::make_shared<FakeOdbc>());
  odbc::Execution execution(driver, nullptr, "SELECT", false);
  while (!driver->IsInTheCall) std::this_thread::yield();
  EXPECT_TRUE(execution.Cancel());
  EXPECT_FALSE(driver->WasMixed);
}

}  // namespace
}  // namespace velmoria::test
