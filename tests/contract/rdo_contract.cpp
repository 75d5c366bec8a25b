#include "tests/contract/rdo_contract.h"

#include <cstdlib>
#include <filesystem>

namespace velmoria::test {
namespace {

constexpr const char* kPostgresVariable = "VELMORIA_TEST_PG";

constexpr const char* kSqliteKinds =
    "CREATE TABLE kinds ( id integer PRIMARY KEY AUTOINCREMENT, i int, s smallint, b bigint, d double, n numeric(12,3),"
    " v varchar(12) NOT NULL, da date, ti time, ts timestamp, f bit, y tinyint, l text, x blob )";
constexpr const char* kPostgresKinds =
    "CREATE TABLE kinds ( id serial PRIMARY KEY, i int, s smallint, b bigint, d double precision, n numeric(12,3),"
    " v varchar(12) NOT NULL, da date, ti time, ts timestamp, f boolean, y smallint, l text, x bytea )";

std::string PostgresText() {
  const char* const text = std::getenv(kPostgresVariable);
  return text == nullptr ? "" : text;
}

std::string NewFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "velmoria-rdo-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  return pattern;
}

}  // namespace

std::vector<RdoBackend> RdoBackends() {
  std::vector<RdoBackend> backends = {{"SQLite", false}};
  if (!PostgresText().empty()) backends.push_back({"PostgreSQL", true});
  return backends;
}

void RdoContract::SetUp() {
  folder = NewFolder();
  connectText = IsPostgres() ? PostgresText() + ";MaxVarcharSize=8000" : "Driver=SQLite3;Database=" + folder + "/x.db";
  connection = Connect();
  if (IsPostgres()) Run("SET search_path TO pg_temp");
}

void RdoContract::TearDown() {
  environment->Close();
  std::filesystem::remove_all(folder);
}

std::string RdoContract::Numbers(int count) const {
  const std::string last = std::to_string(count);
  if (IsPostgres()) return "SELECT n FROM generate_series(1, " + last + ") AS g(n)";
  return "SELECT n FROM ( WITH RECURSIVE g(n) AS ( SELECT 1 UNION ALL SELECT n + 1 FROM g WHERE n < " + last +
         " ) SELECT n FROM g )";
}

void RdoContract::MakeKinds() { Run(IsPostgres() ? kPostgresKinds : kSqliteKinds); }

}  // namespace velmoria::test
