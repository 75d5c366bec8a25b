#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "velmoria/core/catalogue.h"
#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::test {

/// The columns of a row of the model: Id, Name, Total.
constexpr std::size_t kColumns = 3;
using Cells = std::array<Variant, kColumns>;

/// A mistake that a model makes on purpose, to show that it would be found.
enum class RowMistake { None, UndoPutsValuesBack, FailedWriteEndsClean, FirstOldValueIsForgotten };

/// What an operation raises.
struct RowRefused {
  zErrors Number;
};

/// The table as any hand sees it. A guarded Id is one whose row the database refuses to write.
struct TableModel {
  std::map<std::int32_t, Cells> Rows;
  std::set<std::int32_t> Guarded;

  void Insert(const Cells& cells);
  void Update(std::int32_t key, const Cells& cells, const std::array<bool, kColumns>& which);
  void Delete(std::int32_t key);
};

/// One row of a page as the tables of states tell it. An Empty old value means none.
struct RowModel {
  Cells Now;
  Cells Old;
};

/// One page of rows and the lists that its rows are in.
class PageModel {
 public:
  PageModel(TableModel& table, RowMistake wrong) : table_(&table), wrong_(wrong) {}

  std::vector<RowModel> Rows;
  bool IsLast = true;
  std::string Told;  // what the listeners of the row heard

  std::size_t NewRow();
  void Let(std::size_t row, std::size_t column, const Variant& value);
  void LetState(std::size_t row, zStateFlags flags);
  void Delete(std::size_t row);
  void Undo(std::size_t row);
  void UndoColumn(std::size_t row, std::size_t column);
  void Update(std::size_t row);
  /// Writes the whole page.
  void Save();

  bool Differs(std::size_t row, std::size_t column) const;
  bool IsDirty(std::size_t row) const;
  bool IsDeleted(std::size_t row) const { return deleted_.contains(row); }
  zStateFlags StateFlags(std::size_t row) const;

 private:
  using List = std::vector<std::size_t>;  // in the order of joining

  static bool IsIn(const List& list, std::size_t row);
  static void Leave(List& list, std::size_t row) { std::erase(list, row); }
  void RefuseDeleted(std::size_t row) const;
  void LeaveChanged(std::size_t row);
  void Restore(std::size_t row, std::size_t column);
  void Write(std::size_t row);
  void WriteValues(std::size_t row);
  void WriteDelete(std::size_t row);

  TableModel* table_;
  RowMistake wrong_;
  List changed_;
  List new_;
  List pending_;
  std::set<std::size_t> deleted_;
};

/// Equal as an assignment sees it: the same type and value.
bool IsSame(const Variant& left, const Variant& right);

}  // namespace velmoria::test
