#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/design/source.h"
#include "velmoria/design/sources.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

class SqlSourceTest : public testing::Test {
 protected:
  static SourcePtr Setup(zSourceTypes type, const std::string& text, zOptionFlags options = ofNone) {
    const auto source = Make<Sources>()->SetupItem(
        {.Engine = engODBC, .SourceType = stTable, .SourceText = text, .OptionFlags = options});
    source->SetSourceType(type);
    return source;
  }
  static PropertiesPtr One(const std::string& name, const Variant& value, zPropertyFlags flags = pfInput) {
    auto properties = Make<Properties>();
    properties->SetupItem({.Name = name, .Value = value, .DataType = dtLongInteger, .Flags = flags});
    return properties;
  }
  static std::string Insert(const SourcePtr& source, const PropertiesPtr& properties, const PropertiesPtr& keys = {}) {
    bool returnsIdentity = true;
    const auto text = source->SQLInsert(properties, returnsIdentity, keys);
    return returnsIdentity ? text + " [identity]" : text;
  }

  ScopedApartment scope_;
};

TEST_F(SqlSourceTest, SelectOfATableWithoutParametersHasNoWhere) {
  EXPECT_EQ(Setup(stTable, "orders")->SQLSelect(), "SELECT * FROM orders");
  EXPECT_EQ(Setup(stView, "v")->SQLSelect(Make<Properties>()), "SELECT * FROM v");
}

TEST_F(SqlSourceTest, SelectOfATableSeeksByItsParameters) {
  EXPECT_EQ(Setup(stTable, "orders")->SQLSelect(One("Id", 7)), "SELECT * FROM orders WHERE Id = 7");
}

TEST_F(SqlSourceTest, SelectOfAStatementIsTheStatement) {
  EXPECT_EQ(Setup(stSQL, "SELECT 1")->SQLSelect(One("Id", 7)), "SELECT 1");
}

TEST_F(SqlSourceTest, SelectOfOtherTypesIsEmpty) { EXPECT_EQ(Setup(stNone, "x")->SQLSelect(), ""); }

TEST_F(SqlSourceTest, SelectOfAQueryDefReportsItselfAsSqlUpdate) {
  ExpectRaised(errQueryDef, [] { Setup(stQueryDef, "q")->SQLSelect(); }, {.Text = "generate the 'Select' statement"});
  EXPECT_TRUE(Thrown([] { Setup(stQueryDef, "q")->SQLSelect(); }));
  EXPECT_EQ(scope_.Messages().Item("15172")->RoutineName(), "SQLUpdate");
}

TEST_F(SqlSourceTest, InsertWithoutACounterHasItsOwnBlanks) {
  EXPECT_EQ(Insert(Setup(stTable, "t"), One("a", 1)), "INSERT INTO t ( a ) VALUES (1 )");
}

TEST_F(SqlSourceTest, InsertWithACounterIsTwoStatementsInOneText) {
  const auto properties = One("a", 1);
  properties->SetupItem({.Name = "Id", .DataType = dtLongInteger, .Flags = pfcounter});
  EXPECT_EQ(Insert(Setup(stTable, "t"), properties),
            "INSERT INTO t ( a ) VALUES ( 1 ) SELECT 'Id' = @@IDENTITY [identity]");
}

TEST_F(SqlSourceTest, KeysWithFlagsDecideAloneWhetherThereIsACounter) {
  const auto properties = One("Id", 1, pfcounter);
  EXPECT_EQ(Insert(Setup(stTable, "t"), properties, One("Id", 1, pfInput)), "INSERT INTO t ( Id ) VALUES (1 )");
  EXPECT_NE(Insert(Setup(stTable, "t"), properties, One("Id", 1, pfNone)).find("@@IDENTITY"), std::string::npos);
  EXPECT_NE(Insert(Setup(stTable, "t"), properties, Make<Properties>()).find("@@IDENTITY"), std::string::npos);
}

TEST_F(SqlSourceTest, InsertWithNothingDirtyHasEmptyLists) {
  EXPECT_EQ(Insert(Setup(stTable, "t"), One("a", {})), "INSERT INTO t (  ) VALUES ( )");
}

TEST_F(SqlSourceTest, InsertIntoAViewStartsWithABlankAndAddressesTheView) {
  const auto properties = One("a", 1);
  properties->SetupItem({.Name = "b", .Value = 2, .DataType = dtLongInteger, .SourceTable = "other"});
  EXPECT_EQ(Insert(Setup(stView, "v"), properties), " INSERT INTO v ( a, b ) VALUES ( 1, 2 )");
  properties->Item("a")->SetFlags(pfcounter);
  EXPECT_EQ(Insert(Setup(stView, "v"), properties),
            " INSERT INTO v ( a, b ) VALUES ( 1, 2 ) SELECT 'a' = @@IDENTITY [identity]");
}

TEST_F(SqlSourceTest, UpdateSetsWhatChangedWhereTheKeyIs) {
  EXPECT_EQ(Setup(stTable, "t")->SQLUpdate(One("a", 1), One("Id", 7)), "UPDATE t SET a = 1 WHERE Id = 7");
  EXPECT_EQ(Setup(stView, "v")->SQLUpdate(One("a", 1), One("Id", 7)), " UPDATE v SET a = 1 WHERE Id = 7");
}

TEST_F(SqlSourceTest, UpdateAndDeleteDoNotGuardAgainstEmptyClauses) {
  const auto none = Make<Properties>();
  EXPECT_EQ(Setup(stTable, "t")->SQLUpdate(One("a", {}), none), "UPDATE t SET  WHERE ");
  EXPECT_EQ(Setup(stTable, "t")->SQLDelete(One("a", 1), none), "DELETE FROM t WHERE ");
}

TEST_F(SqlSourceTest, DeleteTakesTheValuesOfTheRow) {
  EXPECT_EQ(Setup(stTable, "t")->SQLDelete(One("Id", 42), One("Id", 7)), "DELETE FROM t WHERE Id = 42");
  EXPECT_EQ(Setup(stView, "v")->SQLDelete(One("x", 42), One("Id", 7)), "DELETE FROM v WHERE Id = 7");
}

struct RefusalCase {
  zSourceTypes Type;
  const char* Text;
  zErrors Number;
  const char* Told;
};

TEST_F(SqlSourceTest, WhatIsNoTableRefusesToBeWritten) {
  const RefusalCase rows[] = {
      {stQueryDef, "q", errQueryDef, "statement with this QueryDef source"},
      {stStoredProcedure, "p", errStoredProcedure, "This Stored Procedure Source can only support"},
      {stSQL, "  select 1", errSQL, "only supports a 'Get/Create BusinessObjects or Properties' operation"},
      {stSQL, "DELETE FROM t", errSQL, "only supports a 'Execute' operation"},
      {stSQL, "SEL", errSQL, "only supports a 'Execute' operation"},
  };
  const auto properties = One("a", 1);
  for (const auto& row : rows) {
    const auto source = Setup(row.Type, row.Text);
    ExpectRaised(row.Number, [&] { Insert(source, properties); }, {.Text = row.Told});
    ExpectRaised(row.Number, [&] { Insert(source, properties); }, {.Text = "generate the 'Insert' statement"});
    ExpectRaised(row.Number, [&] { source->SQLUpdate(properties, properties); }, {.Text = "the 'Update' statement"});
    ExpectRaised(row.Number, [&] { source->SQLDelete(properties, properties); }, {.Text = "the 'Delete' statement"});
  }
}

TEST_F(SqlSourceTest, RefusalCarriesTheStateOfTheSource) {
  const auto source = Setup(stQueryDef, "q");
  EXPECT_TRUE(Thrown([&] { source->SQLDelete({}, {}); }));
  const auto message = scope_.Messages().Item("15172");
  EXPECT_EQ(message->TypeName() + "." + message->RoutineName(), "Source.SQLDelete");
  EXPECT_EQ(message->StateDetails(), source->Details());
}

TEST_F(SqlSourceTest, ExecuteIsRefusedByTablesViewsAndQueryDefs) {
  ExpectRaised(errTableView, [] { Setup(stTable, "t")->SQLExecute(); }, {.Text = "SourceType: 'Table'."});
  ExpectRaised(errTableView, [] { Setup(stView, "v")->SQLExecute(); }, {.Text = "SourceType: 'View'."});
  ExpectRaised(errQueryDef, [] { Setup(stQueryDef, "q")->SQLExecute(); }, {.Text = "the 'Execute' statement"});
}

TEST_F(SqlSourceTest, WithoutPassThroughMarkersStay) {
  EXPECT_EQ(Setup(stSQL, "a = ? And b = ?")->SQLExecute(One("a", 1)), "a = ? And b = ?");
}

TEST_F(SqlSourceTest, WithPassThroughValuesTakeThePlaceOfMarkers) {
  const auto parameters = One("a", 1);
  parameters->SetupItem({.Name = "b", .Value = "x", .DataType = dtString});
  const auto text = "a = ? And b = ? And c = ?";
  EXPECT_EQ(Setup(stSQL, text, ofRDOPassthru)->SQLExecute(parameters), "a = 1 And b = 'x' And c = ?");
  EXPECT_EQ(Setup(stSQL, "a = ?", ofRDOPassthru)->SQLExecute(parameters), "a = 1");
}

TEST_F(SqlSourceTest, AMarkerInsideAnInsertedValueIsTheNextOne) {
  const auto parameters = Make<Properties>();
  parameters->SetupItem({.Name = "a", .Value = "What?", .DataType = dtString});
  parameters->SetupItem({.Name = "b", .Value = 2, .DataType = dtLongInteger});
  EXPECT_EQ(Setup(stSQL, "a = ? And b = ?", ofRDOPassthru)->SQLExecute(parameters), "a = 'What2' And b = ?");
}

PropertiesPtr ProcedureParameters(bool withReturn) {
  auto parameters = Make<Properties>();
  if (withReturn) parameters->SetupItem({.Name = "r", .DataType = dtLongInteger, .Flags = pfReturnValue});
  parameters->SetupItem({.Name = "a", .Value = 1, .DataType = dtLongInteger, .Flags = pfInput});
  parameters->SetupItem({.Name = "b", .Value = "x", .DataType = dtString, .Flags = pfInput});
  return parameters;
}

TEST_F(SqlSourceTest, AProcedureIsCalledWithMarkers) {
  const auto source = Setup(stStoredProcedure, "name");
  EXPECT_EQ(source->SQLExecute(ProcedureParameters(true)), "{? = Call name (?, ?) }");
  EXPECT_EQ(source->SQLExecute(ProcedureParameters(false)), "{ Call name (?, ?) }");
  EXPECT_EQ(source->SQLExecute(Make<Properties>()), "{ Call name }");
  EXPECT_EQ(source->SQLSelect(ProcedureParameters(false)), "{ Call name (?, ?) }");
}

TEST_F(SqlSourceTest, APassThroughProcedureIsCalledWithValues) {
  const auto source = Setup(stStoredProcedure, "name", ofRDOPassthru);
  EXPECT_EQ(source->SQLExecute(ProcedureParameters(false)), "{ Call name (1, 'x') }");
}

TEST_F(SqlSourceTest, APassThroughProcedureIsGivenItsReturnValueToo) {
  const auto source = Setup(stStoredProcedure, "name", ofRDOPassthru);
  EXPECT_EQ(source->SQLExecute(ProcedureParameters(true)), "{ Call name (0, 1, 'x') }");
  EXPECT_EQ(source->SQLExecute(Make<Properties>()), "{ Call name }");
}

TEST_F(SqlSourceTest, AProcedureThatOnlyReturnsHasNoList) {
  const auto parameters = Make<Properties>();
  parameters->SetupItem({.Name = "r", .DataType = dtLongInteger, .Flags = pfReturnValue});
  EXPECT_EQ(Setup(stStoredProcedure, "name")->SQLExecute(parameters), "{? = Call name }");
}

TEST_F(SqlSourceTest, ExecuteWithoutParametersTakesThoseOfTheSource) {
  const auto source = Setup(stSQL, "a = ?", ofRDOPassthru);
  source->Parameters()->SetupItem({.Name = "a", .Value = 9, .DataType = dtLongInteger});
  EXPECT_EQ(source->SQLExecute(), "a = 9");
}

TEST_F(SqlSourceTest, ANullCriterionWithAnOrderingOperatorEndsTheStatement) {
  scope_.Messages().SetupItem({.Number = errRDO_Info, .SeverityFlags = svfInfo, .ExtraText = "SELECT 1"});
  const auto source = Setup(stTable, "t");
  const auto keys = Make<Properties>();
  keys->SetupItem({.Name = "a", .Value = Variant::Null(), .DataType = dtLongInteger, .Operator = ">"});
  for (const auto& error : {Thrown([&] { source->SQLSelect(keys); }), Thrown([&] { source->SQLUpdate(keys, keys); }),
                            Thrown([&] { source->SQLDelete(keys, keys); })}) {
    ASSERT_TRUE(error);
    EXPECT_EQ(error->CatalogueNumber(), 15096);
    EXPECT_NE(error->Description().find("Operator: '>'  Property: 'a'"), std::string::npos);
  }
}

}  // namespace

}  // namespace velmoria::test
