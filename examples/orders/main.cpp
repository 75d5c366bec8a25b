// A line-of-business program in one file: it opens a shop's database, shows an order, changes it, writes it back, and
// walks twenty thousand of them. make_database.cpp makes the data, describe.cpp tells the framework what it means.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

#include "describe.h"
#include "make_database.h"
#include "report.h"
#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

std::string Text(const PropertyPtr& property) { return property->DisplayValue().AsText(); }

void ShowOneOrder() {
  Title("One order, by its key");
  Framework framework;
  const auto order = framework.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1042});
  for (const auto& property : *order->Properties(1)) Row(property->Name(), Text(property));
  Row("state", order->StateFlagsDisplay());
  Prove(order->Identifier()->Key() == "1042", "the order found is the order asked for");
}

void ChangeAndUpdate() {
  Title("Change it, with a listener that has a say");
  Framework framework;
  const auto order = framework.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1042});
  const PropertyPtr total = order->FindProperty("Total");
  const Variant before = total->Value();

  total->BeforeValueChange += [](const Variant& newValue, bool& Cancel) { Cancel = newValue.AsDouble() < 0; };
  total->SetValue(-5.0);
  Prove(total->Value() == before, "the listener vetoed a negative total");

  total->SetValue(before.AsDouble() + 10);
  order->FindProperty("Note")->SetValue("leave it at O'Hara's – ring twice");
  Row("OldValue", total->OldValue().AsText());
  Row("Value", Text(total));
  Row("DirtyValue", total->DirtyValue() ? "True" : "False");
  Row("state", order->StateFlagsDisplay());

  order->Update();
  Row("after Update", order->StateFlagsDisplay());
  Prove(!order->Dirty(), "the order is clean again");

  // The Action "Check" uses a group of connections of its own: what it reads has really been written.
  const auto again = framework.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1042, .ActionName = "Check"});
  Prove(again->FindProperty("Total")->Value() == total->Value(), "a second connection reads the new total");
  Prove(Text(again->FindProperty("Note")) == "leave it at O'Hara's – ring twice", "and the note, apostrophe and all");
}

void InsertUndoDelete() {
  Title("A new order, a change undone, a deletion");
  Framework framework;
  const auto order = framework.CreateBusinessObject({.ClassName = "Order"});
  order->FindProperty("Id")->SetValue(90001);
  order->FindProperty("CustomerId")->SetValue(7);
  order->FindProperty("OrderDate")->SetValue(Date::From(2026, 11, 21, 9, 30));
  order->FindProperty("Status")->SetValue("open");
  order->FindProperty("Total")->SetValue(129.5);
  order->FindProperty("Paid")->SetValue(false);
  Row("new", order->StateFlagsDisplay());
  order->Update();
  Row("inserted", order->StateFlagsDisplay());

  const auto found = framework.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 90001});
  Prove(Text(found->FindProperty("Status")) == "open", "the new order is in the database");

  found->Delete();
  Row("after Delete", found->StateFlagsDisplay());
  found->Undo();
  Row("after Undo", found->StateFlagsDisplay());
  found->Delete();
  found->Update();
  Row("deleted", found->StateFlagsDisplay());
  bool gone = false;
  try {
    framework.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 90001});
  } catch (const Error& error) {
    gone = error.CatalogueNumber() == static_cast<int>(errBusinessObject_Get);
    framework.Messages()->Clear();
  }
  Prove(gone, "the order is gone");
}

void WalkAllOrders() {
  Title("Twenty thousand orders, in pages of 500");
  Framework framework;
  const auto orders = framework.GetBusinessObjects({.ClassName = "Order"});
  int count = 0;
  double sum = 0;
  for (const auto& order : *orders) {
    sum += order->FindProperty("Total")->Value().AsDouble();
    ++count;
  }
  Row("orders", NumberText(count));
  Row("sum of totals", FormatText(sum, "#,##0.00"));
  Row("statistics", orders->Statistics()->Details());
  Prove(count == 20000 && orders->Count() == count, "every order was visited once");

  const auto byKey = orders->Item("777");
  Row("order 777", Text(byKey->FindProperty("OrderDate")) + "  " + Text(byKey->FindProperty("Status")));
  Prove(byKey->FindProperty("Id")->Value() == Variant(777), "an order is found by its key");

  const ActionPtr ofCustomer =
      framework.Servers()->Item("Sales")->Classes()->Item("Order")->Actions()->Item("OfCustomer");
  const PropertiesPtr parameters = ofCustomer->CreateParameters();
  parameters->Item("CustomerId")->SetValue(7);
  const auto few =
      framework.GetBusinessObjects({.ClassName = "Order", .ActionName = "OfCustomer", .Parameters = parameters});
  Row("of customer 7", NumberText(few->Count()) + " orders");
  Prove(few->Count() > 0 && few->Item(1)->FindProperty("CustomerId")->Value() == Variant(7),
        "an SQL text with a parameter finds the orders of one customer");
}

void ShowFailure(const std::string& label, void (*attempt)()) {
  try {
    attempt();
    Prove(false, label + " is refused");
  } catch (const Error& error) { Row(label, NumberText(error.CatalogueNumber()) + "\n" + error.Description()); }
}

void ShowFailures() {
  Title("What goes wrong, as a user sees it");
  ShowFailure("unknown class", [] { Framework{}.GetBusinessObject({.ClassName = "Invoice", .KeyValue1 = 1}); });
  Framework{}.Messages()->Clear();
  ShowFailure("wrong type", [] {
    const auto order = Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1042});
    order->FindProperty("CustomerId")->SetValue("next door");
  });
  Framework{}.Messages()->Clear();
  ShowFailure("read only", [] {
    const auto order = Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1042});
    const PropertyPtr date = order->FindProperty("OrderDate");
    date->SetModifiable(false);
    date->SetValue(Date::From(2026, 1, 1));
  });
  Title("Messages.Details of the last one");
  Row("", Framework{}.Messages()->Details());
}

}  // namespace

int main(int argumentCount, char** arguments) try {
  const std::filesystem::path folder = argumentCount > 1 ? arguments[1] : "orders-demo";
  std::filesystem::create_directories(folder);
  const std::string file = (std::filesystem::absolute(folder) / "shop.db").string();
  std::filesystem::remove(file);
  // The library keeps its settings per user; a demonstration keeps them in its folder.
  setenv("VELMORIA_SETTINGS_DIR", std::filesystem::absolute(folder).c_str(), 1);

  MakeDatabase(file, 20261121);
  DescribeBusiness(file);
  Row("database", file);
  ShowOneOrder();
  ChangeAndUpdate();
  InsertUndoDelete();
  WalkAllOrders();
  ShowFailures();
  std::printf("\nAll of it held.\n");
  return EXIT_SUCCESS;
} catch (const std::exception& failure) {
  std::fprintf(stderr, "\n%s\n", failure.what());
  return EXIT_FAILURE;
}
