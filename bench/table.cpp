#include "table.h"

#include <cstdio>
#include <cstdlib>

#include <sqlite3.h>

namespace {

constexpr const char* Schema = R"sql(
pragma synchronous = off;
begin;
create table rows (Id integer primary key, Quantity smallint, Price double, Name varchar(40), Code varchar(12),
  Sold timestamp, Paid bit, Units integer);
with recursive n(i) as (select 1 union all select i + 1 from n where i < %d)
insert into rows select i, i %% 1000, i / 7.0, 'Customer number ' || i, case i %% 10 when 0 then null else 'C' || i end,
  datetime(1700000000 + i * 61, 'unixepoch'), i %% 2, i * 3 from n;
commit;
)sql";

}  // namespace

std::string MakeTable(const std::string& file, int rows) {
  std::remove(file.c_str());
  sqlite3* database = nullptr;
  char text[2048];
  std::snprintf(text, sizeof text, Schema, rows);
  const bool made = sqlite3_open(file.c_str(), &database) == SQLITE_OK &&
                    sqlite3_exec(database, text, nullptr, nullptr, nullptr) == SQLITE_OK;
  if (!made) std::fprintf(stderr, "%s\n", sqlite3_errmsg(database));
  sqlite3_close(database);
  if (!made) std::exit(EXIT_FAILURE);
  return "Driver=SQLite3;Database=" + file;
}
