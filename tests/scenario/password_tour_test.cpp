// A password is in the connect string and nowhere else: what goes wrong over every driver there is, and everything that
// is then told about it, is searched for one.

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/odbc_client.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_servers.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/connectors.h"
#include "velmoria/platform/posix/file_settings_store.h"
#include "velmoria/platform/posix/spdlog_log_service.h"
#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_environment.h"
#include "velmoria/platform/rdo/rdo_query.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

// The second begins a new part of a connect string in its middle, which must not show its end.
constexpr const char* kCanary = "canary4711";
constexpr const char* kCanaryInTwo = "x;canary4711";

/// A SQLite file takes any user and password.
std::vector<TestServer> ServersAndAFile() {
  auto servers = TestServers();
  servers.push_back({"SQLite", "Driver=SQLite3;Database=/none/x.db", "anna", "velmoria"});
  return servers;
}

class PasswordTour : public testing::TestWithParam<TestServer> {
 protected:
  PasswordTour() {
    scope_->Messages().SetupLogging(
        {.LogMode = lmWindows, .LogSeverityFlags = svfAll, .LogFileName = folder_.Path("tour.log")});
  }

  /// Runs a step that fails; what it throws, and whatever it leaves in Messages, joins what is shown.
  template <class Step>
  void Show(Step&& step) {
    const auto error = Thrown(step);
    EXPECT_TRUE(error);
    if (error) shown_ += error->Description() + error->what();
    Take();
  }
  void Take() {
    auto& messages = scope_->Messages();
    for (const auto& message : messages) {
      shown_ += message->Details() + message->StateDetails() + message->ExtraText() + message->Replace1() +
                message->Replace2() + message->Replace3() + message->Replace4() + message->TypeName() +
                message->RoutineName();
    }
    shown_ += messages.Details() + messages.Description();
    messages.Clear();
  }
  static std::string DetailsOf(const ConnectionPtr& connection) {
    return connection->Details() + connection->ConnectionsName() + connection->DatabaseName() + connection->UserName() +
           connection->Statistics()->Details();
  }
  /// What the context, the design and the settings tell of themselves.
  void ShowDetails() {
    auto& state = scope_->State();
    shown_ += state.ConnectionContext->Details() + state.Databases->Details() + state.Servers->Details() +
              state.Profile->Details() + state.BusinessContext->Details();
    for (const auto& group : *state.ConnectionContext) {
      shown_ += group->Details() + group->Statistics()->Details();
      for (const auto& connection : *group) shown_ += DetailsOf(connection);
    }
    for (const auto& database : *state.Databases) {
      shown_ += database->Details() + database->Connectors()->Details();
      for (const auto& connector : *database->Connectors()) shown_ += connector->Details();
    }
  }
  /// What is written where the apartment ends, and the log.
  std::string Written() {
    scope_.reset();
    auto text = ReadText(folder_.Path("tour.log"));
    for (const auto& name : NamesIn(folder_.Path("settings"))) text += ReadText(folder_.Path("settings/" + name));
    return text;
  }
  static ConnectionPtr Made(SetupConnectionArguments arguments) {
    if (arguments.Engine == engUnknown) arguments.Engine = engODBC;
    if (arguments.ConnectionType == ctNone) arguments.ConnectionType = ctText;
    arguments.DatabaseName = "Shop " + std::to_string(Apartment().ConnectionContext->Item("")->Count());
    return Apartment().ConnectionContext->SetupConnection(arguments);
  }
  void ShowThatItDoesNotOpen(const SetupConnectionArguments& arguments) {
    const auto connection = Made(arguments);
    Show([&] { connection->Connect(); });
    Show([&] { connection->TransBegin(); });
    Show([&] { connection->SupportsTransactions(); });
    shown_ += DetailsOf(connection);
  }
  /// Expects the password nowhere, although there is much to be seen.
  void ExpectHidden(const char* number) {
    EXPECT_NE(shown_.find(number), std::string::npos);
    EXPECT_EQ(shown_.find(kCanary), std::string::npos) << shown_;
    const auto written = Written();
    EXPECT_NE(written.find(number), std::string::npos);
    EXPECT_EQ(written.find(kCanary), std::string::npos) << written;
  }

  TemporaryFolder folder_;
  ScopedVariable settings_{"VELMORIA_SETTINGS_DIR", folder_.Path("settings").c_str()};
  std::unique_ptr<ScopedApartment> scope_ =
      std::make_unique<ScopedApartment>(std::make_shared<FakeSettingsStore>(), [](ApartmentState& state) {
        state.Platform.Log = std::make_shared<SpdlogLogService>();
        state.Platform.Settings = std::make_shared<FileSettingsStore>();
      });
  std::string shown_;
};

TEST_P(PasswordTour, IsHiddenWhereNothingOpens) {
  const auto& [name, text, user, right] = GetParam();
  for (const std::string password : {kCanary, kCanaryInTwo}) {
    ShowThatItDoesNotOpen({.ConnectionString = text, .Password = password, .UserName = user});
    ShowThatItDoesNotOpen({.ConnectionString = text, .Password = password, .UserName = "nobody"});
    auto closed = text + ";Port=1";
    ShowThatItDoesNotOpen({.ConnectionString = closed, .Password = password, .UserName = user});
    closed.append(";PWD={").append(password).append("}");
    ShowThatItDoesNotOpen({.ConnectionType = ctPrompt, .ConnectionString = closed});
    auto complete = text + ";uid=";
    complete.append(user).append(";pwd={").append(password).append("}");
    ShowThatItDoesNotOpen({.ConnectionString = complete});
    ShowThatItDoesNotOpen(
        {.ConnectionType = ctDSN, .ConnectionString = "velmoria_none", .Password = password, .UserName = user});
    ShowThatItDoesNotOpen({.Engine = engOracle, .ConnectionString = "Driver=velmoria_none", .Password = password});
  }
  ShowDetails();
  ExpectHidden("15125");
}

TEST_P(PasswordTour, IsHiddenWhereTheEnvironmentBringsIt) {
  {
    const auto group = Apartment().ConnectionContext->Item("");
    group->Prepare(engODBC, GetParam().UserName, kCanary);
    ShowThatItDoesNotOpen({.ConnectionString = GetParam().Text});
    Show([&] { group->Prepare(zEngines{8}, GetParam().UserName, kCanary); });
    Show([&] { group->Disconnect(); });
    Show([&] { group->GetEnvironment(engAccess, GetParam().UserName, kCanary); });
    ShowThatItDoesNotOpen({.ConnectionString = GetParam().Text});
    ShowDetails();
  }
  ExpectHidden("15125");
}

TEST_P(PasswordTour, IsHiddenWhereNothingCanBeSetUp) {
  {
    const auto context = Apartment().ConnectionContext;
    SetupConnectionArguments recipe{.DatabaseName = "Shop",
                                    .Engine = engODBC,
                                    .ConnectionType = ctFile,
                                    .ConnectionString = GetParam().Text + ";PWD=" + kCanary,
                                    .Password = kCanary,
                                    .UserName = GetParam().UserName};
    Show([&] { context->SetupConnection(recipe); });
    recipe.Engine = engRMS;
    Show([&] { context->SetupConnection(recipe); });
    recipe.Engine = engAccess;
    const auto access = context->SetupConnection(recipe);
    Show([&] { access->Connect(); });
    Show([&] { access->TransBegin(); });
    Show([&] { context->SetupConnection(recipe); });
    recipe.DatabaseName.clear();
    Show([&] { context->SetupConnection(recipe); });
    ShowDetails();
  }
  ExpectHidden("15054");
}

TEST_P(PasswordTour, IsHiddenWhereADesignDoesNotConnect) {
  {
    const OneAction design({.ConnectString = GetParam().Text + ";Pwd={" + kCanary + "}"});
    const auto connector = design.Database->Connectors()->Item(engODBC);
    connector->SetUserName(GetParam().UserName);
    connector->SetPassword(kCanary);
    Show([&] { design.Read(); });
    Show([&] { design.Action->CreateProperties(); });
    Show([&] { Framework().GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1}); });
    Show([&] { Framework().GetBusinessObjects({.ClassName = "Order"}); });
    Show([&] { design.Agent()->Execute(); });
    connector->SetLocked(true);
    Show([&] { connector->SetPassword(kCanary); });
    Show([&] { design.Database->Connectors()->Add(connector); });
    shown_ += design.Class->Details() + design.Action->Details() + design.Source->Details() + design.Server->Details();
    ShowDetails();
    EXPECT_NE(shown_.find("Pwd=***"), std::string::npos);
  }
  ExpectHidden("15125");
}

/// A log-on that works while the password is the canary: the server then reads another one, or makes nothing of it.
TestServer Working(const TestServer& server, const std::string& file) {
  auto working = server;
  working.Text = server.Name == "SQLite" ? "Driver=SQLite3;Database=" + file + ";PWD=" + kCanary
                                         : server.Text + ";PWD=" + server.Password;
  return working;
}

TEST_P(PasswordTour, IsHiddenWhereStatementsFail) {
  {
    const auto server = Working(GetParam(), folder_.Path("x.db"));
    const OneAction design({.SourceText = "velmoria_none", .ConnectString = server.Text});
    const auto connector = design.Database->Connectors()->Item(engODBC);
    connector->SetUserName(server.UserName);
    connector->SetPassword(kCanary);
    const auto connection = design.Action->Connection();
    connection->Connect();
    for (const auto type : {stTable, stSQL, stView, stStoredProcedure}) {
      design.Source->SetSourceType(type);
      Show([&] { design.Read(); });
      Show([&] { design.Read(design.Key(1)); });
      Show([&] { design.Agent(design.Key(1))->Execute(); });
    }
    Show([&] { connection->GetConnection()->CreateQuery("", "velmoria_none ?")->Execute(); });
    connection->TransBegin();
    shown_ += DetailsOf(connection);
    ShowDetails();
    connection->Disconnect();
    shown_ += DetailsOf(connection);
  }
  ExpectHidden("15129");
}

TEST_P(PasswordTour, IsHiddenWhereItIsTheRightOne) {
  if (GetParam().Name != "MariaDB") GTEST_SKIP() << "Does not apply: the tests cannot make a user here";
  {
    OdbcClient client(GetParam().ConnectString());
    const auto user = OwnName("tour");
    client.RunAll({"CREATE USER " + user + "@'127.0.0.1' IDENTIFIED BY '" + kCanary + "'"});
    const SetupConnectionArguments logOn{
        .ConnectionString = GetParam().Text + ";Database=information_schema", .Password = kCanary, .UserName = user};
    const auto connection = Made(logOn);
    connection->Connect();
    for (const auto* sql : {"SELECT * FROM velmoria_none", "CREATE TABLE velmoria.t (a int)", "SELECT"})
      Show([&] { connection->GetConnection()->CreateQuery("", sql)->OpenResultset(); });
    client.RunAll({"DROP USER " + user + "@'127.0.0.1'"});
    connection->Disconnect();
    ShowThatItDoesNotOpen(logOn);
    ShowDetails();
  }
  ExpectHidden("15125");
}

INSTANTIATE_TEST_SUITE_P(, PasswordTour, testing::ValuesIn(ServersAndAFile()),
                         [](const auto& test) { return test.param.Name; });

}  // namespace

}  // namespace velmoria::test
