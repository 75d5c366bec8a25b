#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

class SqlPropertyTest : public testing::Test {
 protected:
  PropertyPtr Made(const PropertyFields& fields) { return Make<Properties>()->SetupItem(fields); }

  ScopedApartment scope_;
};

TEST_F(SqlPropertyTest, ATableOrViewNamesTheColumnAlone) {
  const auto property = Made({.Name = "N", .SourceName = "S", .SourceColumn = "c", .SourceTable = "t"});
  for (const auto type : {stTable, stView}) EXPECT_EQ(property->NameClause(type), "c");
}

TEST_F(SqlPropertyTest, OtherSourcesNameTableAndColumn) {
  const auto property = Made({.Name = "N", .SourceName = "S", .SourceColumn = "c", .SourceTable = "t"});
  for (const auto type : {stQueryDef, stSQL, stStoredProcedure, stNone}) EXPECT_EQ(property->NameClause(type), "t.c");
}

TEST_F(SqlPropertyTest, TheSourceNameComesSecondAndTheNameLast) {
  const auto second = Made({.Name = "N", .SourceName = "S", .SourceTable = "t"});
  const auto last = Made({.Name = "N"});
  for (const auto type : {stTable, stSQL}) {
    EXPECT_EQ(second->NameClause(type), "S");
    EXPECT_EQ(last->NameClause(type), "N");
  }
}

TEST_F(SqlPropertyTest, NamesAreNotDelimited) {
  EXPECT_EQ(Made({.Name = "N", .SourceColumn = "order date"})->NameClause(stTable), "order date");
}

TEST_F(SqlPropertyTest, AnUnsetTypedValueIsWrittenAsTheZeroOfItsType) {
  EXPECT_EQ(Made({.Name = "N", .DataType = dtLongInteger})->ValueClause(engODBC), "0");
  EXPECT_EQ(Made({.Name = "N", .DataType = dtString})->ValueClause(engODBC), "''");
}

TEST_F(SqlPropertyTest, AnUnsetValueWithADefaultIsWrittenAsTheDefault) {
  EXPECT_EQ(Made({.Name = "N", .DataType = dtLongInteger, .DefaultValue = 5})->ValueClause(engODBC), "5");
}

TEST_F(SqlPropertyTest, EngineZeroIsTheOneOfTheProperty) {
  const auto property = Made({.Name = "N", .Value = true, .DataType = dtBoolean, .Engine = engAccess});
  EXPECT_EQ(property->ValueClause(engUnknown), "True");
  EXPECT_EQ(property->ValueClause(engODBC), "1");
}

TEST_F(SqlPropertyTest, SetAndWhereJoinNameAndValue) {
  const auto property = Made({.Name = "N", .Value = 3, .DataType = dtLongInteger, .Operator = ">="});
  EXPECT_EQ(property->SetClause(stTable, engODBC), "N = 3");
  EXPECT_EQ(property->WhereClause(stTable, engODBC), "N >= 3");
}

TEST_F(SqlPropertyTest, EveryOperatorIsWrittenAsItStands) {
  for (const auto* given : {"=", ">", "<>", "=>", "=<", "<", "<=", ">="})
    EXPECT_EQ(Made({.Name = "N", .Value = 1, .DataType = dtLongInteger, .Operator = given})->OperatorValue(engODBC),
              std::string(given) + " 1");
}

TEST_F(SqlPropertyTest, NullIsTestedByWords) {
  const auto same = Made({.Name = "N", .Value = Variant::Null(), .Operator = "="});
  const auto other = Made({.Name = "N", .Value = Variant::Null(), .Operator = "<>"});
  EXPECT_EQ(same->OperatorValue(engODBC), "is Null");
  EXPECT_EQ(other->OperatorValue(engOracle), "is not Null");
  EXPECT_EQ(same->OperatorValue(engAccess), "IsNull");
  EXPECT_EQ(other->OperatorValue(engAccess), "Not IsNull");
}

TEST_F(SqlPropertyTest, NullWithAnOrderingOperatorIsRefused) {
  const auto property = Made({.Name = "N", .Value = Variant::Null(), .DataType = dtLongInteger, .Operator = ">"});
  const auto error = Thrown([&] { property->WhereClause(stTable, engODBC); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15096);
  EXPECT_NE(error->Description().find("Operator: '>'  Property: 'N'"), std::string::npos);
}

TEST_F(SqlPropertyTest, TheRefusedOperatorIsRecordedAsInformation) {
  const auto property = Made({.Name = "N", .Value = Variant::Null(), .Operator = "<"});
  EXPECT_TRUE(Thrown([&] { property->OperatorValue(engODBC); }));
  const auto message = scope_.Messages().Item("15096");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->SeverityFlags(), svfInfo);
  EXPECT_EQ(message->TypeName(), "Property");
  EXPECT_EQ(message->RoutineName(), "OperatorValue (Get)");
  EXPECT_EQ(message->StateDetails(), "Name: 'N'");
}

TEST_F(SqlPropertyTest, TheRefusedOperatorIsRaisedAsItselfWhateverIsHeld) {
  const auto property = Made({.Name = "N", .Value = Variant::Null(), .Operator = "<"});
  scope_.Messages().SetupItem({.Number = zErrors{13}, .Description = "earlier", .SeverityFlags = svfError});
  const auto error = Thrown([&] { property->OperatorValue(engODBC); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15096);
}

TEST_F(SqlPropertyTest, TheRefusedOperatorIsRaisedWhereNothingCanBeRecorded) {
  const auto property = Made({.Name = "N", .Value = Variant::Null(), .Operator = "<"});
  const auto messages = std::exchange(scope_.State().Messages, nullptr);
  const auto error = Thrown([&] { property->OperatorValue(engODBC); });
  scope_.State().Messages = messages;
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15096);
}

}  // namespace

}  // namespace velmoria::test
