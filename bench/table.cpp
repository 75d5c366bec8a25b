#include "table.h"

#include <cstdio>
#include <cstdlib>

#include <sqlite3.h>

#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

constexpr const char* File = "bench.db";

constexpr const char* Schema = R"sql(
pragma synchronous = off;
begin;
create table %s (Id integer primary key, Quantity smallint, Price double, Name varchar(40), Code varchar(12),
  Sold timestamp, Paid bit, Units integer);
with recursive n(i) as (select 1 union all select i + 1 from n where i < %d)
insert into %s select i, i %% 1000, i / 7.0, 'Customer number ' || i, case i %% 10 when 0 then null else 'C' || i end,
  datetime(1700000000 + i * 61, 'unixepoch'), i %% 2, i * 3 from n;
commit;
)sql";

void MakeTable(sqlite3* database, const char* name, int rows) {
  char text[2048];
  std::snprintf(text, sizeof text, Schema, name, rows, name);
  if (sqlite3_exec(database, text, nullptr, nullptr, nullptr) == SQLITE_OK) return;
  std::fprintf(stderr, "%s\n", sqlite3_errmsg(database));
  std::exit(EXIT_FAILURE);
}

std::string MakeDatabase() {
  std::remove(File);
  sqlite3* database = nullptr;
  if (sqlite3_open(File, &database) != SQLITE_OK) std::exit(EXIT_FAILURE);
  MakeTable(database, "rows", Rows);
  MakeTable(database, "few", FewRows);
  sqlite3_close(database);
  return std::string("Driver=SQLite3;SyncPragma=OFF;Database=") + File;
}

class HostRow final : public BusinessObject {};

struct DescribedAction {
  const char* Name;
  const char* Table;
};
constexpr DescribedAction DescribedActions[] = {{"Get", "rows"}, {"All", "few"}};

void DescribeClass(Classes& classes, const char* name, const char* hostClass, zObjectTypes objectType) {
  const auto described = classes.SetupItem(
      {.Name = name, .ActiveXClass = hostClass, .SingleActionName = "Get", .DefaultActionName = "All"});
  described->Properties()->SetupItem(
      {.Name = "Id", .DataType = dtLongInteger, .SourceName = "Id", .SourceColumn = "Id", .Flags = pfInput});
  for (const auto& each : DescribedActions) {
    const auto action = described->Actions()->SetupItem({.Name = each.Name,
                                                         .DatabaseName = "Bench",
                                                         .UsageFlags = ufAll,
                                                         .EditFlags = efAll,
                                                         .ObjectType = objectType});
    action->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = each.Table});
  }
}

void Describe() {
  Framework framework;
  const auto database = framework.Databases()->SetupItem({.Name = "Bench", .Engine = engODBC, .AutoConnect = true});
  database->Connectors()->SetupItem({.Engine = engODBC, .ConnectionType = ctText, .ConnectionString = BenchDatabase()});
  const auto server = framework.Servers()->SetupItem({.Name = "Bench", .ActiveXComponent = "Bench"});
  Components::Register<HostRow>("Bench.HostRow");
  DescribeClass(*server->Classes(), "Row", "", otModel);
  DescribeClass(*server->Classes(), "HostRow", "HostRow", otBusiness);
}

}  // namespace

const std::string& BenchDatabase() {
  static const std::string connectString = MakeDatabase();
  return connectString;
}

void DescribeBenchDatabase() {
  static bool described = false;
  if (!described) Describe();
  described = true;
}
