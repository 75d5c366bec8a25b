#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace velmoria {

/// Where values that stand run together end: 16 bits for each as long as all of them together are short enough for
/// that, 32 otherwise. A view of memory that somebody else owns.
class ValueEnds {
 public:
  static constexpr std::size_t kMostBytes = std::numeric_limits<std::uint32_t>::max();

  ValueEnds() = default;
  /// The ends of values that have `total` bytes together, at most kMostBytes, in memory of Bytes.
  ValueEnds(std::byte* memory, std::size_t total) noexcept : isWide_(IsWide(total)), ends_(memory) {}
  static std::size_t Bytes(std::size_t values, std::size_t total) noexcept {
    return values * (IsWide(total) ? sizeof(std::uint32_t) : sizeof(std::uint16_t));
  }

  void Set(std::size_t value, std::size_t end) const noexcept {
    isWide_ ? Put(value, static_cast<std::uint32_t>(end)) : Put(value, static_cast<std::uint16_t>(end));
  }
  std::size_t At(std::size_t value) const noexcept {
    return isWide_ ? Get<std::uint32_t>(value) : Get<std::uint16_t>(value);
  }

 private:
  static bool IsWide(std::size_t total) noexcept { return total > std::numeric_limits<std::uint16_t>::max(); }
  template <class End>
  void Put(std::size_t value, End end) const noexcept {
    std::memcpy(ends_ + value * sizeof end, &end, sizeof end);
  }
  template <class End>
  std::size_t Get(std::size_t value) const noexcept {
    End end;
    std::memcpy(&end, ends_ + value * sizeof end, sizeof end);
    return end;
  }

  bool isWide_ = false;
  std::byte* ends_ = nullptr;
};

}  // namespace velmoria
