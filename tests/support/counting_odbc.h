#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "tests/support/forwarding_odbc.h"

namespace velmoria::test {

/// The real calls, and a count of what passes through them: the handles that are open, the texts as they were sent, the
/// executions, and the bytes of values that are not fetched with their row.
class CountingOdbc final : public ForwardingOdbc {
 public:
  CountingOdbc() : ForwardingOdbc(odbc::UnixOdbc()) {}

  int OpenHandles() const { return open_; }
  int Executions() const { return executions_; }
  std::int64_t LongBytes() const { return longBytes_; }
  std::vector<std::string> Texts() const;

  Code AllocHandle(Small kind, Handle parent, Handle* made) override;
  Code FreeHandle(Small kind, Handle handle) override;
  Code Prepare(Handle statement, Char* text, Number length) override;
  Code Execute(Handle statement) override;
  Code ExecDirect(Handle statement, Char* text, Number length) override;
  Code GetData(Handle statement, Word column, Small cType, Handle value, Length capacity, Length* indicator) override;

 private:
  void Note(const Char* text);

  std::atomic<int> open_ = 0;
  std::atomic<int> executions_ = 0;
  std::atomic<std::int64_t> longBytes_ = 0;
  mutable std::mutex noting_;
  std::vector<std::string> texts_;
};

}  // namespace velmoria::test
