#include "velmoria/platform/odbc/execution.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <sql.h>

#include "velmoria/platform/odbc/arguments.h"
#include "velmoria/platform/odbc/diagnostics.h"

namespace velmoria::odbc {
namespace {

// A driver may lose a request that comes while another one is under way, so they come ever more slowly.
constexpr std::chrono::milliseconds kFirstPatience{250};
constexpr std::chrono::milliseconds kLastPatience{1000};

}  // namespace

struct Execution::Job {
  std::shared_ptr<odbc::Calls> Calls;
  Handle Statement;
  std::string Text;
  bool Prepared;
  std::chrono::milliseconds TimeToSend;
  Number Length = LengthOfStatement(Text);
  Code Result = 0;
  std::atomic<bool> Ended{false};
  bool Executes = false;                          // the driver is in the call that runs the statement, or about to be
  std::chrono::steady_clock::time_point Since{};  // when that was
  bool Cancelled = false;                         // a call that has not begun is not made
  std::mutex Guard{};
  std::condition_variable Change{};
  std::thread Thread{};

  void Run() noexcept {
    const Code code = RunStatement();
    const std::lock_guard lock(Guard);
    Result = code;
    Ended = true;
    Change.notify_all();
  }

  Code RunStatement() noexcept {
    if (Prepared)
      if (const Code code = Calls->Prepare(Statement, MutableText(Text), Length); !Succeeded(code)) return code;
    if (!Begin()) return SQL_ERROR;
    return Prepared ? Calls->Execute(Statement) : Calls->ExecDirect(Statement, MutableText(Text), Length);
  }

  bool Begin() noexcept {
    const std::lock_guard lock(Guard);
    Executes = !Cancelled;
    Since = std::chrono::steady_clock::now();
    Change.notify_all();
    return Executes;
  }
};

Execution::Execution(std::shared_ptr<Calls> calls, Handle statement, std::string text, bool prepared,
                     std::int32_t millisecondsToSend)
    : job_(new Job{.Calls = std::move(calls),
                   .Statement = statement,
                   .Text = std::move(text),
                   .Prepared = prepared,
                   .TimeToSend = std::chrono::milliseconds(millisecondsToSend)}) {
  job_->Thread = std::thread([job = job_.get()] { job->Run(); });
}

Execution::~Execution() {
  Cancel();
  Wait();
}

bool Execution::IsRunning() const noexcept { return !job_->Ended; }

Code Execution::Wait() noexcept {
  if (job_->Thread.joinable()) job_->Thread.join();
  return job_->Result;
}

bool Execution::Cancel() noexcept {
  auto& job = *job_;
  bool isAnswered = true;
  std::unique_lock lock(job.Guard);
  job.Cancelled = true;
  // What is only being prepared ends by itself unless the driver hangs.
  job.Change.wait_for(lock, kFirstPatience, [&] { return job.Executes || job.Ended; });
  job.Change.wait_until(lock, job.Since + job.TimeToSend, [&] { return job.Ended.load(); });
  auto patience = kFirstPatience;
  while (!job.Ended) {
    lock.unlock();
    isAnswered = Succeeded(job.Calls->Cancel(job.Statement)) && isAnswered;
    lock.lock();
    job.Change.wait_for(lock, patience, [&] { return job.Ended.load(); });
    patience = std::min(patience * 2, kLastPatience);
  }
  return isAnswered;
}

}  // namespace velmoria::odbc
