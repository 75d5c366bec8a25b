#include "tests/scenario/row_model/row_model.h"

#include <algorithm>

namespace velmoria::test {

namespace {

constexpr std::size_t kNameSize = 20;

// What a statement writes for a value: one that is Empty goes out as the zero of its type.
Variant Written(const Variant& value, std::size_t column) {
  if (!value.IsEmpty()) return value;
  return column == 1 ? Variant("") : Variant(0.0);
}

std::int32_t KeyOf(const Variant& value) { return value.IsEmpty() ? 0 : value.AsLong(); }

}  // namespace

bool IsSame(const Variant& left, const Variant& right) {
  if (left.Type() != right.Type()) return false;
  return left.IsEmpty() || left.IsNull() || left.AsText() == right.AsText();
}

void TableModel::Insert(const Cells& cells) {
  if (cells[0].IsNull()) throw RowRefused{errPersistence_Insert};
  const auto key = cells[0].AsLong();
  if (Rows.contains(key) || Guarded.contains(key)) throw RowRefused{errPersistence_Insert};
  Rows[key] = cells;
}

void TableModel::Update(std::int32_t key, const Cells& cells, const std::array<bool, kColumns>& which) {
  if (!Rows.contains(key)) return;
  auto row = Rows[key];
  for (std::size_t column = 0; column < kColumns; ++column) {
    if (which[column]) row[column] = Written(cells[column], column);
  }
  const auto newKey = row[0].AsLong();
  if (Guarded.contains(key) || (newKey != key && Rows.contains(newKey))) throw RowRefused{errPersistence_Update};
  Rows.erase(key);
  Rows[newKey] = row;
}

void TableModel::Delete(std::int32_t key) {
  if (!Rows.contains(key)) return;
  if (Guarded.contains(key)) throw RowRefused{errPersistence_Delete};
  Rows.erase(key);
}

bool PageModel::IsIn(const List& list, std::size_t row) {
  return std::find(list.begin(), list.end(), row) != list.end();
}

void PageModel::RefuseDeleted(std::size_t row) const {
  if (IsDeleted(row)) throw RowRefused{errPersistence_Deleted};
}

std::size_t PageModel::NewRow() {
  if (!IsLast) throw RowRefused{errBusinessObjects_Buffer};
  Rows.emplace_back();
  new_.push_back(Rows.size() - 1);
  return Rows.size() - 1;
}

void PageModel::Let(std::size_t row, std::size_t column, const Variant& value) {
  RefuseDeleted(row);
  if (column == 0 && (value.IsEmpty() || value.IsNull())) throw RowRefused{errValue_Required};
  if (value.IsText() && value.AsText().size() > kNameSize) throw RowRefused{errValue_Size};
  auto& [now, old] = Rows[row];
  if (IsSame(now[column], value)) return;
  if (!IsIn(changed_, row)) changed_.push_back(row);
  if (old[column].IsEmpty() || wrong_ == RowMistake::FirstOldValueIsForgotten) old[column] = now[column];
  now[column] = value;
}

bool PageModel::Differs(std::size_t row, std::size_t column) const {
  if (IsDeleted(row) || !IsIn(changed_, row)) return false;
  const auto& [now, old] = Rows[row];
  if (IsSame(now[column], old[column])) return false;
  return !old[column].IsEmpty() || IsIn(new_, row);
}

bool PageModel::IsDirty(std::size_t row) const { return Differs(row, 0) || Differs(row, 1) || Differs(row, 2); }

zStateFlags PageModel::StateFlags(std::size_t row) const {
  const auto dirty = IsDirty(row) ? sfdirty : zStateFlags{};
  if (IsIn(new_, row)) return dirty | sfNew;
  if (IsIn(pending_, row)) return dirty | sfpersistent | sfpendingdelete;
  return IsDeleted(row) ? sfdeleted : dirty | sfpersistent;
}

void PageModel::LeaveChanged(std::size_t row) {
  Leave(changed_, row);
  Rows[row].Old = {};
}

void PageModel::LetState(std::size_t row, zStateFlags flags) {
  const auto present = StateFlags(row);
  const auto goes = [&](zStateFlags flag) { return has(present, flag) && !has(flags, flag); };
  if (goes(sfNew)) Leave(new_, row);
  if (goes(sfpendingdelete)) Leave(pending_, row);
  if (goes(sfdirty)) LeaveChanged(row);
}

void PageModel::Delete(std::size_t row) {
  if (IsIn(pending_, row) || IsDeleted(row)) return;
  Told += "bd ";
  if (IsIn(new_, row)) {
    Leave(new_, row);
    deleted_.insert(row);
  } else {
    pending_.push_back(row);
  }
  Told += "ad ";
}

void PageModel::Restore(std::size_t row, std::size_t column) {
  auto& [now, old] = Rows[row];
  const bool isPlain = !old[column].IsEmpty() && !old[column].IsNull();
  if (!isPlain || wrong_ == RowMistake::UndoPutsValuesBack) now[column] = old[column];
}

void PageModel::Undo(std::size_t row) {
  RefuseDeleted(row);
  Leave(pending_, row);
  if (!IsIn(changed_, row)) return;
  for (std::size_t column = 0; column < kColumns; ++column) Restore(row, column);
  LeaveChanged(row);
  if (!IsIn(new_, row)) return;
  Leave(new_, row);
  deleted_.insert(row);
}

void PageModel::UndoColumn(std::size_t row, std::size_t column) {
  RefuseDeleted(row);
  Leave(pending_, row);
  if (IsIn(changed_, row)) Restore(row, column);
}

void PageModel::Update(std::size_t row) {
  RefuseDeleted(row);
  if (!IsDirty(row) && !IsIn(new_, row) && !IsIn(pending_, row)) return;
  Told += "bu ";
  Write(row);
  Told += "au ";
}

void PageModel::Save() {
  for (auto* list : {&changed_, &new_, &pending_}) {
    for (const auto row : List(*list)) {
      if (IsIn(*list, row) && !IsDeleted(row)) Write(row);
    }
  }
}

void PageModel::Write(std::size_t row) {
  if (IsIn(pending_, row)) return WriteDelete(row);
  const bool isNew = IsIn(new_, row);
  if (!IsDirty(row)) {
    if (!isNew) LeaveChanged(row);
    return;
  }
  try {
    WriteValues(row);
  } catch (const RowRefused&) {
    if (wrong_ == RowMistake::FailedWriteEndsClean) LeaveChanged(row);
    throw;
  }
  if (isNew) {
    for (auto& value : Rows[row].Now) value = value.IsEmpty() ? Variant::Null() : value;
    Leave(new_, row);
  }
  LeaveChanged(row);
}

void PageModel::WriteValues(std::size_t row) {
  const auto& [now, old] = Rows[row];
  if (!IsIn(new_, row)) {
    const auto key = KeyOf(Differs(row, 0) ? old[0] : now[0]);
    return table_->Update(key, now, {Differs(row, 0), Differs(row, 1), Differs(row, 2)});
  }
  Cells cells;
  for (std::size_t column = 0; column < kColumns; ++column) {
    cells[column] = Differs(row, column) ? Written(now[column], column) : Variant::Null();
  }
  table_->Insert(cells);
}

// By the present key, whatever it was when the row was read.
void PageModel::WriteDelete(std::size_t row) {
  table_->Delete(KeyOf(Rows[row].Now[0]));
  Leave(pending_, row);
  deleted_.insert(row);
}

}  // namespace velmoria::test
