#include <algorithm>

#include "velmoria/brokering/key_map_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

void KeyMap::Add(std::string_view key, std::int64_t row) {
  if (row <= lastRow_ && RowOf(key) >= 0) return;
  keys_.resize(entries_.empty() ? 0 : entries_.back().End);  // nothing is left of one that could not be added
  keys_.append(key);
  entries_.push_back({keys_.size(), row});
  lastRow_ = std::max(lastRow_, row);
}

void KeyMap::IndexAll() const {
  for (; indexed_ < entries_.size(); ++indexed_) {
    const auto key = KeyAt(indexed_);
    const std::size_t hash = HashFolded(key);
    if (Find(key, hash) == KeyIndex::kNone) index_.Add(hash, indexed_);
  }
}

std::int64_t KeyMap::RowOf(std::string_view key) const {
  IndexAll();
  const std::size_t place = Find(key, HashFolded(key));
  return place == KeyIndex::kNone ? -1 : entries_[place].Row;
}

std::string_view KeyMap::KeyAt(std::size_t place) const noexcept {
  const std::size_t begin = place == 0 ? 0 : entries_[place - 1].End;
  return std::string_view(keys_).substr(begin, entries_[place].End - begin);
}

std::size_t KeyMap::Find(std::string_view key, std::size_t hash) const noexcept {
  return index_.Find(hash, [&](std::size_t place) { return EqualFolded(KeyAt(place), key); });
}

}  // namespace velmoria
