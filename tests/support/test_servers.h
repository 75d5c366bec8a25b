#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace velmoria::test {

/// A server that runs for the tests, and how to log on to it.
struct TestServer {
  std::string Name;
  std::string Text;  // the connect string without user and password
  std::string UserName;
  std::string Password;

  /// The complete connect string.
  std::string ConnectString() const { return Text + ";UID=" + UserName + ";PWD=" + Password; }
};

void PrintTo(const TestServer& server, std::ostream* stream);

/// Those of PostgreSQL, MariaDB and FreeTDS that VELMORIA_TEST_PG_SERVER, ..._UID and ..._PWD and their like describe.
std::vector<TestServer> TestServers();

/// A name for a table, a procedure or a user that no other running test has.
std::string OwnName(const std::string& kind);

}  // namespace velmoria::test
