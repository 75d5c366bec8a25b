#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "velmoria/runtime/api.h"

namespace velmoria {

class Variant;

/// The position that a number names as an index, rounded half to even; 0 when the value is no number or cannot be one.
VELMORIA_API long long PositionFromIndex(const Variant& index) noexcept;

/// Where the members of a list stand, by the hash of their key: an open table that holds places only, so that a key is
/// stored once, with its member. Places count from 0.
class VELMORIA_API KeyIndex {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  /// The place for which `isKey(place)` holds among those under the hash, or kNone.
  template <class IsKey>
  std::size_t Find(std::size_t hash, IsKey isKey) const {
    if (slots_.empty()) return kNone;
    const std::uint32_t folded = Fold(hash);
    for (std::size_t slot = folded & Mask(); slots_[slot].Place != 0; slot = (slot + 1) & Mask()) {
      const std::size_t place = slots_[slot].Place - 1;
      if (slots_[slot].Hash == folded && isKey(place)) return place;
    }
    return kNone;
  }

  /// Whether nothing was reserved or added since it was made or cleared.
  bool IsEmpty() const noexcept { return slots_.empty(); }
  /// Makes sure that the next Add does not allocate.
  void ReserveOne();
  void Add(std::size_t hash, std::size_t place);
  /// Forgets the entry of that hash and place.
  void Erase(std::size_t hash, std::size_t place) noexcept;
  /// Moves every place from `place` on one further, or one nearer.
  void OpenGap(std::size_t place) noexcept;
  void CloseGap(std::size_t place) noexcept;
  void Clear() noexcept;

 private:
  struct Slot {
    std::uint32_t Hash = 0;
    std::uint32_t Place = 0;  // counted from 1; 0 is a free slot
  };

  static std::uint32_t Fold(std::size_t hash) noexcept { return static_cast<std::uint32_t>(hash ^ (hash >> 32U)); }
  std::size_t Mask() const noexcept { return slots_.size() - 1; }
  void Put(Slot entry) noexcept;

  std::vector<Slot> slots_;  // none, or a power of two that is never more than three quarters full
  std::size_t used_ = 0;
};

}  // namespace velmoria
