#include "velmoria/data/connections.h"

#include <memory>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/fake_odbc.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/profile.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/connection_context.h"
#include "velmoria/design/connector.h"
#include "velmoria/design/connectors.h"
#include "velmoria/design/database.h"
#include "velmoria/design/databases.h"
#include "velmoria/platform/rdo/rdo_environment.h"
#include "velmoria/properties/attribute.h"

namespace velmoria::test {

namespace {

class ConnectionsTest : public testing::Test {
 protected:
  ConnectionsTest() { scope_.State().Platform.Odbc = driver_; }

  ConnectionPtr Add(const std::string& name, zEngines engine = engODBC, const std::string& text = {}) {
    return Group()->SetupItem(
        {.DatabaseName = name, .Engine = engine, .ConnectionType = ctText, .ConnectionString = text});
  }
  static ConnectionsPtr Group() { return Apartment().ConnectionContext->Item(""); }

  ScopedApartment scope_;
  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
};

TEST_F(ConnectionsTest, ItemFindsByPositionAndByDatabaseNameInAnyCase) {
  const auto shop = Add("Shop");
  EXPECT_EQ(Group()->Item(1), shop);
  EXPECT_EQ(Group()->Item("SHOP"), shop);
  EXPECT_EQ(Group()->Count(), 1);
}

TEST_F(ConnectionsTest, ItemMissIsRaised) {
  ExpectRaised(errItem_Connection, [] { Group()->Item("nowhere"); }, {.Text = "Index: 'nowhere'", .Count = 1});
  ExpectRaised(errItem_Connection, [] { Group()->Item(7); }, {.Text = "Index: 7", .Count = 1});
}

TEST_F(ConnectionsTest, ANameOrAConnectorIsNeeded) {
  ExpectRaised(errMissing_ConnectionInfo, [] { Group()->SetupItem({.Engine = engODBC}); });
}

TEST_F(ConnectionsTest, AConnectorOverrulesEveryOtherArgument) {
  const auto database = Apartment().Databases->SetupItem({.Name = "Shop", .Engine = engSybase});
  const auto connector = database->Connectors()->SetupItem({.Engine = engSybase,
                                                            .ConnectionType = ctDSN,
                                                            .ConnectionString = "Store",
                                                            .CursorDriver = crdServerSide,
                                                            .CursorType = crtDynamic,
                                                            .UserName = "u",
                                                            .Password = "p"});
  const auto connection = Group()->SetupItem({.DatabaseName = "Other", .Engine = engOracle, .Connector = connector});
  EXPECT_EQ(connection->DatabaseName(), "Shop");
  EXPECT_EQ(connection->Engine(), engSybase);
  EXPECT_EQ(connection->CursorType(), crtDynamic);
  EXPECT_EQ(connection->CursorDriver(), crdServerSide);
  connection->Connect();
  EXPECT_EQ(driver_->Connects.back(), "UID=u;PWD=p;DSN=Store");
}

TEST_F(ConnectionsTest, ASecondConnectionOfTheNameIsRefusedAndTheFirstStays) {
  const auto first = Add("Shop");
  ExpectRaised(errAdd_Connection, [&] { Add("shop"); }, {.Text = "Database: 'shop'"});
  EXPECT_EQ(Group()->Item("Shop"), first);
  EXPECT_EQ(Group()->Count(), 1);
}

TEST_F(ConnectionsTest, ABadRecipeKeepsItsOwnNumber) {
  ExpectRaised(errInvalid_Engine, [&] { Add("Shop", engRMS); }, {.Text = "Engine: 7"});
  EXPECT_EQ(Group()->Count(), 0);
}

TEST_F(ConnectionsTest, AnEngineNotGivenIsThatOfTheFirstConnection) {
  Add("First", engSybase);
  EXPECT_EQ(Add("Second", engUnknown)->Engine(), engSybase);
}

TEST_F(ConnectionsTest, ConnectionsOfAnEngineShareOneEnvironment) {
  Add("A")->Connect();
  Add("B")->Connect();
  EXPECT_EQ(driver_->CallsOf["SetEnvAttr"], 1);
  Add("C", engOracle)->Connect();
  EXPECT_EQ(driver_->CallsOf["SetEnvAttr"], 2);
}

TEST_F(ConnectionsTest, TheFirstCallersLogOnStaysForTheEnvironment) {
  Group()->Prepare(engODBC, "first", "one");
  Add("A")->Connect();
  Group()->Prepare(engODBC, "second", "two");
  Add("B")->Connect();
  EXPECT_EQ(driver_->Connects, (std::vector<std::string>{"UID=first;PWD=one", "UID=first;PWD=one"}));
}

struct DriverCase {
  zCursorDrivers Driver;
  rdoNumber Value;
};

TEST_F(ConnectionsTest, EachOpenTellsTheEnvironmentItsCursorDriver) {
  const DriverCase cases[] = {{crdNone, 4},          {crdClientSide, 1},    {crdServerSide, 2}, {crdOptimisticBatch, 3},
                              {crdTryServerSide, 0}, {zCursorDrivers{9}, 0}};
  Apartment().Profile->SetupItem({.Name = "Default CursorDriver for Engine 2", .Value = 0, .DataType = dtLongInteger});
  for (const auto& row : cases) {
    const auto number = std::to_string(static_cast<int>(row.Driver));
    Group()
        ->SetupItem({.DatabaseName = number, .Engine = engODBC, .ConnectionType = ctText, .CursorDriver = row.Driver})
        ->Connect();
    EXPECT_EQ(Group()->GetEnvironment(engODBC, "", "")->CursorDriver(), row.Value) << number;
  }
}

TEST_F(ConnectionsTest, PrepareRefusesEnginesFromEightOn) {
  ExpectReported(RuntimeFailure::SubscriptOutOfRange, [] { Group()->Prepare(zEngines{8}, "u"); });
}

TEST_F(ConnectionsTest, GetEnvironmentRefusesAccess) {
  ExpectRaised(errNotSupported_Engine, [] { Group()->GetEnvironment(engAccess, "", ""); },
               {.Text = "Engine: 'Microsoft Access'"});
}

TEST_F(ConnectionsTest, DisconnectClosesTheConnectionsOfOneEngineOnly) {
  const auto odbc = Add("A");
  const auto oracle = Add("B", engOracle);
  odbc->Connect();
  oracle->Connect();
  Group()->Disconnect(engODBC);
  EXPECT_FALSE(odbc->ConnectionOpen());
  EXPECT_TRUE(oracle->ConnectionOpen());
  odbc->Connect();
  EXPECT_EQ(driver_->CallsOf["SetEnvAttr"], 3);
}

TEST_F(ConnectionsTest, DisconnectWithoutAnEngineFailsWhenItsEnvironmentIsOpen) {
  const auto connection = Add("A");
  Group()->Disconnect();
  connection->Connect();
  ExpectReported(RuntimeFailure::InvalidArgument, [] { Group()->Disconnect(); });
  EXPECT_FALSE(connection->ConnectionOpen());
  ExpectRaised(errRDO_Connection, [&] { connection->Connect(); });
  Group()->Disconnect(engODBC);
  connection->Connect();
  EXPECT_TRUE(connection->ConnectionOpen());
}

TEST_F(ConnectionsTest, DisconnectRefusesEnginesThatNeverConnect) {
  for (const auto engine : {engUnknown, engInformix})
    ExpectRaised(errNotSupported_Engine, [&] { Group()->Disconnect(engine); });
}

TEST_F(ConnectionsTest, ATransactionCoversLaterConnectionsToo) {
  Add("A")->Connect();
  Group()->TransBegin(engODBC);
  EXPECT_TRUE(Group()->TransStarted());
  Add("B")->Connect();
  Group()->TransCommit(engODBC);
  EXPECT_FALSE(Group()->TransStarted(engODBC));
  EXPECT_EQ(driver_->Transactions, (std::vector<std::string>{"begin 1", "begin 2", "commit 1", "commit 2"}));
}

TEST_F(ConnectionsTest, ATransactionCanBeTakenBack) {
  Add("A")->Connect();
  Group()->TransBegin();
  Group()->TransRollback();
  EXPECT_FALSE(Group()->TransStarted());
  EXPECT_EQ(driver_->Transactions, (std::vector<std::string>{"begin 1", "rollback 1"}));
}

TEST_F(ConnectionsTest, ATransactionWithoutAnEnvironmentFailsAndLeavesTheFlag) {
  Add("A");
  ExpectReported(RuntimeFailure::InvalidArgument, [] { Group()->TransBegin(); });
  EXPECT_FALSE(Group()->TransStarted());
}

TEST_F(ConnectionsTest, AFailingCommitLeavesTheFlag) {
  Add("A")->Connect();
  Group()->TransBegin();
  driver_->FailName = "EndTran";
  driver_->Diagnostics = {{"40001", 0, "refused"}};
  EXPECT_TRUE(Thrown([] { Group()->TransCommit(); }));
  EXPECT_TRUE(Group()->TransStarted());
}

TEST_F(ConnectionsTest, ForAccessATransactionOnlySetsTheFlagBeforeADatabaseIsOpen) {
  Add("A", engAccess);
  Group()->TransBegin();
  EXPECT_TRUE(Group()->TransStarted(engAccess));
  Group()->TransRollback();
  EXPECT_FALSE(Group()->TransStarted(engAccess));
}

TEST_F(ConnectionsTest, TransactionsRefuseEnginesThatNeverConnect) {
  for (const auto use : {&Connections::TransBegin, &Connections::TransCommit, &Connections::TransRollback})
    ExpectRaised(errNotSupported_Engine, [&] { ((*Group()).*use)(engInformix); }, {.Text = "Engine: 'Informix'"});
}

TEST_F(ConnectionsTest, DetailsTellNameTransactionsAndConnections) {
  Add("A")->Connect();
  Add("B", engOracle)->Connect();
  Group()->TransBegin(engODBC);
  Group()->TransBegin(engOracle);
  const auto text = Group()->Details();
  EXPECT_TRUE(text.starts_with("Connections Count 2 for (Default)"));
  EXPECT_NE(text.find("Transactions Started: Generic ODBC; Oracle"), std::string::npos);
  EXPECT_NE(text.find("Connection to Database: 'B'"), std::string::npos);
}

TEST_F(ConnectionsTest, DetailsNameTheGroup) {
  EXPECT_TRUE(
      Apartment().ConnectionContext->SetupItem("Night")->Details().starts_with("Connections Count 0 for 'Night'"));
}

}  // namespace

}  // namespace velmoria::test
