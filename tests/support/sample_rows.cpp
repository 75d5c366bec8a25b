#include "tests/support/sample_rows.h"

#include <memory>

#include "velmoria/data/database_agent_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/runtime/row_block.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

PropertiesDataPtr OrderColumns() {
  auto columns = Make<PropertiesData>();
  const auto add = [&](PropertyFields fields) {
    fields.SourceName = fields.Name;
    fields.SourceColumn = fields.Name;
    fields.SourceTable = "orders";
    columns->SetupItem(psPersistent, fields, {}, true);
  };
  add({.Name = "Id", .DataType = dtLongInteger});
  add({.Name = "Name", .DataType = dtString, .Size = 10});
  add({.Name = "Placed", .DataType = dtDate});
  add({.Name = "Amount", .DataType = dtDouble});
  add({.Name = "Open", .DataType = dtBoolean});
  add({.Name = "Note", .DataType = dtString});
  add({.Name = "Photo", .DataType = dtByteArray});
  return columns;
}

RowBlock OrderRows() {
  RowChunkBuilder builder({ColumnStorage::Long, ColumnStorage::Text, ColumnStorage::Date, ColumnStorage::Double,
                           ColumnStorage::Boolean, ColumnStorage::Text, ColumnStorage::Placeholder});
  builder.AddRow({1, "Ada", Date::From(1998, 6, 1, 9, 0, 0), 12.5, true, Variant::Null(), Variant()});
  builder.AddRow({2, "Ben", Date::From(1998, 6, 2, 10, 30, 0), 99.0, false, Variant::Null(), Variant()});
  builder.AddRow({3, "Cyd", Variant::Null(), 0.0, true, "call back", Variant()});
  RowBlock rows;
  rows.Append(builder.Build());
  return rows;
}

}  // namespace

SampleRows::SampleRows(zEditFlags editFlags, const Variant& nextBookmark, bool empty) {
  Action = Design.Order->Actions()->Item("Get");
  Action->SetEditFlags(editFlags);
  auto database = std::make_unique<FakeAgent>(Design.Order, Action);
  Database = database.get();
  Agent = Make<DatabaseAgent>();
  Agent->Initialize(Action, std::move(database));
  Columns = OrderColumns();
  Rows = Make<Recordset>();
  Rows->Initialize(Agent, {.Columns = Columns, .NextBookmark = nextBookmark, .Rows = empty ? RowBlock() : OrderRows()});
}

PropertiesPtr SampleRows::Row(std::int32_t row) const { return Rows->GetPersistentProperties(row, ""); }

PropertiesPtr SampleRows::NewRow() const { return Rows->CreatePersistentProperties(""); }

const PropertyData& SampleRows::Column(const char* name) const { return *Columns->Item(name); }

}  // namespace velmoria::test
