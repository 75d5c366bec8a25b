#include <algorithm>
#include <array>
#include <cmath>

#include "velmoria/properties/checked_value_impl.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/typed_value_impl.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

std::optional<Refusal> RefusalOfText(const Variant& value, const PropertyData& definition) {
  const auto length = CharacterCount(value.IsText() ? std::string(value.TextView()) : value.AsText());
  if (length == 0 && !has(definition.Flags(), pfAllowZeroLength)) {
    return Refusal{errValue_ZeroLength, {definition.Name(), definition.FlagsDisplay()}};
  }
  if (definition.Size() > 0 && length > static_cast<std::size_t>(definition.Size())) {
    return Refusal{errValue_Size, {NumberText(definition.Size()), NumberText(static_cast<long long>(length))}};
  }
  return std::nullopt;
}

std::optional<Refusal> RefusalOfBytes(const Variant& value, const PropertyData& definition) {
  constexpr std::array<std::string_view, 3> kBinary{"Variant()", "Byte()", "String"};
  const auto type = value.TypeName();
  if (std::ranges::find(kBinary, type) != kBinary.end()) return std::nullopt;
  return Refusal{errValue_BLOB, {definition.Name(), type}};
}

// By the whole second; what is no date at all differs from every one.
bool DiffersFromDate(Date old, const Variant& present) {
  if (present.IsNull()) return true;
  try {
    return SecondsBetween(old, present.AsDate()) != 0;
  } catch (const Error&) { return true; }
}

// NaN is a number, but not even the same as itself.
bool IsOrdered(const Variant& value) { return value.IsNumber() && !std::isnan(value.AsDouble()); }

}  // namespace

std::optional<Refusal> RefusalOf(const Variant& value, const PropertyData& definition) {
  if (value.IsEmpty() || value.IsNull()) {
    if (!has(definition.Flags(), pfRequired)) return std::nullopt;
    return Refusal{errValue_Required, {definition.Name(), definition.FlagsDisplay()}};
  }
  if (definition.DataType() == dtString) return RefusalOfText(value, definition);
  if (definition.DataType() == dtByteArray) return RefusalOfBytes(value, definition);
  return std::nullopt;
}

Refusal MismatchOf(const Variant& value, const PropertyData& definition) {
  if (VarTypeMatches(value.Type(), definition.DataType())) return {errProperty_Value, {definition.Name()}};
  return {errProperty_DataType, {definition.Name(), definition.DataTypeName(), value.TypeName()}};
}

bool DiffersFromOld(const Variant& old, const Variant& present) {
  constexpr std::array kAlwaysDiffer{VarType::Object, VarType::Error, VarType::Variant, VarType::Unknown,
                                     VarType::Array};
  if (old.Type() == VarType::Date) return DiffersFromDate(old.AsDate(), present);
  if (std::ranges::find(kAlwaysDiffer, old.Type()) != kAlwaysDiffer.end()) return true;
  if (IsOrdered(old) && IsOrdered(present)) return Compare(old, present) != 0;
  return !(old == present);
}

std::string ValueText(const Variant& value) {
  if (value.IsNull()) return {};
  try {
    return value.AsText();
  } catch (const Error&) { return "(" + value.TypeName() + ")"; }
}

}  // namespace velmoria
