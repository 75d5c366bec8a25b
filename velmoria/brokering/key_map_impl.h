#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "velmoria/runtime/key_index.h"

namespace velmoria {

/// The rows of a result by the keys of their objects, without regard to case. A key costs its characters and about 30
/// bytes: a collection that has been walked holds one for every row.
class KeyMap {
 public:
  /// The first row seen under a key stays.
  void Add(std::string_view key, std::int64_t row);
  /// The row under a key, or -1.
  std::int64_t RowOf(std::string_view key) const noexcept;
  bool IsEmpty() const noexcept { return entries_.empty(); }

 private:
  std::string_view KeyAt(std::size_t place) const noexcept;
  std::size_t Find(std::string_view key, std::size_t hash) const noexcept;

  struct Entry {
    std::size_t End;  // of its key among all keys
    std::int64_t Row;
  };

  std::string keys_;  // run together
  std::vector<Entry> entries_;
  KeyIndex index_;
};

}  // namespace velmoria
