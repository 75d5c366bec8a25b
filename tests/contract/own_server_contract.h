#pragma once

#include <memory>
#include <string>
#include <utility>

#include "tests/contract/brokering_contract.h"
#include "tests/support/own_server.h"

namespace velmoria::test {

/// Orders on a server of the test's own, which goes and comes back as the test wants. SQLite has none.
class OwnServerContract : public BrokeringContract {
 protected:
  explicit OwnServerContract(int orders) : orders_(orders) {}

  void SetUp() override {
    constexpr std::pair<const char*, const char*> kKinds[] = {
        {"PostgreSQL", "postgres"}, {"MariaDB", "mariadb"}, {"FreeTDS", "tds"}};
    for (const auto& [driver, kind] : kKinds)
      if (Driver().Name == driver) server_ = std::make_unique<OwnServer>(kind);
    if (!server_) GTEST_SKIP() << "Does not apply: SQLite has no server";
    ASSERT_NE(server_->ConnectString(), "");
    BrokeringContract::SetUp();
    AddOrders(orders_);
  }
  std::string ConnectOf() override { return server_->ConnectString() + Driver().Options; }
  void Kill() { ASSERT_TRUE(server_->Kill()); }
  void StartAgain() {
    ASSERT_TRUE(server_->Start());
    ConnectClient();
  }
  template <class Request>
  void ExpectRefused(Request&& request) {
    EXPECT_FALSE(EndsRightOrNumbered(request)) << "nothing was raised";
  }

 private:
  int orders_;
  std::unique_ptr<OwnServer> server_;
};

}  // namespace velmoria::test
