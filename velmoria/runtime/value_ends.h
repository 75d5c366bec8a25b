#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

namespace velmoria {

/// Where values that stand run together in one text end: 16 bits for each as long as all of them together are short
/// enough for that, 32 otherwise.
class ValueEnds {
 public:
  static constexpr std::size_t kMostBytes = std::numeric_limits<std::uint32_t>::max();

  ValueEnds() = default;
  /// Room for the ends of values that have `total` bytes together, at most kMostBytes.
  ValueEnds(std::size_t values, std::size_t total)
      : isWide_(total > std::numeric_limits<std::uint16_t>::max()),
        ends_(std::make_unique_for_overwrite<std::byte[]>(Bytes(values))) {}

  explicit operator bool() const noexcept { return ends_ != nullptr; }

  void Set(std::size_t value, std::size_t end) noexcept {
    isWide_ ? Put(value, static_cast<std::uint32_t>(end)) : Put(value, static_cast<std::uint16_t>(end));
  }
  std::size_t At(std::size_t value) const noexcept {
    return isWide_ ? Get<std::uint32_t>(value) : Get<std::uint16_t>(value);
  }

  /// As they lie in memory.
  std::byte* Data() const noexcept { return ends_.get(); }
  std::size_t Bytes(std::size_t values) const noexcept {
    return values * (isWide_ ? sizeof(std::uint32_t) : sizeof(std::uint16_t));
  }

 private:
  template <class End>
  void Put(std::size_t value, End end) noexcept {
    std::memcpy(ends_.get() + value * sizeof end, &end, sizeof end);
  }
  template <class End>
  std::size_t Get(std::size_t value) const noexcept {
    End end;
    std::memcpy(&end, ends_.get() + value * sizeof end, sizeof end);
    return end;
  }

  bool isWide_ = false;
  std::unique_ptr<std::byte[]> ends_;
};

}  // namespace velmoria
