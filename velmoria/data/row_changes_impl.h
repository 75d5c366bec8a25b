#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

#include "velmoria/runtime/variant.h"

namespace velmoria {

/// What lies over the fetched rows of a Recordset: the values of touched and new rows, and four lists of rows, each in
/// order of addition.
class RowChanges {
 public:
  RowChanges() = default;
  RowChanges(const RowChanges&) = delete;  // asked_ is one of its own rows
  RowChanges& operator=(const RowChanges&) = delete;

  enum class List : std::uint8_t { Dirty, Deleted, Pending, New };

  struct Cell {
    Variant Present;
    Variant Old;          // before the first change since the row was saved; Empty while there was none
    bool Stored = false;  // Present counts, not the fetched value
  };

  struct Row {
    std::vector<Cell> Cells;                // by column
    std::array<std::uint64_t, 4> Places{};  // in each list; 0 outside

    bool IsIn(List list) const noexcept { return Places[static_cast<std::size_t>(list)] != 0; }
  };

  /// None for a row that was never touched.
  const Row* Find(std::int32_t row) const;
  Row* Find(std::int32_t row);
  /// None for a row that is not dirty, or deleted.
  const Row* FindDirty(std::int32_t row) const;
  /// None where the fetched value counts.
  const Cell* FindStored(std::int32_t row, std::size_t column) const;
  /// Touches a row; it has at least so many cells from then on.
  Row& Touch(std::int32_t row, std::size_t columns);

  bool IsIn(List list, std::int32_t row) const;
  bool Any(List list) const noexcept { return !Members(list).empty(); }
  /// Fails with 457 for a row that is in the list.
  void Enter(List list, std::int32_t row);
  /// Nothing happens for a row that is not in the list. A row that is no longer dirty has no old values.
  void Leave(List list, std::int32_t row);
  std::vector<std::int32_t> Rows(List list) const;

 private:
  using Sequence = std::map<std::uint64_t, std::int32_t>;  // a running number to a row

  Sequence& Members(List list) noexcept { return lists_[static_cast<std::size_t>(list)]; }
  const Sequence& Members(List list) const noexcept { return lists_[static_cast<std::size_t>(list)]; }

  Row& FindOrAdd(std::int32_t row);

  std::unordered_map<std::int32_t, Row> rows_;
  mutable std::int32_t askedRow_ = -1;  // the row that was asked for last, since it is mostly asked for again
  mutable const Row* asked_ = nullptr;
  std::array<Sequence, 4> lists_;
  std::uint64_t lastPlace_ = 0;
};

}  // namespace velmoria
