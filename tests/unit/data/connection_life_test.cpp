#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sqlext.h>

#include "tests/support/expect_raised.h"
#include "tests/support/fake_odbc.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

using Texts = std::vector<std::string>;

// What a connection and its group do from their setup to their end: what they share, what they keep, what they tell.
class ConnectionLifeTest : public testing::Test {
 protected:
  ConnectionLifeTest() { scope_.State().Platform.Odbc = driver_; }

  ConnectionsPtr Group(const std::string& name = {}) {
    const auto found = context_->Find(name);
    return found ? found : context_->SetupItem(name);
  }
  ConnectionPtr Made(ConnectionFields fields, const std::string& group = {}) {
    if (fields.DatabaseName.empty()) fields.DatabaseName = "Shop" + std::to_string(Group(group)->Count());
    if (fields.Engine == engUnknown) fields.Engine = engODBC;
    if (fields.ConnectionType == ctNone) fields.ConnectionType = ctText;
    return Group(group)->SetupItem(fields);
  }
  std::string Sent(const ConnectionFields& fields, const std::string& group = {}) {
    Made(fields, group)->Connect();
    return driver_->Connects.back();
  }

  ScopedApartment scope_;
  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
  ConnectionContextPtr context_ = Apartment().ConnectionContext;
};

TEST_F(ConnectionLifeTest, ADataSourceStandsBehindItsUserAndAnEmptyPasswordIsLeftOut) {
  EXPECT_EQ(Sent({.ConnectionType = ctDSN, .ConnectionString = "Sales", .UserName = "u"}), "UID=u;DSN=Sales");
}

TEST_F(ConnectionLifeTest, ALogOnGoesIntoTheTextAsItIs) {
  EXPECT_EQ(Sent({.ConnectionType = ctText, .ConnectionString = "A=b", .Password = "p;q", .UserName = "u"}),
            "A=b;UID=u;PWD=p;q");
  EXPECT_EQ(Sent({.ConnectionType = ctDSN, .ConnectionString = "Sales", .Password = "{p;q}", .UserName = "u"}),
            "UID=u;PWD={p;q};DSN=Sales");
}

TEST_F(ConnectionLifeTest, ACallersUserKeyInLowerCaseKeepsASecondUserOut) {
  EXPECT_EQ(Sent({.ConnectionString = "DSN=x;uid=a", .UserName = "b"}), "DSN=x;uid=a");
}

TEST_F(ConnectionLifeTest, AnEmptyTextWithoutUserAndPasswordStaysEmpty) { EXPECT_EQ(Sent({}), ""); }

TEST_F(ConnectionLifeTest, AccessThatIsToldToPromptBecomesAFileWithoutAWord) {
  const auto connection = Made({.Engine = engAccess,
                                .ConnectionType = ctPrompt,
                                .ConnectionString = "shop.mdb",
                                .CursorDriver = crdServerSide,
                                .CursorType = crtStatic});
  EXPECT_EQ(connection->ConnectionType(), ctFile);
  EXPECT_EQ(connection->ConnectionString(), "shop.mdb");
  EXPECT_EQ(connection->CursorDriver(), crdNone);
  EXPECT_EQ(connection->CursorType(), crtNone);
  EXPECT_EQ(scope_.Messages().Count(), 0);
}

TEST_F(ConnectionLifeTest, OracleIsNotAsyncEvenWithAServerSideCursor) {
  EXPECT_FALSE(Made({.Engine = engOracle, .CursorDriver = crdServerSide})->SupportsAsync());
  EXPECT_TRUE(driver_->Connects.empty());
}

TEST_F(ConnectionLifeTest, PromptAloneLetsTheDriverAsk) {
  for (const auto type : {ctDSN, ctText, ctPrompt}) Made({.ConnectionType = type})->Connect();
  EXPECT_EQ(driver_->Completions,
            (std::vector<odbc::Word>{SQL_DRIVER_NOPROMPT, SQL_DRIVER_NOPROMPT, SQL_DRIVER_COMPLETE}));
  EXPECT_FALSE(driver_->ReadOnly);
}

TEST_F(ConnectionLifeTest, PromptKeepsItsTextAndTheDriverIsToldTheUserOfTheGroupAllTheSame) {
  const ConnectionFields fields{
      .ConnectionType = ctPrompt, .ConnectionString = "DSN=x;", .Password = "p", .UserName = "u"};
  const auto connection = Made(fields);
  connection->Connect();
  EXPECT_EQ(connection->ConnectionString(), "DSN=x;");
  EXPECT_EQ(driver_->Connects.back(), "DSN=x;UID=u;PWD=p");
  EXPECT_EQ(driver_->Completions.back(), SQL_DRIVER_COMPLETE);
}

TEST_F(ConnectionLifeTest, SettingUpAsksTheDriverForNothing) {
  const auto connection = Made({.ConnectionString = "x", .Password = "p", .UserName = "u"});
  EXPECT_TRUE(connection->Details().ends_with("Username: 'u'"));
  EXPECT_FALSE(connection->ConnectionOpen());
  connection->Disconnect();
  EXPECT_EQ(connection->Statistics()->Count(), 0);
  EXPECT_EQ(driver_->CallCount, 0);
}

TEST_F(ConnectionLifeTest, EachGroupHasAnEnvironmentForEachOfItsEngines) {
  for (const auto* group : {"", "Night"}) {
    for (const auto engine : {engODBC, engOracle, engODBC}) Made({.Engine = engine}, group)->Connect();
  }
  EXPECT_EQ(driver_->CallsOf["SetEnvAttr"], 4);
  EXPECT_EQ(driver_->Connects.size(), 6U);
}

TEST_F(ConnectionLifeTest, AConnectionWithoutAUserLogsOnAsTheFirstOfItsGroupAndEngine) {
  EXPECT_EQ(Sent({.Password = "p1", .UserName = "u1"}), "UID=u1;PWD=p1");
  EXPECT_EQ(Sent({.Password = "p2", .UserName = "u2"}), "UID=u2;PWD=p2");
  EXPECT_EQ(Sent({.ConnectionString = "A=b"}), "A=b;UID=u1;PWD=p1");
  EXPECT_EQ(Sent({.Engine = engOracle, .ConnectionString = "A=b"}), "A=b");
  EXPECT_EQ(Sent({.ConnectionString = "A=b"}, "Night"), "A=b");
}

TEST_F(ConnectionLifeTest, AClosedEnvironmentForgetsTheLogOnOfTheFirst) {
  Made({.Password = "p1", .UserName = "u1"})->Connect();
  Group()->Disconnect(engODBC);
  Made({.Password = "p2", .UserName = "u2"})->Connect();
  EXPECT_EQ(Sent({.ConnectionString = "A=b"}), "A=b;UID=u2;PWD=p2");
}

TEST_F(ConnectionLifeTest, APreparedLogOnGivesWayToTheUserOfTheConnectionThatMakesTheEnvironment) {
  Group()->Prepare(engODBC, "prepared", "p");
  Made({.Password = "p1", .UserName = "u1"})->Connect();
  EXPECT_EQ(Sent({.ConnectionString = "A=b"}), "A=b;UID=u1;PWD=p1");
}

TEST_F(ConnectionLifeTest, AUserSetBeforeTheFirstOpeningLogsOnThroughTheEnvironment) {
  const auto connection = Made({.ConnectionString = "A=b"});
  connection->SetUserName("late");
  connection->SetPassword("p");
  connection->Connect();
  EXPECT_EQ(driver_->Connects, Texts{"A=b;UID=late;PWD=p"});
}

TEST_F(ConnectionLifeTest, TheFlagsOfGroupAndConnectionAreKeptApart) {
  const auto connection = Made({});
  connection->Connect();
  Group()->TransBegin(engODBC);
  EXPECT_FALSE(connection->TransStarted());
  Group()->TransRollback(engODBC);
  connection->TransBegin();
  EXPECT_FALSE(Group()->TransStarted(engODBC));
  EXPECT_TRUE(connection->TransStarted());
}

TEST_F(ConnectionLifeTest, EachEngineOfAGroupHasItsFlag) {
  for (const auto engine : {engODBC, engOracle}) Made({.Engine = engine})->Connect();
  Group()->TransBegin(engOracle);
  EXPECT_TRUE(Group()->TransStarted(engOracle));
  EXPECT_FALSE(Group()->TransStarted(engODBC));
  EXPECT_FALSE(Group()->TransStarted());
  EXPECT_EQ(driver_->Transactions, Texts{"begin 2"});
}

TEST_F(ConnectionLifeTest, ATransactionOfTheGroupDoesNotReachAnotherGroup) {
  Made({})->Connect();
  Made({}, "Night")->Connect();
  Group("Night")->TransBegin(engODBC);
  EXPECT_FALSE(Group()->TransStarted(engODBC));
  EXPECT_EQ(driver_->Transactions, Texts{"begin 2"});
}

TEST_F(ConnectionLifeTest, BeginsAreNeitherCountedNorRefused) {
  const auto connection = Made({});
  connection->TransBegin();
  connection->TransBegin();
  connection->TransCommit();
  EXPECT_FALSE(connection->TransStarted());
  Group()->TransBegin();
  Group()->TransBegin();
  Group()->TransRollback();
  EXPECT_FALSE(Group()->TransStarted());
  EXPECT_EQ(scope_.Messages().Count(), 0);
}

TEST_F(ConnectionLifeTest, EndingWhatNeverBeganIsNotRefused) {
  const auto connection = Made({});
  connection->TransCommit();
  connection->TransRollback();
  EXPECT_TRUE(connection->ConnectionOpen());
  Group()->TransCommit();
  Group()->TransRollback();
  EXPECT_FALSE(Group()->TransStarted());
}

TEST_F(ConnectionLifeTest, AFailingBeginLeavesTheFlagsAlone) {
  const auto connection = Made({});
  connection->Connect();
  driver_->FailName = "SetConnectAttr";
  EXPECT_TRUE(Thrown([&] { connection->TransBegin(); }));
  EXPECT_FALSE(connection->TransStarted());
  EXPECT_TRUE(Thrown([&] { Group()->TransBegin(); }));
  EXPECT_FALSE(Group()->TransStarted());
}

TEST_F(ConnectionLifeTest, AFailingRollbackLeavesTheFlags) {
  const auto connection = Made({});
  connection->TransBegin();
  Group()->TransBegin();
  driver_->FailName = "EndTran";
  EXPECT_TRUE(Thrown([&] { connection->TransRollback(); }));
  EXPECT_TRUE(Thrown([&] { Group()->TransRollback(); }));
  EXPECT_TRUE(connection->TransStarted());
  EXPECT_TRUE(Group()->TransStarted());
}

TEST_F(ConnectionLifeTest, ATransactionDoesNotBeginWhereTheConnectionDoesNotOpen) {
  driver_->FailName = "DriverConnect";
  const auto connection = Made({});
  ExpectRaised(errRDO_Connection, [&] { connection->TransBegin(); });
  EXPECT_FALSE(connection->TransStarted());
}

TEST_F(ConnectionLifeTest, DisconnectingLeavesTheFlagThoughTheTransactionIsGone) {
  const auto connection = Made({});
  connection->TransBegin();
  connection->Disconnect();
  EXPECT_EQ(driver_->Transactions, (Texts{"begin 1", "rollback 1"}));
  EXPECT_TRUE(connection->TransStarted());
  EXPECT_EQ(connection->Details().find("Transaction"), std::string::npos);
}

TEST_F(ConnectionLifeTest, ForAccessAGroupWithoutASessionOnlyKeepsTheFlag) {
  Made({.Engine = engAccess});
  Group()->TransBegin();
  EXPECT_TRUE(Group()->TransStarted());
  Group()->TransCommit();
  EXPECT_FALSE(Group()->TransStarted(engAccess));
  Group()->TransBegin(engAccess);
  Group()->Disconnect(engAccess);
  EXPECT_TRUE(Group()->TransStarted(engAccess));
  EXPECT_EQ(driver_->CallCount, 0);
  EXPECT_EQ(scope_.Messages().Count(), 0);
}

TEST_F(ConnectionLifeTest, TheEngineOfTheFirstConnectionIsTheOneMeantWhereNoneIsGiven) {
  Made({.Engine = engSybase})->Connect();
  Made({.Engine = engOracle})->Connect();
  Group()->TransBegin();
  EXPECT_TRUE(Group()->TransStarted(engSybase));
  EXPECT_FALSE(Group()->TransStarted(engOracle));
}

TEST_F(ConnectionLifeTest, WithoutAnEngineOnlyTheFirstEngineIsDisconnected) {
  const auto sybase = Made({.Engine = engSybase});
  const auto oracle = Made({.Engine = engOracle});
  sybase->Connect();
  oracle->Connect();
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { Group()->Disconnect(); });
  EXPECT_FALSE(sybase->ConnectionOpen());
  EXPECT_TRUE(oracle->ConnectionOpen());
}

TEST_F(ConnectionLifeTest, FlagsOfEnginesBeyondTheLastAreOutOfBounds) {
  for (const auto engine : {zEngines{8}, zEngines{-1}}) {
    ExpectReported(RuntimeFailure::SubscriptOutOfRange, [&] { Group()->TransStarted(engine); });
    ExpectReported(RuntimeFailure::SubscriptOutOfRange, [&] { Group()->Prepare(engine, "u", "p"); });
  }
  EXPECT_FALSE(Group()->TransStarted(engRMS));
}

TEST_F(ConnectionLifeTest, ARemovedGroupClosesWhatTheHostStillHolds) {
  const auto connection = Made({}, "Night");
  connection->TransBegin();
  context_->Remove("Night");
  EXPECT_EQ(driver_->CallsOf["Disconnect"], 1);
  EXPECT_EQ(driver_->Transactions, (Texts{"begin 1", "rollback 1"}));
  connection->Disconnect();
  ExpectRaised(errItem_Connections, [&] { connection->Connect(); }, {.Text = "Index: 'Night'"});
  EXPECT_EQ(driver_->Misuses, 0);
}

TEST_F(ConnectionLifeTest, AnOpeningThatFailedLeavesItsStatisticAndTheNextOneTakesItsPlace) {
  driver_->FailName = "DriverConnect";
  const auto connection = Made({});
  EXPECT_TRUE(Thrown([&] { connection->Connect(); }));
  ASSERT_EQ(connection->Statistics()->Count(), 1);
  EXPECT_EQ(connection->Statistics()->Item(1)->StartTime(), scope_.Clock().Time);
  EXPECT_EQ(connection->Statistics()->Item(1)->EndTime(), Date{});
  driver_->FailName.clear();
  scope_.Clock().Advance(60);
  connection->Connect();
  ASSERT_EQ(connection->Statistics()->Count(), 1);
  EXPECT_NE(connection->Statistics()->Item(1)->EndTime(), Date{});
}

TEST_F(ConnectionLifeTest, AStatisticTellsWhatWasOpenedAndWhatWasClosed) {
  const auto connection = Made({});
  connection->Connect();
  connection->Disconnect();
  ASSERT_EQ(connection->Statistics()->Count(), 2);
  EXPECT_EQ(connection->Statistics()->Item(1)->Details(),
            "Started: 6/1/98 9:14:02 AM\r\nEnded: 6/1/98 9:14:02 AM\r\nTotal: 0 seconds\r\n"
            "Procedure: Open RDO Connection\r\nRDO Connection: 1");
  EXPECT_EQ(connection->Statistics()->Item(2)->Name(), "Close RDO Connection");
  EXPECT_EQ(connection->Statistics()->Item(2)->SubjectCount(), 1);
}

TEST_F(ConnectionLifeTest, GroupsAndContextHaveStatisticsThatTheLibraryLeavesToTheHost) {
  Made({})->Connect();
  EXPECT_EQ(Group()->Statistics()->Count(), 0);
  EXPECT_EQ(context_->Statistics()->Count(), 0);
  EXPECT_EQ(Group()->Statistics(), Group()->Statistics());
}

TEST_F(ConnectionLifeTest, DetailsTellEverythingInItsOrder) {
  Made({.DatabaseName = "A", .ConnectionString = "A=b;PWD=secret", .Password = "secret", .UserName = "u"});
  Made({.DatabaseName = "B", .Engine = engOracle, .ConnectionType = ctPrompt, .CursorDriver = crdServerSide}, "Night")
      ->TransBegin();
  Group("Night")->TransBegin();
  EXPECT_EQ(context_->Details(),
            "Connections Count 1 for (Default)\r\nTransactions Started: \r\n"
            "Connection to Database: 'A'  Engine: 'Generic ODBC'  Connect Type: 'ODBC Connect String'  Username: 'u'"
            "\r\nConnections Count 1 for 'Night'\r\nTransactions Started: Oracle\r\n"
            "Connection to Database: 'B'  Engine: 'Oracle'  Connect Type: 'Prompt User'  Username: ''\r\n"
            "    Connected to 'Oracle'  CursorDriver: 'Server Side'  CursorType: 'Keyset' (Transaction Started)");
}

TEST_F(ConnectionLifeTest, NamesAreThoseOfTheEnumerations) {
  const auto connection = Made({.Engine = engSybase, .CursorDriver = crdTryServerSide, .CursorType = crtDynamic});
  EXPECT_EQ(connection->EngineName(), "Sybase SQL Server");
  EXPECT_EQ(connection->CursorDriverName(), "Try Server Side");
  EXPECT_EQ(connection->CursorTypeName(), "Dynamic");
}

}  // namespace

}  // namespace velmoria::test
