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
  /// Relates each order to its lines as "Lines", by the parameter OrderId of their Action.
  void RelateLines() const;
  /// Orders 4 to `last`.
  void AddOrders(int last);
  /// Notes from here on what is written to the orders.
  void NoteWrites();
  /// What was noted, in order, as in "update2|delete3".
  std::string Writes() { return File.Column("select What || Id from writes order by rowid"); }
  /// The parameters of "Named".
  PropertiesPtr NamedParameters(const std::string& name) const;
};

}  // namespace velmoria::test
