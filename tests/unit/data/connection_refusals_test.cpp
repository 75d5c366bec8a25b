#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/connection_hints.h"
#include "tests/support/fake_odbc.h"
#include "tests/support/one_action.h"
#include "tests/support/refusal.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_environment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

// Every number that connections and their groups raise, to the last field.
class ConnectionRefusalsTest : public testing::Test {
 protected:
  ConnectionRefusalsTest() { scope_.State().Platform.Odbc = driver_; }

  /// A Connection "Shop" in the group "Night", which is made when it is not there.
  ConnectionPtr Made(const ConnectionFields& fields) {
    if (!context_->Find("Night")) context_->SetupItem("Night");
    auto given = fields;
    if (given.DatabaseName.empty()) given.DatabaseName = "Shop";
    if (given.Engine == engUnknown) given.Engine = engODBC;
    return context_->Item("Night")->SetupItem(given);
  }
  void Refuse(const char* call, const char* state) {
    driver_->FailName = call;
    driver_->Diagnostics = {{state, 7, "refused"}};
  }

  ScopedApartment scope_;
  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
  ConnectionContextPtr context_ = Apartment().ConnectionContext;
};

TEST_F(ConnectionRefusalsTest, ASecondConnectionOfTheDatabaseIsRefused) {
  Made({});
  ExpectRefusal({errAdd_Connection,
                 "Connections.SetupItem",
                 "Problem creating and adding a Connection.  Database: 'shop'",
                 {"shop"}},
                [&] { Made({.DatabaseName = "shop"}); });
}

TEST_F(ConnectionRefusalsTest, AGroupWithBothPositionsOrOneThatIsNotThereOrANameInUseIsRefused) {
  const std::string text = "Problem adding Connections in ConnectionContext.  Name: 'A'  Before: ";
  ExpectRefusal({errAdd_Connections,
                 "ConnectionContext.Add",
                 text + "1  After: 'x'",
                 {"A", "1", "'x'"},
                 "Passing both Before and After arguments is not allowed."},
                [&] { context_->SetupItem("A", {.Before = 1, .After = "x"}); });
  ExpectRefusal({errAdd_Connections, "ConnectionContext.Add", text + "(Missing)  After: 7", {"A", "(Missing)", "7"}},
                [&] { context_->SetupItem("A", {.After = 7}); });
  context_->SetupItem("a");
  ExpectRefusal(
      {errAdd_Connections, "ConnectionContext.Add", text + "(Missing)  After: (Empty)", {"A", "(Missing)", "(Empty)"}},
      [&] { context_->SetupItem("A", {.After = Variant()}); });
}

TEST_F(ConnectionRefusalsTest, NoGroupIsNothingToAdd) {
  ExpectRefusal({errAdd_Connections,
                 "ConnectionContext.Add",
                 "Problem adding Connections in ConnectionContext.  Name: ''  Before: (Missing)  After: (Missing)",
                 {"", "(Missing)", "(Missing)"}},
                [&] { context_->Add(nullptr); });
}

TEST_F(ConnectionRefusalsTest, AnEngineThatNoConnectionHasIsRefused) {
  for (const auto& [engine, shown] : {std::pair{zEngines{-1}, "-1"}, {engInformix, "6"}, {engRMS, "7"}}) {
    ExpectRefusal(
        {errInvalid_Engine, "Connection.Setup", std::string("Invalid database Engine.  Engine: ") + shown, {shown}},
        [&, number = engine] { Made({.Engine = number}); });
  }
}

TEST_F(ConnectionRefusalsTest, AConnectionTypeThatTheEngineDoesNotHaveIsRefused) {
  const std::string text = "ConnectionType is invalid or not supported by the database Engine.  ConnectionType: ";
  ExpectRefusal({ErrInvalid_ConnectionType,
                 "Connection.Setup",
                 text + "2 = 'File Name  Engine: 'Microsoft SQL Server'",
                 {"2 = 'File Name", "Microsoft SQL Server"}},
                [&] { Made({.Engine = engSQLServer, .ConnectionType = ctFile}); });
  const auto shown = "5 = '" + ConnectionTypeName(zConnectionTypes{5});
  ExpectRefusal({ErrInvalid_ConnectionType, "Connection.Setup", text + shown + "  Engine: 'Oracle'", {shown, "Oracle"}},
                [&] { Made({.Engine = engOracle, .ConnectionType = zConnectionTypes{5}}); });
}

TEST_F(ConnectionRefusalsTest, AConnectionTypeOfTheProfileThatTheEngineDoesNotHaveIsRefused) {
  Apartment().Profile->SetupItem(
      {.Name = "Default ConnectionType for Engine 4", .Value = 0, .DataType = dtLongInteger});
  ExpectRefusal({ErrInvalid_ConnectionType,
                 "Connection.Setup",
                 "ConnectionType is invalid or not supported by the database Engine.  ConnectionType: 0 = '(None)  "
                 "Engine: 'Sybase SQL Server'",
                 {"0 = '(None)", "Sybase SQL Server"}},
                [&] { Made({.Engine = engSybase}); });
}

struct MissCase {
  Variant Index;
  const char* Shown;
};

TEST_F(ConnectionRefusalsTest, WhatIsNotThereIsNamedAsItWasAskedFor) {
  const MissCase cases[] = {{"Day", "'Day'"}, {7, "7"}, {0, "0"}, {true, "True"}, {Variant::Null(), "(Null)"}};
  for (const auto& [index, shown] : cases) {
    ExpectRefusal({errItem_Connections,
                   "ConnectionContext.Item",
                   std::string("Problem finding Connections in ConnectionContext.  Index: ") + shown,
                   {shown}},
                  [&, asked = index] { context_->Item(asked); });
    ExpectRefusal(
        {errItem_Connection, "Connections.Item", std::string("Problem finding Connection.  Index: ") + shown, {shown}},
        [&, asked = index] { context_->Item("")->Item(asked); });
    ExpectRefusal({errRemove_Connections,
                   "ConnectionContext.Remove",
                   std::string("Problem removing Connections from ConnectionContext.  Index: ") + shown,
                   {shown}},
                  [&, asked = index] { context_->Remove(asked); });
  }
}

TEST_F(ConnectionRefusalsTest, NeitherNameNorConnectorIsTooLittle) {
  ExpectRefusal({errMissing_ConnectionInfo, "Connections.SetupItem",
                 "Not enough information was supplied to create a Connection.  A DatabaseName or Connector object is "
                 "required."},
                [&] { context_->SetupConnection({.Engine = engODBC, .ConnectionString = "x"}); });
}

TEST_F(ConnectionRefusalsTest, ADatabaseThatDoesNotConnectByItselfIsNotConnected) {
  const OneAction design;
  design.Database->SetAutoConnect(false);
  ExpectRefusal({errNotSupported_AutoConnect,
                 "Action.Connection (Get)",
                 "Problem connecting to database.  The AutoConnect flag is not set, so a connection to database must "
                 "occur manually.  Database: Shop",
                 {"Shop"}},
                [&] { design.Action->Connection(); });
}

template <class Use>
void ExpectWrongEngine(const char* place, const char* engine, Use use) {
  ExpectRefusal({errNotSupported_Engine,
                 place,
                 std::string("This database Engine is not supported by this operation.  Engine: '") + engine + "'",
                 {engine}},
                use);
}

TEST_F(ConnectionRefusalsTest, AConnectionThatWasNeverSetUpHasNoEngineToUse) {
  const auto connection = Make<Connection>();
  ExpectWrongEngine("Connection.GetConnection", "(Unknown)", [&] { connection->Connect(); });
  ExpectWrongEngine("Connection.GetConnection", "(Unknown)", [&] { connection->GetConnection(); });
  ExpectWrongEngine("Connection.SupportsTransactions (Get)", "(Unknown)", [&] { connection->SupportsTransactions(); });
  ExpectWrongEngine("Connection.TransBegin", "(Unknown)", [&] { connection->TransBegin(); });
  ExpectWrongEngine("Connection.TransCommit", "(Unknown)", [&] { connection->TransCommit(); });
  ExpectWrongEngine("Connection.TransRollback", "(Unknown)", [&] { connection->TransRollback(); });
  EXPECT_FALSE(connection->TransStarted());
}

TEST_F(ConnectionRefusalsTest, AGroupHasNoUseForOtherEngines) {
  const auto group = context_->Item("");
  ExpectWrongEngine("Connections.Disconnect", "VAX/VMS RMS", [&] { group->Disconnect(engRMS); });
  ExpectWrongEngine("Connections.Disconnect", "(Unknown)", [&] { group->Disconnect(); });
  ExpectWrongEngine("Connections.TransBegin", "Informix", [&] { group->TransBegin(engInformix); });
  ExpectWrongEngine("Connections.TransCommit", "Informix", [&] { group->TransCommit(engInformix); });
  ExpectWrongEngine("Connections.TransRollback", "(Unknown)", [&] { group->TransRollback(); });
  ExpectWrongEngine("Connections.GetEnvironment", "Microsoft Access",
                    [&] { group->GetEnvironment(engAccess, "", ""); });
  EXPECT_FALSE(group->TransStarted(engInformix));
}

Refusal FailedEnvironment(const char* user, const char* hint) {
  return {errRDO_Environment,
          "Connections.GetEnvironment",
          std::string("Problem accessing RDO Environment.  Connections: 'Night'  Engine: 'Oracle'  Username: '") +
              user + "'",
          {"Night", "Oracle", user},
          hint};
}

TEST_F(ConnectionRefusalsTest, AnEnvironmentThatCannotBeMadeIsToldWithItsUser) {
  Refuse("SetEnvAttr", "HY000");
  const auto open = Made({.DatabaseName = "Open", .Engine = engOracle, .ConnectionType = ctText, .UserName = "u"});
  ExpectRefusal(FailedEnvironment("u", kPasswordHint), [&] { open->Connect(); });
  const auto closed =
      Made({.DatabaseName = "Closed", .Engine = engOracle, .ConnectionType = ctText, .Password = "p", .UserName = "u"});
  ExpectRefusal(FailedEnvironment("u", ""), [&] { closed->Connect(); });
}

TEST_F(ConnectionRefusalsTest, AnEnvironmentIsHintedAtByThePasswordThatWasPrepared) {
  Refuse("SetEnvAttr", "HY000");
  const auto connection = Made({.Engine = engOracle, .ConnectionType = ctText});
  ExpectRefusal(FailedEnvironment("", kPasswordHint), [&] { connection->Connect(); });
  context_->Item("Night")->Prepare(engOracle, "u", "p");
  ExpectRefusal(FailedEnvironment("", ""), [&] { connection->Connect(); });
}

TEST_F(ConnectionRefusalsTest, BehindAFailedEnvironmentStandsTheConnectionThatNeededIt) {
  Refuse("SetEnvAttr", "HY000");
  const auto connection = Made({.ConnectionType = ctText});
  EXPECT_TRUE(Thrown([&] { connection->Connect(); }));
  EXPECT_EQ(scope_.Messages().Number(), static_cast<std::int32_t>(errRDO_Environment));
  ASSERT_TRUE(scope_.Messages().Item("15125"));
  EXPECT_EQ(scope_.Messages().Item("15125")->Replace2(), "Shop");
}

Refusal FailedConnection(const char* user, const char* hint) {
  return {errRDO_Connection,
          "Connection.GetConnection",
          std::string("Problem accessing RDO Connection.  Connections: 'Night'  Database: 'Shop'  Engine: 'Generic "
                      "ODBC'  Username: '") +
              user + "'",
          {"Night", "Shop", "Generic ODBC", user},
          hint};
}

TEST_F(ConnectionRefusalsTest, AConnectionThatDoesNotOpenIsToldWithItsUser) {
  Refuse("DriverConnect", "28000");
  const auto connection = Made({.ConnectionType = ctText, .UserName = "u"});
  ExpectRefusal(FailedConnection("u", kPasswordHint), [&] { connection->Connect(); });
  connection->SetPassword("p");
  ExpectRefusal(FailedConnection("u", ""), [&] { connection->Connect(); });
}

TEST_F(ConnectionRefusalsTest, ADataSourceThatIsNotThereIsHintedAtWithAndWithoutAPassword) {
  Refuse("DriverConnect", "IM002");
  const auto connection = Made({.ConnectionType = ctDSN, .ConnectionString = "none", .UserName = "u"});
  ExpectRefusal(FailedConnection("u", kSourceHint), [&] { connection->Connect(); });
  connection->SetPassword("p");
  ExpectRefusal(FailedConnection("u", kSourceHint), [&] { connection->Connect(); });
}

TEST_F(ConnectionRefusalsTest, OnlyTheFirstThingThatTheDriverSaysDecidesTheHint) {
  Refuse("DriverConnect", "01000");
  driver_->Diagnostics.push_back({"IM002", 8, "behind"});
  const auto connection = Made({.ConnectionType = ctText, .Password = "p"});
  ExpectRefusal(FailedConnection("", ""), [&] { connection->Connect(); });
}

TEST_F(ConnectionRefusalsTest, AnEarlierFailureOfAnotherConnectionGivesNoHint) {
  Refuse("DriverConnect", "IM002");
  {
    const Suspension quiet{"test"};  // what the engine says stays in its list
    EXPECT_TRUE(Thrown([&] { Made({.DatabaseName = "Other", .ConnectionType = ctText})->Connect(); }));
  }
  Refuse("DriverConnect", "28000");
  const auto connection = Made({.ConnectionType = ctText, .Password = "p"});
  ExpectRefusal(FailedConnection("", ""), [&] { connection->Connect(); });
}

}  // namespace

}  // namespace velmoria::test
