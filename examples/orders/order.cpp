#include "order.h"

void Order::AddLine(int number, const std::string& product, int quantity, double price) {
  const auto line = Lines()->SetupItem();
  line->FindProperty("OrderId")->SetValue(FindProperty("Id")->Value());
  line->FindProperty("LineNo")->SetValue(number);
  line->FindProperty("Product")->SetValue(product);
  line->FindProperty("Quantity")->SetValue(quantity);
  line->FindProperty("Price")->SetValue(price);
  SetTotal(Worth());
}

double Order::Worth() {
  double sum = 0;
  for (const auto& line : Lines())
    sum += line->FindProperty("Quantity")->Value().AsDouble() * line->FindProperty("Price")->Value().AsDouble();
  return sum;
}

OrderPtr FindOrder(int id, const std::string& action) {
  return dynamic_pointer_cast<Order>(
      velmoria::Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = id, .ActionName = action}));
}

double Orders::Total() {
  double sum = 0;
  for (const auto& order : *this) sum += order->FindProperty("Total")->Value().AsDouble();
  return sum;
}

int Orders::PendingDeletes() {
  int count = 0;
  for (const auto& order : *this) count += has(order->StateFlags(), velmoria::sfpendingdelete) ? 1 : 0;
  return count;
}
