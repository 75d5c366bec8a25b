#include "tests/support/sample_design.h"

#include <initializer_list>

#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

void AddAction(const ClassPtr& owner, const std::string& name, const std::string& table) {
  const ActionPtr action = owner->Actions()->SetupItem({.Name = name,
                                                        .DatabaseName = "Shop",
                                                        .UsageFlags = ufAll,
                                                        .EditFlags = efAll,
                                                        .ObjectType = otModel,
                                                        .BusinessObjectsName = table});
  action->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = table});
}

ClassPtr AddClass(const ServerPtr& server, const std::string& name, std::initializer_list<const char*> key) {
  const ClassPtr added =
      server->Classes()->SetupItem({.Name = name, .SingleActionName = "Get", .DefaultActionName = "Get"});
  for (const char* column : key) {
    added->Properties()->SetupItem(
        {.Name = column, .DataType = dtLongInteger, .SourceName = column, .SourceColumn = column, .Flags = pfInput});
  }
  return added;
}

}  // namespace

SampleDesign::SampleDesign(const std::string& connectString) {
  Framework framework;
  const DatabasePtr shop = framework.Databases()->SetupItem({.Name = "Shop", .Engine = engODBC, .AutoConnect = true});
  shop->Connectors()->SetupItem({.Engine = engODBC, .ConnectionType = ctText, .ConnectionString = connectString});
  Sales = framework.Servers()->SetupItem({.Name = "Sales", .ActiveXComponent = "Sales"});
  Stock = framework.Servers()->SetupItem({.Name = "Stock"});
  Order = AddClass(Sales, "Order", {"Id"});
  Line = AddClass(Sales, "Line", {"OrderId", "LineNo"});
  Item = AddClass(Stock, "Item", {"Code"});
  AddAction(Order, "Get", "orders");
  AddAction(Order, "All", "orders");
  AddAction(Line, "Get", "lines");
  AddAction(Item, "Get", "items");
}

}  // namespace velmoria::test
