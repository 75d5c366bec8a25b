#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "velmoria/runtime/key_index.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The container of every run-time collection: members in insertion order with 1-based positions and, if they have
/// one, a text key that is unique without regard to case. Finding by position or key is O(1) and allocates nothing;
/// inserting and removing anywhere but at the end renumbers what follows.
///
/// A member that is not there raises 9 for a position and 5 for a key, an index that is neither raises 13, a key in use
/// raises 457. A refused operation changes nothing.
template <class T>
class KeyedList {
 public:
  struct Entry {
    T Value;
    std::string Key;
    bool HasKey;
  };

  std::size_t Count() const noexcept { return entries_.size(); }
  bool IsEmpty() const noexcept { return entries_.empty(); }

  /// The member, or null when there is none; positions are 1-based.
  const T* FindAt(long long position) const noexcept;
  const T* FindKey(std::string_view key) const noexcept;
  /// A number is a position, a String a key; anything else finds nothing.
  const T* Find(const Variant& index) const noexcept;
  /// A copy of what Find finds, or T() when it finds nothing: in a list of handles an empty one.
  T Get(const Variant& index) const;
  /// The 1-based position, or 0.
  std::size_t PositionOf(std::string_view key) const noexcept;
  std::size_t PositionOf(const std::string& key) const noexcept { return PositionOf(std::string_view(key)); }
  std::size_t PositionOf(const char* key) const noexcept { return PositionOf(std::string_view(key)); }
  std::size_t PositionOf(const Variant& index) const noexcept;
  /// The same; a key is looked for at `guess`, any number, first.
  std::size_t PositionOf(const Variant& index, std::size_t guess) const noexcept;

  const T& At(std::size_t position) const;
  const T& At(const Variant& index) const;
  /// The key of a member as it was given; empty when it has none.
  std::string_view KeyAt(std::size_t position) const { return Checked(position).Key; }

  void Add(T value, std::string_view key);
  void Add(T value);
  /// Inserts so that the member stands at the given 1-based position, Count() + 1 appending.
  void Insert(std::size_t position, T value, std::string_view key);
  void Insert(std::size_t position, T value);
  void RemoveAt(std::size_t position);
  /// Removes by key; false when there is none.
  bool RemoveKey(std::string_view key);
  /// Gives the member at a position another key; its position stays.
  void Rename(std::size_t position, std::string_view key);
  void Clear() noexcept;
  /// The same keys in the same order, over what `make` makes of each member.
  template <class Make>
  KeyedList Mapped(Make make) const;

  class Iterator {
   public:
    using difference_type = std::ptrdiff_t;
    using value_type = T;
    Iterator() = default;
    explicit Iterator(const Entry* entry) : entry_(entry) {}
    const T& operator*() const { return entry_->Value; }
    const T* operator->() const { return &entry_->Value; }
    Iterator& operator++() { return ++entry_, *this; }
    Iterator operator++(int) { return Iterator(entry_++); }
    bool operator==(const Iterator&) const = default;

   private:
    const Entry* entry_ = nullptr;
  };
  Iterator begin() const noexcept { return Iterator(entries_.data()); }
  Iterator end() const noexcept { return Iterator(entries_.data() + entries_.size()); }

 private:
  static constexpr std::size_t kSearched = 4;  // so few members are looked through; an index costs more than it finds

  const Entry& Checked(std::size_t position) const;
  /// Makes the index when one more member calls for it, so that filing its key does not allocate.
  void ReserveOne();
  void InsertEntry(std::size_t position, Entry entry);
  void RefuseKeyInUse(std::string_view key) const;

  std::vector<Entry> entries_;
  KeyIndex index_;  // empty until there were more than kSearched members
};

}  // namespace velmoria

#include "velmoria/runtime/keyed_list_inline.h"
