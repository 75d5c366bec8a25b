#include "velmoria/platform/odbc/parameters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/date_values.h"
#include "velmoria/platform/odbc/output_buffer.h"
#include "velmoria/platform/odbc/output_landing.h"
#include "velmoria/platform/odbc/raw_values.h"
#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/date_impl.h"
#include "velmoria/runtime/error.h"

namespace velmoria::odbc {

struct ParameterValues::Slot {
  Small CType = SQL_C_CHAR;
  Small Type = SQL_VARCHAR;
  ULength Size = 1;
  Small Digits = 0;
  Length Indicator = SQL_NULL_DATA;
  std::array<std::byte, 16> Fixed{};
  std::string Number{};  // in digits
  Variant Given{};       // a text or bytes, which the driver reads in place; of an output what it takes
  Small Direction = SQL_PARAM_INPUT;
  // Of an output, instead of the values above: one of these.
  std::unique_ptr<OutputLanding> Output{};
  std::unique_ptr<OutputBuffer> Buffer{};
  ColumnStorage Storage = ColumnStorage::Text;  // how the output is held
};

namespace {

using FixedBytes = std::array<std::byte, 16>;
constexpr Small kMillisecondDigits = 3;
constexpr ULength kTimestampSize = 23;  // yyyy-mm-dd hh:mm:ss.fff
constexpr ULength kDateSize = 10;
constexpr ULength kTimeSize = 8;

struct FixedKind {
  VarType Value;
  Small CType;
  Small Type;
  ULength Size;
};

constexpr std::array kFixedKinds = {
    FixedKind{VarType::Integer, SQL_C_SSHORT, SQL_SMALLINT, 5},
    FixedKind{VarType::Long, SQL_C_SLONG, SQL_INTEGER, 10},
    FixedKind{VarType::Single, SQL_C_FLOAT, SQL_REAL, 7},
    FixedKind{VarType::Double, SQL_C_DOUBLE, SQL_DOUBLE, 15},
    FixedKind{VarType::Byte, SQL_C_UTINYINT, SQL_TINYINT, 3},
    FixedKind{VarType::Boolean, SQL_C_BIT, SQL_BIT, 1},
};

constexpr std::array<std::array<Small, 2>, 3> kDateTypes = {{
    {rdTypeDATE, SQL_TYPE_DATE},
    {rdTypeTIME, SQL_TYPE_TIME},
    {rdTypeTIMESTAMP, SQL_TYPE_TIMESTAMP},
}};

// The driver's code of a documented one.
Small DriverType(std::int32_t type) noexcept {
  for (const auto& [documented, own] : kDateTypes) {
    if (documented == type) return own;
  }
  return static_cast<Small>(type);
}

Length StoreFixed(FixedBytes& fixed, const Variant& value) {
  switch (value.Type()) {
    case VarType::Integer: return Store(fixed, value.AsInteger());
    case VarType::Long: return Store(fixed, value.AsLong());
    case VarType::Single: return Store(fixed, value.AsSingle());
    case VarType::Double: return Store(fixed, value.AsDouble());
    case VarType::Boolean: return Store(fixed, static_cast<unsigned char>(value.AsBoolean() ? 1 : 0));
    default: return Store(fixed, value.AsByte());
  }
}

// A long text comes with the call, unlike one of a column.
ColumnStorage OutputStorage(std::int32_t type) {
  if (type == rdTypeLONGVARCHAR) return ColumnStorage::Text;
  const auto storage = StorageOf(type);
  return storage == ColumnStorage::Placeholder ? ColumnStorage::Bytes : storage;
}

const FixedKind* KindOf(const Variant& value) noexcept {
  const auto* const kind = std::ranges::find(kFixedKinds, value.Type(), &FixedKind::Value);
  return kind == kFixedKinds.end() ? nullptr : kind;
}

std::int32_t TypeOfGiven(const Variant& given) {
  if (given.IsByteArray()) return rdTypeVARBINARY;
  const auto* const kind = KindOf(given);
  return kind == nullptr ? rdTypeVARCHAR : DocumentedType(kind->Type);
}

Variant TextOf(const Variant& value) {
  if (!value.IsByteArray()) return value.IsText() ? value : Variant(value.AsText());
  const auto bytes = value.Bytes();
  return std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

Variant BytesOfText(const Variant& value) {
  if (!value.IsText()) Fail(RuntimeFailure::TypeMismatch);
  const auto text = value.TextView();
  return std::vector<Byte>(text.begin(), text.end());
}

Variant AsHeld(const Variant& value, ColumnStorage storage) {
  if (value.IsNull()) return value;
  switch (storage) {
    case ColumnStorage::Integer: return value.AsInteger();
    case ColumnStorage::Long: return value.AsLong();
    case ColumnStorage::Single: return value.AsSingle();
    case ColumnStorage::Double: return value.AsDouble();
    case ColumnStorage::Currency: return value.AsCurrency();
    case ColumnStorage::BigInteger:
    case ColumnStorage::Decimal: return value.AsDecimal();
    case ColumnStorage::Date: return value.AsDate();
    case ColumnStorage::Boolean: return value.AsBoolean();
    case ColumnStorage::Byte: return value.AsByte();
    case ColumnStorage::Text: return TextOf(value);
    default: return value.IsByteArray() ? value : BytesOfText(value);
  }
}

bool HasTimeOfDay(const DateParts& parts) noexcept {
  return parts.Hour != 0 || parts.Minute != 0 || parts.Second != 0 || parts.Millisecond != 0;
}

}  // namespace

ParameterValues::ParameterValues(bool outputsComeAsRow) : outputsComeAsRow_(outputsComeAsRow) {}
ParameterValues::~ParameterValues() = default;

void ParameterValues::Add(const Variant& value, std::int32_t type) {
  Slot& slot = slots_.emplace_back();
  if (type != 0) slot.Type = DriverType(type);
  if (!value.IsGiven() || value.IsNull()) return;
  if (const auto* const kind = KindOf(value)) {
    slot.CType = kind->CType;
    slot.Type = type == 0 ? kind->Type : slot.Type;
    slot.Size = kind->Size;
    slot.Indicator = StoreFixed(slot.Fixed, value);
  } else if (value.Type() == VarType::Date) {
    AddDate(slot, value.AsDate(), type);
  } else if (value.IsByteArray()) {
    slot.CType = SQL_C_BINARY;
    slot.Given = value;
    SetLength(slot, value.Bytes().size());
    if (type == 0) slot.Type = SQL_LONGVARBINARY;
  } else if (value.IsText()) {
    slot.Given = value;
    SetLength(slot, value.TextView().size());
    if (type == 0 && value.TextView().size() > kLongestPlain) slot.Type = SQL_LONGVARCHAR;
  } else if (value.Type() == VarType::Decimal || value.Type() == VarType::Currency) {
    AddNumber(slot, value, type);
  } else {
    Fail(RuntimeFailure::TypeMismatch);
  }
}

void ParameterValues::AddOutput(const OutputParameter& parameter, const Variant* given) {
  ColumnInfo info{.Name = parameter.Name, .Type = parameter.Type, .Size = parameter.Size, .Digits = parameter.Digits};
  if (info.Type == 0) info.Type = given == nullptr ? rdTypeVARCHAR : TypeOfGiven(*given);
  info.Storage = OutputStorage(info.Type);
  Slot& slot = slots_.emplace_back();
  slot.Storage = info.Storage;
  slot.Direction = given != nullptr ? SQL_PARAM_INPUT_OUTPUT : SQL_PARAM_OUTPUT;
  if (given != nullptr) slot.Given = *given;
  ++outputs_;
  if (info.Storage == ColumnStorage::Text || info.Storage == ColumnStorage::Bytes) {
    slot.Buffer = std::make_unique<OutputBuffer>(info, outputsComeAsRow_);
    return;
  }
  slot.Output = std::make_unique<OutputLanding>(info, DriverType(info.Type));
}

std::size_t ParameterValues::Count() const noexcept { return slots_.size(); }

bool ParameterValues::IsOutput(std::size_t place) const { return slots_[place].Direction != SQL_PARAM_INPUT; }

Variant ParameterValues::Output(std::size_t place) {
  Slot& slot = slots_[place];
  return slot.Buffer ? slot.Buffer->Value() : slot.Output->Value();
}

Variant ParameterValues::Output(std::size_t place, const Variant& value) const {
  return AsHeld(value, slots_[place].Storage);
}

void ParameterValues::AddNumber(Slot& slot, const Variant& value, std::int32_t type) {
  slot.Number = value.AsText();
  SetLength(slot, slot.Number.size());
  const std::size_t point = slot.Number.find('.');
  slot.Digits = static_cast<Small>(point == std::string::npos ? 0 : slot.Number.size() - point - 1);
  if (type == 0) slot.Type = SQL_DECIMAL;
}

// Sent as a timestamp unless a date or a time was asked for and says all there is.
void ParameterValues::AddDate(Slot& slot, velmoria::Date date, std::int32_t type) {
  const DateParts parts = date.Parts();
  if (slot.Type == SQL_TYPE_DATE && !HasTimeOfDay(parts)) {
    slot.CType = SQL_C_TYPE_DATE;
    slot.Size = kDateSize;
    slot.Indicator = StoreDate(slot.Fixed.data(), slot.CType, date);
  } else if (slot.Type == SQL_TYPE_TIME && IsOnDayZero(parts)) {
    slot.CType = SQL_C_TYPE_TIME;
    slot.Size = kTimeSize;
    slot.Indicator = StoreDate(slot.Fixed.data(), slot.CType, date);
  } else {
    slot.CType = SQL_C_TYPE_TIMESTAMP;
    if (type == 0 || slot.Type == SQL_TYPE_DATE || slot.Type == SQL_TYPE_TIME) slot.Type = SQL_TYPE_TIMESTAMP;
    slot.Size = kTimestampSize;
    slot.Digits = kMillisecondDigits;
    slot.Indicator = StoreDate(slot.Fixed.data(), slot.CType, date);
  }
}

void ParameterValues::SetLength(Slot& slot, std::size_t length) {
  slot.Size = std::max<ULength>(length, 1);  // a size of 0 is refused
  slot.Indicator = static_cast<Length>(length);
}

std::span<const std::byte> ParameterValues::BytesOf(const Slot& slot) {
  const bool isFixed = slot.CType != SQL_C_CHAR && slot.CType != SQL_C_BINARY;
  if (isFixed) return slot.Fixed;
  if (slot.Given.IsText()) return std::as_bytes(std::span(slot.Given.TextView()));
  // An array without bytes has no place, which a driver could take for a Null; a text without any has one.
  if (!slot.Given.Bytes().empty()) return std::as_bytes(slot.Given.Bytes());
  return std::as_bytes(std::span(slot.Number));
}

void ParameterValues::BindTo(Statement& statement) {
  Word number = 0;
  for (Slot& slot : slots_) {
    if (slot.Buffer) {
      slot.Buffer->Bind(statement, ++number, slot.Direction, slot.Given);
      continue;
    }
    if (slot.Output) {
      slot.Output->Bind(statement, ++number, slot.Direction, slot.Given);
      continue;
    }
    const auto bytes = BytesOf(slot);
    statement.Check(statement.Calls().BindParameter(statement.Get(), ++number, SQL_PARAM_INPUT, slot.CType, slot.Type,
                                                    slot.Size, slot.Digits, const_cast<std::byte*>(bytes.data()),
                                                    static_cast<Length>(bytes.size()), &slot.Indicator));
  }
}

}  // namespace velmoria::odbc
