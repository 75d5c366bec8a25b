// Connections and their groups over the real drivers: what opens, what does not and what is then said, and what a
// transaction covers.

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/connection_hints.h"
#include "tests/support/odbc_client.h"
#include "tests/support/refusal.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/sqlite_file.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_servers.h"
#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_query.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

/// A refused opening of the Connection "Shop" in the default group.
Refusal NotOpened(const std::string& engine, const std::string& user, const std::string& extra = {}) {
  return {errRDO_Connection,
          "Connection.GetConnection",
          "Problem accessing RDO Connection.  Connections: ''  Database: 'Shop'  Engine: '" + engine +
              "'  Username: '" + user + "'",
          {"", "Shop", engine, user},
          extra};
}

class ConnectionOverDrivers : public testing::Test {
 protected:
  static ConnectionPtr Made(SetupConnectionArguments arguments) {
    if (arguments.DatabaseName.empty()) arguments.DatabaseName = "Shop";
    if (arguments.Engine == engUnknown) arguments.Engine = engODBC;
    if (arguments.ConnectionType == ctNone) arguments.ConnectionType = ctText;
    return Apartment().ConnectionContext->SetupConnection(arguments);
  }
  static ConnectionsPtr Group() { return Apartment().ConnectionContext->Item(""); }
  /// Expects the opening to fail, with these words of the driver held as a warning, and nothing to be open behind it.
  void ExpectNotOpened(const ConnectionPtr& connection, const std::string& words, const Refusal& expected) {
    EXPECT_EQ(connection->Statistics()->Count(), 0);
    EXPECT_TRUE(Thrown([&] { connection->Connect(); }));
    bool warned = false;
    for (const auto& message : scope_.Messages())
      warned |= message->SeverityFlags() == svfWarning && message->Description().find(words) != std::string::npos;
    EXPECT_TRUE(warned) << words << "\n" << scope_.Messages().Details();
    scope_.Messages().Clear();
    ExpectRefusal(expected, [&] { connection->Connect(); });
    EXPECT_FALSE(connection->ConnectionOpen());
    EXPECT_EQ(connection->Statistics()->Item("Open RDO Connection")->EndTime(), Date{});
  }

  ScopedApartment scope_;
};

TEST_F(ConnectionOverDrivers, ADataSourceThatIsNotThereIsRefused) {
  const auto open = Made({.ConnectionType = ctDSN, .ConnectionString = "velmoria_none", .UserName = "u"});
  ExpectNotOpened(open, "IM002", NotOpened("Generic ODBC", "u", kSourceHint));
}

TEST_F(ConnectionOverDrivers, APasswordIsNotBlamedForADataSourceThatIsNotThere) {
  const auto open = Made({.Engine = engSQLServer,
                          .ConnectionType = ctDSN,
                          .ConnectionString = "velmoria_none",
                          .Password = "p",
                          .UserName = "u"});
  ExpectNotOpened(open, "IM002", NotOpened("Microsoft SQL Server", "u", kSourceHint));
}

TEST_F(ConnectionOverDrivers, ATextThatNamesNothingIsRefused) {
  ExpectNotOpened(Made({}), "IM002", NotOpened("Generic ODBC", "", kSourceHint));
}

TEST_F(ConnectionOverDrivers, ADriverThatIsNotThereIsRefused) {
  const auto connection = Made({.Engine = engOracle, .ConnectionString = "Driver=velmoria_none"});
  ExpectNotOpened(connection, "velmoria_none", NotOpened("Oracle", "", kPasswordHint));
}

TEST_F(ConnectionOverDrivers, AFileThatCannotBeOpenedIsRefused) {
  const auto connection =
      Made({.ConnectionString = "Driver=SQLite3;Database=/none/x.db", .Password = "p", .UserName = "u"});
  ExpectNotOpened(connection, "connect failed", NotOpened("Generic ODBC", "u"));
}

TEST_F(ConnectionOverDrivers, AnOpeningThatFailedIsTriedAgainByTheNextUse) {
  const TemporaryFolder folder;
  const auto connection = Made({.ConnectionString = "Driver=SQLite3;Database=" + folder.Path("later/x.db")});
  EXPECT_TRUE(Thrown([&] { connection->SupportsTransactions(); }));
  std::filesystem::create_directory(folder.Path("later"));
  EXPECT_TRUE(connection->SupportsTransactions());
  EXPECT_TRUE(connection->ConnectionOpen());
}

/// A SQLite file with the table "t", and the Connections "A" and "B" to it.
class ConnectionsOverSqlite : public ConnectionOverDrivers {
 protected:
  ConnectionPtr To(const std::string& name, const std::string& group = {}) {
    return Made({.DatabaseName = name, .ConnectionsName = group, .ConnectionString = file_.ConnectString()});
  }
  static void Insert(const ConnectionPtr& connection, const std::string& value) {
    connection->GetConnection()->CreateQuery("", "INSERT INTO t VALUES (" + value + ")")->Execute();
  }
  std::string Stored() { return file_.Column("SELECT a FROM t ORDER BY a"); }

  SqliteFile file_{"CREATE TABLE t (a int)"};
};

TEST_F(ConnectionsOverSqlite, ATransactionOfOneConnectionIsItsOwn) {
  const auto connection = To("A");
  connection->TransBegin();
  Insert(connection, "1");
  EXPECT_EQ(Stored(), "");
  connection->TransRollback();
  connection->TransBegin();
  Insert(connection, "2");
  connection->TransCommit();
  Insert(connection, "3");
  EXPECT_EQ(Stored(), "2|3");
}

TEST_F(ConnectionsOverSqlite, ATransactionOfTheGroupCoversAConnectionThatOpensLater) {
  To("A")->Connect();
  Group()->TransBegin(engODBC);
  const auto later = To("B");
  Insert(later, "1");
  EXPECT_EQ(Stored(), "");
  Group()->TransRollback(engODBC);
  EXPECT_EQ(Stored(), "");
  Insert(later, "2");
  EXPECT_EQ(Stored(), "2");
}

TEST_F(ConnectionsOverSqlite, ATransactionOfOneGroupLeavesAnotherAlone) {
  To("A")->Connect();
  Group()->TransBegin(engODBC);
  Insert(To("A", "Night"), "1");
  Group()->TransRollback(engODBC);
  EXPECT_EQ(Stored(), "1");
}

TEST_F(ConnectionsOverSqlite, DisconnectingWithoutAnEngineIsMendedByNamingIt) {
  const auto connection = To("A");
  connection->Connect();
  ExpectReported(RuntimeFailure::InvalidArgument, [] { Group()->Disconnect(); });
  EXPECT_TRUE(Thrown([&] { connection->Connect(); }));
  scope_.Messages().Clear();
  Group()->Disconnect(engODBC);
  Insert(connection, "1");
  EXPECT_EQ(Stored(), "1");
}

/// The servers that ask for a password.
class ConnectionOverServers : public ConnectionOverDrivers, public testing::WithParamInterface<TestServer> {
 protected:
  SetupConnectionArguments LogOn(const std::string& user, const std::string& password) const {
    return {.ConnectionString = GetParam().Text, .Password = password, .UserName = user};
  }
  SetupConnectionArguments Right() const { return LogOn(GetParam().UserName, GetParam().Password); }
  /// The words of the server that refuses a user.
  std::string Refused() const {
    const auto& name = GetParam().Name;
    if (name == "PostgreSQL") return "password authentication failed";
    return name == "MariaDB" ? "Access denied for user" : "Login failed for user";
  }
  /// What a connection reads from its server.
  static std::string Read(const ConnectionPtr& connection) {
    connection->GetConnection()->CreateQuery("", "SELECT 1")->Execute();
    return "read";
  }
};

TEST_P(ConnectionOverServers, AWrongPasswordIsRefused) {
  ExpectNotOpened(Made(LogOn(GetParam().UserName, "wrong")), Refused(), NotOpened("Generic ODBC", GetParam().UserName));
}

TEST_P(ConnectionOverServers, AUserThatIsNotThereIsRefused) {
  ExpectNotOpened(Made(LogOn("velmoria_none", "wrong")), Refused(), NotOpened("Generic ODBC", "velmoria_none"));
}

TEST_P(ConnectionOverServers, APasswordThatIsMissingIsRefusedAndHintedAt) {
  const auto connection = Made(LogOn(GetParam().UserName, ""));
  ExpectNotOpened(connection, "", NotOpened("Generic ODBC", GetParam().UserName, kPasswordHint));
}

TEST_P(ConnectionOverServers, APortThatIsClosedIsRefused) {
  auto arguments = Right();
  arguments.ConnectionString += ";Port=1";
  ExpectNotOpened(Made(arguments), "", NotOpened("Generic ODBC", GetParam().UserName));
}

TEST_P(ConnectionOverServers, APasswordSetBehindTheSetupDoesNotReachTheComposedText) {
  const auto connection = Made(LogOn(GetParam().UserName, "wrong"));
  connection->SetPassword(GetParam().Password);
  ExpectNotOpened(connection, Refused(), NotOpened("Generic ODBC", GetParam().UserName));
}

TEST_P(ConnectionOverServers, ARightLogOnOpensAtTheFirstUse) {
  const auto connection = Made(Right());
  EXPECT_FALSE(connection->ConnectionOpen());
  EXPECT_TRUE(connection->SupportsTransactions());
  EXPECT_TRUE(connection->ConnectionOpen());
  EXPECT_TRUE(connection->Details().ends_with(
      "\r\n    Connected to 'Generic ODBC'  CursorDriver: 'Client Side (ODBC)'  CursorType: 'Keyset'"));
  connection->Disconnect();
  EXPECT_EQ(Read(connection), "read");
  EXPECT_EQ(scope_.Messages().Count(), 0);
}

/// The server as a data source; one driver has another name for the server there.
std::string DataSource(const std::string& name, const TestServer& server) {
  auto lines = server.Text;
  std::ranges::replace(lines, ';', '\n');
  if (server.Name == "PostgreSQL") lines.replace(lines.find("Server="), 7, "Servername=");
  return "[" + name + "]\n" + lines + "\n";
}

TEST_P(ConnectionOverServers, ADataSourceIsOpenedWithTheUserAndThePasswordOfTheConnection) {
  const TemporaryFolder folder;
  const auto name = OwnName("source");
  WriteText(folder.Path("odbc.ini"), DataSource(name, GetParam()));
  const ScopedVariable list("ODBCINI", folder.Path("odbc.ini").c_str());
  auto arguments = Right();
  arguments.ConnectionType = ctDSN;
  arguments.ConnectionString = name;
  EXPECT_EQ(Read(Made(arguments)), "read");
  Group()->Disconnect(engODBC);
  arguments.ConnectionsName = "Night";
  arguments.Password = "wrong";
  ExpectRaised(errRDO_Connection, [&] { Made(arguments)->Connect(); }, {.Text = "Connections: 'Night'"});
}

TEST_P(ConnectionOverServers, ALogOnThatWasPreparedOpensWhatNamesNoUser) {
  Group()->Prepare(engODBC, GetParam().UserName, GetParam().Password);
  EXPECT_EQ(Read(Made(LogOn("", ""))), "read");
}

TEST_P(ConnectionOverServers, TheFirstOfAGroupLogsOnForThoseWithoutAUser) {
  Made(Right())->Connect();
  auto nameless = LogOn("", "");
  nameless.DatabaseName = "Other";
  EXPECT_EQ(Read(Made(nameless)), "read");
  Apartment().ConnectionContext->SetupItem("Night")->Prepare(engODBC, "velmoria_none", "wrong");
  nameless.ConnectionsName = "Night";
  ExpectRaised(errRDO_Connection, [&] { Made(nameless)->Connect(); }, {.Text = "Connections: 'Night'"});
}

TEST_P(ConnectionOverServers, AWrongFirstLogOnStaysWithItsGroupUntilItIsDisconnected) {
  EXPECT_TRUE(Thrown([&] { Made(LogOn(GetParam().UserName, "wrong"))->Connect(); }));
  Group()->Prepare(engODBC, GetParam().UserName, GetParam().Password);
  auto nameless = LogOn("", "");
  nameless.DatabaseName = "Other";
  const auto connection = Made(nameless);
  EXPECT_TRUE(Thrown([&] { connection->Connect(); }));
  scope_.Messages().Clear();
  Group()->Disconnect(engODBC);
  EXPECT_EQ(Read(connection), "read");
}

TEST_P(ConnectionOverServers, TransactionsOfGroupAndConnectionEndWithWhatTheyCover) {
  OdbcClient client(GetParam().ConnectString());
  const auto table = OwnName("transactions");
  client.RunAll({"CREATE TABLE " + table + " (a int)"});
  const auto connection = Made(Right());
  const auto insert = [&] {
    connection->GetConnection()->CreateQuery("", "INSERT INTO " + table + " VALUES (1)")->Execute();
  };
  connection->TransBegin();
  insert();
  connection->TransRollback();
  Group()->TransBegin();
  insert();
  Group()->TransRollback();
  EXPECT_EQ(client.Value("SELECT COUNT(*) FROM " + table), "0");
  connection->TransBegin();
  insert();
  connection->TransCommit();
  Group()->TransBegin();
  insert();
  Group()->TransCommit();
  EXPECT_EQ(client.Value("SELECT COUNT(*) FROM " + table), "2");
  Group()->Disconnect(engODBC);
  client.RunAll({"DROP TABLE " + table});
}

/// The server's user and another one, whom the test makes.
class ConnectionsOfTwoUsers : public ConnectionOverServers {
 protected:
  struct Dialect {
    const char* Server;
    const char* Make;
    const char* Drop;
    const char* User;     // what a connection is logged on as
    const char* Further;  // where a user without rights may go
  };
  static constexpr Dialect kDialects[] = {
      {"PostgreSQL", "CREATE ROLE {user} LOGIN PASSWORD 'other'", "DROP ROLE {user}", "SELECT session_user", ""},
      {"MariaDB", "CREATE USER {user}@'127.0.0.1' IDENTIFIED BY 'other'", "DROP USER {user}@'127.0.0.1'",
       "SELECT SUBSTRING_INDEX(USER(), '@', 1)", ";Database=information_schema"},
      {"FreeTDS", "CREATE LOGIN {user} WITH PASSWORD = 'other'", "DROP LOGIN {user}", "SELECT SUSER_SNAME()", ""},
  };

  void SetUp() override { client_.RunAll({Filled(Words().Make)}); }
  void TearDown() override {
    for (const auto* group : {"", "Night"})
      if (const auto found = Find(group)) found->Disconnect(engODBC);
    client_.RunAll({Filled(Words().Drop)});
  }
  static ConnectionsPtr Find(const std::string& name) {
    ConnectionsPtr found;
    for (const auto& group : *Apartment().ConnectionContext)
      if (group->Name() == name) found = group;
    return found;
  }
  static const Dialect& Words() {
    return *std::ranges::find(kDialects, GetParam().Name,
                              [](const Dialect& words) { return std::string(words.Server); });
  }
  std::string Filled(std::string text) const { return text.replace(text.find("{user}"), 6, other_); }
  ConnectionPtr Named(const char* name, const char* group, const std::string& user, const std::string& password) const {
    auto arguments = LogOn(user, password);
    arguments.ConnectionString += Words().Further;
    arguments.DatabaseName = name;
    arguments.ConnectionsName = group;
    return Made(arguments);
  }
  ConnectionPtr First(const char* group = "") const {
    return Named("First", group, GetParam().UserName, GetParam().Password);
  }
  ConnectionPtr Second(const char* group = "") const { return Named("Second", group, other_, "other"); }
  ConnectionPtr Nameless(const char* group = "") const { return Named("Nameless", group, "", ""); }
  static std::string UserOf(const ConnectionPtr& connection) {
    const auto result = connection->GetConnection()->CreateQuery("", Words().User)->OpenResultset();
    return result->GetRows(1).Value(0, 0).AsText();
  }
  const std::string& FirstUser() const { return GetParam().UserName; }

  std::string other_ = OwnName("user");
  OdbcClient client_{GetParam().ConnectString()};
};

TEST_P(ConnectionsOfTwoUsers, TheFirstLogsOnForThoseWithoutAUserWhoeverComesLater) {
  EXPECT_EQ(UserOf(First()), FirstUser());
  EXPECT_EQ(UserOf(Second()), other_);
  EXPECT_EQ(UserOf(Nameless()), FirstUser());
}

TEST_P(ConnectionsOfTwoUsers, TheFirstsLogOnStaysWhenEveryConnectionWasClosed) {
  const auto first = First();
  const auto second = Second();
  const auto nameless = Nameless();
  first->Connect();
  first->Disconnect();
  EXPECT_EQ(UserOf(second), other_);
  EXPECT_EQ(UserOf(nameless), FirstUser());
  nameless->Disconnect();
  second->Disconnect();
  EXPECT_EQ(UserOf(nameless), FirstUser());
}

TEST_P(ConnectionsOfTwoUsers, AGroupThatWasDisconnectedTakesTheNextForItsFirst) {
  const auto first = First();
  const auto nameless = Nameless();
  first->Connect();
  EXPECT_EQ(UserOf(nameless), FirstUser());
  Group()->Disconnect(engODBC);
  Second()->Connect();
  EXPECT_EQ(UserOf(nameless), other_);
  EXPECT_EQ(UserOf(first), FirstUser());
}

TEST_P(ConnectionsOfTwoUsers, EachGroupHasAFirstOfItsOwn) {
  First()->Connect();
  Second("Night")->Connect();
  EXPECT_EQ(UserOf(Nameless()), FirstUser());
  EXPECT_EQ(UserOf(Nameless("Night")), other_);
}

INSTANTIATE_TEST_SUITE_P(, ConnectionsOfTwoUsers, testing::ValuesIn(TestServers()),
                         [](const auto& test) { return test.param.Name; });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ConnectionsOfTwoUsers);

INSTANTIATE_TEST_SUITE_P(, ConnectionOverServers, testing::ValuesIn(TestServers()),
                         [](const auto& test) { return test.param.Name; });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ConnectionOverServers);

}  // namespace

}  // namespace velmoria::test
