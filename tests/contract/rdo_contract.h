#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {

/// A failure as its driver tells it: the number and the beginning of the text.
struct RdoFailure {
  std::int32_t Number = 0;
  std::string Text{};
};

/// A driver that the suite runs over, and everything in which it differs from the others. A "{folder}" in a text is the
/// test's own folder, "{t}" the prefix of its tables, "{count}" a number, "{own}" a name that no other test has,
/// "{connect}" the connect string.
///
/// A question that begins with "Why" is empty where the tests behind it apply; otherwise it is why they do not.
struct RdoProfile {
  std::string Name{};
  std::string With{};     // behind it in the names of tests, where the driver is told more options than it must be
  std::string Options{};  // those, already in Connect
  std::string Connect{};
  std::vector<std::string> OpenServer{};   // run over Connect before the test connects
  std::vector<std::string> CloseServer{};  // run over Connect after the test
  std::vector<std::string> Begin{};        // run over the test's first connection

  std::string Kinds{};  // the table of every kind of column
  std::vector<int> KindTypes{};
  Variant NumericValue = Decimal::Parse("12345.678");
  Variant TrueValue = Byte{1};
  Variant TimeValue = Date::From(1899, 12, 30, 14, 3, 5);
  std::string Numbers{};  // rows 1 to {count} of "n"
  std::string LongestText = "varchar(8000)";
  std::string UnicodeText = "varchar";
  std::string TextLength = "length";
  std::string ByteLength = "octet_length";
  std::string SharedTable = "velmoria_contract";  // a table that other connections see

  rdoNumber TimeType = rdTypeTIME;  // of a parameter that is a time of day
  bool JoinsLines = false;          // a line of a literal that ends in a backslash goes on, and nothing turns that off
  std::string TablePrefix{};        // of tables that only the test's connection sees
  std::int32_t SyntaxError = 1;
  std::int32_t NoTableError = 1;
  std::int32_t NoTableErrorBehind = 1;  // in a statement that is not the text's first
  std::string Unreachable{};
  RdoFailure UnreachableFailure{};
  std::string WrongUser{};
  RdoFailure WrongUserFailure{};

  std::string Endless{};                      // a query that ends by being stopped only
  std::vector<std::string> MakeAdd{};         // "{own}_add" with a in, b in and out, c out
  std::vector<std::string> MakeReturning{};   // "{own}_double" that returns twice its a
  std::vector<std::string> MakeRows{};        // "{own}_rows" that gives rows 1 to its a
  rdoNumber OutputDirection = rdParamOutput;  // of a parameter that takes nothing in, by the catalogue
  std::string ForBatches{};                   // what the connect string needs for several statements in one text
  std::string WithBackslashes{};  // what makes the server give backslashes a meaning, unless it does by itself

  std::string WhyNoUsers{};
  std::string WhyNothingTooLarge{};
  std::string WhyNoProcedures{};
  std::string WhyNoReturnValues{};
  std::string WhyNoBatches{};
  std::string WhyNoBackslashes{};
  std::string WhyNothingLong{};  // nothing that takes long
  std::string WhyNoLostServer{};
  std::string WhyNoChangedColumns{};     // by another connection, under one that has read the table
  std::string WhyNothingAfterRefusal{};  // in the transaction that a statement was refused in
};

void PrintTo(const RdoProfile& profile, std::ostream* stream);

/// A connection to a database with a table of every kind of column, made anew for each test.
class RdoContract : public ::testing::TestWithParam<RdoProfile> {
 protected:
  void SetUp() override;
  void TearDown() override;

  const RdoProfile& Profile() const { return GetParam(); }
  rdoConnectionPtr Connect() { return ConnectWith(connectText); }
  rdoConnectionPtr ConnectWith(const std::string& text) {
    return environment->OpenConnection({.Prompt = rdDriverNoPrompt, .Connect = text});
  }
  rdoConnectionPtr ConnectForBatches();
  void RunAll(const std::vector<std::string>& texts) {
    for (const auto& text : texts) Run(text);
  }
  rdoQueryPtr Query(const std::string& sql) { return connection->CreateQuery("", Filled(sql)); }
  void Run(const std::string& sql) { Query(sql)->Execute(); }
  rdoResultsetPtr Rows(const std::string& sql, rdoNumber type = rdOpenKeyset) {
    return Query(sql)->OpenResultset({.Type = type});
  }
  /// The first value of the first row.
  Variant Value(const std::string& sql) { return Rows(sql)->GetRows(1).Value(0, 0); }
  /// A statement that makes rows 1 to count of "n".
  std::string Numbers(int count) const;
  void MakeKinds() { Run(Profile().Kinds); }
  /// A text of the profile with what stands for its names in braces.
  std::string Filled(std::string text) const;

  std::string folder;
  std::string connectText;
  rdoEnginePtr engine = Make<rdoEngine>();
  rdoEnvironmentPtr environment = engine->rdoCreateEnvironment("", "", "");
  rdoConnectionPtr connection;

 private:
  void RunOverServer(const std::vector<std::string>& texts);
};

/// SQLite always; PostgreSQL, MariaDB and FreeTDS when VELMORIA_TEST_PG, VELMORIA_TEST_MARIADB and VELMORIA_TEST_TDS
/// hold connect strings.
std::vector<RdoProfile> RdoProfiles();

/// These, and behind them the ones that docs/performance.md recommends options for, with those.
std::vector<RdoProfile> RdoProfilesWithOptions();

/// A text with a value wherever the name stood.
std::string Replaced(std::string text, const std::string& name, const std::string& value);

}  // namespace velmoria::test
