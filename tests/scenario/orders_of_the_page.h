#pragma once

#include "tests/scenario/order_of_the_page.h"

class Orders : public velmoria::BusinessCollection {
 public:
  velmoria::Ref<Order> At(const velmoria::Variant& index) { return dynamic_pointer_cast<Order>(Item(index)); }

  double Total() {
    double sum = 0;
    for (const auto& order : *this) sum += order->FindProperty("Total")->Value().AsDouble();
    return sum;
  }
};
