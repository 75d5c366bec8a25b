#include "tests/contract/rdo_contract.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include <unistd.h>

namespace velmoria::test {
namespace {

RdoProfile Sqlite() {
  return {.Name = "SQLite",
          .Connect = "Driver=SQLite3;Database={folder}/x.db",
          .Kinds =
              "CREATE TABLE {t}kinds ( id integer PRIMARY KEY AUTOINCREMENT, i int, s smallint, b bigint, d double,"
              " n numeric(12,3), v varchar(12) NOT NULL, da date, ti time, ts timestamp, f bit, y tinyint, l text,"
              " x blob )",
          .KindTypes = {4, 4, 5, -5, 8, 8, 12, 9, 10, 11, -7, -6, -1, -2},
          .NumericValue = 12345.678,
          .TrueValue = true,
          .Numbers =
              "SELECT n FROM ( WITH RECURSIVE g(n) AS ( SELECT 1 UNION ALL SELECT n + 1 FROM g WHERE n < {count}"
              " ) SELECT n FROM g ) AS g",
          .LongestText = "varchar(3)",  // SQLite does not keep to it
          .ByteLength = "length",
          .Unreachable = "Driver=SQLite3;Database={folder}/none/x.db",
          .UnreachableFailure = {14, "HY000: "},
          .Endless =
              "SELECT count(*) AS n FROM ( WITH RECURSIVE g(n) AS ( SELECT 1 UNION ALL SELECT n + 1 FROM g )"
              " SELECT n FROM g ) AS g",
          .WhyNoUsers = "Does not apply: SQLite has no users",
          .WhyNoProcedures = "Does not apply: SQLite has no procedures",
          .WhyNoReturnValues = "Does not apply: SQLite has no procedures",
          .WhyNoBatches = "Does not apply: the SQLite driver takes one statement in a text",
          .WhyNoBackslashes = "Does not apply: SQLite knows no escapes"};
}

RdoProfile Postgres() {
  return {.Name = "PostgreSQL",
          .CloseServer = {"DROP FUNCTION IF EXISTS {own}_add", "DROP FUNCTION IF EXISTS {own}_double",
                          "DROP FUNCTION IF EXISTS {own}_rows"},
          .Begin = {"SET search_path TO pg_temp, public"},
          .Kinds =
              "CREATE TABLE {t}kinds ( id serial PRIMARY KEY, i int, s smallint, b bigint, d double precision,"
              " n numeric(12,3), v varchar(12) NOT NULL, da date, ti time, ts timestamp, f boolean, y smallint,"
              " l text, x bytea )",
          .KindTypes = {4, 4, 5, -5, 6, 2, 12, 9, 10, 11, 12, 5, -1, -4},
          .TrueValue = "1",
          .Numbers = "SELECT n FROM generate_series(1, {count}) AS g(n)",
          .SharedTable = "public.{own}",
          .Unreachable = "{connect};Port=1;PWD=secret",
          .UnreachableFailure = {101, "08001: "},
          .WrongUser = "{connect};UID=nobody_here;PWD=secret",
          .WrongUserFailure = {101, "08001: "},
          .Endless = "SELECT 1 AS n FROM pg_sleep(3600)",
          .MakeAdd = {"CREATE FUNCTION public.{own}_add(a int, INOUT b int, OUT c varchar) AS"
                      " 'SELECT a + b, ''sum '' || ( a + b )' LANGUAGE sql"},
          .MakeReturning = {"CREATE FUNCTION public.{own}_double(a int) RETURNS int AS 'SELECT 2 * a' LANGUAGE sql"},
          .MakeRows = {"CREATE FUNCTION public.{own}_rows(a int) RETURNS TABLE ( n int ) AS"
                       " 'SELECT * FROM generate_series(1, a)' LANGUAGE sql"},
          .WithBackslashes = ";ConnSettings={set standard_conforming_strings = off}",
          .WhyNothingTooLarge = "Does not apply: PostgreSQL keeps to what is declared"};
}

RdoProfile MariaDb() {
  return {.Name = "MariaDB",
          .OpenServer = {"CREATE DATABASE {own}"},
          .CloseServer = {"DROP DATABASE {own}"},
          .Kinds =
              "CREATE TABLE {t}kinds ( id int PRIMARY KEY AUTO_INCREMENT, i int, s smallint, b bigint, d double,"
              " n numeric(12,3), v varchar(12) NOT NULL, da date, ti time, ts datetime, f boolean,"
              " y tinyint unsigned, l longtext, x longblob )",
          .KindTypes = {4, 4, 5, -5, 8, 3, 12, 9, 10, 11, -6, -6, -1, -4},
          .Numbers = "SELECT n FROM ( SELECT seq AS n FROM seq_1_to_{count} ) AS g",
          .SyntaxError = 1064,
          .NoTableError = 1146,
          .NoTableErrorBehind = 0,
          .Unreachable = "{connect};Port=1;PWD=secret",
          .UnreachableFailure = {2002, "HY000: "},
          .WrongUser = "{connect};UID=nobody_here;PWD=secret",
          .WrongUserFailure = {1045, "28000: "},
          .Endless = "SELECT SLEEP(3600) AS n",
          .MakeAdd = {"CREATE PROCEDURE {own}_add(IN a int, INOUT b int, OUT c varchar(40)) BEGIN SET b = a + b;"
                      " SET c = CONCAT('sum ', b); END"},
          .MakeRows = {"CREATE PROCEDURE {own}_rows(IN a int) SELECT seq AS n FROM seq_1_to_1000 WHERE seq <= a"},
          .ForBatches = ";OPTION=67108864",
          .WhyNothingTooLarge = "Does not apply: MariaDB keeps to what is declared",
          .WhyNoReturnValues = "Does not apply: the MariaDB driver does not know a call that returns a value"};
}

/// What the tables and the values of a T-SQL server are like. A test's own tables are temporary.
RdoProfile TSqlTables() {
  return {.Name = "FreeTDS",
          .Begin = {"CREATE TABLE #digits ( d int )",
                    "INSERT INTO #digits SELECT 0 UNION ALL SELECT 1 UNION ALL SELECT 2 UNION ALL SELECT 3 UNION ALL"
                    " SELECT 4 UNION ALL SELECT 5 UNION ALL SELECT 6 UNION ALL SELECT 7 UNION ALL SELECT 8 UNION ALL"
                    " SELECT 9",
                    "CREATE TABLE #numbers ( n int PRIMARY KEY )",
                    "INSERT INTO #numbers SELECT 1 + a.d + 10 * b.d + 100 * c.d + 1000 * e.d"
                    " FROM #digits a, #digits b, #digits c, #digits e"},
          .Kinds =
              "CREATE TABLE {t}kinds ( id int IDENTITY PRIMARY KEY, i int, s smallint, b bigint, d float,"
              " n numeric(12,3), v varchar(12) NOT NULL, da datetime, ti datetime, ts datetime, f bit, y tinyint,"
              " l text, x image )",
          .KindTypes = {4, 4, 5, -5, 8, 2, 12, 11, 11, 11, -7, -6, -1, -4},
          .TrueValue = true,
          .TimeValue = Date::From(1900, 1, 1, 14, 3, 5),
          .Numbers = "SELECT n FROM #numbers WHERE n <= {count}",
          .UnicodeText = "nvarchar",
          .TextLength = "datalength",
          .ByteLength = "datalength",
          .SharedTable = "{own}",
          .TimeType = rdTypeTIMESTAMP,  // a time becomes one of today
          .JoinsLines = true,
          .TablePrefix = "#"};
}

RdoProfile FreeTds() {
  auto profile = TSqlTables();
  profile.CloseServer = {"IF OBJECT_ID('{own}_add') IS NOT NULL DROP PROCEDURE {own}_add",
                         "IF OBJECT_ID('{own}_double') IS NOT NULL DROP PROCEDURE {own}_double",
                         "IF OBJECT_ID('{own}_rows') IS NOT NULL DROP PROCEDURE {own}_rows"};
  profile.SyntaxError = 2812;
  profile.NoTableError = 208;
  profile.NoTableErrorBehind = 208;
  profile.Unreachable = "{connect};Port=1;PWD=secret";
  profile.UnreachableFailure = {20009, "08S01: "};
  profile.WrongUser = "{connect};UID=nobody_here;PWD=secret";
  profile.WrongUserFailure = {18456, "42000: "};
  profile.Endless = "WITH g (n) AS ( SELECT 1 UNION ALL SELECT n + 1 FROM g ) SELECT COUNT(*) AS n FROM g";
  profile.MakeAdd = {
      "CREATE PROCEDURE {own}_add @a int, @b int OUTPUT, @c varchar(40) OUTPUT AS SET @b = @a + @b"
      " SET @c = 'sum ' + CAST(@b AS varchar(20))"};
  profile.MakeReturning = {"CREATE PROCEDURE {own}_double @a int AS RETURN 2 * @a"};
  profile.MakeRows = {"CREATE PROCEDURE {own}_rows @a int AS SELECT n FROM #numbers WHERE n <= @a"};
  profile.OutputDirection = rdParamInputOutput;
  profile.WhyNothingTooLarge = "Does not apply: a T-SQL server keeps to what is declared";
  profile.WhyNoBackslashes = "Does not apply: T-SQL knows no escapes";
  return profile;
}

struct Server {
  const char* Variable;
  RdoProfile (*Profile)();
  const char* Options;
};

constexpr std::array kServers = {
    Server{"VELMORIA_TEST_PG", Postgres, ";MaxVarcharSize=8000"},
    Server{"VELMORIA_TEST_MARIADB", MariaDb, ""},
    Server{"VELMORIA_TEST_TDS", FreeTds, ""},
};

constexpr const char* kDoneWithout = "Does not apply: the driver does this without the options";

struct Recommended {
  const char* Name;
  const char* With;
  const char* Options;
  const char* WhyNoLostServer;
  const char* WhyNoChangedColumns;
  const char* WhyNothingAfterRefusal;
};

constexpr std::array kRecommended = {
    Recommended{"SQLite", "Stepping", ";StepAPI=1", "",
                "Does not apply: with StepAPI=1 the SQLite driver can end the process", ""},
    Recommended{"PostgreSQL", "Declaring", ";UseDeclareFetch=1;Fetch=1000", "", "", ""},
    Recommended{"PostgreSQL", "Lean", ";UseServerSidePrepare=0;Protocol=7.4-0", kDoneWithout, "",
                "Does not apply: with Protocol=7.4-0 a refused statement ends its transaction"},
};

std::string NewFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "velmoria-rdo-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  return pattern;
}

}  // namespace

std::string Replaced(std::string text, const std::string& name, const std::string& value) {
  for (auto at = text.find(name); at != std::string::npos; at = text.find(name, at + value.size())) {
    text.replace(at, name.size(), value);
  }
  return text;
}

void PrintTo(const RdoProfile& profile, std::ostream* stream) { *stream << profile.Name << profile.With; }

std::vector<RdoProfile> RdoProfiles() {
  std::vector<RdoProfile> profiles = {Sqlite()};
  for (const auto& server : kServers) {
    const char* const connect = std::getenv(server.Variable);
    if (connect == nullptr || *connect == '\0') continue;
    profiles.push_back(server.Profile());
    profiles.back().Connect = std::string(connect) + server.Options;
  }
  return profiles;
}

std::vector<RdoProfile> RdoProfilesWithOptions() {
  auto profiles = RdoProfiles();
  for (const auto& recommended : kRecommended) {
    const auto plain = std::ranges::find(profiles, recommended.Name, &RdoProfile::Name);
    if (plain == profiles.end()) continue;
    auto profile = *plain;
    profile.With = recommended.With;
    profile.Options = recommended.Options;
    profile.Connect += recommended.Options;
    profile.WhyNothingLong = kDoneWithout;
    profile.WhyNoLostServer = recommended.WhyNoLostServer;
    profile.WhyNoChangedColumns = recommended.WhyNoChangedColumns;
    profile.WhyNothingAfterRefusal = recommended.WhyNothingAfterRefusal;
    profiles.push_back(std::move(profile));
  }
  return profiles;
}

void RdoContract::SetUp() {
  folder = NewFolder();
  connectText = Filled(Profile().Connect);
  RunOverServer(Profile().OpenServer);
  if (!Profile().OpenServer.empty()) connectText += Filled(";Database={own}");
  connection = Connect();
  for (const auto& text : Profile().Begin) Run(Filled(text));
}

void RdoContract::TearDown() {
  environment->Close();
  RunOverServer(Profile().CloseServer);
  std::filesystem::remove_all(folder);
}

rdoConnectionPtr RdoContract::ConnectForBatches() {
  auto made = ConnectWith(connectText + Profile().ForBatches);
  for (const auto& text : Profile().Begin) made->CreateQuery("", Filled(text))->Execute();
  return made;
}

void RdoContract::RunOverServer(const std::vector<std::string>& texts) {
  if (texts.empty()) return;
  const auto log = Make<rdoEngine>()->rdoCreateEnvironment("", "", "");
  const auto server = log->OpenConnection({.Prompt = rdDriverNoPrompt, .Connect = Filled(Profile().Connect)});
  for (const auto& text : texts) server->CreateQuery("", Filled(text))->Execute();
}

std::string RdoContract::Numbers(int count) const {
  return Replaced(Profile().Numbers, "{count}", std::to_string(count));
}

std::string RdoContract::Filled(std::string text) const {
  text = Replaced(std::move(text), "{folder}", folder);
  text = Replaced(std::move(text), "{t}", Profile().TablePrefix);
  text = Replaced(std::move(text), "{own}", "velmoria_" + std::to_string(getpid()));
  return Replaced(std::move(text), "{connect}", connectText);
}

}  // namespace velmoria::test
