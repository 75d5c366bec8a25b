#include <array>
#include <cstddef>

#include "velmoria/properties/typed_value_impl.h"

namespace velmoria {

namespace {

struct TypedStorage {
  zDataTypes DataType;
  VarType Storage;
  Variant (*Convert)(const Variant&);
};

constexpr std::array kStorages{
    TypedStorage{dtString, VarType::String, [](const Variant& value) { return Variant(value.AsText()); }},
    TypedStorage{dtLongInteger, VarType::Long, [](const Variant& value) { return Variant(value.AsLong()); }},
    TypedStorage{dtDate, VarType::Date, [](const Variant& value) { return Variant(value.AsDate()); }},
    TypedStorage{dtInteger, VarType::Integer, [](const Variant& value) { return Variant(value.AsInteger()); }},
    TypedStorage{dtBoolean, VarType::Boolean, [](const Variant& value) { return Variant(value.AsBoolean()); }},
    TypedStorage{dtCurrency, VarType::Currency, [](const Variant& value) { return Variant(value.AsCurrency()); }},
    TypedStorage{dtSingle, VarType::Single, [](const Variant& value) { return Variant(value.AsSingle()); }},
    TypedStorage{dtDouble, VarType::Double, [](const Variant& value) { return Variant(value.AsDouble()); }},
    TypedStorage{dtDecimal, VarType::Decimal, [](const Variant& value) { return Variant(value.AsDecimal()); }},
    TypedStorage{dtByte, VarType::Byte, [](const Variant& value) { return Variant(value.AsByte()); }},
    TypedStorage{dtByteArray, VarType::Array, [](const Variant& value) { return value; }},
};

// The rows stand in the order of their codes, from 1 on: every read of a Value comes by here.
static_assert([] {
  for (std::size_t place = 0; place < kStorages.size(); ++place) {
    if (static_cast<std::size_t>(kStorages[place].DataType) != place + 1) return false;
  }
  return true;
}());

const TypedStorage* FindStorage(zDataTypes dataType) noexcept {
  const auto place = static_cast<std::size_t>(dataType) - 1;  // far out of range for dtVariant and other codes below 1
  return place < kStorages.size() ? &kStorages[place] : nullptr;
}

}  // namespace

Variant ConvertToDataType(const Variant& value, zDataTypes dataType) {
  const auto* storage = FindStorage(dataType);
  if (!storage || storage->Storage == value.Type()) return value;
  return storage->Convert(value);
}

bool VarTypeMatches(VarType type, zDataTypes dataType) noexcept {
  const auto* storage = FindStorage(dataType);
  return storage && storage->Storage == type;
}

}  // namespace velmoria
