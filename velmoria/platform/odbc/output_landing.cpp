#include "velmoria/platform/odbc/output_landing.h"

#include <cstring>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/date_values.h"
#include "velmoria/platform/odbc/raw_values.h"
#include "velmoria/platform/odbc/whole_value.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria::odbc {
namespace {

constexpr std::int32_t kDigits = 28;
constexpr Small kDecimals = 6;

ColumnInfo WithSize(ColumnInfo info) {
  if (info.Size > 0) return info;
  info.Size = kDigits;
  if (info.Storage == ColumnStorage::Decimal) info.Digits = kDecimals;
  return info;
}

// A parameter is given once: what the driver may misread is not looked at again.
bool MayMisread(const DateManners& manners) noexcept {
  return manners.DatesAsText || manners.TimesAsText || manners.Misreads != Misreading::None;
}

}  // namespace

OutputLanding::OutputLanding(const ColumnInfo& info, Small type)
    : info_(WithSize(info)), type_(type), landing_(info_, Word{0}, DateManners{}) {}

bool OutputLanding::IsWhole() const noexcept {
  return info_.Storage == ColumnStorage::Integer || info_.Storage == ColumnStorage::Long ||
         info_.Storage == ColumnStorage::Byte || info_.Storage == ColumnStorage::BigInteger;
}

void OutputLanding::Bind(Statement& statement, Word number, Small direction, const Variant& given) {
  const bool isDoubtful = info_.Storage == ColumnStorage::Date && MayMisread(statement.Dates());
  // A driver that has given rows before it may put the digits where it was asked for a number.
  if (IsWhole() || isDoubtful) landing_.LandAsText();
  memory_ = std::make_unique_for_overwrite<std::byte[]>(landing_.Bytes(1));
  landing_.LandIn(memory_.get(), 1);
  landing_.Begin();
  *landing_.Indicators() = given.IsGiven() && !given.IsNull() ? Put(given) : Length{SQL_NULL_DATA};
  statement.Check(statement.Calls().BindParameter(statement.Get(), number, direction, landing_.CType(), type_,
                                                  static_cast<ULength>(info_.Size), info_.Digits, landing_.Slots(),
                                                  static_cast<Length>(landing_.SlotWidth()), landing_.Indicators()));
}

std::string OutputLanding::TextOf(const Variant& value) const {
  switch (info_.Storage) {
    case ColumnStorage::Byte: return NumberText(static_cast<long long>(value.AsByte()));
    case ColumnStorage::Integer: return NumberText(static_cast<long long>(value.AsInteger()));
    case ColumnStorage::Long:
    case ColumnStorage::BigInteger: return NumberText(static_cast<long long>(WholeOf(value)));
    case ColumnStorage::Date: return DateText(value.AsDate(), type_);
    default: return value.AsText();
  }
}

Length OutputLanding::Put(const Variant& value) {
  std::byte* const slot = landing_.Slots();
  switch (landing_.CType()) {
    case SQL_C_FLOAT: return Store(slot, value.AsSingle());
    case SQL_C_DOUBLE: return Store(slot, value.AsDouble());
    case SQL_C_BIT: return Store(slot, static_cast<unsigned char>(value.AsBoolean() ? 1 : 0));
    case SQL_C_TYPE_TIME:
    case SQL_C_TYPE_TIMESTAMP: return StoreDate(slot, landing_.CType(), value.AsDate());
    default: break;
  }
  const std::string text = TextOf(value);
  if (text.size() >= landing_.SlotWidth()) Fail(RuntimeFailure::Overflow);
  std::memcpy(slot, text.c_str(), text.size() + 1);
  return static_cast<Length>(text.size());
}

Variant OutputLanding::Value() {
  if (landing_.IsCut(0, true))
    Fail(RuntimeFailure::Overflow, "The value of the parameter '" + info_.Name + "' is too long.");
  return landing_.Value();
}

}  // namespace velmoria::odbc
