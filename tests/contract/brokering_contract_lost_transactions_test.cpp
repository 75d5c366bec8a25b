// Transactions of a connection and of a group whose server is killed under them.

#include "tests/contract/own_server_contract.h"

namespace velmoria::test {
namespace {

class LostTransactionContract : public OwnServerContract {
 protected:
  LostTransactionContract() : OwnServerContract(5) {}

  void SetUp() override {
    OwnServerContract::SetUp();
    if (!IsSkipped() && !HasFatalFailure()) connection_ = ActionOf("Order")->Connection();
  }
  void KillAndStartAgain() {
    Kill();
    StartAgain();
  }
  static void Rename(int id, const std::string& name) {
    const auto order = One("Order", id);
    Set(order, "name", name);
    order->Update();
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
  Kill();
  ExpectRefused([] { Rename(3, "lost"); });
  connection_->TransRollback();
  EXPECT_FALSE(connection_->TransStarted());
  ExpectRefused([] { One("Order", 1); });
  StartAgain();
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
