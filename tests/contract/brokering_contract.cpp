#include "tests/contract/brokering_contract.h"

#include <algorithm>
#include <utility>

#include <unistd.h>

#include "velmoria/core/apartment_impl.h"

namespace velmoria::test {
namespace {

BrokeringProfile Sqlite() {
  return {.OddDays = {"'0001-01-01'", "'12345-01-01'", "'2026-02-30'", "'soon'"},
          .Repeated = "replace(hex(zeroblob({count} / 2)), '0', 'x')",
          .NoIdentity = "HY000: ",
          .WhyNoDroppedColumn =
              "Does not apply: the SQLite driver knows a table as its connection first read it, so"
              " connections are opened anew after a change of columns",
          .WhyNoIdentity = "Does not apply: SQLite takes one statement in a text",
          .WhyNoRowsAndOutput = "Does not apply: SQLite has no procedures",
          .WhyOneWriter = "Does not apply: SQLite has one writer at a time"};
}

BrokeringProfile Postgres() {
  return {.OddDays = {"'0001-01-01'", "'0044-03-15 BC'", "'12345-01-01'", "'infinity'", "'-infinity'"},
          .Repeated = "repeat('x', {count})",
          .NoIdentity = "42601: ",
          .WhyNoIdentity = "Does not apply: PostgreSQL does not take the statement",
          .WhyNoRowsAndOutput = "Does not apply: a function of PostgreSQL gives rows or outputs"};
}

BrokeringProfile MariaDb() {
  return {.OddDays = {"'0001-01-01'", "'0000-00-00'", "'2026-00-00'"},
          .AllowOddDays = "SET SESSION sql_mode = ''",
          .Repeated = "REPEAT('x', {count})",
          .LongestCount = 12'000'000,  // a packet takes 16 megabytes
          .MakeRowsAndOutput = {"CREATE PROCEDURE {own}_both(IN a int, OUT b int) BEGIN SELECT id FROM {t}orders"
                                " WHERE id <= a; SET b = 10 * a; END"},
          .NoIdentity = "42000: ",
          .WhyNoIdentity = "Does not apply: MariaDB does not take the statement"};
}

BrokeringProfile FreeTds() {
  return {.FirstDay = "1753-01-01",
          .Repeated = "REPLICATE('x', {count})",
          .LongestCount = 20'000'000,
          .MakeRowsAndOutput = {"CREATE PROCEDURE {own}_both @a int, @b int OUTPUT AS SELECT id FROM {t}orders"
                                " WHERE id <= @a SET @b = 10 * @a"},
          .WhyNoOddDays = "Does not apply: a T-SQL server has no days that a Date cannot hold",
          .WhyNoRefusal = "Does not apply: a T-SQL server takes the statement",
          .WhyOneWriter = "Does not apply: the T-SQL server has one writer at a time"};
}

struct Under {
  const char* Driver;
  const char* Name;
  BrokeringProfile (*Profile)();
  zEngines Engine;
};

constexpr Under kEngines[] = {
    {"SQLite", "SQLite", Sqlite, engODBC},
    {"PostgreSQL", "PostgreSQL", Postgres, engODBC},
    {"MariaDB", "MariaDB", MariaDb, engODBC},
    {"FreeTDS", "FreeTDSAsSQLServer", FreeTds, engSQLServer},
    {"FreeTDS", "FreeTDSAsSybase", FreeTds, engSybase},
};

/// Tables that only one connection sees are of no use here: what they were for is a table that all see.
RdoProfile ForManyConnections(RdoProfile driver) {
  driver.Begin.clear();
  if (driver.Name != "FreeTDS") return driver;
  driver.MakeRows = {"CREATE PROCEDURE {own}_rows @a int AS SELECT id AS n FROM {t}orders WHERE id <= @a"};
  driver.CloseServer.push_back("IF OBJECT_ID('{own}_both') IS NOT NULL DROP PROCEDURE {own}_both");
  return driver;
}

}  // namespace

void PrintTo(const BrokeringProfile& profile, std::ostream* stream) { *stream << profile.Name; }

std::vector<BrokeringProfile> BrokeringProfiles() {
  std::vector<BrokeringProfile> profiles;
  for (const auto& driver : RdoProfilesWithOptions()) {
    for (const auto& under : kEngines) {
      if (driver.Name != under.Driver) continue;
      profiles.push_back(under.Profile());
      profiles.back().Driver = ForManyConnections(driver);
      profiles.back().Name = under.Name + driver.With;
      profiles.back().Engine = under.Engine;
    }
  }
  return profiles;
}

void BrokeringContract::SetUp() {
  serverText_ = connectText_ = Filled(ConnectOf());
  RunOverServer(Driver().OpenServer);
  if (!Driver().OpenServer.empty()) connectText_ += Filled(";Database={own}");
  ConnectClient();
  scope_ = std::make_unique<ScopedApartment>();
  UseDriver(*scope_);
  AddDatabase("Shop", Profile().Engine, connectText_);
  Framework{}.Servers()->SetupItem({.Name = "Sales"});
}

void BrokeringContract::TearDown() {
  scope_.reset();
  EXPECT_EQ(odbc_->OpenHandles(), 0);
  if (!client_) return;
  for (const auto& table : tables_) Run("DROP TABLE IF EXISTS " + table);
  client_.reset();
  RunOverServer(Driver().CloseServer);
}

void BrokeringContract::RunOverServer(const std::vector<std::string>& texts) {
  if (texts.empty()) return;
  OdbcClient server(serverText_);
  for (const auto& text : texts) server.RunAll({Filled(text)});
}

std::string BrokeringContract::Filled(std::string text) const {
  const std::string own = "velmoria_" + std::to_string(getpid());
  text = Replaced(std::move(text), "{folder}", folder_.Path());
  text = Replaced(std::move(text), "{t}", own + "_");
  text = Replaced(std::move(text), "{own}", own);
  return Replaced(std::move(text), "{connect}", connectText_);
}

void BrokeringContract::RunAll(const std::vector<std::string>& texts) {
  for (const auto& text : texts) Run(text);
}

void BrokeringContract::MakeTable(const std::string& name, const std::string& columns) {
  tables_.push_back(Filled("{t}" + name));
  Run("CREATE TABLE {t}" + name + " ( " + columns + " )");
}

void BrokeringContract::MakeKinds() {
  tables_.push_back(Filled("{t}kinds"));
  Run(Driver().Kinds);
}

void BrokeringContract::FillKinds() {
  Run("INSERT INTO {t}kinds (i, s, b, d, n, v, da, ti, ts, f, y, l) VALUES (-7, 300, 9007199254740993, 1.5, 12345.678, "
      "'x', '2026-11-20', '14:03:05', '2026-11-20 14:03:05', '1', 200, 'long')");
  Run("INSERT INTO {t}kinds (v) VALUES ('')");
}

void BrokeringContract::MakeOrders(int count) {
  MakeTable("orders", "id int NOT NULL PRIMARY KEY, name varchar(40), total int");
  for (int id = 1; id <= count;) {
    std::string rows;
    for (int last = std::min(count, id + 99); id <= last; ++id) {
      const auto number = std::to_string(id);
      rows += (rows.empty() ? "" : ", ") + ("(" + number) + ", 'name " + number + "', " + number + "0)";
    }
    Run("INSERT INTO {t}orders VALUES " + rows);
  }
}

DatabasePtr BrokeringContract::AddDatabase(const std::string& name, zEngines engine, const std::string& connect,
                                           zCursorTypes cursorType) {
  auto database = Framework{}.Databases()->SetupItem({.Name = name, .Engine = engine, .AutoConnect = true});
  database->Connectors()->SetupItem(
      {.Engine = engine, .ConnectionType = ctText, .ConnectionString = connect, .CursorType = cursorType});
  return database;
}

ClassPtr BrokeringContract::AddClass(const std::string& name, const std::string& table,
                                     const std::vector<std::string>& key) {
  auto added = Framework{}.Servers()->Item("Sales")->Classes()->SetupItem(
      {.Name = name, .SingleActionName = "Get", .NewActionName = "Get", .DefaultActionName = "Get"});
  for (const auto& column : key) {
    added->Properties()->SetupItem(
        {.Name = column, .DataType = dtLongInteger, .SourceName = column, .SourceColumn = column, .Flags = pfInput});
  }
  AddAction(name, {.Text = "{t}" + table});
  return added;
}

ActionPtr BrokeringContract::AddAction(const std::string& className, const Reading& reading,
                                       const std::vector<PropertyFields>& parameters) {
  const auto owner = Framework{}.Servers()->Item("Sales")->Classes()->Item(className);
  auto action = owner->Actions()->SetupItem({.Name = reading.Name,
                                             .DatabaseName = reading.DatabaseName,
                                             .ConnectionsName = reading.ConnectionsName,
                                             .UsageFlags = ufAll,
                                             .EditFlags = efAll,
                                             .ObjectType = otModel,
                                             .ObjectBuffer = reading.ObjectBuffer,
                                             .BusinessObjectsName = reading.Name});
  const auto source =
      action->Sources()->SetupItem({.Engine = Framework{}.Databases()->Item(reading.DatabaseName)->Engine(),
                                    .SourceType = reading.Type,
                                    .SourceText = Filled(reading.Text),
                                    .OptionFlags = reading.Options});
  for (const auto& parameter : parameters) source->Parameters()->SetupItem(parameter);
  return action;
}

ActionPtr BrokeringContract::ActionOf(const std::string& className, const std::string& name) {
  return Framework{}.Servers()->Item("Sales")->Classes()->Item(className)->Actions()->Item(name);
}

PropertyFields BrokeringContract::Parameter(const char* name, zDataTypes type, zPropertyFlags flags) {
  return {.Name = name, .DataType = type, .SourceName = name, .SourceColumn = name, .Flags = flags};
}

DatabaseAgentPtr BrokeringContract::AgentOf(const std::string& className, const std::string& action,
                                            const PropertiesPtr& parameters) {
  auto agent = Make<DatabaseAgent>();
  agent->Initialize(Framework{}.Servers()->Item("Sales")->Classes()->Item(className), ActionOf(className, action),
                    parameters, -1);
  return agent;
}

std::string BrokeringContract::Ids(const RecordsetPtr& page) {
  std::string text;
  for (std::int32_t row = 0; row < page->Count(); ++row)
    text += (row == 0 ? "" : " ") + page->GetPersistentProperties(row, "")->Item("id")->Value().AsText();
  return text;
}

}  // namespace velmoria::test
