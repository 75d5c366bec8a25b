#include "tests/support/test_servers.h"

#include <cstdlib>
#include <ostream>

#include <unistd.h>

namespace velmoria::test {

namespace {

std::string Setting(const std::string& name) {
  const char* const text = std::getenv(("VELMORIA_TEST_" + name).c_str());
  return text == nullptr ? "" : text;
}

}  // namespace

void PrintTo(const TestServer& server, std::ostream* stream) { *stream << server.Name; }

std::vector<TestServer> TestServers() {
  std::vector<TestServer> servers;
  for (const auto& [name, prefix] : {std::pair{"PostgreSQL", "PG"}, {"MariaDB", "MARIADB"}, {"FreeTDS", "TDS"}}) {
    const auto key = std::string(prefix) + "_";
    if (Setting(key + "SERVER").empty()) continue;
    servers.push_back({name, Setting(key + "SERVER"), Setting(key + "UID"), Setting(key + "PWD")});
  }
  return servers;
}

std::string OwnName(const std::string& kind) { return "velmoria_" + kind + "_" + std::to_string(getpid()); }

}  // namespace velmoria::test
