#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The count that texts and arrays share by; a value may pass from thread to thread, so it is atomic.
class SharedCount {
 public:
  void Add() noexcept { count_.fetch_add(1, std::memory_order_relaxed); }
  /// True when that was the last one.
  bool Remove() noexcept { return count_.fetch_sub(1, std::memory_order_acq_rel) == 1; }
  bool IsShared() const noexcept { return count_.load(std::memory_order_acquire) != 1; }

 private:
  std::atomic<std::uint32_t> count_{1};
};

/// An immutable text with its bytes right behind it.
class TextBody {
 public:
  static TextBody* Make(std::string_view text);
  static void Release(const TextBody* body) noexcept;
  void Share() const noexcept { count_.Add(); }
  std::string_view Text() const noexcept { return {reinterpret_cast<const char*>(this + 1), length_}; }

 private:
  explicit TextBody(std::size_t length) noexcept : length_(length) {}

  mutable SharedCount count_;
  std::size_t length_;
};

/// The elements of an array with its bounds. Byte arrays keep plain bytes; all others keep Variants, the first
/// dimension running fastest.
class ArrayBody {
 public:
  struct Dimension {
    std::int32_t Lower;
    std::int32_t Upper;
    std::size_t Count() const noexcept { return static_cast<std::size_t>(std::int64_t{Upper} - Lower + 1); }
    bool operator==(const Dimension&) const = default;
  };

  ArrayBody(VarType element, std::vector<Dimension> dimensions);
  /// A Byte array with lower bound 0. Raises 6 for more bytes than its upper bound can tell.
  explicit ArrayBody(std::vector<Byte> bytes);
  ArrayBody(const ArrayBody& other)
      : element_(other.element_), dimensions_(other.dimensions_), values_(other.values_), bytes_(other.bytes_) {}
  ArrayBody& operator=(const ArrayBody&) = delete;

  SharedCount& Count() const noexcept { return count_; }
  VarType ElementType() const noexcept { return element_; }
  const std::vector<Dimension>& Dimensions() const noexcept { return dimensions_; }
  /// Raises 9 for a dimension that is not there.
  const Dimension& DimensionAt(int number) const;
  /// Where an element lies; raises 9 for another number of subscripts or one out of bounds.
  std::size_t PlaceOf(std::initializer_list<std::int32_t> subscripts) const;

  Variant Value(std::size_t place) const;
  /// Converts to the type of the elements.
  void SetValue(std::size_t place, const Variant& value);
  void ResizeLast(std::int32_t upper);
  std::vector<Byte>& Bytes() noexcept { return bytes_; }
  const std::vector<Byte>& Bytes() const noexcept { return bytes_; }
  std::vector<Variant>& Values() noexcept { return values_; }
  const std::vector<Variant>& Values() const noexcept { return values_; }

 private:
  std::size_t CountAll() const noexcept;
  void SetSize(std::size_t count);

  mutable SharedCount count_;
  VarType element_;
  std::vector<Dimension> dimensions_;
  std::vector<Variant> values_;
  std::vector<Byte> bytes_;
};

/// The value in a type that elements of arrays can have; raises the failure of the conversion.
Variant ConvertTo(const Variant& value, VarType type);
/// The zero of that type: Empty for Variant, Nothing for Object. Raises 5 for a type that elements cannot have.
Variant ZeroOf(VarType type);

}  // namespace velmoria
