#pragma once

#include <string>

#include <sys/types.h>

namespace velmoria::test {

/// A server of one test's own, which the test may end as if its machine had failed. It is gone with the object.
class OwnServer {
 public:
  /// "postgres", "mariadb" or "tds".
  explicit OwnServer(const std::string& kind);
  ~OwnServer();
  OwnServer(const OwnServer&) = delete;
  OwnServer& operator=(const OwnServer&) = delete;

  /// Complete, for the ODBC driver; empty if the server did not start.
  const std::string& ConnectString() const { return connectString_; }
  /// Ends the server's process by signal 9; it is gone when the call returns.
  bool Kill() { return Ask("kill") == "killed"; }
  /// Starts it again where it was, with what it had committed.
  bool Start() { return Ask("start") == "started"; }

 private:
  std::string Ask(const std::string& order);
  std::string Answer();

  pid_t process_ = -1;
  int orders_ = -1;
  int answers_ = -1;
  std::string connectString_;
};

}  // namespace velmoria::test
