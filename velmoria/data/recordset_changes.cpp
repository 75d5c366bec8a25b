#include <algorithm>
#include <array>

#include "velmoria/core/globals.h"
#include "velmoria/data/column_place_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/data/row_changes_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"

namespace velmoria {

using List = RowChanges::List;

namespace {

// Whether Undo puts an old value back over the present one.
bool IsRestored(const Variant& old, const Variant& present) {
  constexpr std::array kAlwaysRestored{VarType::Object, VarType::Error, VarType::Variant, VarType::Unknown,
                                       VarType::Array};
  if (old.IsEmpty()) return !present.IsEmpty();
  if (old.IsNull()) return !present.IsNull();
  if (old.Type() == VarType::Date) {
    return present.Type() != VarType::Date || SecondsBetween(present.AsDate(), old.AsDate()) != 0;
  }
  if (std::ranges::find(kAlwaysRestored, old.Type()) != kAlwaysRestored.end()) return true;
  // An ordinary value that has really changed stays as it is.
  return old == present;
}

/// On an old row an Empty old value only says that the column was not changed.
bool IsChanged(const RowChanges::Row& row, std::size_t column) {
  if (column >= row.Cells.size()) return false;
  const auto& cell = row.Cells[column];
  if (!cell.Stored || (cell.Old.IsEmpty() && !row.IsIn(List::New))) return false;
  return !VariantsEqual(cell.Present, cell.Old);
}

}  // namespace

void Recordset::Store(std::int32_t row, std::size_t column, const Variant& value) {
  auto& cells = Changes().Touch(row, CellsOfRow()).Cells;
  if (column >= cells.size()) Fail(RuntimeFailure::SubscriptOutOfRange);
  cells[column].Present = value;
  cells[column].Stored = true;
}

void Recordset::SetColumn(std::int32_t row, std::size_t column, const Variant& value) {
  RefuseDeleted(row, "SetValue");
  const auto present = PresentOrRead(row, column);
  Store(row, column, value);
  auto& changes = Changes();
  if (!changes.IsIn(List::Dirty, row)) changes.Enter(List::Dirty, row);
  auto& old = changes.Find(row)->Cells[column].Old;
  if (old.IsEmpty()) old = present;
}

void Recordset::SetValue(std::int32_t row, const Variant& index, const Variant& value) try {
  SetColumn(row, ColumnOf(index), value);
} catch (...) { Failed("SetValue"); }

void Recordset::SetValue(std::int32_t row, const PropertyData& column, const Variant& value) try {
  SetColumn(row, PlaceOfColumn(column), value);
} catch (...) { Failed("SetValue"); }

Variant Recordset::OldColumn(std::int32_t row, std::size_t column) const {
  RefuseDeleted(row, "OldValues");
  const auto* touched = changes_ ? changes_->Find(row) : nullptr;
  return touched && column < touched->Cells.size() ? touched->Cells[column].Old : Variant();
}

Variant Recordset::OldValues(std::int32_t row, const Variant& index) const try {
  RefuseDeleted(row, "OldValues");
  return changes_ && changes_->FindDirty(row) ? OldColumn(row, NumberedColumn(index, "OldValues")) : Variant();
} catch (...) { Failed("OldValues"); }

Variant Recordset::OldValues(std::int32_t row, const PropertyData& column) const try {
  return OldColumn(row, PlaceOfColumn(column));
} catch (...) { Failed("OldValues"); }

bool Recordset::Differs(std::int32_t row, std::size_t column) const {
  const auto* touched = changes_ ? changes_->FindDirty(row) : nullptr;
  return touched && IsChanged(*touched, column);
}

Variant Recordset::Dirty(std::int32_t row) const try {
  if (!changes_ || !changes_->FindDirty(row)) return false;
  if (IsDirty(row)) return true;
  // A walk without a difference has no answer, unlike a row that was never changed.
  return {};
} catch (...) { Failed("Dirty (Get)"); }

bool Recordset::IsDirty(std::int32_t row) const {
  const auto* touched = changes_ ? changes_->FindDirty(row) : nullptr;
  if (!touched) return false;
  // A column that was taken out counts no more.
  return std::ranges::any_of(*columns_,
                             [&](const auto& definition) { return IsChanged(*touched, PlaceOfColumn(*definition)); });
}

bool Recordset::Dirty(std::int32_t row, const Variant& index) const try {
  return changes_ && changes_->FindDirty(row) && Differs(row, NumberedColumn(index, "Dirty (Get)"));
} catch (...) { Failed("Dirty (Get)"); }

bool Recordset::Dirty(std::int32_t row, const PropertyData& column) const {
  return Differs(row, PlaceOfColumn(column));
}

zStateFlags Recordset::StateFlags(std::int32_t row) const {
  if (!changes_) return sfpersistent;
  if (row == -1) return SumOfStates();
  const auto* touched = changes_->Find(row);
  if (!touched) return sfpersistent;
  const auto dirty = IsDirty(row) ? sfdirty : zStateFlags{};
  if (touched->IsIn(List::New)) return dirty | sfNew;
  if (touched->IsIn(List::Pending)) return dirty | sfpendingdelete | sfpersistent;
  if (touched->IsIn(List::Deleted)) return dirty | sfdeleted;
  return dirty | sfpersistent;
}

zStateFlags Recordset::SumOfStates() const {
  auto flags = zStateFlags{};
  if (changes_->Any(List::New)) flags = flags | sfNew;
  if (changes_->Any(List::Pending)) flags = flags | sfpendingdelete | sfpersistent;
  if (changes_->Any(List::Deleted)) flags = flags | sfdeleted;
  return flags == zStateFlags{} ? sfpersistent : flags;
}

void Recordset::SetStateFlags(std::int32_t row, zStateFlags flags) try {
  struct Clearing {
    zStateFlags Flag;
    List Leaves;
  };
  constexpr std::array kClearings{Clearing{sfNew, List::New}, Clearing{sfpendingdelete, List::Pending},
                                  Clearing{sfdirty, List::Dirty}};
  const auto present = StateFlags(row);
  for (const auto& clearing : kClearings) {
    if (has(present, clearing.Flag) && !has(flags, clearing.Flag)) Changes().Leave(clearing.Leaves, row);
  }
} catch (...) { Failed("SetStateFlags"); }

void Recordset::Restore(std::int32_t row, std::size_t column) {
  // A definition that joined later has no value in a row that was there before.
  if (row < fetchedRows_ && column >= fetchedColumns_ && !changes_->FindStored(row, column)) return;
  const auto old = OldColumn(row, column);
  if (!IsRestored(old, Present(row, column))) return;
  Store(row, column, old);
  // A long column is read again when it is next asked for.
  if (old.IsEmpty() && IsLong(row, column)) changes_->Touch(row, 0).Cells[column].Stored = false;
}

bool Recordset::CancelDelete(std::int32_t row) {
  RefuseDeleted(row, "Undo");
  if (!changes_) return false;
  changes_->Leave(List::Pending, row);
  return changes_->IsIn(List::Dirty, row);
}

void Recordset::Undo(std::int32_t row) try {
  if (!CancelDelete(row)) return;
  const bool isNew = changes_->IsIn(List::New, row);
  const auto columns = CellsOfRow();
  // Columns that were not changed have an Empty old value, and that is what they go back to.
  for (std::size_t column = 0; column < columns; ++column) Restore(row, column);
  changes_->Leave(List::Dirty, row);
  if (!isNew) return;
  changes_->Leave(List::New, row);
  FlagDeleted(row);
} catch (...) { Failed("Undo"); }

void Recordset::Undo(std::int32_t row, const Variant& index) try {
  if (CancelDelete(row)) Restore(row, NumberedColumn(index, "Undo"));
} catch (...) { Failed("Undo"); }

void Recordset::Undo(std::int32_t row, const PropertyData& column) try {
  if (CancelDelete(row)) Restore(row, PlaceOfColumn(column));
} catch (...) { Failed("Undo"); }

}  // namespace velmoria
