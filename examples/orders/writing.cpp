// Changes on their way to the database, and who may stop them.

#include "chapters.h"
#include "order.h"
#include "report.h"

using namespace velmoria;

namespace {

/// The Action "Check" has a group of connections of its own: what it reads has really been written.
OrderPtr Written(int id) { return FindOrder(id, "Check"); }

bool IsThere(int id) {
  try {
    return Written(id) != nullptr;
  } catch (const Error& error) {
    if (error.CatalogueNumber() != static_cast<int>(errBusinessObject_Get)) throw;
    Framework{}.Messages()->Clear();
    return false;
  }
}

/// How many lines an order has in the database, asked for by the parameter of an Action.
int LinesWritten(int id) {
  Framework framework;
  const auto ofOrder = framework.Servers()->Item("Sales")->Classes()->Item("OrderLine")->Actions()->Item("OfOrder");
  const PropertiesPtr parameters = ofOrder->CreateParameters();
  parameters->Item("OrderId")->SetValue(id);
  return framework.GetBusinessObjects({.ClassName = "OrderLine", .ActionName = "OfOrder", .Parameters = parameters})
      ->Count();
}

}  // namespace

void ChangeAndUpdate() {
  Title("Change an order, with a listener that has a say");
  const auto order = FindOrder(1042);
  const PropertyPtr total = order->FindProperty("Total");
  const double before = order->Total();

  total->BeforeValueChange += [](const Variant& newValue, bool& Cancel) { Cancel = newValue.AsDouble() < 0; };
  order->SetTotal(-5);
  Prove(order->Total() == before, "the listener vetoed a negative total");

  order->SetTotal(before + 10);
  order->FindProperty("Note")->SetValue("leave it at O'Hara's – ring twice");
  Row("OldValue", total->OldValue().AsText());
  Row("Value", Shown(total));
  Row("state", order->StateFlagsDisplay());

  order->Update();
  Row("after Update", order->StateFlagsDisplay());
  Prove(!order->Dirty(), "the order is clean again");
  Prove(Written(1042)->Total() == order->Total(), "a second connection reads the new total");
  Prove(Shown(Written(1042)->FindProperty("Note")) == "leave it at O'Hara's – ring twice",
        "and the note, apostrophe and all");
}

void TakeAnOrder() {
  Title("A new order with its lines, written by one Update");
  // What a context creates leaves its object type there for later requests: hence a context of its own.
  const auto context = Framework{}.CreateBusinessContext();
  const auto order = dynamic_pointer_cast<Order>(context->CreateBusinessObject({.ClassName = "Order"}));
  order->FindProperty("Id")->SetValue(90001);
  order->FindProperty("CustomerId")->SetValue(7);
  order->FindProperty("OrderDate")->SetValue(Date::From(2026, 11, 21, 9, 30));
  order->FindProperty("Status")->SetValue("open");
  order->FindProperty("Paid")->SetValue(false);
  order->AddLine(1, "Desk lamp, brass", 2, 49.75);
  order->AddLine(2, "Bookshelf 5'", 1, 30);
  Row("the order", order->StateFlagsDisplay());
  Row("its lines", order->Lines()->Item(2)->StateFlagsDisplay());

  order->GetModel()->Update(true);  // recursive: the object, then whatever was reached from it
  Row("the order", order->StateFlagsDisplay());
  Row("its lines", order->Lines()->Item(2)->StateFlagsDisplay());
  Prove(Written(90001)->Total() == 129.5, "the order is in the database");
  Prove(LinesWritten(90001) == 2, "and so are its lines");
}

void DropTheOrder() {
  Title("A deletion taken back, and one that stands");
  const auto order = FindOrder(90001);
  order->Delete();
  Row("after Delete", order->StateFlagsDisplay());
  order->Undo();
  Row("after Undo", order->StateFlagsDisplay());
  order->Update();
  Prove(IsThere(90001), "the order is still there");

  const auto lines = order->Lines();
  order->GetModel()->Delete(true);
  Row("its lines", lines->Item(1)->StateFlagsDisplay());
  order->GetModel()->Update(true);
  Row("after Update", order->StateFlagsDisplay());
  Prove(!IsThere(90001) && LinesWritten(90001) == 0, "the order is gone, and its lines with it");
}

void CloseAnAccount() {
  Title("All orders of a customer deleted, but for what a listener keeps");
  const auto customer = Framework{}.GetBusinessObject({.ClassName = "Customer", .KeyValue1 = 7});
  const auto orders = dynamic_pointer_cast<Orders>(customer->BusinessObjects("Orders"));
  int kept = 0;
  orders->GetBusinessObjects()->BeforeItemPendingDelete += [&](IBusinessObject& order, bool& Cancel) {
    Cancel = order.FindProperty("Paid")->Value().AsBoolean();
    kept += Cancel ? 1 : 0;
  };
  orders->Delete();
  const int flagged = orders->PendingDeletes();
  Row("orders", NumberText(orders->Count()));
  Row("to be deleted", NumberText(flagged));
  Prove(flagged > 0 && kept > 0 && flagged + kept == orders->Count(), "the walk passed over what is paid");

  orders->Undo();
  orders->Update();
  const auto again = Framework{}.GetBusinessObject({.ClassName = "Customer", .KeyValue1 = 7});
  Prove(again->BusinessObjects("Orders")->Count() == orders->Count(), "the customer stays: Undo took all of it back");
}
