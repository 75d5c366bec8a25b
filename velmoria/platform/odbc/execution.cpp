#include "velmoria/platform/odbc/execution.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "velmoria/platform/odbc/diagnostics.h"

namespace velmoria::odbc {
namespace {

constexpr std::chrono::milliseconds kPatience{5};

}  // namespace

struct Execution::Job {
  std::shared_ptr<odbc::Calls> Calls;
  Handle Statement;
  std::string Text;
  bool Prepared;
  Code Result = 0;
  std::atomic<bool> Ended{false};
  std::mutex Guard{};
  std::condition_variable End{};
  std::thread Thread{};

  void Run() noexcept {
    auto* const text = reinterpret_cast<Char*>(Text.data());
    const auto length = static_cast<Number>(Text.size());
    Code code = Prepared ? Calls->Prepare(Statement, text, length) : Calls->ExecDirect(Statement, text, length);
    if (Prepared && Succeeded(code)) code = Calls->Execute(Statement);
    const std::lock_guard lock(Guard);
    Result = code;
    Ended = true;
    End.notify_all();
  }
};

Execution::Execution(std::shared_ptr<Calls> calls, Handle statement, std::string text, bool prepared)
    : job_(new Job{.Calls = std::move(calls), .Statement = statement, .Text = std::move(text), .Prepared = prepared}) {
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

void Execution::Cancel() noexcept {
  std::unique_lock lock(job_->Guard);
  while (!job_->Ended) {
    lock.unlock();
    job_->Calls->Cancel(job_->Statement);
    lock.lock();
    job_->End.wait_for(lock, kPatience, [this] { return job_->Ended.load(); });
  }
}

}  // namespace velmoria::odbc
