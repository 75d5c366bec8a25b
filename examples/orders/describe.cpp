#include "describe.h"

#include "order.h"
#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

/// An operation; what it finds comes as Models, or as the shop's own classes where these are asked for.
ActionFields Operation(const std::string& name, zObjectTypes objectType = otModel) {
  return {.Name = name, .DatabaseName = "Shop", .UsageFlags = ufAll, .EditFlags = efAll, .ObjectType = objectType};
}

SourcePtr AddOn(const ClassPtr& described, const ActionFields& operation, zSourceTypes type, const std::string& text) {
  const ActionPtr action = described->Actions()->SetupItem(operation);
  return action->Sources()->SetupItem({.Engine = engODBC, .SourceType = type, .SourceText = text});
}

SourcePtr AddOnTable(const ClassPtr& described, const ActionFields& operation, const std::string& table) {
  return AddOn(described, operation, stTable, table);
}

SourcePtr AddOnStatement(const ClassPtr& described, const ActionFields& operation, const std::string& statement) {
  return AddOn(described, operation, stSQL, statement);
}

/// What an operation asks for. On a table, a parameter that is one of its columns becomes a criterion.
void AddParameter(const SourcePtr& source, const std::string& column) {
  source->Parameters()->SetupItem(
      {.Name = column, .DataType = dtLongInteger, .SourceColumn = column, .Flags = pfInput});
}

/// pfInput alone says that the host gives the key: the database does not count it up.
void AddKey(const ClassPtr& described, const std::string& column) {
  described->Properties()->SetupItem(
      {.Name = column, .DataType = dtLongInteger, .SourceName = column, .SourceColumn = column, .Flags = pfInput});
}

/// A way from one class to another: the value of the property goes into the parameter of the related Action.
void Relate(const ClassPtr& described, const RelationshipFields& fields, const std::string& property,
            const std::string& parameter) {
  const LinkPtr link = described->Relationships()->SetupItem(fields)->Links()->SetupItem({.Name = parameter});
  link->Property()->SetName(property);
  link->Parameter()->SetName(parameter);
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
  AddParameter(AddOnTable(customer, Operation("Get"), "customers"), "Id");
  Relate(customer, {.Name = "Orders", .RelatedClassName = "Order", .RelatedActionName = "OfCustomer"}, "Id",
         "CustomerId");
}

void DescribeOrders(const ServerPtr& sales) {
  const ClassPtr order = sales->Classes()->SetupItem({.Name = "Order",
                                                      .ActiveXClass = "Order",
                                                      .ActiveXCollection = "Orders",
                                                      .SingleActionName = "Get",
                                                      .NewActionName = "Get",
                                                      .DefaultActionName = "All"});
  AddKey(order, "Id");
  AddOnTable(order, Operation("Get", otBusiness), "orders");

  ActionFields all = Operation("All", otBusiness);
  all.ObjectBuffer = 500;  // rows in memory at a time
  AddOnTable(order, all, "orders");

  ActionFields check = Operation("Check", otBusiness);
  check.ConnectionsName = "Check";  // a group of connections of its own
  AddOnTable(order, check, "orders");

  AddParameter(AddOnStatement(order, Operation("OfCustomer", otBusiness),
                              "select * from orders where CustomerId = ? order by Id"),
               "CustomerId");

  Relate(order, {.Name = "Lines", .RelatedClassName = "OrderLine", .RelatedActionName = "OfOrder"}, "Id", "OrderId");
  Relate(order,
         {.Name = "Customer", .Association = raManyToOne, .RelatedClassName = "Customer", .RelatedActionName = "Get"},
         "CustomerId", "Id");
}

void DescribeLines(const ServerPtr& sales) {
  const ClassPtr line =
      sales->Classes()->SetupItem({.Name = "OrderLine", .SingleActionName = "Get", .DefaultActionName = "Get"});
  AddKey(line, "OrderId");
  AddKey(line, "LineNo");
  AddOnTable(line, Operation("Get"), "lines");
  AddParameter(AddOnTable(line, Operation("OfOrder"), "lines"), "OrderId");
  for (const auto& action : line->Actions()) action->KeyFormat()->SetSeparator("-");
}

}  // namespace

void DescribeBusiness(const std::string& databaseFile) {
  Components::Register<Order>("Sales.Order");
  Components::Register<Orders>("Sales.Orders");
  DescribeDatabase(databaseFile);
  const ServerPtr sales = Framework{}.Servers()->SetupItem({.Name = "Sales", .ActiveXComponent = "Sales"});
  DescribeCustomers(sales);
  DescribeOrders(sales);
  DescribeLines(sales);
}
