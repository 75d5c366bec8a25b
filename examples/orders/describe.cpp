#include "describe.h"

#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

/// An operation on a table.
void AddTableAction(const ClassPtr& described, const ActionFields& fields, const std::string& table) {
  const ActionPtr action = described->Actions()->SetupItem(fields);
  action->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = table});
}

/// pfInput alone says that the host gives the key: the database does not count it up.
void AddKey(const ClassPtr& described, const std::string& column) {
  described->Properties()->SetupItem(
      {.Name = column, .DataType = dtLongInteger, .SourceName = column, .SourceColumn = column, .Flags = pfInput});
}

ActionFields TableAction(const std::string& name) {
  return {.Name = name, .DatabaseName = "Shop", .UsageFlags = ufAll, .EditFlags = efAll, .ObjectType = otModel};
}

void DescribeDatabase(const std::string& file) {
  const DatabasePtr shop = Framework{}.Databases()->SetupItem({.Name = "Shop", .Engine = engODBC, .AutoConnect = true});
  shop->Connectors()->SetupItem({.Engine = engODBC,
                                 .ConnectionType = ctText,
                                 .ConnectionString = "Driver=SQLite3;Database=" + file + ";Timeout=2000"});
}

void DescribeCustomers(const ServerPtr& sales) {
  const ClassPtr customer =
      sales->Classes()->SetupItem({.Name = "Customer", .SingleActionName = "Get", .DefaultActionName = "Get"});
  AddKey(customer, "Id");
  AddTableAction(customer, TableAction("Get"), "customers");
}

void DescribeOrders(const ServerPtr& sales) {
  const ClassPtr order = sales->Classes()->SetupItem(
      {.Name = "Order", .SingleActionName = "Get", .NewActionName = "Get", .DefaultActionName = "All"});
  AddKey(order, "Id");
  AddTableAction(order, TableAction("Get"), "orders");

  ActionFields all = TableAction("All");
  all.ObjectBuffer = 500;  // rows in memory at a time
  AddTableAction(order, all, "orders");

  ActionFields check = TableAction("Check");
  check.ConnectionsName = "Check";  // a group of connections of its own
  AddTableAction(order, check, "orders");

  const ActionPtr ofCustomer = order->Actions()->SetupItem(TableAction("OfCustomer"));
  const SourcePtr source = ofCustomer->Sources()->SetupItem(
      {.Engine = engODBC, .SourceType = stSQL, .SourceText = "select * from orders where CustomerId = ? order by Id"});
  source->Parameters()->SetupItem({.Name = "CustomerId", .DataType = dtLongInteger});
}

void DescribeLines(const ServerPtr& sales) {
  const ClassPtr line =
      sales->Classes()->SetupItem({.Name = "OrderLine", .SingleActionName = "Get", .DefaultActionName = "Get"});
  AddKey(line, "OrderId");
  AddKey(line, "LineNo");
  const ActionPtr get = line->Actions()->SetupItem(TableAction("Get"));
  get->KeyFormat()->SetSeparator("-");
  get->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = "lines"});
}

}  // namespace

void DescribeBusiness(const std::string& databaseFile) {
  DescribeDatabase(databaseFile);
  const ServerPtr sales = Framework{}.Servers()->SetupItem({.Name = "Sales"});
  DescribeCustomers(sales);
  DescribeOrders(sales);
  DescribeLines(sales);
}
