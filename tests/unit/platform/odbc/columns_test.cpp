#include "velmoria/platform/odbc/columns.h"

#include <gtest/gtest.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

using odbc::DocumentedType;
using odbc::StorageOf;

TEST(OdbcTypesTest, DatesAndWideTextsHaveTheDocumentedCodes) {
  const std::vector<std::pair<int, int>> codes = {{91, 9}, {92, 10}, {93, 11}, {-8, 1},    {-9, 12}, {-10, -1},
                                                  {9, 9},  {4, 4},   {-4, -4}, {-11, -11}, {12, 12}};
  for (const auto& [driver, documented] : codes) EXPECT_EQ(DocumentedType(driver), documented) << driver;
}

TEST(OdbcTypesTest, EveryDocumentedCodeHasItsStorage) {
  using enum ColumnStorage;
  const std::vector<std::pair<int, ColumnStorage>> storages = {
      {1, Text},         {2, Decimal},     {3, Decimal},      {4, Long},         {5, Integer},
      {6, Double},       {7, Single},      {8, Double},       {9, Date},         {10, Date},
      {11, Date},        {12, Text},       {-1, Placeholder}, {-2, Placeholder}, {-3, Placeholder},
      {-4, Placeholder}, {-5, BigInteger}, {-6, Byte},        {-7, Boolean},     {-11, Text},
  };
  for (const auto& [type, storage] : storages) EXPECT_EQ(StorageOf(type), storage) << type;
}

using ColumnsTest = RdoTest;

TEST_F(ColumnsTest, NumberWithoutSignIsHeldWideEnough) {
  odbc->Columns = {{"a", 5, 5, true}, {"b", 4, 10, true}, {"c", -5, 20, true}};
  odbc->Rows = {{"65535", "4294967295", "18446744073709551615"}};
  const auto row = OpenRows()->GetRows(1);
  EXPECT_EQ(row.Value(0, 0), Variant(65535));
  EXPECT_EQ(row.Value(1, 0).AsText(), "4294967295");
  EXPECT_EQ(row.Value(2, 0).AsText(), "18446744073709551615");
}

TEST_F(ColumnsTest, AttributesThatTheDriverLacksAreEmpty) {
  odbc->Columns = {{"Name", 12}};
  odbc->FailName = "ColAttribute";
  const auto column = *OpenRows()->rdoColumns().FindKey("name");
  EXPECT_EQ(column->SourceTable(), "");
  EXPECT_EQ(column->SourceColumn(), "Name");
  EXPECT_FALSE(column->AutoIncrement());
}

}  // namespace
}  // namespace velmoria::test
