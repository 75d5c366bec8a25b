#include <string>

#include "tests/scenario/orders_over_sqlite.h"
#include "tests/support/expect_raised.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/core/messages.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/database.h"
#include "velmoria/design/server.h"
#include "velmoria/design/source.h"
#include "velmoria/properties/attribute_data.h"
#include "velmoria/properties/attributes_data.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

using SqliteRead = OrdersOverSqlite;

TEST_F(SqliteRead, ReadsEverythingOfATable) {
  Design();
  const auto page = Read();
  EXPECT_EQ(page->Count(), 25);
  const auto row = page->GetPersistentProperties(2, "");
  EXPECT_EQ(row->Item("Id")->Value().AsLong(), 3);
  EXPECT_EQ(row->Item("Customer")->Value().AsText(), "O'Brien & Söhne");
  EXPECT_EQ(row->Item("Placed")->Value().AsDate(), Date::From(1998, 6, 1, 9, 14, 2));
  EXPECT_EQ(row->Item("Total")->Value().AsDouble(), 4.5);
  EXPECT_TRUE(page->GetPersistentProperties(0, "")->Item("Note")->Value().IsNull());
}

TEST_F(SqliteRead, ReadsOneRowByItsKey) {
  Design();
  const auto page = Read(design_->Key(7));
  ASSERT_EQ(page->Count(), 1);
  EXPECT_EQ(page->GetPersistentProperties(0, "")->Item("Customer")->Value().AsText(), "Customer 7");
}

TEST_F(SqliteRead, AKeyThatIsNotThereGivesNoRow) {
  Design();
  EXPECT_EQ(Read(design_->Key(99))->Count(), 0);
}

TEST_F(SqliteRead, ReadsAView) {
  Design({.SourceType = stView, .SourceText = "big_orders"});
  EXPECT_EQ(Read()->Count(), 5);
  EXPECT_EQ(Read(design_->Key(22))->Count(), 1);
}

TEST_F(SqliteRead, WalksPagesToTheEnd) {
  Design({.ObjectBuffer = 10});
  const auto agent = design_->Agent();
  std::string ids;
  for (auto page = agent->GetRecordset(0, nullptr, false);; page = agent->GetRecordset(0, page, false)) {
    for (std::int32_t row = 0; row < page->Count(); ++row)
      ids += page->Values(row, *page->Columns()->Item("Id")).AsText() + " ";
    if (page->NextBookmark().IsEmpty()) break;
  }
  EXPECT_EQ(ids, "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 ");
}

TEST_F(SqliteRead, AllCursorTypesThatScrollCanPage) {
  for (const auto type : {crtKeyset, crtDynamic, crtStatic}) {
    const ScopedApartment scope;
    const OneAction design({.ConnectString = file_.ConnectString(), .ObjectBuffer = 10, .CursorType = type});
    const auto agent = design.Agent();
    const auto first = agent->GetRecordset(0, nullptr, false);
    EXPECT_EQ(agent->GetRecordset(0, first, false)->Count(), 10);
  }
}

TEST_F(SqliteRead, AStatementTakesItsParametersByPosition) {
  Design({.SourceType = stSQL, .SourceText = "SELECT * FROM orders WHERE Total > ? AND Customer <> ?"});
  design_->Source->Parameters()->SetupItem({.Name = "Total", .DataType = dtDouble});
  design_->Source->Parameters()->SetupItem({.Name = "Customer", .DataType = dtString});
  const auto parameters = design_->Action->CreateParameters();
  parameters->Item("Total")->SetValue(34.0);
  parameters->Item("Customer")->SetValue("Customer 24");
  const auto page = Read(parameters);
  ASSERT_EQ(page->Count(), 2);
  EXPECT_EQ(page->GetPersistentProperties(0, "")->Item("Id")->Value().AsLong(), 23);
}

TEST_F(SqliteRead, APassedThroughStatementHoldsItsValues) {
  Design({.SourceType = stSQL, .SourceText = "SELECT * FROM orders WHERE Customer = ?", .OptionFlags = ofRDOPassthru});
  design_->Source->Parameters()->SetupItem({.Name = "Customer", .DataType = dtString});
  const auto parameters = design_->Action->CreateParameters();
  parameters->Item("Customer")->SetValue("O'Brien & Söhne");
  EXPECT_EQ(Read(parameters)->Count(), 1);
}

TEST_F(SqliteRead, TheColumnsAreDescribedByTheDatabase) {
  Design();
  const auto definitions = design_->Agent()->PropertiesData();
  const auto& customer = *definitions->Item("Customer");
  EXPECT_EQ(customer.DataType(), dtString);
  EXPECT_EQ(customer.Size(), 40);
  EXPECT_EQ(customer.SourceTable(), "orders");
  EXPECT_EQ(customer.SourceColumn(), "Customer");
  EXPECT_EQ(definitions->Item("Id")->DataType(), dtLongInteger);
  EXPECT_EQ(definitions->Item("Placed")->DataType(), dtDate);
  EXPECT_EQ(definitions->Item("Total")->DataType(), dtDouble);
}

TEST_F(SqliteRead, ACounterColumnIsFlaggedAndNotRequired) {
  file_.Run("CREATE TABLE counted (Id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, Name VARCHAR(10) NOT NULL)");
  Design({.SourceText = "counted"});
  const auto definitions = design_->Agent()->PropertiesData();
  EXPECT_TRUE(has(definitions->Item("Id")->Flags(), pfcounter));
  EXPECT_FALSE(has(definitions->Item("Id")->Flags(), pfRequired));
  EXPECT_TRUE(has(definitions->Item("Name")->Flags(), pfRequired));
}

TEST_F(SqliteRead, AnEmptyTableGivesNoRows) {
  file_.Run("DELETE FROM orders");
  Design();
  const auto page = Read();
  EXPECT_EQ(page->Count(), 0);
  EXPECT_TRUE(page->NextBookmark().IsEmpty());
  EXPECT_EQ(page->Columns()->Count(), 5);
}

}  // namespace

}  // namespace velmoria::test
