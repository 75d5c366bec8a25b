#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertyChangeTest : public testing::Test {
 protected:
  static PropertyPtr New(const PropertyFields& fields) { return Framework().CreateProperty(fields); }
  static PropertyPtr Of(zDataTypes dataType, zPropertyFlags flags = pfNone) {
    return New({.Name = "X", .DataType = dataType, .Flags = flags});
  }

  ScopedApartment apartment_;
};

// Events

TEST_F(PropertyChangeTest, ListenerSeesTheConvertedValueBeforeItIsStored) {
  const auto property = Of(dtLongInteger);
  Variant seen;
  bool wasEmpty = false;
  property->BeforeValueChange += [&](const Variant& value, bool&) {
    seen = value;
    wasEmpty = property->EmptyValue();
  };
  property->SetValue("42");
  EXPECT_TRUE(seen == Variant(42));
  EXPECT_TRUE(wasEmpty);
}

TEST_F(PropertyChangeTest, CancelLeavesEverythingAsItWas) {
  const auto property = Of(dtLongInteger);
  property->SetValue(1);
  int after = 0;
  property->BeforeValueChange += [](const Variant&, bool& Cancel) { Cancel = true; };
  property->AfterValueChange += [&] { ++after; };
  property->SetValue(2);
  EXPECT_EQ(property->Value().AsLong(), 1);
  EXPECT_TRUE(property->OldValue().IsEmpty());
  EXPECT_TRUE(property->DirtyValue());
  EXPECT_EQ(after, 0);
}

TEST_F(PropertyChangeTest, CancelOnACleanPropertyLeavesItClean) {
  const auto property = Of(dtLongInteger);
  property->BeforeValueChange += [](const Variant&, bool& Cancel) { Cancel = true; };
  property->SetValue(2);
  EXPECT_FALSE(property->DirtyValue());
}

struct Assignment {
  const char* Name;
  Variant First;
  Variant Second;
  bool Same;
};

class PropertySameValueTest : public PropertyChangeTest, public testing::WithParamInterface<Assignment> {};

TEST_P(PropertySameValueTest, OnlyAnotherValueRaisesEvents) {
  const auto property = Of(dtVariant);
  property->SetValue(GetParam().First);
  int calls = 0;
  property->BeforeValueChange += [&](const Variant&, bool&) { ++calls; };
  property->SetValue(GetParam().Second);
  EXPECT_EQ(calls, GetParam().Same ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(
    Table, PropertySameValueTest,
    testing::Values(
        Assignment{"EmptyEmpty", Variant(), Variant(), true},
        Assignment{"EmptyNull", Variant(), Variant::Null(), false},
        Assignment{"NullNull", Variant::Null(), Variant::Null(), true},
        Assignment{"NullZero", Variant::Null(), 0, false}, Assignment{"EqualNumbers", 1, 1, true},
        Assignment{"WidthsDiffer", std::int16_t{1}, 1, false}, Assignment{"TextAndNumber", "1", 1, false},
        Assignment{"CaseDiffers", "a", "A", false},
        Assignment{"SameSecond", Date{35000.25}, Date{35000.25 + 0.4 / 86400}, true},
        Assignment{"NextSecond", Date{35000.25}, Date{35000.25 + 1.0 / 86400}, false},
        Assignment{"EqualBytes", std::vector<Byte>{1, 2}, std::vector<Byte>{1, 2}, true},
        Assignment{"OtherBytes", std::vector<Byte>{1, 2}, std::vector<Byte>{1, 3}, false},
        Assignment{"OtherBounds", std::vector<Byte>{1, 2}, std::vector<Byte>{1}, false},
        Assignment{"NullEmpty", Variant::Null(), Variant(), false}, Assignment{"EmptyZero", Variant(), 0, false},
        Assignment{"MissingMissing", Variant::Missing(), Variant::Missing(), true},
        Assignment{"EqualBooleans", true, true, true}, Assignment{"TrueAndMinusOne", true, -1, false},
        Assignment{"ScalesOfADecimal", Decimal::Parse("1.5"), Decimal::Parse("1.50"), true},
        Assignment{"EqualTypedArrays", Variant::Array(1, 2, VarType::Date), Variant::Array(1, 2, VarType::Date), true},
        Assignment{"LowerBoundsDiffer", Variant::Array(1, 2), Variant::Array(0, 1), false},
        Assignment{"ElementTypesDiffer", Variant::Array(0, 1, VarType::Integer), Variant::Array(0, 1, VarType::Long),
                   false},
        Assignment{"ElementsDiffer", Variant::ArrayOfValues({1, "a"}), Variant::ArrayOfValues({1, "b"}), false},
        Assignment{"ArrayAndFirstElement", Variant::ArrayOfValues({1}), 1, false},
        Assignment{"ElementsInOneSecond", Variant::ArrayOfValues({Date{1}}),
                   Variant::ArrayOfValues({Date{1 + 0.3 / 86400}}), true}),
    [](const auto& each) { return each.param.Name; });

TEST_F(PropertyChangeTest, NoNumberIsTheSameAsNaN) {
  const auto property = Of(dtDouble);
  property->SetValue(std::nan(""));
  property->SetValue(std::nan(""));
  EXPECT_TRUE(property->DirtyValue());
  EXPECT_TRUE(std::isnan(property->OldValue().AsDouble()));
  EXPECT_TRUE(has(property->StateFlags(), sfdirty));
}

TEST_F(PropertyChangeTest, SecondBoundariesCountAndNotDistances) {
  const auto property = Of(dtDate);
  property->SetValue(Date::From({1998, 6, 1, 9, 0, 0, 900}));
  property->SetValue(Date::From({1998, 6, 1, 9, 0, 1, 100}));
  EXPECT_EQ(property->Value().AsDate().Parts().Second, 1);
}

TEST_F(PropertyChangeTest, AssigningThePresentValueLeavesTheOldValue) {
  const auto property = Of(dtLongInteger);
  property->SetValue(1);
  property->SetValue(2);
  property->SetValue(2);
  EXPECT_EQ(property->OldValue().AsLong(), 1);
}

// Old values

TEST_F(PropertyChangeTest, FreeStandingOldValueIsTheOneBeforeTheLatestChange) {
  const auto property = New({.Name = "X", .Value = "A", .DataType = dtString});
  property->SetValue("B");
  property->SetValue("A");
  EXPECT_EQ(property->OldValue().AsText(), "B");
  EXPECT_TRUE(property->DirtyValue());
}

TEST_F(PropertyChangeTest, UndoGoesBackOneStep) {
  const auto property = Of(dtLongInteger);
  property->SetValue(1);
  property->SetValue(2);
  property->Undo();
  EXPECT_EQ(property->Value().AsLong(), 1);
  EXPECT_FALSE(property->DirtyValue());
}

// Default values

TEST_F(PropertyChangeTest, DefaultValueMeetsTheTestsOfAValue) {
  ExpectRaised(errValue_Size, [&] { New({.Name = "X", .DataType = dtString, .Size = 2})->SetDefaultValue("abc"); });
  ExpectRaised(errValue_ZeroLength, [&] { Of(dtString, pfRequired)->SetDefaultValue(""); });
  ExpectRaised(errValue_Required, [&] { Of(dtLongInteger, pfRequired)->SetDefaultValue(Variant::Null()); });
  ExpectRaised(errValue_BLOB, [&] { Of(dtByteArray)->SetDefaultValue(1); });
  ExpectRaised(errProperty_DataType, [&] { Of(dtLongInteger)->SetDefaultValue("abc"); },
               {.Text = "ValueDataType: 'String'"});
}

TEST_F(PropertyChangeTest, DefaultValueThatNoLongerConvertsFailsAtTheRead) {
  const auto property = New({.Name = "X", .DefaultValue = "abc"});
  property->SetDataType(dtLongInteger);
  ExpectReported(RuntimeFailure::TypeMismatch, [&] { property->DefaultValue(); });
  ExpectReported(RuntimeFailure::TypeMismatch, [&] { property->Value(); });
}

TEST_F(PropertyChangeTest, EmptyDefaultValueIsStoredEvenWhenRequired) {
  const auto property = New({.Name = "X", .DataType = dtLongInteger, .Flags = pfRequired, .DefaultValue = 1});
  property->SetDefaultValue(Variant());
  EXPECT_TRUE(property->DefaultValue().IsEmpty());
}

TEST_F(PropertyChangeTest, LockedDefinitionRefusesADefaultValueAndLockedPropertyDoesNot) {
  const auto locked = New({.Name = "X", .DataType = dtLongInteger, .Locked = true});
  EXPECT_FALSE(locked->Locked());
  EXPECT_THROW(locked->SetDefaultValue(1), Error);
  EXPECT_EQ(Framework().Messages()->Item("15002")->TypeName(), "PropertyData");
  EXPECT_EQ(Framework().Messages()->Item("15002")->RoutineName(), "DefaultValue (Let)");
  ExpectRaised(errVelmoria_Locked, [&] { locked->SetDefaultValue(1); });
  const auto free = Of(dtLongInteger);
  free->SetLocked(true);
  free->SetDefaultValue(1);
  EXPECT_EQ(free->DefaultValue().AsLong(), 1);
}

TEST_F(PropertyChangeTest, DefaultValueRaisesNoEventAndStampsNothing) {
  const auto property = New({.Name = "X", .DataType = dtLongInteger})->Copy();
  int calls = 0;
  property->BeforeValueChange += [&](const Variant&, bool&) { ++calls; };
  property->SetDefaultValue(1);
  EXPECT_FALSE(property->Dirty());
  EXPECT_EQ(calls, 0);
}

TEST_F(PropertyChangeTest, RequiresValueNeedsInputAndRequiredAndNoValue) {
  EXPECT_TRUE(Of(dtLongInteger, pfInput | pfRequired)->RequiresValue());
  EXPECT_FALSE(Of(dtLongInteger, pfInput)->RequiresValue());
  EXPECT_FALSE(Of(dtLongInteger, pfRequired)->RequiresValue());
  const auto filled = Of(dtLongInteger, pfInput | pfRequired);
  filled->SetValue(1);
  EXPECT_FALSE(filled->RequiresValue());
}

}  // namespace
}  // namespace velmoria::test
