// A host with a business class of its own, over the database that its first argument names; a second class comes from a
// component library in the folder that its second argument names.

#include <cstdio>
#include <exception>
#include <string>

#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

class Order : public BusinessObject {
 public:
  double Net() { return FindProperty("Total")->Value().AsDouble() / 1.25; }
};

void Describe(const std::string& file) {
  Framework framework;
  framework.Databases()
      ->SetupItem({.Name = "Shop", .Engine = engODBC, .AutoConnect = true})
      ->Connectors()
      ->SetupItem({.Engine = engODBC, .ConnectionType = ctText, .ConnectionString = "Driver=SQLite3;Database=" + file});
  const ServerPtr sales = framework.Servers()->SetupItem({.Name = "Sales", .ActiveXComponent = "Sales"});
  const ClassPtr order = sales->Classes()->SetupItem(
      {.Name = "Order", .ActiveXClass = "Order", .SingleActionName = "Get", .DefaultActionName = "Get"});
  order->Properties()->SetupItem({.Name = "Id", .DataType = dtLongInteger, .SourceName = "Id", .SourceColumn = "Id"});
  order->Actions()
      ->SetupItem(
          {.Name = "Get", .DatabaseName = "Shop", .UsageFlags = ufAll, .EditFlags = efAll, .ObjectType = otBusiness})
      ->Sources()
      ->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = "orders"});
}

bool RefusesUnknownClass() {
  try {
    Framework{}.GetBusinessObject({.ClassName = "Invoice", .KeyValue1 = 1});
  } catch (const Error& error) { return error.CatalogueNumber() != 0 && Framework{}.Messages()->Count() > 0; }
  return false;
}

bool FindsTheClassOfALibrary(const std::string& folder) {
  Components::AddFolder(folder);
  const Ref<Object> bin = Components::Create("Shelf.Bin");
  auto* object = dynamic_cast<IBusinessObject*>(bin.get());
  return object != nullptr && object->Details() == "A bin of the shelf";
}

}  // namespace

int main(int argumentCount, char** arguments) try {
  if (argumentCount != 3) return 2;
  Components::Register<Order>("Sales.Order");
  Describe(arguments[1]);

  const IBusinessObjectPtr object = Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 7});
  auto* order = dynamic_cast<Order*>(object.get());
  if (order == nullptr || order->Net() != 80) return std::puts("The order is not the host's own."), 1;
  order->FindProperty("Total")->SetValue(125.0);
  order->Update();
  if (order->Net() != 100 || order->Dirty()) return std::puts("The change was not saved."), 1;
  if (!FindsTheClassOfALibrary(arguments[2])) return std::puts("The class of a library was not found."), 1;
  if (!RefusesUnknownClass()) return std::puts("An unknown class was not refused."), 1;
  std::puts("A host outside the tree read and changed its order.");
  return 0;
} catch (const std::exception& failure) {
  std::puts(failure.what());
  return 1;
}
