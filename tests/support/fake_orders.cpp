#include "tests/support/fake_orders.h"

#include <memory>
#include <utility>

#include "velmoria/data/database_agent_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

FakeOrders::FakeOrders() : Action(Design.Order->Actions()->Item("Get")) {}

void FakeOrders::Connect() {
  auto database = std::make_unique<FakeAgent>(Design.Order, Action);
  Database = database.get();
  Agent = Make<DatabaseAgent>();
  Agent->Initialize(Action, std::move(database));
}

PropertiesDataPtr OrderColumns(std::vector<PropertyFields> columns) {
  auto definitions = Make<PropertiesData>();
  for (auto& column : columns) {
    column.SourceName = column.Name;
    column.SourceColumn = column.Name;
    column.SourceTable = "orders";
    definitions->SetupItem(psPersistent, column, {}, true);
  }
  return definitions;
}

}  // namespace velmoria::test
