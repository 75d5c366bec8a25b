#pragma once

#include <string>

#include "tests/support/sample_design.h"
#include "tests/support/sqlite_file.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

/// The design of SampleDesign over a real database: three orders (1 Ada, 2 Ben, 3 Cyd) and the lines of two of them.
/// Beside the Actions there: Order has "Check" (its own group of connections), "Bare" (no BusinessObjectsName),
/// "Detail" (a second table under the same key) and "Named" (a statement with the parameter Name).
class Shop {
 public:
  Shop();

  SqliteFile File;
  SampleDesign Design;

  ActionPtr OrderAction(const std::string& name) const { return Design.Order->Actions()->Item(name); }
  /// Orders 4 to `last`.
  void AddOrders(int last);
  /// The parameters of "Named".
  PropertiesPtr NamedParameters(const std::string& name) const;
};

}  // namespace velmoria::test
