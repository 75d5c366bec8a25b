#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/fake_odbc.h"
#include "tests/support/one_action.h"
#include "tests/support/refusal.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

// Every number that the making of statements raises, to the last field, and what is written at the edges.
class SqlEdgesTest : public testing::Test {
 protected:
  static SourcePtr Made(zSourceTypes type, const std::string& text, zOptionFlags options = ofNone) {
    const auto source = Make<Sources>()->SetupItem(
        {.Engine = engODBC, .SourceType = stTable, .SourceText = text, .OptionFlags = options});
    source->SetSourceType(type);
    return source;
  }
  static PropertiesPtr One(const PropertyFields& fields) {
    auto properties = Make<Properties>();
    properties->SetupItem(fields);
    return properties;
  }
  static PropertyFields Above(const char* name, const Variant& value) {
    return {.Name = name, .Value = value, .DataType = dtLongInteger, .Operator = ">"};
  }
  static std::string Insert(const SourcePtr& source) {
    bool returnsIdentity = true;
    const auto text = source->SQLInsert(One(Above("a", 1)), returnsIdentity);
    EXPECT_FALSE(returnsIdentity);
    return text;
  }

  ScopedApartment scope_;
};

using Call = std::string (*)(const SourcePtr&);

struct StatementCase {
  const char* Statement;
  const char* Routine;
  Call Run;
};

const PropertiesPtr kNone;
bool ignoredIdentity = false;
const StatementCase kWriting[] = {
    {"Insert", "SQLInsert", [](const SourcePtr& source) { return source->SQLInsert(kNone, ignoredIdentity); }},
    {"Update", "SQLUpdate", [](const SourcePtr& source) { return source->SQLUpdate(kNone, kNone); }},
    {"Delete", "SQLDelete", [](const SourcePtr& source) { return source->SQLDelete(kNone, kNone); }},
};
const StatementCase kReading[] = {
    {"Select", "SQLUpdate", [](const SourcePtr& source) { return source->SQLSelect(); }},
    {"Execute", "SQLExecute", [](const SourcePtr& source) { return source->SQLExecute(); }},
};

std::string NotEnough(const char* statement) {
  return std::string("Not enough information to generate the '") + statement + "' statement";
}

TEST_F(SqlEdgesTest, AQueryDefGivesNoStatementAtAll) {
  const auto source = Made(stQueryDef, "q");
  std::vector<StatementCase> cases(std::begin(kWriting), std::end(kWriting));
  cases.insert(cases.end(), std::begin(kReading), std::end(kReading));
  for (const auto& [statement, routine, run] : cases) {
    ExpectRefusal({errQueryDef,
                   std::string("Source.") + routine,
                   NotEnough(statement) + " with this QueryDef source.",
                   {statement}},
                  [&, call = run] { call(source); });
  }
}

TEST_F(SqlEdgesTest, AProcedureIsOnlyExecuted) {
  const auto source = Made(stStoredProcedure, "p");
  for (const auto& [statement, routine, run] : kWriting) {
    ExpectRefusal(
        {errStoredProcedure,
         std::string("Source.") + routine,
         NotEnough(statement) + ".  This Stored Procedure Source can only support an Execute operation or Get/Create "
                                "BusinessObjects or Properties.",
         {statement}},
        [&, call = run] { call(source); });
  }
}

TEST_F(SqlEdgesTest, AnSqlTextIsReadOrExecutedByHowItBegins) {
  constexpr const char* kGets = "Get/Create BusinessObjects or Properties";
  constexpr std::pair<const char*, const char*> kTexts[] = {
      {"SELECT 1", kGets},   {"   sElEcTed", kGets},    {"", "Execute"},
      {"SELEC", "Execute"},  {"\tSELECT 1", "Execute"}, {"UPDATE t SET a = 'SELECT'", "Execute"},
      {"(SELECT", "Execute"}};
  for (const auto& [text, supported] : kTexts) {
    const auto source = Made(stSQL, text);
    for (const auto& [statement, routine, run] : kWriting) {
      ExpectRefusal({errSQL,
                     std::string("Source.") + routine,
                     NotEnough(statement) + ".  This SQL Source only supports a '" + supported + "' operation.",
                     {statement, supported}},
                    [&, call = run] { call(source); });
    }
  }
}

TEST_F(SqlEdgesTest, ATableIsNotExecuted) {
  const std::pair<zSourceTypes, std::string> cases[] = {
      {stTable, "Table"}, {stView, "View"}, {stNone, SourceTypeName(stNone)}};
  for (const auto& [type, shown] : cases) {
    ExpectRefusal({errTableView,
                   "Source.SQLExecute",
                   "An Execute operation is not supported with this Source type.  SourceType: '" + shown + "'.",
                   {shown}},
                  [source = Made(type, "t")] { source->SQLExecute(); });
  }
}

TEST_F(SqlEdgesTest, EachCarriesTheStateOfItsSource) {
  const std::pair<SourcePtr, const char*> cases[] = {
      {Made(stSQL, "SELECT 1"), "15170"}, {Made(stStoredProcedure, "p"), "15171"}, {Made(stQueryDef, "q"), "15172"}};
  for (const auto& [source, number] : cases) {
    EXPECT_TRUE(Thrown([&, from = source] { from->SQLDelete(kNone, kNone); }));
    ASSERT_TRUE(scope_.Messages().Item(number));
    EXPECT_EQ(scope_.Messages().Item(number)->StateDetails(), source->Details());
    scope_.Messages().Clear();
  }
  const auto table = Made(stTable, "t");
  EXPECT_TRUE(Thrown([&] { table->SQLExecute(); }));
  EXPECT_EQ(scope_.Messages().Item("15173")->StateDetails(), table->Details());
}

TEST_F(SqlEdgesTest, ANullDoesNotGoWithAnOrderingOperator) {
  const std::pair<const char*, const char*> cases[] = {{">", "a"}, {"=>", "b"}, {"=<", "c"},
                                                       {"<", "d"}, {"<=", "e"}, {">=", "f"}};
  for (const auto& [given, name] : cases) {
    const auto keys = One({.Name = name, .Value = Variant::Null(), .DataType = dtString, .Operator = given});
    const auto error = Thrown([&] { Made(stTable, "t")->SQLSelect(keys); });
    ASSERT_TRUE(error);
    const auto text = std::string("This Operator is not supported by this operation.  Operator: '") + given +
                      "'  Property: '" + name + "'";
    EXPECT_EQ(error->CatalogueNumber(), 15096);
    EXPECT_EQ(error->Description(), text);
    const auto held = scope_.Messages().Item("15096");
    ASSERT_TRUE(held);
    EXPECT_EQ(held->Description(), text);
    EXPECT_EQ(held->Replace1() + " " + held->Replace2(), std::string(given) + " " + name);
    EXPECT_EQ(held->ExtraText() + held->Replace3() + held->Replace4(), "");
    EXPECT_EQ(held->TypeFlags(), tfVelmoria);
    EXPECT_EQ(held->StateDetails(), std::string("Name: '") + name + "'");
  }
}

TEST_F(SqlEdgesTest, ARefusedOperatorIsHeldAsInformationAndAsAFailureOfTheStatement) {
  const auto source = Made(stTable, "t");
  const auto keys = One({.Name = "a", .Value = Variant::Null(), .DataType = dtString, .Operator = "<"});
  EXPECT_TRUE(Thrown([&] { source->SQLDelete({}, keys); }));
  ASSERT_EQ(scope_.Messages().Count(), 2);
  EXPECT_EQ(scope_.Messages().Item(1)->Number(), 15096);
  EXPECT_EQ(scope_.Messages().Item(1)->SeverityFlags(), svfInfo);
  const auto failure = scope_.Messages().Item(2);
  EXPECT_EQ(failure->Number(), 15000);
  EXPECT_EQ(failure->SeverityFlags(), svfError);
  EXPECT_EQ(failure->TypeName() + "." + failure->RoutineName(), "Source.SQLDelete");
  EXPECT_EQ(failure->Description(), scope_.Messages().Item(1)->Description());
  EXPECT_EQ(failure->StateDetails(), source->Details());
}

TEST_F(SqlEdgesTest, AHostThatReadsByARefusedOperatorIsToldSoWhateverWasSentBefore) {
  const auto driver = std::make_shared<FakeOdbc>();
  driver->Columns = {{"Id", 4}};
  scope_.State().Platform.Odbc = driver;
  const OneAction design;
  const auto keys = design.Key(1);
  design.Read(keys);
  const auto sent = driver->Texts;
  keys->Item("Id")->SetValue(Variant::Null());
  keys->Item("Id")->SetOperator(">");
  const auto error = Thrown([&] { design.Read(keys); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), static_cast<std::int32_t>(errVelmoria_Unknown));
  EXPECT_NE(error->Description().find("Operator: '>'  Property: 'Id'"), std::string::npos) << error->Description();
  EXPECT_EQ(driver->Texts, sent);
}

TEST_F(SqlEdgesTest, ARefusedOperatorIsNotLookedForInARowThatAnswersWithAnother) {
  const auto keys = One({.Name = "Id", .Value = Variant::Null(), .DataType = dtLongInteger, .Operator = ">"});
  const auto row = One({.Name = "Id", .Value = 7, .DataType = dtLongInteger});
  EXPECT_EQ(Made(stTable, "t")->SQLDelete(row, keys), "DELETE FROM t WHERE Id = 7");
  const auto error = Thrown([&] { Made(stTable, "t")->SQLDelete(keys, row); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15096);
}

TEST_F(SqlEdgesTest, AnOperatorOutsideTheListIsRefusedWhereItIsSet) {
  const auto property = One(Above("a", 1))->Item("a");
  for (const std::string wrong : {"", "==", "Like", " =", "= "}) {
    const auto error = Thrown([&] { property->SetOperator(wrong); });
    ASSERT_TRUE(error) << wrong;
    EXPECT_EQ(error->CatalogueNumber(), 15056);
    const auto held = scope_.Messages().Item("15056");
    ASSERT_TRUE(held);
    EXPECT_EQ(held->Description(), "Operator is invalid.  Operator: '" + wrong + "'");
    EXPECT_EQ(held->Replace1(), wrong);
    scope_.Messages().Clear();
  }
  EXPECT_EQ(property->Operator(), ">");
}

TEST_F(SqlEdgesTest, AValueThatNoTypeWritesEndsTheStatementByAPlainFailure) {
  const auto keys = One({.Name = "a", .Value = std::vector<Byte>{1, 2}});
  const auto source = Made(stTable, "t");
  ExpectReported(RuntimeFailure::TypeMismatch, [&] { source->SQLSelect(keys); });
  ExpectReported(RuntimeFailure::TypeMismatch, [&] { Made(stSQL, "a = ?", ofRDOPassthru)->SQLExecute(keys); });
  ExpectReported(RuntimeFailure::TypeMismatch, [&] { source->SQLUpdate(keys, One(Above("b", 1))); });
}

TEST_F(SqlEdgesTest, WritingNeedsARowAndAKey) {
  const auto row = One(Above("a", 1));
  for (const auto type : {stTable, stView}) {
    const auto source = Made(type, "t");
    ExpectReported(RuntimeFailure::ObjectNotSet, [&] { source->SQLInsert(kNone, ignoredIdentity); });
    ExpectReported(RuntimeFailure::ObjectNotSet, [&] { source->SQLUpdate(kNone, row); });
    ExpectReported(RuntimeFailure::ObjectNotSet, [&] { source->SQLUpdate(row, kNone); });
    ExpectReported(RuntimeFailure::ObjectNotSet, [&] { source->SQLDelete(row, kNone); });
    EXPECT_EQ(source->SQLDelete(kNone, row), "DELETE FROM t WHERE a > 1");
  }
}

TEST_F(SqlEdgesTest, AQuoteInAStringIsDoubled) {
  EXPECT_EQ(One({.Name = "a", .Value = "O'Brien", .DataType = dtString})->Item("a")->ValueClause(engODBC),
            "'O''Brien'");
}

TEST_F(SqlEdgesTest, TrueIsOneOnAServerAndAWordOnAccess) {
  const auto property = One({.Name = "a", .Value = true, .DataType = dtBoolean})->Item("a");
  for (const auto engine : {engODBC, engSQLServer, engSybase, engOracle}) EXPECT_EQ(property->ValueClause(engine), "1");
  EXPECT_EQ(property->ValueClause(engAccess), "True");
}

TEST_F(SqlEdgesTest, AViewWithoutColumnsGivesNoStatement) {
  const auto source = Made(stView, "v");
  EXPECT_EQ(source->SQLInsert(Make<Properties>(), ignoredIdentity), "");
  EXPECT_EQ(source->SQLUpdate(Make<Properties>(), One(Above("a", 1))), "");
}

TEST_F(SqlEdgesTest, ASourceWithoutATypeGivesNothingButARefusalToExecute) {
  const auto source = Made(stNone, "x");
  EXPECT_EQ(Insert(source) + source->SQLUpdate(kNone, kNone) + source->SQLDelete(kNone, kNone) + source->SQLSelect(),
            "");
  EXPECT_EQ(scope_.Messages().Count(), 0);
}

TEST_F(SqlEdgesTest, EachTableOfAViewGivesTheSameListOfChanges) {
  const auto row = One({.Name = "a", .Value = 1, .DataType = dtLongInteger, .SourceTable = "first"});
  row->SetupItem({.Name = "b", .Value = 2, .DataType = dtLongInteger, .SourceTable = "second"});
  for (const auto* table : {"first", "second", ""})
    EXPECT_EQ(row->SetClause(stView, engODBC, table, true), "a = 1, b = 2");
}

TEST_F(SqlEdgesTest, ACounterInAnyFlagsIsFoundAndTheFirstFlagOfTheKeysDecidesWhere) {
  const auto row = One({.Name = "Id", .DataType = dtLongInteger, .Flags = pfcounter | pfInput});
  row->SetupItem({.Name = "a", .Value = 1, .DataType = dtLongInteger});
  const auto keys = One({.Name = "Other", .DataType = dtLongInteger, .Flags = pfInput});
  keys->SetupItem({.Name = "Number", .DataType = dtLongInteger, .Flags = pfcounter});
  bool returnsIdentity = false;
  EXPECT_EQ(Made(stTable, "t")->SQLInsert(row, returnsIdentity, keys),
            "INSERT INTO t ( a ) VALUES ( 1 ) SELECT 'Number' = @@IDENTITY");
  EXPECT_TRUE(returnsIdentity);
  EXPECT_EQ(Made(stTable, "t")->SQLInsert(row, returnsIdentity),
            "INSERT INTO t ( a ) VALUES ( 1 ) SELECT 'Id' = @@IDENTITY");
}

}  // namespace

}  // namespace velmoria::test
