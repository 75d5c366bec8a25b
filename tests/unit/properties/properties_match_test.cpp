#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

PropertiesPtr One(const PropertyFields& fields) {
  auto properties = Framework().CreateProperties();
  properties->SetupItem(fields);
  return properties;
}

struct MatchCase {
  const char* Name;
  Variant Candidate;
  const char* Operator;
  Variant Criterion;
  bool Matches;
};

class PropertiesMatchTest : public testing::TestWithParam<MatchCase> {
 protected:
  ScopedApartment apartment_;
};

TEST_P(PropertiesMatchTest, CriterionIsComparedByTheStorageOfTheCandidate) {
  const auto& each = GetParam();
  const auto criteria = One({.Name = "X", .Value = each.Criterion, .Operator = each.Operator});
  EXPECT_EQ(criteria->PropertiesMatch(One({.Name = "X", .Value = each.Candidate})), each.Matches);
}

const Date kEarly = Date::From(1998, 6, 1);
const Date kLate = Date::From(1998, 6, 2);

INSTANTIATE_TEST_SUITE_P(
    Table, PropertiesMatchTest,
    testing::Values(MatchCase{"EmptyEqualsNoValue", Variant(), "=", 1, false},
                    MatchCase{"EmptyDiffersFromAValue", Variant(), "<>", 1, true},
                    MatchCase{"NullEqualsNull", Variant::Null(), "=", Variant::Null(), true},
                    MatchCase{"NullDiffers", Variant::Null(), "<>", 1, true}, MatchCase{"NumberEqual", 2, "=", 2, true},
                    MatchCase{"NumberOfOtherWidth", std::int16_t{2}, "=", 2.0, true},
                    MatchCase{"NumberUnequal", 2, "<>", 3, true}, MatchCase{"NumberGreater", 3, ">", 2, true},
                    MatchCase{"NumberNotGreater", 2, ">", 2, false}, MatchCase{"NumberLess", 1, "<", 2, true},
                    MatchCase{"NumberAtLeast", 2, ">=", 2, true},
                    MatchCase{"NumberAtLeastOtherSpelling", 1, "=>", 2, false},
                    MatchCase{"NumberAtMost", 2, "<=", 2, true},
                    MatchCase{"NumberAtMostOtherSpelling", 3, "=<", 2, false},
                    MatchCase{"NumberAgainstNull", 2, "=", Variant::Null(), false},
                    MatchCase{"Decimal", Decimal::Parse("1.50"), "=", 1.5, true},
                    MatchCase{"Byte", Byte{3}, ">", 2, true}, MatchCase{"Boolean", true, "=", true, true},
                    MatchCase{"BooleanOther", true, "=", false, false}, MatchCase{"TextEqual", "b", "=", "b", true},
                    MatchCase{"TextCase", "b", "=", "B", false}, MatchCase{"TextGreater", "b", ">", "a", true},
                    MatchCase{"TextLess", "b", "<", "a", false}, MatchCase{"DateEqual", kEarly, "=", kEarly, true},
                    MatchCase{"DateAgainstText", kEarly, "=", "1998-06-01", false},
                    MatchCase{"DateGreaterMeansTheCriterionIsLater", kEarly, ">", kLate, true},
                    MatchCase{"DateLessMeansTheCriterionIsEarlier", kEarly, "<", kLate, false},
                    MatchCase{"ArraysAreAllAlike", std::vector<Byte>{1}, "=", std::vector<Byte>{2}, true},
                    MatchCase{"ArrayAgainstNumber", std::vector<Byte>{1}, "=", 1, false}),
    [](const auto& each) { return each.param.Name; });

class PropertiesCriteriaTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
};

TEST_F(PropertiesCriteriaTest, EmptyCollectionMatches) {
  EXPECT_TRUE(Framework().CreateProperties()->PropertiesMatch(One({.Name = "X"})));
}

TEST_F(PropertiesCriteriaTest, UnsetTypedCriterionIsPassedOverThoughItReadsAsZero) {
  EXPECT_TRUE(One({.Name = "X", .DataType = dtLongInteger})->PropertiesMatch(One({.Name = "X", .Value = 5})));
}

TEST_F(PropertiesCriteriaTest, CriterionThatNobodyAnswersToDoesNotMatch) {
  EXPECT_FALSE(One({.Name = "X", .Value = 1})->PropertiesMatch(One({.Name = "Y", .Value = 1})));
}

TEST_F(PropertiesCriteriaTest, CriteriaAreAndedWhateverTheirOrFlag) {
  const auto criteria = One({.Name = "X", .Value = 1});
  criteria->SetupItem({.Name = "Y", .Value = 2, .OrFlag = true});
  const auto candidate = One({.Name = "X", .Value = 1});
  candidate->SetupItem({.Name = "Y", .Value = 3});
  EXPECT_FALSE(criteria->PropertiesMatch(candidate));
  candidate->Item("Y")->SetValue(2);
  EXPECT_TRUE(criteria->PropertiesMatch(candidate));
}

TEST_F(PropertiesCriteriaTest, EmptyAndNullKnowOnlyEqualAndUnequal) {
  for (const char* each : {">", "<", ">=", "=>", "<=", "=<"}) {
    const auto criteria = One({.Name = "X", .Value = 1, .Operator = each});
    ExpectRaised(errNotSupported_Operator,
                 [&] { criteria->PropertiesMatch(One({.Name = "X", .Value = Variant::Null()})); },
                 {.Text = std::string("Operator: '") + each + "'  Property: 'X'"});
    ExpectRaised(errNotSupported_Operator, [&] { criteria->PropertiesMatch(One({.Name = "X"})); });
  }
}

TEST_F(PropertiesCriteriaTest, UnknownOperatorOfASetupIsRefusedWhenItIsUsed) {
  const auto criteria = One({.Name = "X", .Value = 1, .Operator = "Like"});
  ExpectRaised(errNotSupported_Operator, [&] { criteria->PropertiesMatch(One({.Name = "X", .Value = 1})); });
}

// PrepareValues

TEST_F(PropertiesCriteriaTest, PrepareValuesCarriesValuesToTheMembersThatAnswer) {
  const auto parameters = One({.Name = "A", .DataType = dtLongInteger});
  const auto given = One({.Name = "a", .Value = "7"});
  given->SetupItem({.Name = "B", .Value = 1});
  parameters->PrepareValues({.Properties = given});
  EXPECT_TRUE(parameters->Item("A")->Value() == Variant(7));
}

TEST_F(PropertiesCriteriaTest, PrepareValuesSkipsWhatIsCleanIfToldTo) {
  const auto given = One({.Name = "A", .Value = 7});
  given->Item("A")->ClearDirty();
  const auto parameters = One({.Name = "A", .Value = 1});
  parameters->PrepareValues({.Properties = given, .DirtyOnly = true});
  EXPECT_EQ(parameters->Item("A")->Value().AsLong(), 1);
}

TEST_F(PropertiesCriteriaTest, PrepareValuesNeedsAllTheFlags) {
  const auto parameters = One({.Name = "A", .Value = 1, .Flags = pfInput});
  parameters->PrepareValues({.Properties = One({.Name = "A", .Value = 7}), .PropertyFlags = pfInput | pfOutput});
  EXPECT_EQ(parameters->Item("A")->Value().AsLong(), 1);
  parameters->PrepareValues({.Properties = One({.Name = "A", .Value = 7}), .PropertyFlags = pfInput});
  EXPECT_EQ(parameters->Item("A")->Value().AsLong(), 7);
}

TEST_F(PropertiesCriteriaTest, PrepareValuesTakesOldValuesIfToldTo) {
  const auto given = One({.Name = "A", .Value = 7});
  given->Item("A")->SetValue(8);
  const auto parameters = One({.Name = "A"});
  parameters->PrepareValues({.Properties = given, .UseOldValue = true});
  EXPECT_EQ(parameters->Item("A")->Value().AsLong(), 7);
}

TEST_F(PropertiesCriteriaTest, PrepareValuesPassesOverAMemberThatRefuses) {
  const auto parameters = One({.Name = "A", .Value = 1, .DataType = dtLongInteger});
  parameters->SetupItem({.Name = "B"});
  const auto given = One({.Name = "A", .Value = "abc"});
  given->SetupItem({.Name = "B", .Value = 2});
  parameters->PrepareValues({.Properties = given});
  EXPECT_EQ(parameters->Item("A")->Value().AsLong(), 1);
  EXPECT_EQ(parameters->Item("B")->Value().AsLong(), 2);
}

TEST_F(PropertiesCriteriaTest, PrepareValuesClearsTheMessagesOfEarlierFailures) {
  EXPECT_THROW(One({.Name = "A"})->Item("x"), Error);
  EXPECT_GT(Framework().Messages()->Count(), 0);
  One({.Name = "A"})->PrepareValues({.Properties = One({.Name = "A"})});
  EXPECT_EQ(Framework().Messages()->Count(), 0);
}

TEST_F(PropertiesCriteriaTest, PrepareValuesPassesOverAListenerThatFails) {
  const auto parameters = One({.Name = "A"});
  parameters->SetupItem({.Name = "B"});
  parameters->ItemNotFound += [](const PropertyKey&, PropertyPtr&) { Fail(RuntimeFailure::DivisionByZero); };
  const auto given = One({.Name = "x", .SourceName = "A", .SourceColumn = "c", .SourceTable = "t"});
  given->SetupItem({.Name = "B", .Value = 2});
  parameters->PrepareValues({.Properties = given});
  EXPECT_EQ(parameters->Item("B")->Value().AsLong(), 2);
}

TEST_F(PropertiesCriteriaTest, NoCollectionIsAnObjectNotSet) {
  ExpectReported(RuntimeFailure::ObjectNotSet, [] { One({.Name = "A"})->PropertiesMatch({}); });
  ExpectReported(RuntimeFailure::ObjectNotSet, [] { One({.Name = "A"})->PrepareValues({.Properties = {}}); });
}

}  // namespace
}  // namespace velmoria::test
