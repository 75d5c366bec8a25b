#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "velmoria/runtime/key_index.h"

namespace velmoria {

/// The rows of a result by the keys of their objects, without regard to case. A key costs its characters and 16 bytes,
/// and about as much again once a key was looked for: a collection that has been walked holds one for every row.
class KeyMap {
 public:
  /// The first row seen under a key stays.
  void Add(std::string_view key, std::int64_t row);
  /// The row under a key, or -1.
  std::int64_t RowOf(std::string_view key) const;
  bool IsEmpty() const noexcept { return entries_.empty(); }

 private:
  std::string_view KeyAt(std::size_t place) const noexcept;
  std::size_t Find(std::string_view key, std::size_t hash) const noexcept;
  void IndexAll() const;

  struct Entry {
    std::size_t End;  // of its key among all keys
    std::int64_t Row;
  };

  std::string keys_;  // run together
  std::vector<Entry> entries_;
  std::int64_t lastRow_ = -1;  // behind it, no row was seen yet
  // A walk looks for no keys, so they are indexed when one is looked for.
  mutable KeyIndex index_;
  mutable std::size_t indexed_ = 0;  // entries that are
};

}  // namespace velmoria
