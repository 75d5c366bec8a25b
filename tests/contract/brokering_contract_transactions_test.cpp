// Transactions of one connection and of a group over the real drivers, and several groups at once.

#include "tests/contract/brokering_contract.h"
#include "tests/support/test_servers.h"

namespace velmoria::test {
namespace {

class TransactionsContract : public BrokeringContract {
 protected:
  void SetUp() override {
    BrokeringContract::SetUp();
    AddOrders(25);
  }
  static ConnectionsPtr Group(const std::string& name = {}) { return Framework{}.ConnectionContext()->Item(name); }
  static void Rename(const IBusinessObjectPtr& order, const std::string& name) {
    Set(order, "name", name);
    order->Update();
  }
  static IBusinessObjectPtr By(const std::string& action, int id) {
    return Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = id, .ActionName = action});
  }
  std::string NameOf(int id) { return Stored("SELECT name FROM {t}orders WHERE id = " + std::to_string(id)); }
};

TEST_P(TransactionsContract, WhatOneConnectionWroteIsTakenBackOrKeptWhole) {
  const auto order = One("Order", 1);
  const auto connection = ActionOf("Order")->Connection();
  EXPECT_TRUE(connection->SupportsTransactions());
  for (const bool commit : {false, true}) {
    connection->TransBegin();
    EXPECT_TRUE(connection->TransStarted());
    EXPECT_TRUE(connection->Details().ends_with(" (Transaction Started)"));
    Rename(order, commit ? "kept" : "lost");
    Rename(One("Order", 2), commit ? "kept" : "lost");
    EXPECT_EQ(Value(One("Order", 2), "name"), Variant(commit ? "kept" : "lost"));
    commit ? connection->TransCommit() : connection->TransRollback();
    EXPECT_FALSE(connection->TransStarted());
    for (const int id : {1, 2}) EXPECT_EQ(NameOf(id), commit ? "kept" : "name " + std::to_string(id));
  }
  Rename(order, "by itself");
  EXPECT_EQ(NameOf(1), "by itself");
}

TEST_P(TransactionsContract, ObjectDoesNotKnowThatItsWriteWasTakenBack) {
  const auto order = One("Order", 1);
  const auto connection = ActionOf("Order")->Connection();
  connection->TransBegin();
  Rename(order, "lost");
  connection->TransRollback();
  EXPECT_FALSE(order->Dirty());
  EXPECT_EQ(Value(order, "name"), Variant("lost"));
  EXPECT_EQ(Value(One("Order", 1), "name"), Variant("name 1"));
}

TEST_P(TransactionsContract, SecondBeginChangesNothingAndEndsWithoutABeginAreHarmless) {
  const auto connection = ActionOf("Order")->Connection();
  connection->TransCommit();
  connection->TransRollback();
  connection->TransBegin();
  Rename(One("Order", 1), "lost");
  connection->TransBegin();
  Rename(One("Order", 2), "lost");
  connection->TransRollback();
  EXPECT_EQ(NameOf(1) + NameOf(2), "name 1name 2");
}

TEST_P(TransactionsContract, WriteRefusedInsideATransactionLeavesTheOthersToTheCommit) {
  if (!Driver().WhyNothingAfterRefusal.empty()) GTEST_SKIP() << Driver().WhyNothingAfterRefusal;
  const auto connection = ActionOf("Order")->Connection();
  connection->TransBegin();
  Rename(One("Order", 1), "kept");
  const auto second = One("Order", 2);
  Set(second, "id", 3);
  ExpectRaised(errPersistence_Update, [&] { second->Update(); });
  Rename(One("Order", 4), "kept");
  connection->TransCommit();
  EXPECT_EQ(NameOf(1) + NameOf(3) + NameOf(4), "keptname 3kept");
}

TEST_P(TransactionsContract, GroupHasNothingToBeginBeforeItsFirstConnectionIsOpen) {
  const auto engine = Profile().Engine;
  for (const bool isSetUp : {false, true}) {
    if (isSetUp) ActionOf("Order")->Connection();
    ExpectReported(RuntimeFailure::InvalidArgument, [&] { Group()->TransBegin(engine); });
    EXPECT_FALSE(Group()->TransStarted(engine));
  }
  ActionOf("Order")->Connection()->Connect();
  Group()->TransBegin();
  EXPECT_TRUE(Group()->TransStarted());
  Rename(One("Order", 1), "lost");
  Group()->TransRollback();
  EXPECT_EQ(NameOf(1), "name 1");
}

TEST_P(TransactionsContract, GroupCoversAConnectionThatOpensLater) {
  AddDatabase("Depot", Profile().Engine, ConnectText());
  AddAction("Order", {.Name = "Later", .Text = "{t}orders", .DatabaseName = "Depot"});
  ActionOf("Order")->Connection()->Connect();
  for (const bool commit : {false, true}) {
    Group()->TransBegin(Profile().Engine);
    Rename(By("Later", 1), commit ? "kept" : "lost");
    commit ? Group()->TransCommit(Profile().Engine) : Group()->TransRollback(Profile().Engine);
    EXPECT_EQ(NameOf(1), commit ? "kept" : "name 1");
  }
}

TEST_P(TransactionsContract, GroupEndsWhatTwoOfItsConnectionsWrote) {
  if (!Profile().WhyOneWriter.empty()) GTEST_SKIP() << Profile().WhyOneWriter;
  AddDatabase("Depot", Profile().Engine, ConnectText());
  AddAction("Order", {.Name = "Later", .Text = "{t}orders", .DatabaseName = "Depot"});
  ActionOf("Order")->Connection()->Connect();
  for (const bool commit : {false, true}) {
    Group()->TransBegin();
    Rename(One("Order", 1), commit ? "kept" : "lost");
    Rename(By("Later", 2), commit ? "kept" : "lost");
    commit ? Group()->TransCommit() : Group()->TransRollback();
    for (const int id : {1, 2}) EXPECT_EQ(NameOf(id), commit ? "kept" : "name " + std::to_string(id));
  }
}

TEST_P(TransactionsContract, OneGroupIsTakenBackWhileAnotherKeepsWhatItWrote) {
  AddAction("Order", {.Name = "Night", .Text = "{t}orders", .ConnectionsName = "Night"});
  ActionOf("Order")->Connection()->Connect();
  Group()->TransBegin();
  Rename(By("Night", 2), "kept");
  EXPECT_EQ(Framework{}.ConnectionContext()->Count(), 2);
  Rename(One("Order", 1), "lost");
  Group()->TransRollback();
  EXPECT_EQ(NameOf(1) + NameOf(2), "name 1kept");
}

TEST_P(TransactionsContract, TwoGroupsAreReadInTurns) {
  for (const auto* name : {"", "Night"}) {
    AddAction("Order",
              {.Name = std::string("Paged") + name, .Text = "{t}orders", .ObjectBuffer = 3, .ConnectionsName = name});
  }
  const auto day = All("Order", "Paged");
  const auto night = All("Order", "PagedNight");
  for (int row = 1; row <= 25; ++row) {
    EXPECT_EQ(IdOf(day->Item(row)), row);
    EXPECT_EQ(IdOf(night->Item(26 - row)), 26 - row);
  }
}

TEST_P(TransactionsContract, TwoResultsOfOneConnectionAreReadInTurnsWhileItWrites) {
  ActionOf("Order")->SetObjectBuffer(5);
  const auto up = All("Order");
  const auto other = All("Order");
  for (int row = 1; row <= 25; ++row) {
    EXPECT_EQ(IdOf(up->Item(row)), row);
    Rename(other->Item(row), "seen");
  }
  EXPECT_EQ(Stored("SELECT count(*) FROM {t}orders WHERE name = 'seen'"), "25");
}

TEST_P(TransactionsContract, CollectionIsReadOnBehindACommitAndARollback) {
  ActionOf("Order")->SetObjectBuffer(5);
  const auto connection = ActionOf("Order")->Connection();
  for (const bool commit : {true, false}) {
    const auto orders = All("Order");
    connection->TransBegin();
    EXPECT_EQ(IdOf(orders->Item(7)), 7);
    commit ? connection->TransCommit() : connection->TransRollback();
    EXPECT_EQ(IdOf(orders->Item(24)), 24);
  }
}

TEST_P(TransactionsContract, DisconnectTakesBackWhatWasNotCommitted) {
  const auto connection = ActionOf("Order")->Connection();
  connection->TransBegin();
  Rename(One("Order", 1), "lost");
  connection->Disconnect();
  EXPECT_FALSE(connection->ConnectionOpen());
  EXPECT_EQ(NameOf(1), "name 1");
  EXPECT_EQ(Value(One("Order", 1), "name"), Variant("name 1"));
}

TEST_P(TransactionsContract, FirstOfAGroupLogsOnForADatabaseThatNamesNoUser) {
  if (!Driver().WhyNoUsers.empty()) GTEST_SKIP() << Driver().WhyNoUsers;
  for (const auto& server : TestServers()) {
    if (server.Name != Driver().Name) continue;
    AddDatabase("Nameless", Profile().Engine,
                server.Text + Filled(Driver().OpenServer.empty() ? "" : ";Database={own}"));
    Framework{}
        .SetupConnection({.DatabaseName = "First",
                          .Engine = Profile().Engine,
                          .ConnectionType = ctText,
                          .ConnectionString = server.Text,
                          .Password = server.Password,
                          .UserName = server.UserName})
        ->Connect();
  }
  AddAction("Order", {.Name = "Nameless", .Text = "{t}orders", .DatabaseName = "Nameless"});
  EXPECT_EQ(All("Order", "Nameless")->Count(), 25);
}

INSTANTIATE_TEST_SUITE_P(, TransactionsContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test
