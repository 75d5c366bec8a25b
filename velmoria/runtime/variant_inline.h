#pragma once

#include <cstring>

#include "velmoria/runtime/variant.h"

namespace velmoria {

// Plain values are copied as 16 bytes; only what small_[0] marks as a reference is counted.
inline Variant::Variant(const Variant& other) noexcept {
  std::memcpy(static_cast<void*>(this), &other, sizeof *this);
  if (HoldsReference()) AddReference();
}

inline Variant::Variant(Variant&& other) noexcept {
  std::memcpy(static_cast<void*>(this), &other, sizeof *this);
  other.type_ = VarType::Empty;
  other.small_[0] = 0;
}

inline void Variant::Swap(Variant& other) noexcept {
  char kept[sizeof *this];
  std::memcpy(kept, static_cast<const void*>(this), sizeof kept);
  std::memcpy(static_cast<void*>(this), &other, sizeof kept);
  std::memcpy(static_cast<void*>(&other), kept, sizeof kept);
}

// What was held ends last, since the end of an object may reach this value again.
inline Variant& Variant::operator=(const Variant& other) noexcept {
  Variant(other).Swap(*this);
  return *this;
}

inline Variant& Variant::operator=(Variant&& other) noexcept {
  Variant(std::move(other)).Swap(*this);
  return *this;
}

inline bool Variant::IsNumber() const noexcept {
  constexpr unsigned kNumbers =
      1U << 2U | 1U << 3U | 1U << 4U | 1U << 5U | 1U << 6U | 1U << 11U | 1U << 14U | 1U << 17U;
  const auto code = static_cast<unsigned>(type_);
  return code < 32 && ((kNumbers >> code) & 1U) != 0;
}

inline std::string_view Variant::TextView() const noexcept {
  if (type_ != VarType::String) return {};
  return HoldsReference() ? SharedText() : std::string_view(InlineText(), small_[0]);
}

}  // namespace velmoria
