#include "tests/unit/properties/state_model/state_values.h"

#include <algorithm>
#include <array>

#include "tests/unit/properties/state_model/property_model.h"
#include "velmoria/properties/property.h"
#include "velmoria/runtime/text.h"

namespace velmoria::test {

namespace {

constexpr double kSecond = 1.0 / 86400;

std::vector<Variant> Dates() {
  const double nine = Date::From(1998, 6, 1, 9).Days;
  return {Date{nine},
          Date{nine + 0.25 * kSecond},
          Date{nine + 0.9 * kSecond},
          Date{nine + 1.1 * kSecond},
          Date{nine + kSecond},
          Date{nine + 1},
          Date{0}};
}

Variant TwoLongs(std::int32_t lower, std::int32_t last) {
  auto array = Variant::Array(lower, lower + 1, VarType::Long);
  array.SetElement(lower + 1, last);
  return array;
}

std::vector<Variant> Arrays() {
  return {std::vector<Byte>{1, 2},
          std::vector<Byte>{1, 3},
          std::vector<Byte>{},
          Variant::ArrayOfValues({1, "a"}),
          Variant::ArrayOfValues({1, "b"}),
          Variant::ArrayOfValues({std::int16_t{1}, "a"}),
          TwoLongs(0, 7),
          TwoLongs(1, 7),
          TwoLongs(1, 8)};
}

// Numbers that a double holds exactly, so that they compare as such.
std::vector<Variant> Numbers() {
  return {std::int16_t{0},
          std::int16_t{1},
          std::int16_t{-1},
          1,
          0,
          70000,
          2,
          1.5F,
          2.0F,
          1.5,
          0.0,
          1e10,
          -3.0,
          Currency{15000},
          Currency{-20000},
          Currency{0},
          Decimal::Parse("1.5"),
          Decimal::Parse("70000"),
          Byte{0},
          Byte{1},
          Byte{200},
          true,
          false};
}

std::vector<Variant> Texts() {
  return {"", "a", "ab", "abc", "\xC3\xA9\xE2\x82\xAC", "1", "1.5", "70000", "True", "1998-06-01 09:00:00"};
}

std::vector<Variant> AllValues() {
  std::vector<Variant> all{Variant(), Variant::Null(), Variant::Missing(), Variant(PropertyPtr())};
  for (const auto& group : {Numbers(), Texts(), Dates(), Arrays()}) all.insert(all.end(), group.begin(), group.end());
  return all;
}

const std::vector<Variant>& Values() {
  static const auto values = AllValues();
  return values;
}

// The values of Values by the data type whose storage they have; arrays stand under dtByteArray.
const std::vector<Variant>& ValuesOf(zDataTypes dataType) {
  static const auto groups = [] {
    std::array<std::vector<Variant>, 12> made;
    for (const auto& value : Values()) {
      const auto own = value.IsArray() ? dtByteArray : OwnDataType(value);
      made[static_cast<std::size_t>(own)].push_back(value);
    }
    made[0] = Values();
    return made;
  }();
  const auto place = static_cast<std::size_t>(dataType);
  return place < groups.size() ? groups[place] : groups[0];
}

std::string ShownArray(const Variant& value) {
  std::string text = value.TypeName() + " from " + NumberText(value.LowerBound()) + " {";
  for (auto index = value.LowerBound(); index <= value.UpperBound(); ++index) {
    text += (index == value.LowerBound() ? "" : ", ") + Shown(value.Element(index));
  }
  return text + "}";
}

}  // namespace

Variant AnyValue(Dice& dice, zDataTypes dataType) {
  return dice.OneIn(5) ? dice.Of(Values()) : dice.OneIn(6) ? Variant::Null() : dice.Of(ValuesOf(dataType));
}

Variant OwnValue(Dice& dice, zDataTypes dataType) {
  return dice.OneIn(3) ? Variant::Missing() : dice.Of(ValuesOf(dataType));
}

bool Identical(const Variant& left, const Variant& right) {
  if (left.Type() == VarType::Date && right.Type() == VarType::Date) return left.AsDouble() == right.AsDouble();
  return Same(left, right);
}

std::string Shown(const Variant& value) {
  if (value.IsEmpty() || value.IsNull() || value.IsMissing() || value.IsObject()) return value.TypeName();
  if (value.IsArray()) return ShownArray(value);
  if (value.IsText()) return Quoted(value.AsText());
  std::string text = value.TypeName() + " " + value.AsText();
  if (value.Type() != VarType::Date) return text;
  return text + "." + NumberText(value.AsDate().Parts().Millisecond);
}

}  // namespace velmoria::test
