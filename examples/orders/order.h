#pragma once

#include "velmoria/velmoria.h"

/// An order in the words of the trade; the framework puts one around the data of each order that it hands out.
class Order : public velmoria::BusinessObject {
 public:
  double Total() { return FindProperty("Total")->Value().AsDouble(); }
  void SetTotal(double value) { FindProperty("Total")->SetValue(value); }
  bool Paid() { return FindProperty("Paid")->Value().AsBoolean(); }

  velmoria::IBusinessObjectPtr Customer() { return BusinessObjects("Customer")->Item(1); }
  /// Read when they are first asked for, and kept.
  velmoria::IBusinessObjectsPtr Lines() { return BusinessObjects("Lines"); }
  void AddLine(int number, const std::string& product, int quantity, double price);
  /// What the lines come to.
  double Worth();
};

using OrderPtr = velmoria::Ref<Order>;

/// The order with that key, by the named Action or by the one that the class has for this. Throws where there is none.
OrderPtr FindOrder(int id, const std::string& action = {});

/// Orders, and what is to be said about many of them.
class Orders : public velmoria::BusinessCollection {
 public:
  OrderPtr At(const velmoria::Variant& index) { return dynamic_pointer_cast<Order>(Item(index)); }
  double Total();
  int PendingDeletes();
};

using OrdersPtr = velmoria::Ref<Orders>;
