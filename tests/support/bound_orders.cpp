#include "tests/support/bound_orders.h"

#include <utility>

#include "tests/support/row_chunk_builder.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

PropertiesDataPtr ColumnsOf(const BoundOrdersFields& fields) {
  std::vector<PropertyFields> columns{{.Name = "Name", .DataType = dtString, .Size = 20}};
  if (fields.WithKeyColumn) columns.insert(columns.begin(), {.Name = "Id", .DataType = dtLongInteger});
  return OrderColumns(std::move(columns));
}

RowBlock OrderRows(const BoundOrdersFields& fields) {
  std::vector<ColumnStorage> storages{ColumnStorage::Text};
  if (fields.WithKeyColumn) storages.insert(storages.begin(), ColumnStorage::Long);
  RowChunkBuilder builder(std::move(storages));
  const auto add = [&](std::int32_t id) {
    std::vector<Variant> values{"Order " + std::to_string(id)};
    if (fields.WithKeyColumn) values.insert(values.begin(), id);
    builder.AddRow(values);
  };
  for (const auto id : fields.Ids) add(id);
  for (std::int32_t id = 1; fields.Ids.empty() && id <= fields.Rows; ++id) add(id);
  RowBlock rows;
  rows.Append(builder.Build());
  return rows;
}

}  // namespace

BoundOrders::BoundOrders(const BoundOrdersFields& fields) { Fill(fields); }

void BoundOrders::Fill(const BoundOrdersFields& fields) {
  Connect();
  Database->Buffer = fields.Buffer;
  Database->Columns = ColumnsOf(fields);
  Database->Rows = OrderRows(fields);
  Database->TotalRows = static_cast<std::int32_t>(Database->Rows.Rows());
}

RecordsetPtr BoundOrders::Read() const { return Agent->GetRecordset(0, {}, false); }

BusinessObjectsPtr BoundOrders::Collection(BusinessObjectsBinding binding) const {
  if (!binding.Recordset) binding.Recordset = Read();
  auto collection = Make<BusinessObjects>();
  collection->SetupBound(std::move(binding));
  return collection;
}

std::int32_t IdOf(IBusinessObject& object) { return object.FindProperty("Id")->Value().AsLong(); }

std::string Ids(IBusinessObjects& collection) {
  std::string ids;
  for (const auto& member : collection) ids += (ids.empty() ? "" : ",") + std::to_string(IdOf(*member));
  return ids;
}

}  // namespace velmoria::test
