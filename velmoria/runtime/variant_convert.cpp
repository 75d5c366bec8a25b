#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "velmoria/runtime/error.h"
#include "velmoria/runtime/number_text_impl.h"
#include "velmoria/runtime/text.h"
#include "velmoria/runtime/variant_impl.h"

namespace velmoria {

namespace {

constexpr std::int64_t kTenThousand = 10000;

// Null is told apart; whatever else has no such form is of the wrong type.
[[noreturn, gnu::cold]] void Refuse(VarType type) {
  Fail(type == VarType::Null ? RuntimeFailure::InvalidUseOfNull : RuntimeFailure::TypeMismatch);
}

std::int64_t WholeFrom(double value) {
  const double rounded = RoundHalfEven(value);
  constexpr double kLimit = 9223372036854775808.0;
  if (!(rounded >= -kLimit && rounded < kLimit)) Fail(RuntimeFailure::Overflow);
  return static_cast<std::int64_t>(rounded);
}

std::int64_t WholeFrom(Currency value) noexcept {
  const std::int64_t whole = value.TenThousandths / kTenThousand;
  const std::int64_t rest = value.TenThousandths % kTenThousand;
  const bool away = std::abs(rest) > kTenThousand / 2 || (std::abs(rest) == kTenThousand / 2 && whole % 2 != 0);
  return away ? whole + (rest < 0 ? -1 : 1) : whole;
}

std::int64_t WholeFrom(std::string_view text) {
  const NumberInText number = ReadNumber(text);
  const auto magnitude = number.Scaled(0);
  if (!magnitude || *magnitude > Wide{std::numeric_limits<std::int64_t>::max()}) Fail(RuntimeFailure::Overflow);
  const auto whole = static_cast<std::int64_t>(*magnitude);
  return number.Negative ? -whole : whole;
}

double DoubleFrom(std::string_view text) {
  const std::string_view plain = ReadNumber(text).Plain;
  double value = 0;
  const auto result = std::from_chars(plain.data(), plain.data() + plain.size(), value);
  if (result.ec == std::errc{}) return value;
  // Out of range: too near to zero gives zero, too far from it does not fit.
  const bool tiny = NumberInText::Read(plain)->Scaled(0) == Wide{0};
  if (!tiny) Fail(RuntimeFailure::Overflow);
  return 0;
}

// The shortest digits of a Single are what was meant, not the binary neighbour of them.
Decimal DecimalFrom(float value) {
  if (!std::isfinite(value)) Fail(RuntimeFailure::Overflow);
  std::string text;
  AppendNumber(text, value);
  return Decimal::Parse(text);
}

bool BooleanFrom(std::string_view text) {
  const std::string_view word = TrimBlanks(text);
  if (EqualFolded(word, "True")) return true;
  if (EqualFolded(word, "False")) return false;
  const NumberInText number = ReadNumber(word);
  return number.Whole.find_first_not_of('0') != std::string_view::npos ||
         number.Fraction.find_first_not_of('0') != std::string_view::npos;
}

template <class Target>
Target Fitted(std::int64_t value) {
  if (value < std::numeric_limits<Target>::min() || value > std::numeric_limits<Target>::max()) {
    Fail(RuntimeFailure::Overflow);
  }
  return static_cast<Target>(value);
}

template <class Number>
std::string TextOf(Number value) {
  std::string text;
  AppendNumber(text, value);
  return text;
}

}  // namespace

std::int64_t Variant::RoundedWhole() const {
  switch (type_) {
    case VarType::Empty: return 0;
    case VarType::Boolean: return -whole_;
    case VarType::Byte:
    case VarType::Integer:
    case VarType::Long: return whole_;
    case VarType::Single: return WholeFrom(static_cast<double>(single_));
    case VarType::Double:
    case VarType::Date: return WholeFrom(real_);
    case VarType::Currency: return WholeFrom(velmoria::Currency{whole_});
    case VarType::Decimal: return HeldDecimal().AsInt64();
    case VarType::String: return WholeFrom(TextView());
    default: Refuse(type_);
  }
}

std::int16_t Variant::AsInteger() const { return Fitted<std::int16_t>(RoundedWhole()); }

std::int32_t Variant::AsLong() const {
  if (type_ == VarType::Long) return static_cast<std::int32_t>(whole_);
  return Fitted<std::int32_t>(RoundedWhole());
}

Byte Variant::AsByte() const {
  // True is all bits set, so it fits although -1 does not.
  if (type_ == VarType::Boolean) return static_cast<Byte>(whole_ ? 255 : 0);
  return Fitted<Byte>(RoundedWhole());
}

double Variant::AsDouble() const {
  switch (type_) {
    case VarType::Double:
    case VarType::Date: return real_;
    case VarType::Single: return static_cast<double>(single_);
    case VarType::Currency: return velmoria::Currency{whole_}.AsDouble();
    case VarType::Decimal: return HeldDecimal().AsDouble();
    case VarType::String: return DoubleFrom(TextView());
    default: return static_cast<double>(RoundedWhole());
  }
}

float Variant::AsSingle() const {
  if (type_ == VarType::Single) return single_;
  const auto value = static_cast<float>(AsDouble());
  if (!std::isfinite(value)) Fail(RuntimeFailure::Overflow);
  return value;
}

Currency Variant::AsCurrency() const {
  switch (type_) {
    case VarType::Currency: return {whole_};
    case VarType::Double:
    case VarType::Date: return velmoria::Currency::From(real_);
    case VarType::Single: return velmoria::Currency::From(static_cast<double>(single_));
    case VarType::Decimal: return HeldDecimal().AsCurrency();
    case VarType::String: return velmoria::Currency::Parse(TextView());
    default: return {RoundedWhole() * kTenThousand};
  }
}

Decimal Variant::AsDecimal() const {
  switch (type_) {
    case VarType::Decimal: return HeldDecimal();
    case VarType::Currency: return velmoria::Decimal::From(velmoria::Currency{whole_});
    case VarType::Double:
    case VarType::Date: return velmoria::Decimal::From(real_);
    case VarType::Single: return DecimalFrom(single_);
    case VarType::String: return velmoria::Decimal::Parse(TextView());
    default: return velmoria::Decimal::From(RoundedWhole());
  }
}

bool Variant::AsBoolean() const {
  switch (type_) {
    case VarType::Single: return single_ != 0;
    case VarType::Double:
    case VarType::Date: return real_ != 0;
    case VarType::Currency: return whole_ != 0;
    case VarType::Decimal: return !HeldDecimal().IsZero();
    case VarType::String: return BooleanFrom(TextView());
    default: return RoundedWhole() != 0;
  }
}

Date Variant::AsDate() const {
  if (type_ == VarType::Date) return {real_};
  if (type_ == VarType::String) return velmoria::Date::Parse(TextView());
  constexpr double kHalfMillisecond = 0.5 / 86'400'000;  // what is nearer to the year 10000 rounds into it
  const double days = AsDouble();
  if (!(days > velmoria::Date::FirstDay - 1 && days < velmoria::Date::EndOfDays - kHalfMillisecond)) {
    Fail(RuntimeFailure::Overflow);
  }
  return {days};
}

std::string Variant::AsText() const {
  switch (type_) {
    case VarType::Empty: return {};
    case VarType::String: return std::string(TextView());
    case VarType::Boolean: return whole_ ? "True" : "False";
    case VarType::Single: return TextOf(single_);
    case VarType::Double: return TextOf(real_);
    case VarType::Currency: return velmoria::Currency{whole_}.AsText();
    case VarType::Decimal: return HeldDecimal().AsText();
    case VarType::Date: return velmoria::Date{real_}.AsText();
    default: return NumberText(RoundedWhole());
  }
}

namespace {

struct Conversion {
  VarType Type;
  Variant (*Convert)(const Variant&);
};

constexpr Conversion kConversions[] = {
    {VarType::Integer, [](const Variant& value) { return Variant(value.AsInteger()); }},
    {VarType::Long, [](const Variant& value) { return Variant(value.AsLong()); }},
    {VarType::Single, [](const Variant& value) { return Variant(value.AsSingle()); }},
    {VarType::Double, [](const Variant& value) { return Variant(value.AsDouble()); }},
    {VarType::Currency, [](const Variant& value) { return Variant(value.AsCurrency()); }},
    {VarType::Date, [](const Variant& value) { return Variant(value.AsDate()); }},
    {VarType::String, [](const Variant& value) { return Variant(value.AsText()); }},
    {VarType::Boolean, [](const Variant& value) { return Variant(value.AsBoolean()); }},
    {VarType::Variant, [](const Variant& value) { return value; }},
    {VarType::Decimal, [](const Variant& value) { return Variant(value.AsDecimal()); }},
    {VarType::Byte, [](const Variant& value) { return Variant(value.AsByte()); }},
    {VarType::Object,
     [](const Variant& value) {
       if (!value.IsObject()) Fail(RuntimeFailure::TypeMismatch);
       return value;
     }},
};

}  // namespace

Variant ConvertTo(const Variant& value, VarType type) {
  for (const Conversion& row : kConversions) {
    if (row.Type == type) return row.Convert(value);
  }
  Fail(RuntimeFailure::InvalidArgument);
}

Variant ZeroOf(VarType type) {
  if (type == VarType::Object) return Variant(Ref<Object>());
  return ConvertTo(Variant(), type);
}

}  // namespace velmoria
