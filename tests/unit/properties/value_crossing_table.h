#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <vector>

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::test {

/// A data type that has a storage of its own: what both are called, and what an Empty value reads as.
struct StorageColumn {
  zDataTypes DataType;
  const char* DataTypeName;
  const char* Storage;
  const char* Zero;
};

inline constexpr StorageColumn kStorageColumns[] = {
    {dtString, "String", "String", ""},         {dtLongInteger, "Long Integer", "Long", "0"},
    {dtDate, "Date", "Date", "00:00:00"},       {dtInteger, "Integer", "Integer", "0"},
    {dtBoolean, "Boolean", "Boolean", "False"}, {dtCurrency, "Currency", "Currency", "0"},
    {dtSingle, "Single", "Single", "0"},        {dtDouble, "Double", "Double", "0"},
    {dtDecimal, "Decimal", "Decimal", "0"},     {dtByte, "Byte", "Byte", "0"},
};

/// The data types that keep whatever they are given: dtVariant and all codes outside the enumeration.
inline constexpr zDataTypes kKeepingTypes[] = {dtVariant, zDataTypes{12}, zDataTypes{-1}, zDataTypes{2147483647},
                                               zDataTypes{-2147483647 - 1}};

/// In place of a text: it does not convert, or it does not fit; and the number of that failure.
inline constexpr const char* no = "(13)";
inline constexpr const char* big = "(6)";

inline bool IsRefused(const char* cell) { return std::string_view(cell) == no || std::string_view(cell) == big; }

/// What a value is stored as under each of kStorageColumns, by its text.
using CrossingCells = std::array<const char*, std::size(kStorageColumns)>;

inline constexpr CrossingCells kNothingConverts = {no, no, no, no, no, no, no, no, no, no};

/// A value of one type of the run-time, and what becomes of it.
struct CrossingRow {
  const char* Name;
  Variant (*Given)();
  const char* TypeName;
  bool IsBinary;  // kept by dtByteArray where that asks
  CrossingCells Cells;
};

class SomeObject : public Object {
 public:
  std::string_view ReportedType() const noexcept override { return "SomeObject"; }
};

inline constexpr const char* k28Digits = "7.9228162514264337593543950335";

// clang-format off
// Each second line: String, Long, Date, Integer, Boolean, Currency, Single, Double, Decimal, Byte.
inline const CrossingRow kCrossings[] = {
    {"Missing", [] { return Variant::Missing(); }, "Error", false, kNothingConverts},
    {"Integer", [] { return Variant(std::int16_t{7}); }, "Integer", false,
     {"7", "7", "1900-01-06", "7", "True", "7", "7", "7", "7", "7"}},
    {"NegativeInteger", [] { return Variant(std::int16_t{-3}); }, "Integer", false,
     {"-3", "-3", "1899-12-27", "-3", "True", "-3", "-3", "-3", "-3", big}},
    {"IntegerZero", [] { return Variant(std::int16_t{0}); }, "Integer", false,
     {"0", "0", "00:00:00", "0", "False", "0", "0", "0", "0", "0"}},
    {"Long", [] { return Variant(70000); }, "Long", false,
     {"70000", "70000", "2091-08-25", big, "True", "70000", "70000", "70000", "70000", big}},
    {"LongBeyondDates", [] { return Variant(2147483647); }, "Long", false,
     {"2147483647", "2147483647", big, big, "True", "2147483647", "2147483648", "2147483647", "2147483647", big}},
    {"Single", [] { return Variant(1.5F); }, "Single", false,
     {"1.5", "2", "1899-12-31 12:00:00", "2", "True", "1.5", "1.5", "1.5", "1.5", "2"}},
    {"Double", [] { return Variant(2.5); }, "Double", false,
     {"2.5", "2", "1900-01-01 12:00:00", "2", "True", "2.5", "2.5", "2.5", "2.5", "2"}},
    {"DoubleBeyondAll", [] { return Variant(1e300); }, "Double", false,
     {"1e+300", big, big, big, "True", big, big, "1e+300", big, big}},
    {"Currency", [] { return Variant(Currency{125000}); }, "Currency", false,
     {"12.5", "12", "1900-01-11 12:00:00", "12", "True", "12.5", "12.5", "12.5", "12.5", "12"}},
    {"Date", [] { return Variant(Date::From(1998, 6, 1, 12)); }, "Date", false,
     {"1998-06-01 12:00:00", "35948", "1998-06-01 12:00:00", big, "True",
      "35947.5", "35947.5", "35947.5", "35947.5", big}},
    {"NumericText", [] { return Variant("42"); }, "String", true,
     {"42", "42", no, "42", "True", "42", "42", "42", "42", "42"}},
    {"FractionalText", [] { return Variant("2.5"); }, "String", true,
     {"2.5", "2", no, "2", "True", "2.5", "2.5", "2.5", "2.5", "2"}},
    {"TextThatIsNoNumber", [] { return Variant("abc"); }, "String", true,
     {"abc", no, no, no, no, no, no, no, no, no}},
    {"TextOfAnotherCountry", [] { return Variant("1.234,5"); }, "String", true,
     {"1.234,5", no, no, no, no, no, no, no, no, no}},
    {"TextOfNoLength", [] { return Variant(""); }, "String", true,
     {"", no, no, no, no, no, no, no, no, no}},
    {"DateText", [] { return Variant("1998-06-01"); }, "String", true,
     {"1998-06-01", no, "1998-06-01", no, no, no, no, no, no, no}},
    {"BooleanText", [] { return Variant("True"); }, "String", true,
     {"True", no, no, no, "True", no, no, no, no, no}},
    {"HugeText", [] { return Variant("1e400"); }, "String", true,
     {"1e400", big, no, big, "True", big, big, big, big, big}},
    {"Object", [] { return Variant(Make<SomeObject>()); }, "SomeObject", false, kNothingConverts},
    {"Nothing", [] { return Variant(Ref<SomeObject>()); }, "Nothing", false, kNothingConverts},
    {"Boolean", [] { return Variant(true); }, "Boolean", false,
     {"True", "-1", "1899-12-29", "-1", "True", "-1", "-1", "-1", "-1", "255"}},
    {"Decimal", [] { return Variant(Decimal::Parse("1.50")); }, "Decimal", false,
     {"1.50", "2", "1899-12-31 12:00:00", "2", "True", "1.5", "1.5", "1.5", "1.50", "2"}},
    {"DecimalOf28Places", [] { return Variant(Decimal::Parse(k28Digits)); }, "Decimal", false,
     {k28Digits, "8", "1900-01-06 22:08:51", "8", "True",
      "7.9228", "7.9228163", "7.9228162514264335", k28Digits, "8"}},
    {"Byte", [] { return Variant(Byte{200}); }, "Byte", false,
     {"200", "200", "1900-07-18", "200", "True", "200", "200", "200", "200", "200"}},
    {"ByteArray", [] { return Variant(std::vector<Byte>{1, 2}); }, "Byte()", true, kNothingConverts},
    {"ByteArrayWithoutBytes", [] { return Variant(std::vector<Byte>{}); }, "Byte()", true, kNothingConverts},
    {"VariantArray", [] { return Variant::ArrayOfValues({1, "x"}); }, "Variant()", true, kNothingConverts},
    {"VariantArrayOfTwoDimensions", [] { return Variant::Array2(1, 1); }, "Variant()", true, kNothingConverts},
    {"IntegerArray", [] { return Variant::Array(0, 1, VarType::Integer); }, "Integer()", false, kNothingConverts},
    {"StringArray", [] { return Variant::Array(1, 2, VarType::String); }, "String()", false, kNothingConverts},
    {"DateArray", [] { return Variant::Array(1, 2, VarType::Date); }, "Date()", false, kNothingConverts},
    {"ObjectArray", [] { return Variant::Array(0, 0, VarType::Object); }, "Object()", false, kNothingConverts},
};
// clang-format on

}  // namespace velmoria::test
