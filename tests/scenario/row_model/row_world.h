#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "tests/scenario/row_model/row_model.h"
#include "tests/support/dice.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/sqlite_file.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"

namespace velmoria::test {

constexpr const char* kColumnNames[kColumns] = {"Id", "Name", "Total"};

/// What sequences are played in: a database file of orders and guards, and a design over it. It serves many sequences;
/// each begins with Reset.
struct RowWorld {
  RowWorld();

  SqliteFile File;
  ScopedApartment Apartment;
  OneAction Design;
  std::set<std::int32_t> Raised;  // the catalogue numbers met so far, 0 for none
  bool IsTouched = true;          // something may have been written since the last Reset

  /// The table that every sequence begins with.
  static TableModel FirstTable();
  void Reset();
  /// Has the database refuse to write the rows with these Ids, and no others.
  void WriteGuards(const std::set<std::int32_t>& ids);
  /// What the table holds, as ShownTable shows it.
  std::string Stored();
};

/// A row of the database as an object shows it.
class ShownRow {
 public:
  explicit ShownRow(PropertiesPtr row);

  Properties& Row() const { return *row_; }
  /// What differs from the row of the page, or "".
  std::string Difference(const PageModel& page, std::size_t row) const;

 private:
  bool Agrees(const PageModel& page, std::size_t row) const;
  bool CellAgrees(const PageModel& page, std::size_t row, std::size_t column) const;
  std::string Shown() const;

  PropertiesPtr row_;
  std::array<PropertyPtr, kColumns> cells_;
};

std::string ShownTable(const TableModel& table);
std::string ShownCell(const Variant& value);
Variant DrawnCell(Dice& dice, std::size_t column);

}  // namespace velmoria::test
