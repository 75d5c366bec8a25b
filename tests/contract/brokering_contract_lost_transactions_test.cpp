// Transactions of a connection and of a group whose server is killed under them.

#include "tests/contract/brokering_contract.h"
#include "tests/support/own_server.h"

namespace velmoria::test {
namespace {

constexpr std::pair<const char*, const char*> kKinds[] = {
    {"PostgreSQL", "postgres"}, {"MariaDB", "mariadb"}, {"FreeTDS", "tds"}};

class LostTransactionContract : public BrokeringContract {
 protected:
  void SetUp() override {
    if (Driver().Name == "SQLite") GTEST_SKIP() << "Does not apply: SQLite has no server";
    for (const auto& [driver, kind] : kKinds)
      if (Driver().Name == driver) server_ = std::make_unique<OwnServer>(kind);
    if (!server_) GTEST_SKIP() << "Does not apply: another test kills this server";
    ASSERT_NE(server_->ConnectString(), "");
    BrokeringContract::SetUp();
    AddOrders(5);
    connection_ = ActionOf("Order")->Connection();
  }
  std::string ConnectOf() override { return server_->ConnectString(); }
  void KillAndStartAgain() {
    ASSERT_TRUE(server_->Kill());
    ASSERT_TRUE(server_->Start());
    ConnectClient();
  }
  static void Rename(int id, const std::string& name) {
    const auto order = One("Order", id);
    Set(order, "name", name);
    order->Update();
  }
  template <class Request>
  void ExpectRefused(Request&& request) {
    EXPECT_FALSE(EndsRightOrNumbered(request)) << "nothing was raised";
  }
  /// A request in the transaction meets the loss, and whatever follows is told what to do.
  void MeetTheLoss() {
    ExpectRefused([] { Rename(3, "lost"); });
    const auto error = Thrown([] { One("Order", 3); });
    ASSERT_TRUE(error);
    EXPECT_NE(Messages().Details().find("Roll it back to work on over a new link."), std::string::npos);
    Messages().Clear();
  }
  std::string Names() {
    return Stored("SELECT count(*) FROM {t}orders WHERE name = 'lost'") + " lost " +
           Stored("SELECT count(*) FROM {t}orders WHERE name = 'kept'") + " kept";
  }
  static ConnectionsPtr Group() { return Framework{}.ConnectionContext()->Item(""); }

  std::unique_ptr<OwnServer> server_;
  ConnectionPtr connection_;
};

TEST_P(LostTransactionContract, RollbackEndsItAndEverythingWorksWithoutDisconnecting) {
  connection_->TransBegin();
  Rename(2, "lost");
  KillAndStartAgain();
  MeetTheLoss();
  connection_->TransRollback();
  EXPECT_FALSE(connection_->TransStarted());
  Rename(4, "kept");
  EXPECT_EQ(Names(), "0 lost 1 kept");
}

TEST_P(LostTransactionContract, NextTransactionWorksBehindTheRollback) {
  connection_->TransBegin();
  Rename(2, "lost");
  KillAndStartAgain();
  MeetTheLoss();
  ExpectRefused([&] { connection_->TransBegin(); });
  ExpectRefused([&] { connection_->TransCommit(); });
  connection_->TransRollback();
  connection_->TransBegin();
  Rename(4, "kept");
  EXPECT_EQ(Names(), "0 lost 0 kept");
  connection_->TransCommit();
  EXPECT_EQ(Names(), "0 lost 1 kept");
  connection_->TransBegin();
  Rename(5, "lost");
  connection_->TransRollback();
  EXPECT_EQ(Names(), "0 lost 1 kept");
}

TEST_P(LostTransactionContract, RollbackMayBeTheFirstToMeetTheLoss) {
  connection_->TransBegin();
  Rename(2, "lost");
  KillAndStartAgain();
  connection_->TransRollback();
  EXPECT_FALSE(connection_->TransStarted());
  EndsRightOrNumbered([] { One("Order", 1); });  // a driver that told nothing meets it now
  Rename(4, "kept");
  EXPECT_EQ(Names(), "0 lost 1 kept");
}

TEST_P(LostTransactionContract, RollbackEndsItWhileTheServerIsStillGone) {
  connection_->TransBegin();
  Rename(2, "lost");
  ASSERT_TRUE(server_->Kill());
  ExpectRefused([] { Rename(3, "lost"); });
  connection_->TransRollback();
  EXPECT_FALSE(connection_->TransStarted());
  ExpectRefused([] { One("Order", 1); });
  ASSERT_TRUE(server_->Start());
  ConnectClient();
  Rename(4, "kept");
  EXPECT_EQ(Names(), "0 lost 1 kept");
}

TEST_P(LostTransactionContract, TransactionOfTheGroupIsEndedByItsRollback) {
  const auto engine = Profile().Engine;
  connection_->Connect();
  Group()->TransBegin(engine);
  Rename(2, "lost");
  KillAndStartAgain();
  MeetTheLoss();
  ExpectRefused([&] { Group()->TransBegin(engine); });
  ExpectRefused([&] { Group()->TransCommit(engine); });
  EXPECT_TRUE(Group()->TransStarted(engine));
  Group()->TransRollback(engine);
  EXPECT_FALSE(Group()->TransStarted(engine));
  Group()->TransBegin(engine);
  Rename(4, "kept");
  Group()->TransCommit(engine);
  EXPECT_EQ(Names(), "0 lost 1 kept");
  Rename(5, "kept");
  EXPECT_EQ(Names(), "0 lost 2 kept");
}

INSTANTIATE_TEST_SUITE_P(, LostTransactionContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test
