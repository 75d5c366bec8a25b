#pragma once

#include <utility>

#include "velmoria/runtime/error.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

template <class T>
const T* KeyedList<T>::FindAt(long long position) const noexcept {
  if (position < 1 || static_cast<unsigned long long>(position) > entries_.size()) return nullptr;
  return &entries_[static_cast<std::size_t>(position) - 1].Value;
}

template <class T>
std::size_t KeyedList<T>::PositionOf(std::string_view key) const noexcept {
  const auto isKey = [&](std::size_t at) { return EqualFolded(entries_[at].Key, key); };
  if (!index_.IsEmpty()) return index_.Find(HashFolded(key), isKey) + 1;  // KeyIndex::kNone + 1 is 0
  for (std::size_t place = 0; place < entries_.size(); ++place) {
    if (entries_[place].HasKey && isKey(place)) return place + 1;
  }
  return 0;
}

template <class T>
std::size_t KeyedList<T>::PositionOf(const Variant& index) const noexcept {
  if (index.IsText()) return PositionOf(index.TextView());
  const long long position = PositionFromIndex(index);
  return FindAt(position) ? static_cast<std::size_t>(position) : 0;
}

template <class T>
std::size_t KeyedList<T>::PositionOf(const Variant& index, std::size_t guess) const noexcept {
  if (!index.IsText() || guess < 1 || guess > entries_.size()) return PositionOf(index);
  const Entry& guessed = entries_[guess - 1];
  const auto key = index.TextView();
  return guessed.HasKey && (guessed.Key == key || EqualFolded(guessed.Key, key)) ? guess : PositionOf(key);
}

template <class T>
const T* KeyedList<T>::FindKey(std::string_view key) const noexcept {
  const std::size_t position = PositionOf(key);
  return position == 0 ? nullptr : &entries_[position - 1].Value;
}

template <class T>
const T* KeyedList<T>::Find(const Variant& index) const noexcept {
  return index.IsText() ? FindKey(index.TextView()) : FindAt(PositionFromIndex(index));
}

template <class T>
T KeyedList<T>::Get(const Variant& index) const {
  const T* found = Find(index);
  return found ? *found : T();
}

template <class T>
const typename KeyedList<T>::Entry& KeyedList<T>::Checked(std::size_t position) const {
  if (position < 1 || position > entries_.size()) Fail(RuntimeFailure::SubscriptOutOfRange);
  return entries_[position - 1];
}

template <class T>
template <class Make>
KeyedList<T> KeyedList<T>::Mapped(Make make) const {
  KeyedList mapped;
  mapped.entries_.reserve(entries_.size());
  for (const Entry& entry : entries_) mapped.entries_.push_back({make(entry.Value), entry.Key, entry.HasKey});
  mapped.index_ = index_;
  return mapped;
}

template <class T>
const T& KeyedList<T>::At(std::size_t position) const {
  return Checked(position).Value;
}

template <class T>
const T& KeyedList<T>::At(const Variant& index) const {
  if (const T* found = Find(index)) return *found;
  if (index.IsText()) Fail(RuntimeFailure::InvalidArgument);
  Fail(index.IsNumber() ? RuntimeFailure::SubscriptOutOfRange : RuntimeFailure::TypeMismatch);
}

template <class T>
void KeyedList<T>::RefuseKeyInUse(std::string_view key) const {
  if (PositionOf(key) != 0) Fail(RuntimeFailure::KeyInUse);
}

template <class T>
void KeyedList<T>::ReserveOne() {
  if (!index_.IsEmpty()) return index_.ReserveOne();
  if (entries_.size() < kSearched) return;
  KeyIndex index;
  for (std::size_t place = 0; place < entries_.size(); ++place) {
    if (entries_[place].HasKey) index.Add(HashFolded(entries_[place].Key), place);
  }
  index.ReserveOne();
  index_ = std::move(index);
}

template <class T>
void KeyedList<T>::InsertEntry(std::size_t position, Entry entry) {
  if (position < 1 || position > entries_.size() + 1) Fail(RuntimeFailure::SubscriptOutOfRange);
  const std::size_t place = position - 1;
  const bool keyed = entry.HasKey;
  const bool last = place == entries_.size();
  if (keyed) RefuseKeyInUse(entry.Key);
  ReserveOne();
  if (last) {
    entries_.push_back(std::move(entry));
  } else {
    entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(place), std::move(entry));
    index_.OpenGap(place);
  }
  if (keyed && !index_.IsEmpty()) index_.Add(HashFolded(entries_[place].Key), place);
}

template <class T>
void KeyedList<T>::Add(T value, std::string_view key) {
  InsertEntry(entries_.size() + 1, Entry{std::move(value), std::string(key), true});
}

template <class T>
void KeyedList<T>::Add(T value) {
  InsertEntry(entries_.size() + 1, Entry{std::move(value), {}, false});
}

template <class T>
void KeyedList<T>::Insert(std::size_t position, T value, std::string_view key) {
  InsertEntry(position, Entry{std::move(value), std::string(key), true});
}

template <class T>
void KeyedList<T>::Insert(std::size_t position, T value) {
  InsertEntry(position, Entry{std::move(value), {}, false});
}

template <class T>
void KeyedList<T>::RemoveAt(std::size_t position) {
  const Entry& entry = Checked(position);
  const std::size_t place = position - 1;
  if (entry.HasKey && !index_.IsEmpty()) index_.Erase(HashFolded(entry.Key), place);
  // The member ends last: its destructor may look at this list again.
  const Entry removed = std::move(entries_[place]);
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(place));
  if (place < entries_.size()) index_.CloseGap(place);
}

template <class T>
bool KeyedList<T>::RemoveKey(std::string_view key) {
  const std::size_t position = PositionOf(key);
  if (position == 0) return false;
  RemoveAt(position);
  return true;
}

template <class T>
void KeyedList<T>::Rename(std::size_t position, std::string_view key) {
  const Entry& entry = Checked(position);
  const std::size_t holder = PositionOf(key);
  if (holder != 0 && holder != position) Fail(RuntimeFailure::KeyInUse);
  const std::size_t place = position - 1;
  std::string renamed(key);
  const bool indexed = !index_.IsEmpty();
  if (indexed) index_.ReserveOne();
  if (entry.HasKey && indexed) index_.Erase(HashFolded(entry.Key), place);
  entries_[place].Key = std::move(renamed);
  entries_[place].HasKey = true;
  if (indexed) index_.Add(HashFolded(entries_[place].Key), place);
}

template <class T>
void KeyedList<T>::Clear() noexcept {
  const std::vector<Entry> ending = std::move(entries_);
  entries_.clear();
  index_.Clear();
}

}  // namespace velmoria
