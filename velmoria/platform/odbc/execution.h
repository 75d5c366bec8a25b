#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "velmoria/platform/odbc/calls.h"

namespace velmoria::odbc {

/// One run of a statement on a thread of its own. The thread uses nothing but the table of calls, the statement's
/// handle and its own copy of the text, so the handle and the bound parameters have to outlive this, and nobody else
/// may use the handle before Wait. Its end cancels what still runs and waits for it.
class Execution {
 public:
  /// Prepares the text first if `prepared`. The driver is left so long from the call that runs the statement until it
  /// may be asked to stop.
  Execution(std::shared_ptr<Calls> calls, Handle statement, std::string text, bool prepared,
            std::int32_t millisecondsToSend = 0);
  Execution(const Execution&) = delete;
  Execution& operator=(const Execution&) = delete;
  ~Execution();

  /// Looks at a flag; the driver is not asked.
  bool IsRunning() const noexcept;
  /// Waits for the end, and gives the code of the call that ended it.
  Code Wait() noexcept;
  /// Asks the driver to stop once it executes, or has been preparing for a while, and again at growing intervals until
  /// the run has ended: a request that comes before the driver has begun is lost. Other results of the connection may
  /// be stopped with it. False when the driver refused a request.
  bool Cancel() noexcept;

 private:
  struct Job;
  std::unique_ptr<Job> job_;
};

}  // namespace velmoria::odbc
