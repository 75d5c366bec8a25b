#include "velmoria/data/connection.h"

#include <memory>
#include <ostream>

#include <gtest/gtest.h>

#include "tests/support/connection_hints.h"
#include "tests/support/expect_raised.h"
#include "tests/support/fake_odbc.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/profile.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/connection_context.h"
#include "velmoria/data/connection_recipe_impl.h"
#include "velmoria/data/connections.h"
#include "velmoria/design/connector.h"
#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/properties/attribute.h"

namespace velmoria::test {

namespace {

class ConnectionTest : public testing::Test {
 protected:
  ConnectionTest() { scope_.State().Platform.Odbc = driver_; }

  static ConnectionPtr Setup(ConnectionFields fields) {
    if (fields.DatabaseName.empty()) fields.DatabaseName = "Shop";
    if (fields.Engine == engUnknown) fields.Engine = engODBC;
    return Apartment().ConnectionContext->Item("")->SetupItem(fields);
  }
  std::string Sent(const ConnectionFields& fields) {
    Setup(fields)->Connect();
    return driver_->Connects.back();
  }

  ScopedApartment scope_;
  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
};

struct TextCase {
  const char* What;
  zConnectionTypes Type;
  const char* Given;
  const char* UserName;
  const char* Password;
  const char* Sent;
};

void PrintTo(const TextCase& row, std::ostream* stream) { *stream << row.What; }

class ConnectTextTest : public ConnectionTest, public testing::WithParamInterface<TextCase> {};

TEST_P(ConnectTextTest, IsComposedFromTypeTextAndLogOn) {
  const auto& row = GetParam();
  EXPECT_EQ(Sent({.ConnectionType = row.Type,
                  .ConnectionString = row.Given,
                  .Password = row.Password,
                  .UserName = row.UserName}),
            row.Sent);
}

INSTANTIATE_TEST_SUITE_P(
    , ConnectTextTest,
    testing::Values(TextCase{"DsnWithUserAndNoPassword", ctDSN, "Sales", "u", "", "UID=u;DSN=Sales"},
                    TextCase{"DsnWithBoth", ctDSN, "Sales", "u", "p", "UID=u;PWD=p;DSN=Sales"},
                    TextCase{"DsnAlone", ctDSN, "Sales", "", "", "DSN=Sales"},
                    TextCase{"TextKeepsTheCallersKeyInAnyCase", ctText, "DSN=x;uid=a", "b", "", "DSN=x;uid=a"},
                    TextCase{"TextKeepsTheCallersPassword", ctText, "DSN=x;pwd=a", "u", "p", "DSN=x;pwd=a;UID=u"},
                    TextCase{"TextAddsNoSecondSemicolon", ctText, "DSN=x;", "u", "p", "DSN=x;UID=u;PWD=p"},
                    TextCase{"EmptyTextWithoutLogOn", ctText, "", "", "", ""},
                    TextCase{"EmptyTextWithLogOn", ctText, "", "u", "p", "UID=u;PWD=p"},
                    TextCase{"PromptGoesUnchanged", ctPrompt, "DSN=x;", "", "p", "DSN=x;"}),
    [](const auto& test) { return test.param.What; });

TEST_F(ConnectionTest, ConnectionStringIsTheTextAsGiven) {
  EXPECT_EQ(Setup({.ConnectionType = ctDSN, .ConnectionString = "Sales", .UserName = "u"})->ConnectionString(),
            "Sales");
}

TEST_F(ConnectionTest, OnlyPromptLetsTheDriverAsk) {
  Setup({.DatabaseName = "A", .ConnectionType = ctPrompt})->Connect();
  Setup({.DatabaseName = "B", .ConnectionType = ctText})->Connect();
  EXPECT_NE(driver_->Completions[0], driver_->Completions[1]);
}

TEST_F(ConnectionTest, FileOnAServerEngineIsRefusedAfterTheDefaultsWereStored) {
  ExpectRaised(ErrInvalid_ConnectionType, [] { Setup({.Engine = engSQLServer, .ConnectionType = ctFile}); },
               {.Text = "ConnectionType: 2 = 'File Name  Engine: 'Microsoft SQL Server'"});
  EXPECT_TRUE(Apartment().Profile->Item({.Index = "Default CursorType for Engine 3"}));
}

TEST_F(ConnectionTest, WhatWasStoredBeforeARefusalStays) {
  const auto connection = Make<Connection>();
  ExpectRaised(ErrInvalid_ConnectionType, [&] {
    connection->Setup({.DatabaseName = "Shop",
                       .Engine = engSQLServer,
                       .ConnectionType = ctFile,
                       .ConnectionString = "x",
                       .CursorDriver = crdServerSide});
  });
  EXPECT_EQ(connection->Engine(), engSQLServer);
  EXPECT_EQ(connection->ConnectionType(), ctFile);
  EXPECT_EQ(connection->CursorDriver(), crdServerSide);
  EXPECT_EQ(connection->CursorType(), crtKeyset);
  EXPECT_EQ(connection->ConnectionString(), "");
}

TEST_F(ConnectionTest, AnUnknownConnectionTypeIsRefused) {
  ExpectRaised(ErrInvalid_ConnectionType, [] { Setup({.ConnectionType = zConnectionTypes{5}}); },
               {.Text = "ConnectionType: 5 = '"});
}

TEST_F(ConnectionTest, AccessIsAlwaysAFile) {
  const auto connection = Setup({.Engine = engAccess, .ConnectionType = ctPrompt, .ConnectionString = "x.mdb"});
  EXPECT_EQ(connection->ConnectionType(), ctFile);
  EXPECT_EQ(connection->CursorDriver(), crdNone);
  EXPECT_EQ(connection->CursorType(), crtNone);
}

TEST_F(ConnectionTest, EnginesOutsideOneToFiveAreRefused) {
  for (const auto engine : {engInformix, engRMS, zEngines{-1}})
    ExpectRaised(errInvalid_Engine, [&] { Setup({.Engine = engine}); },
                 {.Text = "Engine: " + std::to_string(static_cast<int>(engine))});
}

TEST_F(ConnectionTest, AGroupWithoutConnectionHasNoDefaultEngine) {
  ExpectRaised(errInvalid_Engine, [] { Apartment().ConnectionContext->Item("")->SetupItem({.DatabaseName = "Shop"}); },
               {.Text = "Engine: 0"});
}

TEST_F(ConnectionTest, ValuesNotGivenComeFromTheProfileOfTheEngine) {
  Apartment().Profile->SetupItem(
      {.Name = "Default ConnectionType for Engine 2", .Value = 3, .DataType = dtLongInteger});
  Apartment().Profile->SetupItem({.Name = "Default CursorDriver for Engine 2", .Value = 2, .DataType = dtLongInteger});
  const auto connection = Setup({});
  EXPECT_EQ(connection->ConnectionType(), ctText);
  EXPECT_EQ(connection->CursorDriver(), crdServerSide);
  EXPECT_EQ(connection->CursorType(), crtKeyset);
}

TEST_F(ConnectionTest, TheDefaultUserIsThatOfEngineZero) {
  Apartment().Profile->SetupItem({.Name = "Default Username for Engine 0", .Value = "zero", .DataType = dtString});
  Apartment().Profile->SetupItem({.Name = "Default Username for Engine 2", .Value = "two", .DataType = dtString});
  EXPECT_EQ(Setup({})->UserName(), "zero");
}

TEST_F(ConnectionTest, UserSetLaterDoesNotReachTheComposedText) {
  const auto connection = Setup({.ConnectionType = ctText, .UserName = "a"});
  connection->SetUserName("b");
  connection->Connect();
  EXPECT_EQ(driver_->Connects.back(), "UID=a");
}

TEST_F(ConnectionTest, OpensOnceOnFirstUse) {
  const auto connection = Setup({.ConnectionType = ctText});
  EXPECT_FALSE(connection->ConnectionOpen());
  EXPECT_TRUE(driver_->Connects.empty());
  connection->Connect();
  connection->Connect();
  EXPECT_TRUE(connection->ConnectionOpen());
  EXPECT_EQ(driver_->Connects.size(), 1U);
}

TEST_F(ConnectionTest, OpeningAndClosingAreMeasured) {
  const auto connection = Setup({.ConnectionType = ctText});
  connection->Connect();
  scope_.Clock().Advance(3);
  connection->Disconnect();
  const auto opened = connection->Statistics()->Item("Open RDO Connection");
  EXPECT_EQ(opened->SubjectLabel(), "RDO Connection");
  EXPECT_EQ(opened->SubjectCount(), 1);
  EXPECT_EQ(opened->EndTime(), opened->StartTime());
  EXPECT_EQ(connection->Statistics()->Item("Close RDO Connection")->SubjectLabel(), "RDO Connection");
}

TEST_F(ConnectionTest, DisconnectedItOpensAgainWithTheSameText) {
  const auto connection = Setup({.ConnectionType = ctText, .ConnectionString = "a=b"});
  connection->Connect();
  connection->Disconnect();
  EXPECT_FALSE(connection->ConnectionOpen());
  connection->Disconnect();
  connection->Connect();
  EXPECT_EQ(driver_->Connects, (std::vector<std::string>{"a=b", "a=b"}));
  EXPECT_EQ(driver_->CallsOf["Disconnect"], 1);
}

TEST_F(ConnectionTest, ADroppedConnectionClosesItsHandle) {
  Setup({.ConnectionType = ctText})->Connect();
  Apartment().ConnectionContext->Remove("");
  EXPECT_EQ(driver_->CallsOf["Disconnect"], 1);
}

TEST_F(ConnectionTest, AFailedOpenNamesTheConnectionAndHintsAtTheEmptyPassword) {
  driver_->FailName = "DriverConnect";
  driver_->Diagnostics = {{"28000", 18456, "no entry"}};
  const auto connection = Setup({.ConnectionType = ctText, .UserName = "u"});
  ExpectRaised(errRDO_Connection, [&] { connection->Connect(); },
               {.Text = "Connections: ''  Database: 'Shop'  Engine: 'Generic ODBC'  Username: 'u'"});
  EXPECT_FALSE(connection->ConnectionOpen());
  ExpectRaised(errRDO_Connection, [&] { connection->Connect(); },
               {.Text = "because, the Password is an empty string."});
}

TEST_F(ConnectionTest, AFailedOpenKeepsTheDriversWordsAsWarning) {
  driver_->FailName = "DriverConnect";
  driver_->Diagnostics = {{"28000", 18456, "no entry"}};
  EXPECT_TRUE(Thrown([] { Setup({.ConnectionType = ctText})->Connect(); }));
  const auto message = scope_.Messages().Item("18456");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->SeverityFlags(), svfWarning);
  EXPECT_NE(message->Description().find("no entry"), std::string::npos);
}

TEST_F(ConnectionTest, AFailedOpenWithAPasswordGivesNoHint) {
  driver_->FailName = "DriverConnect";
  driver_->Diagnostics = {{"28000", 0, "refused"}};
  const auto error = Thrown([] { Setup({.ConnectionType = ctText, .Password = "p"})->Connect(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->Description().find("Password"), std::string::npos);
}

TEST_F(ConnectionTest, ADriverManagerThatFindsNothingIsHintedAt) {
  driver_->FailName = "DriverConnect";
  driver_->Diagnostics = {{"IM002", 0, "Data source name not found"}};
  ExpectRaised(errRDO_Connection, [] { Setup({.ConnectionType = ctText})->Connect(); }, {.Text = kSourceHint});
}

TEST_F(ConnectionTest, AfterAFailedOpenTheNextUseTriesAgain) {
  driver_->FailName = "DriverConnect";
  driver_->Diagnostics = {{"08001", 0, "refused"}};
  const auto connection = Setup({.ConnectionType = ctText});
  EXPECT_TRUE(Thrown([&] { connection->Connect(); }));
  EXPECT_EQ(connection->Statistics()->Item("Open RDO Connection")->EndTime(), Date{});
  driver_->FailName.clear();
  connection->Connect();
  EXPECT_TRUE(connection->ConnectionOpen());
}

TEST_F(ConnectionTest, AFailedEnvironmentIsWhatTheCallerSees) {
  driver_->FailName = "SetEnvAttr";
  ExpectRaised(errRDO_Environment, [] { Setup({.ConnectionType = ctText, .UserName = "u"})->Connect(); },
               {.Text = "Connections: ''  Engine: 'Generic ODBC'  Username: 'u'"});
}

TEST_F(ConnectionTest, AccessHasNoOpenerHere) {
  const auto connection = Setup({.Engine = engAccess});
  for (const auto use :
       {&Connection::Connect, &Connection::TransBegin, &Connection::TransCommit, &Connection::TransRollback})
    ExpectRaised(errNotSupported_Engine, [&] { ((*connection).*use)(); }, {.Text = "Engine: 'Microsoft Access'"});
  EXPECT_TRUE(Thrown([&] { connection->SupportsTransactions(); }));
  EXPECT_EQ(scope_.Messages().Item("15097")->RoutineName(), "SupportsTransactions (Get)");
}

TEST_F(ConnectionTest, OnlySqlServerSupportsAsync) {
  for (const auto engine : {engAccess, engODBC, engSQLServer, engSybase, engOracle}) {
    const auto connection = Setup({.DatabaseName = std::to_string(static_cast<int>(engine)),
                                   .Engine = engine,
                                   .ConnectionType = ctText,
                                   .CursorDriver = crdServerSide});
    EXPECT_EQ(connection->SupportsAsync(), engine == engSQLServer);
  }
}

TEST_F(ConnectionTest, TransactionsAreWhatTheDriverSays) {
  const auto connection = Setup({.ConnectionType = ctText});
  EXPECT_TRUE(connection->SupportsTransactions());
  driver_->TransactionCapable = 0;
  EXPECT_FALSE(connection->SupportsTransactions());
}

TEST_F(ConnectionTest, ATransactionOpensTheConnectionAndSetsItsFlag) {
  const auto connection = Setup({.ConnectionType = ctText});
  connection->TransBegin();
  EXPECT_TRUE(connection->ConnectionOpen());
  EXPECT_TRUE(connection->TransStarted());
  connection->TransCommit();
  EXPECT_FALSE(connection->TransStarted());
  connection->TransBegin();
  connection->TransRollback();
  EXPECT_FALSE(connection->TransStarted());
  EXPECT_EQ(driver_->Transactions, (std::vector<std::string>{"begin 1", "commit 1", "begin 1", "rollback 1"}));
}

TEST_F(ConnectionTest, AFailingCommitLeavesTheFlag) {
  const auto connection = Setup({.ConnectionType = ctText});
  connection->TransBegin();
  driver_->FailName = "EndTran";
  driver_->Diagnostics = {{"40001", 1205, "refused"}};
  EXPECT_TRUE(Thrown([&] { connection->TransCommit(); }));
  EXPECT_TRUE(connection->TransStarted());
}

TEST_F(ConnectionTest, DetailsTellTheRecipeAndTheStateButNoPassword) {
  const auto connection =
      Setup({.ConnectionType = ctText, .Password = "secret", .UserName = "u", .CursorDriver = crdClientSide});
  EXPECT_EQ(
      connection->Details(),
      "Connection to Database: 'Shop'  Engine: 'Generic ODBC'  Connect Type: 'ODBC Connect String'  Username: 'u'");
  connection->TransBegin();
  EXPECT_EQ(connection->Details().find("secret"), std::string::npos);
  EXPECT_NE(connection->Details().find(
                "\r\n    Connected to 'Generic ODBC'  CursorDriver: 'Client Side (ODBC)'  CursorType: '"),
            std::string::npos);
  EXPECT_TRUE(connection->Details().ends_with(" (Transaction Started)"));
}

}  // namespace

}  // namespace velmoria::test
