#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/scoped_apartment.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/core/display.h"
#include "velmoria/design/source.h"
#include "velmoria/design/sources.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

// The statements of every engine, kept in one file a kind under tests/golden/sql. A block of such a file is a headline
// "-- engine, source, case", the text between bars, which show its blanks, and an empty line.

PropertiesPtr Collection(const std::vector<PropertyFields>& members) {
  auto properties = Make<Properties>();
  for (const auto& member : members) properties->SetupItem(member);
  return properties;
}

PropertyFields Text(const char* name, const Variant& value) {
  return {.Name = name, .Value = value, .DataType = dtString, .SourceColumn = name, .SourceTable = "customers"};
}

PropertyFields Number(const char* name, const Variant& value, zPropertyFlags flags = pfInput) {
  return {.Name = name, .Value = value, .DataType = dtLongInteger, .SourceColumn = name, .Flags = flags};
}

/// One value of every type.
std::vector<PropertyFields> EveryType() {
  return {Number("Id", std::int32_t{42}),
          {.Name = "Small", .Value = std::int16_t{-7}, .DataType = dtInteger},
          {.Name = "Name", .Value = "O'Brien & Söhne", .DataType = dtString},
          {.Name = "Since", .Value = Date::From(1998, 6, 1, 9, 14, 2), .DataType = dtDate},
          {.Name = "Day", .Value = Date::From(1998, 6, 1), .DataType = dtDate},
          {.Name = "Active", .Value = true, .DataType = dtBoolean},
          {.Name = "Total", .Value = Currency{12345000}, .DataType = dtCurrency},
          {.Name = "Rate", .Value = 0.1F, .DataType = dtSingle},
          {.Name = "Weight", .Value = 1e-7, .DataType = dtDouble},
          {.Name = "Exact", .Value = Decimal::Parse("12.50"), .DataType = dtDecimal},
          {.Name = "Kind", .Value = Byte{7}, .DataType = dtByte},
          {.Name = "Picture", .Value = std::vector<Byte>{'a', 0xE9}, .DataType = dtByteArray},
          {.Name = "Free", .Value = "any 'text'"},
          {.Name = "Nothing", .Value = Variant::Null(), .DataType = dtString}};
}

std::vector<PropertyFields> Criteria() {
  return {
      {.Name = "Name", .Value = "O'Brien", .DataType = dtString, .SourceColumn = "Name", .SourceTable = "customers"},
      {.Name = "Since", .Value = Date::From(1998, 6, 1), .DataType = dtDate, .Operator = ">="},
      {.Name = "Active", .Value = false, .DataType = dtBoolean, .Operator = "<>", .OrFlag = true},
      {.Name = "Ended", .Value = Variant::Null(), .DataType = dtDate},
      {.Name = "Paid", .Value = Variant::Null(), .DataType = dtDate, .Operator = "<>"}};
}

struct Case {
  const char* What;
  zSourceTypes Type;
  const char* SourceText;
  std::function<std::string(Source&)> Compose;
  zOptionFlags Options = ofNone;
};

constexpr zEngines kEngines[] = {engAccess, engODBC, engSQLServer, engSybase, engOracle};

std::string Render(const std::vector<Case>& cases) {
  std::string text;
  for (const auto& row : cases) {
    for (const auto engine : kEngines) {
      const auto source = Make<Sources>()->SetupItem(
          {.Engine = engine, .SourceType = stTable, .SourceText = row.SourceText, .OptionFlags = row.Options});
      source->SetSourceType(row.Type);
      text += "-- " + EngineName(engine) + ", " + SourceTypeName(row.Type) + ", " + row.What + "\n|" +
              row.Compose(*source) + "|\n\n";
    }
  }
  return text;
}

class SqlStatementsTest : public testing::Test {
 protected:
  void ExpectFile(const std::string& name, const std::vector<Case>& cases) {
    EXPECT_EQ(Render(cases), ReadText(VELMORIA_TESTS_DIR "/golden/sql/" + name));
  }

  ScopedApartment scope_;
};

TEST_F(SqlStatementsTest, Select) {
  const auto all = [](Source& source) { return source.SQLSelect(); };
  ExpectFile(
      "select.txt",
      {{"everything", stTable, "customers", all},
       {"everything", stView, "good_customers", all},
       {"a key", stTable, "customers", [](Source& source) { return source.SQLSelect(Collection({Number("Id", 42)})); }},
       {"criteria", stTable, "customers", [](Source& source) { return source.SQLSelect(Collection(Criteria())); }},
       {"criteria", stView, "good_customers", [](Source& source) { return source.SQLSelect(Collection(Criteria())); }},
       {"every type", stTable, "customers", [](Source& source) { return source.SQLSelect(Collection(EveryType())); }},
       {"the text as it is", stSQL, "SELECT * FROM customers WHERE Id = ?",
        [](Source& source) { return source.SQLSelect(Collection({Number("Id", 42)})); }}});
}

TEST_F(SqlStatementsTest, Insert) {
  const auto insert = [](const std::vector<PropertyFields>& row) {
    return [row](Source& source) {
      bool returnsIdentity = false;
      return source.SQLInsert(Collection(row), returnsIdentity, Collection({Number("Id", {}, pfNone)}));
    };
  };
  ExpectFile("insert.txt",
             {{"every type", stTable, "customers", insert(EveryType())},
              {"nothing dirty", stTable, "customers", insert({Number("Id", {})})},
              {"a counter", stTable, "customers", insert({Number("Id", {}, pfcounter), Text("Name", "O'Brien")})},
              {"a row", stView, "good_customers", insert({Number("Id", 42), Text("Name", "Tea")})},
              {"a counter", stView, "good_customers", insert({Number("Id", {}, pfcounter), Text("Name", "Tea")})}});
}

TEST_F(SqlStatementsTest, Update) {
  const auto update = [](const std::vector<PropertyFields>& row) {
    return [row](Source& source) { return source.SQLUpdate(Collection(row), Collection({Number("Id", 42)})); };
  };
  ExpectFile("update.txt", {{"every type", stTable, "customers", update(EveryType())},
                            {"one column", stTable, "customers", update({Number("Id", {}), Text("Name", "O'Brien")})},
                            {"one column", stView, "good_customers", update({Text("Name", "Tea")})}});
}

TEST_F(SqlStatementsTest, Delete) {
  const auto remove = [](Source& source) {
    return source.SQLDelete(Collection({Number("Id", 43)}), Collection({Number("Id", 42), Text("Name", "Tea")}));
  };
  ExpectFile("delete.txt", {{"the key of the row", stTable, "customers", remove},
                            {"the key of the row", stView, "good_customers", remove}});
}

TEST_F(SqlStatementsTest, Execute) {
  const auto execute = [](const std::vector<PropertyFields>& parameters) {
    return [parameters](Source& source) { return source.SQLExecute(Collection(parameters)); };
  };
  const std::vector<PropertyFields> values = {Number("Id", 42), Text("Name", "O'Brien")};
  auto withReturn = values;
  withReturn.insert(withReturn.begin(), Number("Result", {}, pfReturnValue));
  const auto* text = "UPDATE customers SET Id = ? WHERE Name = ?";
  ExpectFile("execute.txt", {{"markers stay", stSQL, text, execute(values)},
                             {"values passed through", stSQL, text, execute(values), ofRDOPassthru},
                             {"no parameters", stStoredProcedure, "rebuild", execute({})},
                             {"two parameters", stStoredProcedure, "rebuild", execute(values)},
                             {"a return value", stStoredProcedure, "rebuild", execute(withReturn)},
                             {"values passed through", stStoredProcedure, "rebuild", execute(values), ofRDOPassthru}});
}

}  // namespace

}  // namespace velmoria::test
