#include <cmath>
#include <ostream>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertyDataValueTest : public testing::Test {
 protected:
  static PropertyDataPtr Clean(const PropertyFields& fields = {.Name = "X"}) {
    auto data = Make<PropertyData>();
    data->Setup(psUser, fields, 0, true);
    return data;
  }

  ScopedApartment apartment_;
};

struct DirtyCase {
  const char* Name;
  Variant Old;
  Variant Present;
  bool Dirty;
};

void PrintTo(const DirtyCase& each, std::ostream* stream) { *stream << each.Name; }

class DirtyValueTest : public PropertyDataValueTest, public testing::WithParamInterface<DirtyCase> {};

TEST_P(DirtyValueTest, DirtyValueGoesByTheTypeOfTheOldValue) {
  const auto data = Clean();
  data->SetValue(GetParam().Old);
  data->SetValue(GetParam().Present);
  EXPECT_EQ(data->DirtyValue(), GetParam().Dirty);
}

INSTANTIATE_TEST_SUITE_P(
    Table, DirtyValueTest,
    testing::Values(
        DirtyCase{"EmptyEmpty", Variant(), Variant(), false}, DirtyCase{"EmptyNull", Variant(), Variant::Null(), true},
        DirtyCase{"NullNull", Variant::Null(), Variant::Null(), false},
        DirtyCase{"NullEmpty", Variant::Null(), Variant(), true}, DirtyCase{"DateNull", Date{1}, Variant::Null(), true},
        DirtyCase{"DateSameSecond", Date{1}, Date{1 + 0.3 / 86400}, false},
        DirtyCase{"DateOtherSecond", Date{1}, Date{1 + 1.0 / 86400}, true},
        DirtyCase{"NumberEmpty", 1, Variant(), true}, DirtyCase{"NumberNull", 1, Variant::Null(), true},
        DirtyCase{"NumberSame", 1, 1, false}, DirtyCase{"NumberOther", 1, 2, true},
        DirtyCase{"NumberOfOtherWidth", std::int16_t{1}, 1, false}, DirtyCase{"TextSame", "a", "a", false},
        DirtyCase{"TextOther", "a", "A", true}, DirtyCase{"TextZeroLength", "a", "", true},
        DirtyCase{"BytesSame", std::vector<Byte>{1}, std::vector<Byte>{1}, false},
        DirtyCase{"BytesOther", std::vector<Byte>{1}, std::vector<Byte>{2}, true},
        DirtyCase{"DateEmpty", Date{1}, Variant(), true}, DirtyCase{"DayZeroAndEmpty", Date{}, Variant(), false},
        DirtyCase{"DateAndItsDays", Date{35000.5}, 35000.5, false},
        DirtyCase{"DateAndItsText", Date::From(1998, 6, 1), "1998-06-01", false},
        DirtyCase{"DateAndNoDate", Date{1}, "soon", true},
        DirtyCase{"DateAndArray", Date{1}, Variant::ArrayOfValues({1}), true},
        DirtyCase{"DateOutOfBounds", Date{1e9}, Date{1}, true}, DirtyCase{"NaN", std::nan(""), std::nan(""), true},
        DirtyCase{"NaNOfOtherWidth", std::nan(""), 1, true}, DirtyCase{"NumberAndNaN", 1, std::nan(""), true},
        DirtyCase{"NumberAndText", 1, "1", true}, DirtyCase{"TrueAndMinusOne", true, -1, false},
        DirtyCase{"ScalesOfADecimal", Decimal::Parse("1.5"), Decimal::Parse("1.50"), false},
        DirtyCase{"CurrencyOther", Currency{1}, Currency{2}, true},
        DirtyCase{"BytesEmpty", std::vector<Byte>{1}, Variant(), true},
        DirtyCase{"ArraySame", Variant::ArrayOfValues({1, "a"}), Variant::ArrayOfValues({1, "a"}), false},
        DirtyCase{"ArrayOther", Variant::ArrayOfValues({1, "a"}), Variant::ArrayOfValues({1, "b"}), true},
        DirtyCase{"TypedArrayOther", Variant::Array(0, 1, VarType::Integer), Variant::Array(0, 2, VarType::Integer),
                  true},
        DirtyCase{"MissingAlways", Variant::Missing(), Variant::Missing(), true}),
    [](const auto& each) { return each.param.Name; });

TEST_F(PropertyDataValueTest, ObjectsAlwaysDiffer) {
  const auto data = Clean();
  const Variant object(Clean());
  data->SetValue(object);
  data->SetValue(object);
  EXPECT_TRUE(data->DirtyValue());
}

TEST_F(PropertyDataValueTest, NothingIsAnObjectAndAlwaysDiffers) {
  const auto data = Clean();
  data->SetValue(Variant(PropertyPtr()));
  data->SetValue(Variant(PropertyPtr()));
  EXPECT_TRUE(data->DirtyValue());
}

TEST_F(PropertyDataValueTest, OldValueMayBeStoredAgain) {
  const auto data = Clean({.Name = "X", .Value = "first"});
  data->SetValue("second");
  data->SetValue(data->OldValue());
  EXPECT_EQ(data->Value(), Variant("first"));
  EXPECT_EQ(data->OldValue(), Variant("second"));
}

TEST_F(PropertyDataValueTest, ClearDirtyMakesThePresentValueTheOldOne) {
  const auto data = Clean();
  data->SetValue(1);
  data->ClearDirty();
  EXPECT_FALSE(data->Dirty());
  EXPECT_FALSE(data->DirtyValue());
  EXPECT_EQ(data->OldValue().AsLong(), 1);
}

TEST_F(PropertyDataValueTest, DefaultValueThatNoLongerConvertsFailsAtTheRead) {
  const auto data = Clean({.Name = "X", .DefaultValue = "abc"});
  data->SetDataType(dtLongInteger);
  ExpectReported(RuntimeFailure::TypeMismatch, [&] { data->DefaultValue(); });
  ExpectRaised(errProperty_DataType, [&] { data->Copy("", true); });
}

}  // namespace
}  // namespace velmoria::test
