#include <memory>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/fake_odbc.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/connection_context.h"
#include "velmoria/data/connections.h"
#include "velmoria/design/connector.h"
#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_query.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/platform/rdo/rdo_tables.h"

namespace velmoria::test {
namespace {

class LostConnectionTest : public testing::Test {
 protected:
  LostConnectionTest() {
    scope_.State().Platform.Odbc = driver_;
    connection_ = Apartment().ConnectionContext->Item("")->SetupItem(
        {.DatabaseName = "Shop", .Engine = engODBC, .ConnectionType = ctText, .ConnectionString = "a=b"});
    connection_->Connect();
  }
  void RunAndFail() {
    driver_->FailName = "Prepare";
    EXPECT_TRUE(Thrown([&] { connection_->GetConnection()->CreateQuery("", "SELECT 1")->Execute(); }));
    driver_->FailName.clear();
  }

  ScopedApartment scope_;
  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
  ConnectionPtr connection_;
};

TEST_F(LostConnectionTest, IsOpenedAgainByTheNextUse) {
  RunAndFail();
  driver_->LinkLost = true;
  connection_->GetConnection()->CreateQuery("", "SELECT 1")->Execute();
  EXPECT_EQ(driver_->Connects, (std::vector<std::string>{"a=b", "a=b"}));
  EXPECT_EQ(driver_->CallsOf["Disconnect"], 1);
  EXPECT_EQ(scope_.Messages().Count(), 0);
}

TEST_F(LostConnectionTest, IsKeptWhileTheLinkIsThere) {
  RunAndFail();
  connection_->Connect();
  EXPECT_EQ(driver_->Connects.size(), 1U);
}

TEST_F(LostConnectionTest, IsAskedForOnlyBehindAFailure) {
  connection_->Connect();
  EXPECT_EQ(driver_->CallsOf["GetConnectAttr"], 0);
  RunAndFail();
  connection_->Connect();
  connection_->Connect();
  EXPECT_EQ(driver_->CallsOf["GetConnectAttr"], 1);
}

TEST_F(LostConnectionTest, IsNotReplacedUnderATransaction) {
  connection_->TransBegin();
  RunAndFail();
  driver_->LinkLost = true;
  connection_->Connect();
  EXPECT_EQ(driver_->Connects.size(), 1U);
  connection_->Disconnect();
  connection_->Connect();
  EXPECT_EQ(driver_->Connects.size(), 2U);
}

TEST_F(LostConnectionTest, TellsWhatEndsATransactionThatWentWithTheLink) {
  connection_->TransBegin();
  RunAndFail();
  driver_->LinkLost = true;
  const auto refused = [&](auto ask) {
    const auto error = Thrown(ask);
    ASSERT_TRUE(error);
    EXPECT_NE(error->Description().find("Roll it back to work on over a new link."), std::string::npos);
  };
  const auto query = connection_->GetConnection()->CreateQuery("", "SELECT 1");
  refused([&] { query->Execute(); });
  refused([&] { query->OpenResultset(); });
  refused([&] { connection_->GetConnection()->rdoTables(); });
  refused([&] { connection_->TransBegin(); });
  refused([&] { connection_->TransCommit(); });
  EXPECT_TRUE(connection_->TransStarted());
}

TEST_F(LostConnectionTest, RollbackEndsATransactionThatWentWithTheLink) {
  connection_->TransBegin();
  RunAndFail();
  driver_->LinkLost = true;
  driver_->FailName = "EndTran";
  connection_->TransRollback();
  driver_->FailName.clear();
  EXPECT_FALSE(connection_->TransStarted());
  EXPECT_EQ(scope_.Messages().Count(), 0);
  connection_->TransBegin();
  EXPECT_EQ(driver_->Connects.size(), 2U);
  EXPECT_EQ(driver_->Transactions.back(), "begin 2");
}

TEST_F(LostConnectionTest, RollbackMayBeTheFirstToMeetTheLoss) {
  connection_->TransBegin();
  driver_->LinkLost = true;
  driver_->FailName = "EndTran";
  connection_->TransRollback();
  driver_->FailName = "SetConnectAttr";
  connection_->Disconnect();
  driver_->FailName.clear();
  EXPECT_FALSE(connection_->TransStarted());
}

TEST_F(LostConnectionTest, RollbackThatFailsOverALinkThatIsThereIsRefused) {
  connection_->TransBegin();
  driver_->FailName = "EndTran";
  EXPECT_TRUE(Thrown([&] { connection_->TransRollback(); }));
  driver_->FailName.clear();
  EXPECT_TRUE(connection_->TransStarted());
}

TEST_F(LostConnectionTest, RollbackOfTheGroupEndsItsTransaction) {
  connection_->Connect();
  const auto group = Apartment().ConnectionContext->Item("");
  group->TransBegin(engODBC);
  RunAndFail();
  driver_->LinkLost = true;
  EXPECT_TRUE(Thrown([&] { group->TransCommit(engODBC); }));
  EXPECT_TRUE(Thrown([&] { group->TransBegin(engODBC); }));
  EXPECT_TRUE(group->TransStarted(engODBC));
  group->TransRollback(engODBC);
  EXPECT_FALSE(group->TransStarted(engODBC));
  group->TransBegin(engODBC);
  connection_->Connect();
  EXPECT_EQ(driver_->Connects.size(), 2U);
  EXPECT_EQ(driver_->Transactions.back(), "begin 2");
}

}  // namespace
}  // namespace velmoria::test
