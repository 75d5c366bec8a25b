#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_failure.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

class Plain : public Object {};

const Date kNoon = Date::From(2026, 11, 20, 12);

// Every conversion by its name.
const struct Conversion {
  const char* Name;
  Variant (*Convert)(const Variant&);
} kConversions[] = {{"Text", [](const Variant& value) { return Variant(value.AsText()); }},
                    {"Integer", [](const Variant& value) { return Variant(value.AsInteger()); }},
                    {"Long", [](const Variant& value) { return Variant(value.AsLong()); }},
                    {"Single", [](const Variant& value) { return Variant(value.AsSingle()); }},
                    {"Double", [](const Variant& value) { return Variant(value.AsDouble()); }},
                    {"Currency", [](const Variant& value) { return Variant(value.AsCurrency()); }},
                    {"Decimal", [](const Variant& value) { return Variant(value.AsDecimal()); }},
                    {"Byte", [](const Variant& value) { return Variant(value.AsByte()); }},
                    {"Boolean", [](const Variant& value) { return Variant(value.AsBoolean()); }},
                    {"Date", [](const Variant& value) { return Variant(value.AsDate()); }}};

TEST(VariantConvertTest, NullRaises94InEveryConversion) {
  for (const Conversion& row : kConversions) {
    SCOPED_TRACE(row.Name);
    ExpectRuntimeFailure(RuntimeFailure::InvalidUseOfNull, "Invalid use of Null",
                         [&] { row.Convert(Variant::Null()); });
  }
}

TEST(VariantConvertTest, MissingObjectsAndArraysRaise13InEveryConversion) {
  const Variant refused[] = {Variant::Missing(), Make<Plain>(), Ref<Plain>(), Variant::Array(0, 1),
                             std::vector<Byte>{65, 66}};
  for (const Conversion& row : kConversions) {
    for (const Variant& value : refused) {
      SCOPED_TRACE(std::string(row.Name) + " from " + value.TypeName());
      ExpectTypeMismatch([&] { row.Convert(value); });
    }
  }
}

TEST(VariantConvertTest, EmptyIsTheZeroOfEveryType) {
  const Variant zeros[] = {"", std::int16_t{0}, 0, 0.0F, 0.0, Currency{}, Decimal{}, Byte{0}, false, Date{}};
  for (std::size_t i = 0; i < std::size(kConversions); ++i) EXPECT_EQ(kConversions[i].Convert(Variant()), zeros[i]);
}

TEST(VariantConvertTest, EveryTypeConvertsToItself) {
  const Variant values[] = {"text",          std::int16_t{-7},       70000,     1.25F, 1e300,
                            Currency{12345}, Decimal::Parse("1.50"), Byte{250}, true,  kNoon};
  for (std::size_t i = 0; i < std::size(kConversions); ++i) {
    EXPECT_EQ(kConversions[i].Convert(values[i]), values[i]) << kConversions[i].Name;
  }
}

TEST(VariantConvertTest, WholeNumbersRoundHalfToEven) {
  const struct {
    Variant Value;
    std::int32_t Whole;
  } rows[] = {{0.5, 0},
              {1.5, 2},
              {2.5, 2},
              {-0.5, 0},
              {-1.5, -2},
              {2.4999999, 2},
              {2.5000001, 3},
              {1.5F, 2},
              {2.5F, 2},
              {"2.5", 2},
              {"3.5", 4},
              {"2.50000000000000000001", 3},
              {"-2.5", -2},
              {" 12 ", 12},
              {"+7", 7},
              {"1E3", 1000},
              {"1200e-2", 12},
              {".6", 1},
              {Currency{25000}, 2},
              {Currency{25001}, 3},
              {Currency{-35000}, -4},
              {Decimal::Parse("2.5"), 2},
              {Decimal::Parse("-3.5"), -4},
              {Byte{255}, 255},
              {std::int16_t{-3}, -3},
              {true, -1},
              {false, 0},
              {Date{2.5}, 2},
              {Date{3.5}, 4}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.Value.AsLong(), row.Whole) << row.Value.TypeName() << " " << row.Value.AsText();
    EXPECT_EQ(row.Value.AsInteger(), row.Whole);
  }
}

TEST(VariantConvertTest, WholeNumbersReachTheirLimits) {
  EXPECT_EQ(Variant(32767.49).AsInteger(), 32767);
  EXPECT_EQ(Variant(-32768.5).AsInteger(), -32768);
  EXPECT_EQ(Variant("2147483647.4").AsLong(), 2147483647);
  EXPECT_EQ(Variant(-2147483648.5).AsLong(), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(Variant(255.4).AsByte(), 255);
  EXPECT_EQ(Variant(-0.5).AsByte(), 0);
}

TEST(VariantConvertTest, WhatDoesNotFitAnIntegerRaises6) {
  for (const Variant& value : {Variant(32767.5), Variant(32768), Variant(-32769), Variant("70000"), Variant(1e300),
                               Variant(Currency{327675000}), Variant(Decimal::Parse("32767.5")), Variant(kNoon)}) {
    ExpectOverflow([&] { value.AsInteger(); });
  }
}

TEST(VariantConvertTest, WhatDoesNotFitALongRaises6) {
  for (const Variant& value :
       {Variant(2147483647.5), Variant(-2147483649.0), Variant(1e10F), Variant("2147483648"), Variant("-1e99"),
        Variant("9223372036854775808"), Variant("-9223372036854775809"), Variant(9.3e18), Variant(-9.3e18),
        Variant("1e999999"), Variant(Decimal::Parse("9999999999999999999999")), Variant(Currency{1LL << 62})}) {
    ExpectOverflow([&] { value.AsLong(); });
  }
}

TEST(VariantConvertTest, WhatDoesNotFitAByteRaises6) {
  for (const Variant& value : {Variant(256), Variant(-1), Variant(255.5), Variant("300"), Variant(-0.6)}) {
    ExpectOverflow([&] { value.AsByte(); });
  }
}

TEST(VariantConvertTest, TrueIsAllBitsOfAByte) {
  EXPECT_EQ(Variant(true).AsByte(), 255);
  EXPECT_EQ(Variant(false).AsByte(), 0);
}

TEST(VariantConvertTest, NoNumberThatIsNoneConvertsToAnExactType) {
  for (const double value : {kInfinity, -kInfinity, std::nan("")}) {
    for (const Variant& source : {Variant(value), Variant(static_cast<float>(value))}) {
      ExpectOverflow([&] { source.AsInteger(); });
      ExpectOverflow([&] { source.AsLong(); });
      ExpectOverflow([&] { source.AsByte(); });
      ExpectOverflow([&] { source.AsCurrency(); });
      ExpectOverflow([&] { source.AsDecimal(); });
      ExpectOverflow([&] { source.AsDate(); });
    }
    ExpectOverflow([&] { Variant(value).AsSingle(); });
  }
}

TEST(VariantConvertTest, TextsThatAreNoNumberRaise13) {
  for (const char* text : {"", " ", "abc", "1,5", "1 000", "True", "&H10", "1e", "0x1", "inf", "nan", "$5", "5%",
                           "1..2", "12abc", "2026-11-20"}) {
    SCOPED_TRACE(text);
    ExpectTypeMismatch([&] { Variant(text).AsInteger(); });
    ExpectTypeMismatch([&] { Variant(text).AsLong(); });
    ExpectTypeMismatch([&] { Variant(text).AsSingle(); });
    ExpectTypeMismatch([&] { Variant(text).AsDouble(); });
    ExpectTypeMismatch([&] { Variant(text).AsCurrency(); });
    ExpectTypeMismatch([&] { Variant(text).AsDecimal(); });
    ExpectTypeMismatch([&] { Variant(text).AsByte(); });
  }
}

TEST(VariantConvertTest, RealNumbersComeFromEveryType) {
  const struct {
    Variant Value;
    double Real;
  } rows[] = {{"1.5", 1.5},
              {" -2.5e-3 ", -0.0025},
              {"+.5", 0.5},
              {"7.", 7},
              {"1e-400", 0},
              {"-0", 0},
              {Currency{15000}, 1.5},
              {Decimal::Parse("0.1"), 0.1},
              {true, -1},
              {Byte{9}, 9},
              {std::int16_t{-9}, -9},
              {70000, 70000},
              {0.5F, 0.5},
              {Date{1.25}, 1.25}};
  for (const auto& row : rows) {
    EXPECT_EQ(row.Value.AsDouble(), row.Real) << row.Value.AsText();
    EXPECT_EQ(row.Value.AsSingle(), static_cast<float>(row.Real));
  }
}

TEST(VariantConvertTest, WhatDoesNotFitARealNumberRaises6) {
  ExpectOverflow([] { Variant("1e400").AsDouble(); });
  ExpectOverflow([] { Variant("-1e400").AsDouble(); });
  ExpectOverflow([] { Variant(1e300).AsSingle(); });
  ExpectOverflow([] { Variant("1e39").AsSingle(); });
}

TEST(VariantConvertTest, AmountsComeFromEveryType) {
  const struct {
    Variant Value;
    std::int64_t TenThousandths;
  } rows[] = {{1.00005, 10000}, {1.00015, 10002}, {0.1F, 1000},       {"12.34565", 123456},          {7, 70000},
              {true, -10000},   {Byte{2}, 20000}, {Date{1.5}, 15000}, {Decimal::Parse("0.00015"), 2}};
  for (const auto& row : rows)
    EXPECT_EQ(row.Value.AsCurrency().TenThousandths, row.TenThousandths) << row.Value.AsText();
  ExpectOverflow([] { Variant(1e16).AsCurrency(); });
  ExpectOverflow([] { Variant("1e16").AsCurrency(); });
}

TEST(VariantConvertTest, DecimalsComeFromEveryType) {
  const struct {
    Variant Value;
    const char* Text;
  } rows[] = {{0.1, "0.1"}, {0.1F, "0.1"},  {"1.50", "1.50"},   {7, "7"},
              {true, "-1"}, {Byte{2}, "2"}, {Date{1.5}, "1.5"}, {Currency{15000}, "1.5"}};
  for (const auto& row : rows) EXPECT_EQ(row.Value.AsDecimal().AsText(), row.Text);
  ExpectOverflow([] { Variant(1e29).AsDecimal(); });
}

TEST(VariantConvertTest, WhateverIsNotZeroIsTrue) {
  const struct {
    Variant Value;
    bool True;
  } rows[] = {{0, false},
              {2, true},
              {-1, true},
              {0.0, false},
              {0.1, true},
              {0.0F, false},
              {Byte{1}, true},
              {Currency{1}, true},
              {Currency{0}, false},
              {Decimal::Parse("0.00"), false},
              {Decimal::Parse("0.01"), true},
              {Date{0}, false},
              {Date{0.5}, true},
              {"True", true},
              {"tRUE", true},
              {" false ", false},
              {"0", false},
              {"-0.00", false},
              {"0.001", true},
              {"1e-400", true},
              {"0e5", false}};
  for (const auto& row : rows) EXPECT_EQ(row.Value.AsBoolean(), row.True) << row.Value.AsText();
}

TEST(VariantConvertTest, OtherWordsAreNoBoolean) {
  for (const char* text : {"", "yes", "Tru", "on", "T"}) {
    ExpectTypeMismatch([&] { Variant(text).AsBoolean(); });
  }
}

TEST(VariantConvertTest, DatesComeFromTextsAndDays) {
  EXPECT_EQ(Variant("2026-11-20 12:00:00").AsDate(), kNoon);
  EXPECT_EQ(Variant("11/20/2026 12:00:00 PM").AsDate(), kNoon);
  EXPECT_EQ(Variant(kNoon.Days).AsDate(), kNoon);
  EXPECT_EQ(Variant(2).AsDate(), Date::From(1900, 1, 1));
  EXPECT_EQ(Variant(true).AsDate(), Date::From(1899, 12, 29));
  EXPECT_EQ(Variant(Currency{15000}).AsDate(), Date{1.5});
  EXPECT_EQ(Variant(Decimal::Parse("1.5")).AsDate(), Date{1.5});
}

TEST(VariantConvertTest, DatesKeepToTheirYears) {
  EXPECT_EQ(Variant(-657434).AsDate(), Date::From(100, 1, 1));
  EXPECT_EQ(Variant(2958465).AsDate(), Date::From(9999, 12, 31));
  ExpectOverflow([] { Variant(-657435).AsDate(); });
  ExpectOverflow([] { Variant(2958466).AsDate(); });
  ExpectOverflow([] { Variant(2958465.9999999995).AsDate(); });  // rounds into the year 10000
  EXPECT_EQ(Variant(2958465.99999).AsDate().Parts().Year, 9999);
  ExpectTypeMismatch([] { Variant("next week").AsDate(); });
  ExpectTypeMismatch([] { Variant("35000").AsDate(); });
}

TEST(VariantConvertTest, ElementsOfAnArrayTakeWhatConvertsToTheirType) {
  const struct {
    VarType Element;
    Variant Given;
    Variant Held;
  } rows[] = {{VarType::Integer, "2.5", std::int16_t{2}},
              {VarType::Long, true, -1},
              {VarType::Single, "0.1", 0.1F},
              {VarType::Double, 0.5F, 0.5},
              {VarType::Currency, "0.00005", Currency{0}},
              {VarType::Decimal, "1.50", Decimal::Parse("1.50")},
              {VarType::Date, 1.5, Date{1.5}},
              {VarType::String, 12, "12"},
              {VarType::Boolean, 2, true},
              {VarType::Byte, true, Byte{255}},
              {VarType::Variant, "x", "x"}};
  for (const auto& row : rows) {
    auto array = Variant::Array(0, 0, row.Element);
    array.SetElement(0, row.Given);
    EXPECT_EQ(array.Element(0), row.Held) << array.TypeName();
  }
}

TEST(VariantConvertTest, ElementsOfAnArrayRefuseWhatDoesNotConvert) {
  auto objects = Variant::Array(0, 0, VarType::Object);
  ExpectTypeMismatch([&] { objects.SetElement(0, 1); });
  auto bytes = Variant::Array(0, 0, VarType::Byte);
  ExpectOverflow([&] { bytes.SetElement(0, 256); });
  auto dates = Variant::Array(0, 0, VarType::Date);
  ExpectRuntimeFailure(RuntimeFailure::InvalidUseOfNull, "Invalid use of Null",
                       [&] { dates.SetElement(0, Variant::Null()); });
  EXPECT_EQ(objects.Element(0).TypeName(), "Nothing");
  ExpectInvalidArgument([] { Variant::Array(0, 0, VarType::Null); });
}

TEST(VariantConvertTest, ExactTypesPassThroughOneAnother) {
  for (const char* text : {"0.0001", "-922337203685477.5808", "922337203685477.5807"}) {
    const Variant amount(Variant(text).AsCurrency());
    EXPECT_EQ(Variant(amount.AsDecimal()).AsCurrency(), amount.AsCurrency());
    EXPECT_EQ(Variant(amount.AsText()).AsCurrency(), amount.AsCurrency());
    EXPECT_EQ(amount.AsText(), text);
  }
  for (const char* text : {"0.1234567890123456789012345678", "-79228162514264337593543950335", "1.50"}) {
    EXPECT_EQ(Variant(Variant(text).AsDecimal()).AsText(), text);
  }
}

TEST(VariantConvertTest, WhatDoesNotFitAnAmountRaises6) {
  for (const Variant& value : {Variant("922337203685477.5808"), Variant("-922337203685477.5809"), Variant(9.3e14),
                               Variant(1e15F), Variant(Decimal::Parse("922337203685477.58075"))}) {
    ExpectOverflow([&] { value.AsCurrency(); });
  }
}

TEST(VariantConvertTest, EveryValueHasItsStringForm) {
  const struct {
    Variant Value;
    const char* Text;
  } rows[] = {{Variant(), ""},
              {true, "True"},
              {false, "False"},
              {std::int16_t{-5}, "-5"},
              {2147483647, "2147483647"},
              {Byte{7}, "7"},
              {99.5, "99.5"},
              {0.1F, "0.1"},
              {100000.0, "100000"},
              {1e100, "1e+100"},
              {Currency{12345600}, "1234.56"},
              {Decimal::Parse("-0.10"), "-0.10"},
              {kNoon, "2026-11-20 12:00:00"},
              {Date{kNoon.Days - 0.5}, "2026-11-20"},
              {Date{0.5}, "12:00:00"},
              {"as it is", "as it is"}};
  for (const auto& row : rows) EXPECT_EQ(row.Value.AsText(), row.Text);
}

TEST(VariantConvertTest, RealNumbersReadBackFromTheirText) {
  for (const double value : {0.1, 1.0 / 3, 1e-300, 5e-324, 1.7976931348623157e308, 123456789.123456789, -2e15}) {
    EXPECT_EQ(Variant(Variant(value).AsText()).AsDouble(), value);
  }
  for (const float value : {0.1F, 1e-40F, 3.4028235e38F, 16777216.0F, 1.0F / 3}) {
    EXPECT_EQ(Variant(Variant(value).AsText()).AsSingle(), value);
  }
}

}  // namespace
}  // namespace velmoria
