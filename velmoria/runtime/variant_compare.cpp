#include <algorithm>
#include <cmath>
#include <compare>

#include "velmoria/runtime/error.h"
#include "velmoria/runtime/variant_impl.h"

namespace velmoria {

namespace {

bool SameArrays(const ArrayBody& left, const ArrayBody& right) {
  return &left == &right ||
         (left.Dimensions() == right.Dimensions() && left.Bytes() == right.Bytes() && left.Values() == right.Values());
}

bool IsReal(const Variant& value) noexcept {
  return value.Type() == VarType::Single || value.Type() == VarType::Double;
}

int Sign(std::partial_ordering order) {
  if (order == std::partial_ordering::unordered) Fail(RuntimeFailure::TypeMismatch);
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

// Exact unless a real number takes part.
int CompareNumbers(const Variant& left, const Variant& right) {
  if (IsReal(left) || IsReal(right)) return Sign(left.AsDouble() <=> right.AsDouble());
  if (left.Type() == VarType::Decimal || right.Type() == VarType::Decimal) {
    return Sign(left.AsDecimal() <=> right.AsDecimal());
  }
  return Sign(left.AsCurrency() <=> right.AsCurrency());
}

}  // namespace

bool operator==(const Variant& left, const Variant& right) {
  if (left.type_ != right.type_) return false;
  switch (left.type_) {
    case VarType::Empty:
    case VarType::Null:
    case VarType::Error: return true;
    case VarType::Single: return left.single_ == right.single_;
    case VarType::Double: return left.real_ == right.real_;
    case VarType::Date: return SecondsBetween({left.real_}, {right.real_}) == 0;
    case VarType::String: return left.TextView() == right.TextView();
    case VarType::Decimal: return left.HeldDecimal() == right.HeldDecimal();
    case VarType::Object: return left.object_ == right.object_;
    default: return left.IsArray() ? SameArrays(*left.array_, *right.array_) : left.whole_ == right.whole_;
  }
}

int Compare(const Variant& left, const Variant& right) {
  if (left.IsNumber() && right.IsNumber()) return CompareNumbers(left, right);
  if (left.IsText() && right.IsText()) return Sign(left.TextView() <=> right.TextView());
  if (left.Type() == VarType::Date && right.Type() == VarType::Date) {
    return Sign(std::int64_t{0} <=> SecondsBetween(left.AsDate(), right.AsDate()));
  }
  Fail(RuntimeFailure::TypeMismatch);
}

}  // namespace velmoria
