#pragma once

#include <string>

#include "velmoria/fwd.h"

namespace velmoria::test {

/// Two registered Servers over one Database. "Sales" has the classes "Order" (key Id; Actions "Get" and "All") and
/// "Line" (key OrderId, LineNo; Action "Get"); "Stock" has the class "Item" (key Code; Action "Get"). Every Action
/// reads a table on engODBC, builds Models and allows everything.
class SampleDesign {
 public:
  /// The connect string of the Database; with none it names no real database.
  explicit SampleDesign(const std::string& connectString = "Driver=None");

  ServerPtr Sales;
  ServerPtr Stock;
  ClassPtr Order;
  ClassPtr Line;
  ClassPtr Item;
};

}  // namespace velmoria::test
