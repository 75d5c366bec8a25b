#include "tests/support/sample_rows.h"

#include "tests/support/row_chunk_builder.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

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
  Connect();
  Action->SetEditFlags(editFlags);
  Columns = OrderColumns({{.Name = "Id", .DataType = dtLongInteger},
                          {.Name = "Name", .DataType = dtString, .Size = 10},
                          {.Name = "Placed", .DataType = dtDate},
                          {.Name = "Amount", .DataType = dtDouble},
                          {.Name = "Open", .DataType = dtBoolean},
                          {.Name = "Note", .DataType = dtString},
                          {.Name = "Photo", .DataType = dtByteArray}});
  Rows = Make<Recordset>();
  Rows->Initialize(Agent, {.Columns = Columns, .NextBookmark = nextBookmark, .Rows = empty ? RowBlock() : OrderRows()});
}

PropertiesPtr SampleRows::Row(std::int32_t row) const { return Rows->GetPersistentProperties(row, ""); }

PropertiesPtr SampleRows::NewRow() const { return Rows->CreatePersistentProperties(""); }

const PropertyData& SampleRows::Column(const char* name) const { return *Columns->Item(name); }

}  // namespace velmoria::test
