// What becomes of objects when the server under them is killed, and that everything works on once it is back.

#include <thread>

#include <sql.h>
#include <sqlext.h>

#include "tests/contract/own_server_contract.h"
#include "tests/support/await_opened.h"

namespace velmoria::test {
namespace {

class LostServerContract : public OwnServerContract {
 protected:
  LostServerContract() : OwnServerContract(3000) {}

  void SetUp() override {
    if (!Driver().WhyNoLostServer.empty()) GTEST_SKIP() << Driver().WhyNoLostServer;
    OwnServerContract::SetUp();
  }
  /// Whatever is asked meanwhile fails, again and again.
  void ExpectNothingWorks() {
    for (int time = 0; time < 2; ++time) {
      ExpectRefused([] { One("Order", 1); });
      ExpectRefused([] { All("Order"); });
    }
  }
  void ExpectEverythingWorks() {
    EXPECT_EQ(Value(One("Order", 7), "name"), Variant("name 7"));
    EXPECT_EQ(All("Order")->Count(), 3000);
  }
};

TEST_P(LostServerContract, RowsOfAPageAreRightOrRefusedAndTheNextReadWorks) {
  ActionOf("Order")->SetObjectBuffer(10);
  const auto orders = All("Order");
  EXPECT_EQ(IdOf(orders->Item(5)), 5);
  Kill();
  EndsRightOrNumbered([&] {
    for (int row = 1; row <= 3000; ++row) EXPECT_EQ(IdOf(orders->Item(row)), row);
  });
  EXPECT_EQ(IdOf(orders->Item(5)), 5);
  ExpectNothingWorks();
  StartAgain();
  ExpectEverythingWorks();
}

TEST_P(LostServerContract, ObjectWhoseUpdateTheServerDidNotSurviveIsWrittenByTheNext) {
  const auto order = One("Order", 2);
  Set(order, "name", "changed");
  Kill();
  ExpectRaised(errPersistence_Update, [&] { order->Update(); });
  EXPECT_TRUE(order->Dirty());
  ExpectNothingWorks();
  StartAgain();
  order->Update();
  EXPECT_FALSE(order->Dirty());
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 2"), "changed");
  ExpectEverythingWorks();
}

// The row is held by another, so the statement is under way and cannot end.
TEST_P(LostServerContract, UpdateThatWaitsForARowWhenTheServerGoesIsRefused) {
  const auto order = One("Order", 2);
  Set(order, "name", "changed");
  SQLSetConnectAttr(Client().Connection(), SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_OFF), 0);
  Run("UPDATE {t}orders SET name = 'held' WHERE id = 2");
  const auto sent = Odbc().Executions();
  std::thread killer([&] {
    while (Odbc().Executions() == sent) std::this_thread::yield();
    Kill();
  });
  const auto error = Thrown([&] { order->Update(); });
  killer.join();
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15111) << error->Description();
  Messages().Clear();
  StartAgain();
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 2"), "name 2");
  order->Update();
  EXPECT_EQ(Stored("SELECT name FROM {t}orders WHERE id = 2"), "changed");
}

TEST_P(LostServerContract, TransactionThatTheServerTookWithItIsNeverCommittedAndEndsByDisconnecting) {
  const auto connection = ActionOf("Order")->Connection();
  const auto rename = [](int id) {
    const auto order = One("Order", id);
    Set(order, "name", "lost");
    order->Update();
  };
  connection->TransBegin();
  rename(2);
  Kill();
  ExpectRefused([&] { rename(3); });
  ExpectRefused([&] { connection->TransCommit(); });
  StartAgain();
  ExpectRefused([&] { rename(3); });  // never outside of the transaction that the caller believes in
  EXPECT_TRUE(connection->TransStarted());
  connection->Disconnect();
  ExpectEverythingWorks();
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}orders WHERE name = 'lost'"), "0");
}

TEST_P(LostServerContract, CommitIsRefusedWhenItIsTheFirstToMeetThatTheServerIsGone) {
  const auto connection = ActionOf("Order")->Connection();
  connection->TransBegin();
  const auto order = One("Order", 2);
  Set(order, "name", "lost");
  order->Update();
  Kill();
  ExpectRefused([&] { connection->TransCommit(); });
  EXPECT_TRUE(connection->TransStarted());
  StartAgain();
  connection->Disconnect();
  EXPECT_EQ(Value(One("Order", 2), "name"), Variant("name 2"));
}

TEST_P(LostServerContract, StatementThatRunsInTheBackgroundIsRefusedWhenItsServerGoes) {
  AddAction("Order", {.Name = "Endless", .Text = Driver().Endless, .Type = stSQL});
  const auto agent = AgentOf("Order", "Endless");
  agent->LoadPersistentProperties();
  EXPECT_TRUE(agent->StillExecuting());
  Kill();
  AwaitOpened(agent);
  ExpectRefused([&] { agent->Recordset(); });
  StartAgain();
  ExpectEverythingWorks();
}

INSTANTIATE_TEST_SUITE_P(, LostServerContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test
