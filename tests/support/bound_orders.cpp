#include "tests/support/bound_orders.h"

#include <memory>
#include <utility>

#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

PropertiesDataPtr OrderColumns(bool withKeyColumn) {
  auto columns = Make<PropertiesData>();
  const auto add = [&](PropertyFields fields) {
    fields.SourceName = fields.Name;
    fields.SourceColumn = fields.Name;
    fields.SourceTable = "orders";
    columns->SetupItem(psPersistent, fields, {}, true);
  };
  if (withKeyColumn) add({.Name = "Id", .DataType = dtLongInteger});
  add({.Name = "Name", .DataType = dtString, .Size = 20});
  return columns;
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

BoundOrders::BoundOrders(const BoundOrdersFields& fields) : Action(Design.Order->Actions()->Item("Get")) {
  Fill(fields);
}

void BoundOrders::Fill(const BoundOrdersFields& fields) {
  auto database = std::make_unique<FakeAgent>(Design.Order, Action);
  Database = database.get();
  Database->Buffer = fields.Buffer;
  Database->Columns = OrderColumns(fields.WithKeyColumn);
  Database->Rows = OrderRows(fields);
  Database->TotalRows = static_cast<std::int32_t>(Database->Rows.Rows());
  Agent = Make<DatabaseAgent>();
  Agent->Initialize(Action, std::move(database));
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
