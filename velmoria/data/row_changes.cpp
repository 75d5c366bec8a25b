#include <utility>

#include "velmoria/data/row_changes_impl.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

const RowChanges::Row* RowChanges::Find(std::int32_t row) const {
  if (row != askedRow_) {
    const auto found = rows_.find(row);
    asked_ = found == rows_.end() ? nullptr : &found->second;
    askedRow_ = row;
  }
  return asked_;
}

RowChanges::Row* RowChanges::Find(std::int32_t row) { return const_cast<Row*>(std::as_const(*this).Find(row)); }

RowChanges::Row& RowChanges::FindOrAdd(std::int32_t row) {
  if (auto* found = Find(row)) return *found;
  auto& made = rows_[row];
  asked_ = &made;
  return made;
}

const RowChanges::Row* RowChanges::FindDirty(std::int32_t row) const {
  const auto* touched = Find(row);
  return touched && touched->IsIn(List::Dirty) && !touched->IsIn(List::Deleted) ? touched : nullptr;
}

const RowChanges::Cell* RowChanges::FindStored(std::int32_t row, std::size_t column) const {
  const auto* touched = Find(row);
  const bool isStored = touched && column < touched->Cells.size() && touched->Cells[column].Stored;
  return isStored ? &touched->Cells[column] : nullptr;
}

RowChanges::Row& RowChanges::Touch(std::int32_t row, std::size_t columns) {
  auto& touched = FindOrAdd(row);
  if (touched.Cells.size() < columns) touched.Cells.resize(columns);
  return touched;
}

bool RowChanges::IsIn(List list, std::int32_t row) const {
  const auto* touched = Find(row);
  return touched && touched->IsIn(list);
}

void RowChanges::Enter(List list, std::int32_t row) {
  auto& place = FindOrAdd(row).Places[static_cast<std::size_t>(list)];
  if (place != 0) Fail(RuntimeFailure::KeyInUse);
  Members(list).emplace(lastPlace_ + 1, row);
  place = ++lastPlace_;
}

void RowChanges::Leave(List list, std::int32_t row) {
  auto* touched = Find(row);
  if (!touched || !touched->IsIn(list)) return;
  auto& place = touched->Places[static_cast<std::size_t>(list)];
  Members(list).erase(place);
  place = 0;
  if (list != List::Dirty) return;
  for (auto& cell : touched->Cells) cell.Old = Variant();
}

std::vector<std::int32_t> RowChanges::Rows(List list) const {
  std::vector<std::int32_t> rows;
  rows.reserve(Members(list).size());
  for (const auto& [place, row] : Members(list)) rows.push_back(row);
  return rows;
}

}  // namespace velmoria
