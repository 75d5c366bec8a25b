#include "velmoria/runtime/key_index.h"

#include <cmath>

#include "velmoria/runtime/number_text_impl.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

long long PositionFromIndex(const Variant& index) noexcept {
  if (index.Type() == VarType::Long || index.Type() == VarType::Integer) return index.AsLong();
  if (!index.IsNumber()) return 0;
  const double value = index.AsDouble();
  if (!(std::fabs(value) < 1e15)) return 0;
  return static_cast<long long>(RoundHalfEven(value));
}

void KeyIndex::ReserveOne() {
  if ((used_ + 1) * 4 <= slots_.size() * 3) return;
  std::vector<Slot> old(slots_.empty() ? 8 : slots_.size() * 2);
  old.swap(slots_);
  for (const Slot& entry : old) {
    if (entry.Place != 0) Put(entry);
  }
}

void KeyIndex::Add(std::size_t hash, std::size_t place) {
  ReserveOne();
  Put({Fold(hash), static_cast<std::uint32_t>(place + 1)});
  ++used_;
}

void KeyIndex::Put(Slot entry) noexcept {
  std::size_t slot = entry.Hash & Mask();
  while (slots_[slot].Place != 0) slot = (slot + 1) & Mask();
  slots_[slot] = entry;
}

void KeyIndex::Erase(std::size_t hash, std::size_t place) noexcept {
  if (slots_.empty()) return;
  std::size_t hole = Fold(hash) & Mask();
  while (slots_[hole].Place != place + 1) {
    if (slots_[hole].Place == 0) return;
    hole = (hole + 1) & Mask();
  }
  --used_;
  // Entries behind the hole move up into it, unless that would put them before the slot where their search begins.
  for (std::size_t next = (hole + 1) & Mask(); slots_[next].Place != 0; next = (next + 1) & Mask()) {
    const std::size_t home = slots_[next].Hash & Mask();
    if (((next - home) & Mask()) < ((next - hole) & Mask())) continue;
    slots_[hole] = slots_[next];
    hole = next;
  }
  slots_[hole] = {};
}

void KeyIndex::OpenGap(std::size_t place) noexcept {
  for (Slot& entry : slots_) {
    if (entry.Place > place) ++entry.Place;
  }
}

void KeyIndex::CloseGap(std::size_t place) noexcept {
  for (Slot& entry : slots_) {
    if (entry.Place > place) --entry.Place;
  }
}

void KeyIndex::Clear() noexcept {
  slots_.clear();
  used_ = 0;
}

}  // namespace velmoria
