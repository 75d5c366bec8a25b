#include <algorithm>
#include <array>

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

const TypedStorage* FindStorage(zDataTypes dataType) noexcept {
  const auto found = std::ranges::find(kStorages, dataType, &TypedStorage::DataType);
  return found == kStorages.end() ? nullptr : &*found;
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
