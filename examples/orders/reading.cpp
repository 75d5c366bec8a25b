// From a key to an object, from an object to its related ones, and over all of them.

#include <cmath>

#include "chapters.h"
#include "order.h"
#include "report.h"

using namespace velmoria;

void ShowOneOrder() {
  Title("One order, by its key");
  Framework framework;
  const auto found = framework.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1042});
  for (const auto& property : found->Properties(1)) Row(property->Name(), Shown(property));
  Row("state", found->StateFlagsDisplay());
  Prove(found->Identifier()->Key() == "1042", "the order found is the order asked for");

  const auto order = dynamic_pointer_cast<Order>(found);
  Prove(order && order->Total() > 0, "it is of the shop's own class");
}

void FollowRelationships() {
  Title("From the order to its lines and its customer, from there to all the orders of that customer");
  const auto order = FindOrder(1042);
  const auto lines = order->Lines();
  for (const auto& line : lines)
    Row("line " + line->Key(lines->KeyFormat()),
        Shown(line->FindProperty("Quantity")) + " x " + Shown(line->FindProperty("Product")));
  Prove(std::abs(order->Worth() - order->Total()) < 0.005, "the lines come to the total of the order");

  const auto customer = order->Customer();
  Row("customer", Shown(customer->FindProperty("Name")) + ", " + Shown(customer->FindProperty("City")));
  const auto orders = dynamic_pointer_cast<Orders>(customer->BusinessObjects("Orders"));
  Row("all orders", NumberText(orders->Count()) + ", " + FormatText(orders->Total(), "#,##0.00") + " together");
  Prove(orders->At("1042")->Total() == order->Total(), "the order is among them");
  Prove(customer->BusinessObjects("Orders") == orders, "what was reached once is kept");
}

void WalkAllOrders() {
  Title("Twenty thousand orders, in pages of 500");
  Framework framework;
  int visited = 0;
  for (const auto& order : framework.GetBusinessObjects({.ClassName = "Order"}))
    if (order->FindProperty("Total")->Value().AsDouble() > 0) ++visited;
  Prove(visited == 20000, "every order was visited once");

  const auto orders = dynamic_pointer_cast<Orders>(framework.GetBusinessObjects({.ClassName = "Order"}));
  Row("sum of totals", FormatText(orders->Total(), "#,##0.00"));
  Row("statistics", orders->Statistics()->Details());
  const auto byKey = orders->At("777");
  Row("order 777", Shown(byKey->FindProperty("OrderDate")) + "  " + Shown(byKey->FindProperty("Status")));
  Prove(byKey->FindProperty("Id")->Value() == Variant(777), "an order is found by its key");
}
