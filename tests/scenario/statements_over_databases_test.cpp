// The statements that are composed from properties, sent to every database as they read.

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/odbc_client.h"
#include "tests/support/rdo_builders.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/sqlite_file.h"
#include "tests/support/test_servers.h"
#include "velmoria/platform/rdo/rdo_parameter.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

/// A database and what it makes of statements that it need not understand: the beginning of the driver's words, empty
/// where it accepts them.
struct Place {
  std::string Name;
  std::string Connect{};  // empty: a SQLite file
  std::string RefusesTrue{};
  std::string RefusesNoColumns{};
  std::string RefusesIdentity{};
  std::string Counter{};    // the type of a column that counts by itself
  std::string Procedure{};  // makes "{own}", which returns a - b; empty where none can return a value
};

void PrintTo(const Place& place, std::ostream* stream) { *stream << place.Name; }

Place PlaceOf(const TestServer& server) {
  Place place{.Name = server.Name, .Connect = server.ConnectString()};
  if (server.Name == "PostgreSQL") {
    place.RefusesTrue = "42804: ";
    place.RefusesNoColumns = "42601: ";
    place.RefusesIdentity = "42601: ";
    place.Counter = "serial";
    place.Procedure = "CREATE FUNCTION {own}(a int, b int) RETURNS int AS 'SELECT a - b' LANGUAGE sql";
  } else if (server.Name == "MariaDB") {
    place.RefusesIdentity = "42000: ";
    place.Counter = "int AUTO_INCREMENT";
  } else {
    place.RefusesNoColumns = "42000: ";
    place.Counter = "int IDENTITY";
    place.Procedure = "CREATE PROCEDURE {own} @a int, @b int AS RETURN @a - @b";
  }
  return place;
}

std::vector<Place> Places() {
  std::vector<Place> places = {
      {.Name = "SQLite", .RefusesNoColumns = "HY000: ", .RefusesIdentity = "HY000: ", .Counter = "integer"}};
  for (const auto& server : TestServers()) places.push_back(PlaceOf(server));
  return places;
}

PropertyFields Field(const char* name, const Variant& value, zDataTypes type, zPropertyFlags flags = pfInput) {
  return {.Name = name, .Value = value, .DataType = type, .SourceColumn = name, .Flags = flags};
}

PropertiesPtr Members(const std::vector<PropertyFields>& fields) {
  auto members = Make<Properties>();
  for (const auto& each : fields) members->SetupItem(each);
  return members;
}

/// The table of the test, whose columns are id (it counts), name and flag, with one row that a plain client has
/// written.
class StatementsOverDatabases : public testing::TestWithParam<Place> {
 public:
  ~StatementsOverDatabases() override {
    Apartment().ConnectionContext->Item("")->Disconnect(engODBC);
    client_.RunAll({"DROP TABLE " + table_});
  }

 protected:
  StatementsOverDatabases()
      : client_(GetParam().Connect.empty() ? file_.ConnectString() : GetParam().Connect),
        connection_(Apartment().ConnectionContext->SetupConnection(
            {.DatabaseName = "Real",
             .Engine = engODBC,
             .ConnectionType = ctText,
             .ConnectionString = GetParam().Connect.empty() ? file_.ConnectString() : GetParam().Connect})) {
    const std::string flag = GetParam().Name == "FreeTDS" ? "bit" : "boolean";
    client_.RunAll({"CREATE TABLE " + table_ + " (id " + GetParam().Counter +
                        " NOT NULL PRIMARY KEY, name varchar(40), flag " + flag + ")",
                    "INSERT INTO " + table_ + " (name) VALUES ('first')"});
  }
  static SourcePtr Made(zSourceTypes type, const std::string& text, zOptionFlags options = ofNone) {
    return Make<Sources>()->SetupItem(
        {.Engine = engODBC, .SourceType = type, .SourceText = text, .OptionFlags = options});
  }
  SourcePtr Table() const { return Made(stTable, table_); }
  std::string Insert(const PropertiesPtr& row) {
    bool returnsIdentity = false;
    return Table()->SQLInsert(row, returnsIdentity);
  }
  rdoQueryPtr Query(const std::string& sql) {
    auto query = connection_->GetConnection()->CreateQuery("", sql);
    query->SetPrepared(false);
    return query;
  }
  RowBlock Rows(const std::string& sql) { return Query(sql)->OpenResultset({.Type = rdOpenStatic})->GetRows(100); }
  /// Expects the driver to refuse the statement with these words, or to take it where there are none.
  void Send(const std::string& sql, const std::string& refused) {
    const auto error = Thrown([&] { Query(sql)->Execute(); });
    ASSERT_EQ(error.has_value(), !refused.empty()) << sql << "\n" << (error ? error->Description() : "");
    if (!error) return;
    EXPECT_EQ(error->Description().substr(0, refused.size()), refused) << error->Description();
  }
  std::string Stored(const std::string& what) { return client_.Value("SELECT " + what + " FROM " + table_); }

  ScopedApartment scope_;
  SqliteFile file_;
  OdbcClient client_;
  ConnectionPtr connection_;
  std::string table_ = OwnName("statements");
};

TEST_P(StatementsOverDatabases, ANameWithAQuoteIsWrittenAndFound) {
  const auto row = Members({Field("name", "O'Brien", dtString)});
  Send(Insert(row), "");
  EXPECT_EQ(client_.Value("SELECT name FROM " + table_ + " WHERE id = 2"), "O'Brien");
  EXPECT_EQ(Rows(Table()->SQLSelect(row)).Rows(), 1U);
  Send(Table()->SQLDelete({}, row), "");
  EXPECT_EQ(Stored("count(*)"), "1");
}

TEST_P(StatementsOverDatabases, ANullWithAnOrderingOperatorIsRefusedBeforeAnythingIsSent) {
  auto above = Field("name", Variant::Null(), dtString);
  above.Operator = ">";
  const auto keys = Members({above});
  const auto changes = Members({Field("name", "changed", dtString)});
  for (const auto& error : {Thrown([&] { Send(Table()->SQLSelect(keys), ""); }),
                            Thrown([&] { Send(Table()->SQLUpdate(changes, keys), ""); }),
                            Thrown([&] { Send(Table()->SQLDelete({}, keys), ""); })}) {
    ASSERT_TRUE(error);
    EXPECT_EQ(error->CatalogueNumber(), 15096);
  }
  EXPECT_FALSE(connection_->ConnectionOpen());
  EXPECT_EQ(Stored("min(name)"), "first");
}

TEST_P(StatementsOverDatabases, ANullIsFoundByItsWords) {
  const auto null = Field("flag", Variant::Null(), dtBoolean);
  EXPECT_EQ(Rows(Table()->SQLSelect(Members({null}))).Rows(), 1U);
  auto other = null;
  other.Operator = "<>";
  EXPECT_EQ(Rows(Table()->SQLSelect(Members({other}))).Rows(), 0U);
}

TEST_P(StatementsOverDatabases, TrueIsSentAsOne) {
  const auto row = Members({Field("flag", true, dtBoolean)});
  EXPECT_NE(Insert(row).find("VALUES (1 )"), std::string::npos);
  Send(Insert(row), GetParam().RefusesTrue);
  if (GetParam().RefusesTrue.empty()) { EXPECT_EQ(Rows(Table()->SQLSelect(row)).Rows(), 1U); }
  const auto text = Members({Field("flag", "1", dtString)});
  Send(Insert(text), "");
  EXPECT_GE(Rows(Table()->SQLSelect(text)).Rows(), 1U);
}

TEST_P(StatementsOverDatabases, AnInsertOfNothingIsSentWithItsEmptyLists) {
  const auto row = Members({Field("name", {}, dtString)});
  EXPECT_EQ(Insert(row), "INSERT INTO " + table_ + " (  ) VALUES ( )");
  Send(Insert(row), GetParam().RefusesNoColumns);
  EXPECT_EQ(Stored("count(*)"), GetParam().RefusesNoColumns.empty() ? "2" : "1");
}

TEST_P(StatementsOverDatabases, AnInsertThatCountsAsksForTheNumberInTheSameText) {
  bool returnsIdentity = false;
  const auto sql = Table()->SQLInsert(
      Members({Field("id", {}, dtLongInteger, pfcounter), Field("name", "x", dtString)}), returnsIdentity);
  EXPECT_TRUE(returnsIdentity);
  EXPECT_EQ(sql, "INSERT INTO " + table_ + " ( name ) VALUES ( 'x' ) SELECT 'id' = @@IDENTITY");
  if (!GetParam().RefusesIdentity.empty()) return Send(sql, GetParam().RefusesIdentity);
  const auto rows = Query(sql)->OpenResultset();
  ASSERT_EQ(rows->rdoColumns().Count(), 1U);
  EXPECT_EQ((*rows->rdoColumns().begin())->Name(), "id");
  EXPECT_EQ((*rows->rdoColumns().begin())->Value().AsText(), "2");
  EXPECT_EQ(Stored("count(*)"), "2");
}

TEST_P(StatementsOverDatabases, AProcedureIsCalledWithItsReturnValueAndTwoMarkers) {
  if (GetParam().Procedure.empty()) GTEST_SKIP() << "Does not apply: a procedure here returns no value";
  const auto name = OwnName("minus");
  client_.RunAll({std::string(GetParam().Procedure).replace(GetParam().Procedure.find("{own}"), 5, name)});
  const auto source = Made(stStoredProcedure, name);
  const auto sql = source->SQLExecute(Members(
      {Field("r", {}, dtLongInteger, pfReturnValue), Field("a", 7, dtLongInteger), Field("b", 3, dtLongInteger)}));
  EXPECT_EQ(sql, "{? = Call " + name + " (?, ?) }");
  const auto query = connection_->GetConnection()->CreateQuery("", sql);
  ASSERT_EQ(query->rdoParameters().size(), 3U);
  query->rdoParameters()[0]->SetDirection(rdParamReturnValue);
  query->rdoParameters()[1]->SetValue(7);
  query->rdoParameters()[2]->SetValue(3);
  query->Execute();
  EXPECT_EQ(query->rdoParameters()[0]->Value().AsLong(), 4);
  client_.RunAll({(GetParam().Name == "FreeTDS" ? "DROP PROCEDURE " : "DROP FUNCTION ") + name});
}

TEST_P(StatementsOverDatabases, ASelectWithoutParametersGivesEveryRow) {
  client_.RunAll({"INSERT INTO " + table_ + " (name) VALUES ('second')"});
  EXPECT_EQ(Rows(Table()->SQLSelect()).Rows(), 2U);
  EXPECT_EQ(Rows(Made(stView, table_)->SQLSelect(Make<Properties>())).Rows(), 2U);
}

TEST_P(StatementsOverDatabases, CriteriaAreJoinedWithoutBrackets) {
  for (const auto* name : {"second", "third"}) Send(Insert(Members({Field("name", name, dtString)})), "");
  const auto second = Field("name", "second", dtString);
  auto third = second;
  third.Name = "other";
  third.Value = "third";
  third.OrFlag = true;
  const auto none = Field("id", 0, dtLongInteger);
  EXPECT_EQ(Rows(Table()->SQLSelect(Members({none, second, third}))).Rows(), 1U);
  EXPECT_EQ(Rows(Table()->SQLSelect(Members({second, third, none}))).Rows(), 1U);
}

TEST_P(StatementsOverDatabases, AnUpdateAndADeleteFindTheirRows) {
  const auto key = Members({Field("id", 1, dtLongInteger)});
  Send(Table()->SQLUpdate(Members({Field("name", "it''s", dtString)}), key), "");
  EXPECT_EQ(Stored("min(name)"), "it''s");
  Send(Made(stView, table_)->SQLUpdate(Members({Field("name", Variant::Null(), dtString)}), key), "");
  EXPECT_EQ(Stored("count(name)"), "0");
  Send(Table()->SQLDelete(Members({Field("id", 9, dtLongInteger)}), key), "");
  EXPECT_EQ(Stored("count(*)"), "1");
  Send(Table()->SQLDelete({}, key), "");
  EXPECT_EQ(Stored("count(*)"), "0");
}

TEST_P(StatementsOverDatabases, ValuesTakeThePlaceOfMarkersInATextThatIsPassedThrough) {
  const auto source = Made(stSQL, "SELECT name FROM " + table_ + " WHERE name = ? AND id = ?", ofRDOPassthru);
  const auto values = Members({Field("name", "first", dtString), Field("id", 1, dtLongInteger)});
  EXPECT_EQ(Rows(source->SQLExecute(values)).Rows(), 1U);
  values->Item("name")->SetValue("fir?t");
  EXPECT_EQ(source->SQLExecute(values), "SELECT name FROM " + table_ + " WHERE name = 'fir1t' AND id = ?");
}

INSTANTIATE_TEST_SUITE_P(, StatementsOverDatabases, testing::ValuesIn(Places()),
                         [](const auto& test) { return test.param.Name; });

}  // namespace

}  // namespace velmoria::test
