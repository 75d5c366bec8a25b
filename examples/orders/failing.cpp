// What goes wrong, and what is known about it afterwards.

#include "chapters.h"
#include "report.h"
#include "velmoria/velmoria.h"

using namespace velmoria;

namespace {

void ShowFailure(const std::string& label, void (*attempt)()) {
  Framework{}.Messages()->Clear();
  try {
    attempt();
  } catch (const Error& error) {
    Row(label, NumberText(error.CatalogueNumber()) + "\n" + error.Description());
    return;
  }
  Prove(false, label + " is refused");
}

IBusinessObjectPtr Order1042() { return Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1042}); }

}  // namespace

void ShowFailures() {
  Title("What goes wrong, as a user sees it");
  ShowFailure("unknown class", [] { Framework{}.GetBusinessObject({.ClassName = "Invoice", .KeyValue1 = 1}); });
  ShowFailure("no such order", [] { Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 99999}); });
  ShowFailure("wrong type", [] { Order1042()->FindProperty("CustomerId")->SetValue("next door"); });
  ShowFailure("read only", [] {
    const PropertyPtr date = Order1042()->FindProperty("OrderDate");
    date->SetModifiable(false);
    date->SetValue(Date::From(2026, 1, 1));
  });
  Title("Messages.Details of the last one");
  Row("", Framework{}.Messages()->Details());
}
