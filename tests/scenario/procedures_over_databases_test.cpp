// Stored procedures, filters, counters and long values over every server.

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/odbc_client.h"
#include "tests/support/one_action.h"
#include "tests/support/refusal.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/test_servers.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

/// How a server makes what the tests call. "{own}" is the test's own name.
struct Dialect {
  std::string Add;    // a in, b in and out, c out
  std::string All;    // rows id and name, 1 to 3
  std::string Upto;   // the rows up to a
  std::string Twice;  // returns twice its a; empty where none can
  std::string Drop;
  std::string Counter;  // the type of a column that counts by itself
  std::string LongText;
  std::string LongBytes;
  bool ReturnsIdentity = false;
};

struct NamedDialect {
  const char* Name;
  Dialect Words;
};

const std::vector<NamedDialect>& Dialects() {
  static const std::vector<NamedDialect> dialects = {
      {"PostgreSQL",
       {.Add = "CREATE FUNCTION {own}(a int, INOUT b int, OUT c varchar) AS 'SELECT a + b, ''sum '' || ( a + b )'"
               " LANGUAGE sql",
        .All = "CREATE FUNCTION {own}() RETURNS TABLE ( id int, name varchar ) AS 'SELECT 1, CAST(''n1'' AS varchar)"
               " UNION ALL SELECT 2, ''n2'' UNION ALL SELECT 3, ''n3''' LANGUAGE sql",
        .Upto = "CREATE FUNCTION {own}(a int) RETURNS TABLE ( id int, name varchar ) AS"
                " 'SELECT i, CAST(''n'' || i AS varchar) FROM generate_series(1, a) i' LANGUAGE sql",
        .Twice = "CREATE FUNCTION {own}(a int) RETURNS int AS 'SELECT 2 * a' LANGUAGE sql",
        .Drop = "DROP FUNCTION IF EXISTS {own}",
        .Counter = "serial",
        .LongText = "text",
        .LongBytes = "bytea"}},
      {"MariaDB",
       {.Add = "CREATE PROCEDURE {own}(IN a int, INOUT b int, OUT c varchar(40)) BEGIN SET b = a + b;"
               " SET c = CONCAT('sum ', b); END",
        .All = "CREATE PROCEDURE {own}() SELECT seq AS id, CONCAT('n', seq) AS name FROM seq_1_to_3",
        .Upto = "CREATE PROCEDURE {own}(IN a int) SELECT seq AS id, CONCAT('n', seq) AS name FROM seq_1_to_3"
                " WHERE seq <= a",
        .Twice = "",
        .Drop = "DROP PROCEDURE IF EXISTS {own}",
        .Counter = "int AUTO_INCREMENT",
        .LongText = "longtext",
        .LongBytes = "longblob"}},
      {"FreeTDS",
       {.Add = "CREATE PROCEDURE {own} @a int, @b int OUTPUT, @c varchar(40) OUTPUT AS SET @b = @a + @b"
               " SET @c = 'sum ' + CAST(@b AS varchar(20))",
        .All = "CREATE PROCEDURE {own} AS SELECT 1 AS id, 'n1' AS name UNION ALL SELECT 2, 'n2' UNION ALL"
               " SELECT 3, 'n3'",
        .Upto = "CREATE PROCEDURE {own} @a int AS SELECT id, name FROM ( SELECT 1 AS id, 'n1' AS name UNION ALL"
                " SELECT 2, 'n2' UNION ALL SELECT 3, 'n3' ) t WHERE id <= @a",
        .Twice = "CREATE PROCEDURE {own} @a int AS RETURN 2 * @a",
        .Drop = "IF OBJECT_ID('{own}') IS NOT NULL DROP PROCEDURE {own}",
        .Counter = "int IDENTITY",
        .LongText = "text",
        .LongBytes = "image",
        .ReturnsIdentity = true}},
  };
  return dialects;
}

class ProceduresOverDatabases : public testing::TestWithParam<TestServer> {
 public:
  ~ProceduresOverDatabases() override {
    design_.reset();
    Apartment().ConnectionContext->Item("")->Disconnect(engODBC);
    client_.RunAll({hasTable_ ? "DROP TABLE " + own_ : Filled(Words().Drop)});
  }

 protected:
  ProceduresOverDatabases() : client_(GetParam().ConnectString()) {}

  static const Dialect& Words() {
    for (const auto& dialect : Dialects())
      if (dialect.Name == GetParam().Name) return dialect.Words;
    return Dialects().front().Words;
  }
  std::string Filled(std::string text) const {
    for (auto at = text.find("{own}"); at != std::string::npos; at = text.find("{own}")) text.replace(at, 5, own_);
    return text;
  }
  void Design(zSourceTypes type) {
    design_ = std::make_unique<OneAction>(
        OneActionFields{.SourceType = type, .SourceText = own_, .ConnectString = GetParam().ConnectString()});
  }
  void DesignProcedure(const std::string& text) {
    if (!text.empty()) client_.RunAll({Filled(text)});
    Design(stStoredProcedure);
  }
  void Declare(const char* name, zDataTypes type, zPropertyFlags flags, const Variant& value = {}) {
    design_->Source->Parameters()->SetupItem({.Name = name, .Value = value, .DataType = type, .Flags = flags});
  }
  void DeclareAdd() {
    Declare("a", dtLongInteger, pfInput, 2);
    Declare("b", dtLongInteger, pfInput | pfOutput, 30);
    Declare("c", dtString, pfOutput);
  }
  PropertiesPtr Execute() {
    auto parameters = design_->Action->CreateParameters();
    design_->Agent(parameters)->Execute();
    return parameters;
  }
  void DesignTable(const std::string& columns) {
    client_.RunAll({"CREATE TABLE " + own_ + " ( " + columns + " )"});
    hasTable_ = true;
    Design(stTable);
  }
  PropertiesPtr NewRow(const char* name) {
    auto row = design_->Read()->CreatePersistentProperties("");
    row->Item("name")->SetValue(name);
    return row;
  }
  std::string Stored(const std::string& what) { return client_.Value("SELECT " + what + " FROM " + own_); }

  ScopedApartment scope_;
  OdbcClient client_;
  std::string own_ = OwnName("procedure");
  bool hasTable_ = false;
  std::unique_ptr<OneAction> design_;
};

// Procedures

TEST_P(ProceduresOverDatabases, AParameterUnknownToAProcedureFiltersItsRowsHereAndTheStatisticSaysSo) {
  DesignProcedure(Words().All);
  const auto filters = Make<Properties>();
  filters->SetupItem({.Name = "name", .Value = "n2", .DataType = dtString});
  const auto page = design_->Read(filters);
  ASSERT_EQ(page->Count(), 1);
  EXPECT_EQ(page->GetPersistentProperties(0, "")->Item("id")->Value().AsLong(), 2);
  EXPECT_EQ(page->Statistics()->Item("Read 'Shop' Rows with Filter")->SubjectCount(), 1);
  EXPECT_EQ(scope_.Messages().Item("15129")->ExtraText(), "{ Call " + own_ + " }");
}

TEST_P(ProceduresOverDatabases, AProcedureReadsItsRowsByItsParameterAndFiltersThemByOthers) {
  DesignProcedure(Words().Upto);
  Declare("a", dtLongInteger, pfInput, 2);
  const auto parameters = design_->Action->CreateParameters();
  EXPECT_EQ(design_->Read(parameters)->Count(), 2);
  parameters->SetupItem({.Name = "id", .Value = 2, .DataType = dtLongInteger, .Operator = "<"});
  EXPECT_EQ(design_->Read(parameters)->Count(), 1);
}

TEST_P(ProceduresOverDatabases, OutputsArriveInTheParametersThatWerePassed) {
  DesignProcedure(Words().Add);
  DeclareAdd();
  const auto parameters = Execute();
  EXPECT_EQ(parameters->Item("a")->Value(), Variant(2));
  EXPECT_EQ(parameters->Item("b")->Value(), Variant(32));
  EXPECT_EQ(parameters->Item("c")->Value(), Variant("sum 32"));
}

TEST_P(ProceduresOverDatabases, ParametersGoByTheirNamesWhateverTheirOrder) {
  DesignProcedure(Words().Add);
  Declare("C", dtString, pfOutput);
  Declare("B", dtLongInteger, pfInput | pfOutput, 30);
  Declare("A", dtLongInteger, pfInput, 2);
  const auto parameters = Execute();
  EXPECT_EQ(parameters->Item("B")->Value(), Variant(32));
  EXPECT_EQ(parameters->Item("C")->Value(), Variant("sum 32"));
}

TEST_P(ProceduresOverDatabases, AReturnValueArrivesUnderItsName) {
  if (Words().Twice.empty()) GTEST_SKIP() << "Does not apply: a procedure here returns no value";
  DesignProcedure(Words().Twice);
  Declare("RETURN_VALUE", dtLongInteger, pfReturnValue);
  Declare("a", dtLongInteger, pfInput, 21);
  EXPECT_EQ(Execute()->Item("RETURN_VALUE")->Value(), Variant(42));
}

TEST_P(ProceduresOverDatabases, AMissingProcedureIsReportedAndAnotherIsRead) {
  DesignProcedure("");
  ExpectRefusal({errRDO_StoredProcedure,
                 "SQLAgent.CreateResultset",
                 "Problem processing RDO Stored Procedure Query.  SQL/Name: " + own_,
                 {own_}},
                [&] { design_->Read(); });
  client_.RunAll({Filled(Words().All)});
  EXPECT_EQ(design_->Read()->Count(), 3);
}

TEST_P(ProceduresOverDatabases, AParameterOfAProcedureThatWasNotPassedIsNotFound) {
  DesignProcedure(Words().Add);
  Declare("a", dtLongInteger, pfInput, 2);
  Declare("b", dtLongInteger, pfInput | pfOutput, 30);
  Declare("d", dtString, pfOutput);
  ExpectRefusal({errItem_Property,
                 "Properties.Item",
                 "Problem finding Property.  Index: 'c'  SourceName: ''  SourceKey: ''  Parameter: (Nothing)",
                 {"'c'", "", "", "(Nothing)"}},
                [&] { Execute(); });
}

TEST_P(ProceduresOverDatabases, AnotherOrderThanTheActionsIsRefusedWhereTheMachineAsksForIt) {
  Apartment().Profile->SetupItem({.Name = "EnforceActionParameterOrder", .Value = true, .DataType = dtBoolean});
  DesignProcedure(Words().Add);
  DeclareAdd();
  EXPECT_EQ(Execute()->Item("b")->Value(), Variant(32));
  design_->Source->Parameters()->Remove("b");
  Declare("b", dtLongInteger, pfInput | pfOutput, 30);
  design_->Source->Parameters()->Item("c")->SetSourceName("sum");
  ExpectRefusal({errMismatch_Parameters,
                 "SQLAgent.CreatePreparedStatement",
                 "Parameter order mismatch.  Number: 2  ParameterName: 'c'  ParameterSourceName: 'sum'  RDOParameter: "
                 "'b'",
                 {"2", "c", "sum", "b"}},
                [&] { Execute(); });
}

// Statements

TEST_P(ProceduresOverDatabases, AFilterFindsItsColumnByTheTableAndColumnBehindIt) {
  DesignTable("id int NOT NULL PRIMARY KEY, total int");
  for (const char* row : {"( 1, 10 )", "( 2, 20 )", "( 3, 30 )"}) {
    client_.RunAll({"INSERT INTO " + own_ + " VALUES " + row});
  }
  design_->Source->SetSourceType(stSQL);
  design_->Source->SetSourceText("SELECT id, total AS amount FROM " + own_);
  const auto filters = Make<Properties>();
  filters->SetupItem({.Name = "sum",
                      .Value = 20,
                      .DataType = dtLongInteger,
                      .Operator = ">=",
                      .SourceColumn = "total",
                      .SourceTable = own_});
  EXPECT_EQ(design_->Read(filters)->Count(), 2);
}

TEST_P(ProceduresOverDatabases, ADateWithoutASourceTypeKeepsItsTimeOfDay) {
  DesignTable("id int NOT NULL PRIMARY KEY, placed " +
              std::string(GetParam().Name == "PostgreSQL" ? "timestamp" : "datetime"));
  client_.RunAll({"INSERT INTO " + own_ + " VALUES ( 1, '2026-11-20 14:03:05' )",
                  "INSERT INTO " + own_ + " VALUES ( 2, '2026-11-20 00:00:00' )"});
  design_->Source->SetSourceType(stSQL);
  design_->Source->SetSourceText("SELECT id FROM " + own_ + " WHERE placed = ?");
  Declare("placed", dtDate, pfInput);
  const auto parameters = design_->Action->CreateParameters();
  for (const auto& [id, when] :
       {std::pair{1, Date::From(2026, 11, 20, 14, 3, 5)}, std::pair{2, Date::From(2026, 11, 20)}}) {
    parameters->Item("placed")->SetValue(when);
    const auto page = design_->Read(parameters);
    ASSERT_EQ(page->Count(), 1) << id;
    EXPECT_EQ(page->GetPersistentProperties(0, "")->Item("id")->Value(), Variant(id));
  }
}

// Counters

TEST_P(ProceduresOverDatabases, ACounterComesBackInTheRoundTripOfItsInsert) {
  if (!Words().ReturnsIdentity) GTEST_SKIP() << "Does not apply: the server refuses the text for a counter";
  DesignTable("id " + Words().Counter + " NOT NULL PRIMARY KEY, name varchar(20)");
  design_->Class->Properties()->Item("Id")->SetFlags(pfcounter);
  for (const std::int32_t id : {1, 2}) {
    const auto row = NewRow("x");
    row->Update();
    EXPECT_EQ(row->Item("id")->Value(), Variant(id));
    EXPECT_EQ(row->StateFlags(), sfpersistent);
  }
  EXPECT_EQ(scope_.Messages().Item("15129")->ExtraText(),
            "INSERT INTO " + own_ + " ( name ) VALUES ( 'x' ) SELECT 'Id' = @@IDENTITY");
  EXPECT_EQ(Stored("count(*)"), "2");
}

TEST_P(ProceduresOverDatabases, ACounterThatNothingTellsApartIsRefusedByServersThatKnowNoIdentity) {
  if (Words().ReturnsIdentity) GTEST_SKIP() << "Does not apply: the server gives the counter back";
  DesignTable("id " + Words().Counter + " NOT NULL PRIMARY KEY, name varchar(20)");
  design_->Class->Properties()->Item("Id")->SetFlags(pfNone);
  const auto row = NewRow("x");
  ExpectRefusal(
      {errPersistence_Insert, "SQLAgent.InsertPersistentProperties", "Problem Inserting new persistent Properties."},
      [&] { row->Update(); });
  EXPECT_EQ(row->StateFlags(), sfNew | sfdirty);
  EXPECT_EQ(Stored("count(*)"), "0");
  design_->Class->Properties()->Item("Id")->SetFlags(pfInput);
  NewRow("y")->Update();
  EXPECT_EQ(Stored("name"), "y");
}

// Long values

TEST_P(ProceduresOverDatabases, LongValuesAreReadWhenAskedForAndWrittenAsLiterals) {
  DesignTable("id int NOT NULL PRIMARY KEY, name varchar(20), story " + Words().LongText + ", photo " +
              Words().LongBytes);
  client_.RunAll({"INSERT INTO " + own_ + " (id, name, story) VALUES ( 1, 'n1', 'one' )",
                  "INSERT INTO " + own_ + " (id, name, story) VALUES ( 2, 'n2', '" + std::string(70000, 'x') + "' )"});
  const auto page = design_->Read();
  const auto second = page->GetPersistentProperties(1, "");
  EXPECT_EQ(second->Item("story")->Value(), Variant(std::vector<Byte>(70000, Byte{'x'})));
  EXPECT_TRUE(second->Item("photo")->Value().IsEmpty());
  const auto first = page->GetPersistentProperties(0, "");
  first->Item("story")->SetValue(std::vector<Byte>{'n', 'e', 'w'});
  first->Update();
  EXPECT_EQ(client_.Value("SELECT story FROM " + own_ + " WHERE id = 1"), "new");
}

// Without a server there is nothing to look at.
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ProceduresOverDatabases);
INSTANTIATE_TEST_SUITE_P(, ProceduresOverDatabases, testing::ValuesIn(TestServers()),
                         [](const auto& test) { return test.param.Name; });

}  // namespace

}  // namespace velmoria::test
