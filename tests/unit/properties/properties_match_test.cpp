#include <stdexcept>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

PropertiesPtr One(const PropertyFields& fields) {
  auto properties = Framework().CreateProperties();
  properties->SetupItem(fields);
  return properties;
}

bool Matches(const Variant& candidate, const char* with, const Variant& criterion) {
  const auto criteria = One({.Name = "X", .Value = criterion, .Operator = with});
  return criteria->PropertiesMatch(One({.Name = "X", .Value = candidate}));
}

struct OperatorRow {
  const char* Text;
  bool Lower, Same, Higher;  // whether it holds for a comparison below, at and above 0
};

constexpr OperatorRow kOperators[] = {
    {"=", false, true, false}, {"<>", true, false, true}, {">", false, false, true}, {"<", true, false, false},
    {">=", false, true, true}, {"=>", false, true, true}, {"<=", true, true, false}, {"=<", true, true, false},
};

// A criterion, and candidates that compare below, at and above 0 with it; Empty where there is none.
struct StorageRow {
  const char* Name;
  Variant Criterion;
  Variant Lower, Same, Higher;
};

class PropertiesMatchTest : public testing::TestWithParam<StorageRow> {
 protected:
  ScopedApartment apartment_;
};

const Date kEarly = Date::From(1998, 6, 1, 9, 0, 0);
const Date kMiddle = Date::From(1998, 6, 1, 9, 0, 1);
const Date kLate = Date::From(1998, 6, 2);
const Date kAlmostTheSame{kMiddle.Days + 0.4 / 86400};
const std::vector<Byte> kBytes{1};

const StorageRow kStorages[] = {
    {"Integer", std::int16_t{2}, std::int16_t{1}, std::int16_t{2}, std::int16_t{3}},
    {"Long", 2, 1, 2, 3},
    {"Single", 2.5F, 2.25F, 2.5F, 2.75F},
    {"Double", 2.5, 2.4, 2.5, 2.6},
    {"Currency", Currency{20000}, Currency{19999}, Currency{20000}, Currency{20001}},
    {"Decimal", Decimal::Parse("2.50"), Decimal::Parse("2.49"), Decimal::Parse("2.5"), Decimal::Parse("2.51")},
    {"Byte", Byte{2}, Byte{1}, Byte{2}, Byte{3}},
    {"TrueIsBelowFalse", false, true, false, Variant()},
    {"NumbersOfOtherWidths", 2.0, std::int16_t{1}, Byte{2}, Currency{20001}},
    {"NumbersAgainstTheirText", "2", 1, 2, 3},
    {"NumbersAgainstABoolean", true, -2, -1, 0},
    {"NumbersAgainstNullAreAbove", Variant::Null(), Variant(), Variant(), -1},
    {"Text", "b", "a", "b", "c"},
    {"TextWithRegardToCase", "b", "B", "b", Variant()},
    {"TextAgainstANumberAsItsText", 2, "10", "2", "3"},
    {"TextAgainstNullIsAbove", Variant::Null(), Variant(), Variant(), ""},
    {"DatesTheOtherWayRound", kMiddle, kLate, kMiddle, kEarly},
    {"DatesWithinASecond", kMiddle, Variant(), kAlmostTheSame, Variant()},
    {"DateAgainstItsTextIsAbove", "1998-06-01 09:00:01", Variant(), Variant(), kMiddle},
    {"DateAgainstItsNumberIsAbove", kMiddle.Days, Variant(), Variant(), kMiddle},
    {"DateAgainstNullIsAbove", Variant::Null(), Variant(), Variant(), kMiddle},
    {"ArraysAreAllAlike", kBytes, Variant(), std::vector<Byte>{2, 3}, Variant()},
    {"ArraysOfValuesToo", kBytes, Variant(), Variant::ArrayOfValues({"x"}), Variant()},
    {"ArrayAndObjectAreAlike", Variant(PropertyPtr()), Variant(), kBytes, Variant()},
    {"ObjectAndArrayAreAlike", kBytes, Variant(), Variant(PropertyPtr()), Variant()},
    {"ArrayAgainstANumberIsAbove", 1, Variant(), Variant(), kBytes},
    {"ArrayAgainstTextIsAbove", "x", Variant(), Variant(), kBytes},
    {"ArrayAgainstADateIsAbove", kMiddle, Variant(), Variant(), kBytes},
    {"ArrayAgainstNullIsAbove", Variant::Null(), Variant(), Variant(), kBytes},
    {"ObjectAgainstANumberIsAbove", 1, Variant(), Variant(), Variant(PropertyPtr())},
};

INSTANTIATE_TEST_SUITE_P(Table, PropertiesMatchTest, testing::ValuesIn(kStorages),
                         [](const auto& each) { return each.param.Name; });

TEST_P(PropertiesMatchTest, CriterionIsComparedByTheStorageOfTheCandidate) {
  const auto& row = GetParam();
  for (const auto& with : kOperators) {
    if (!row.Lower.IsEmpty()) { EXPECT_EQ(Matches(row.Lower, with.Text, row.Criterion), with.Lower) << with.Text; }
    if (!row.Same.IsEmpty()) { EXPECT_EQ(Matches(row.Same, with.Text, row.Criterion), with.Same) << with.Text; }
    if (!row.Higher.IsEmpty()) { EXPECT_EQ(Matches(row.Higher, with.Text, row.Criterion), with.Higher) << with.Text; }
  }
}

class PropertiesCriteriaTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
};

TEST_F(PropertiesCriteriaTest, EmptyCollectionMatches) {
  EXPECT_TRUE(Framework().CreateProperties()->PropertiesMatch(One({.Name = "X"})));
}

TEST_F(PropertiesCriteriaTest, EmptyCandidateDiffersFromEveryCriterion) {
  for (const Variant& criterion : {Variant(1), Variant(""), Variant::Null(), Variant(kMiddle), Variant(kBytes)}) {
    EXPECT_FALSE(Matches(Variant(), "=", criterion)) << criterion.TypeName();
    EXPECT_TRUE(Matches(Variant(), "<>", criterion)) << criterion.TypeName();
  }
}

TEST_F(PropertiesCriteriaTest, NullCandidateIsTheSameAsNullAlone) {
  EXPECT_TRUE(Matches(Variant::Null(), "=", Variant::Null()));
  EXPECT_FALSE(Matches(Variant::Null(), "<>", Variant::Null()));
  for (const Variant& criterion : {Variant(1), Variant(""), Variant(kMiddle), Variant(kBytes)}) {
    EXPECT_FALSE(Matches(Variant::Null(), "=", criterion)) << criterion.TypeName();
    EXPECT_TRUE(Matches(Variant::Null(), "<>", criterion)) << criterion.TypeName();
  }
}

TEST_F(PropertiesCriteriaTest, UnsetTypedCandidateComparesAsItsZero) {
  const auto criteria = One({.Name = "X", .Value = 0});
  EXPECT_TRUE(criteria->PropertiesMatch(One({.Name = "X", .DataType = dtLongInteger})));
  EXPECT_FALSE(criteria->PropertiesMatch(One({.Name = "X"})));
}

TEST_F(PropertiesCriteriaTest, DefaultValueOfTheCandidateIsCompared) {
  const auto candidate = One({.Name = "X", .DataType = dtLongInteger, .DefaultValue = 5});
  EXPECT_TRUE(One({.Name = "X", .Value = 5})->PropertiesMatch(candidate));
}

TEST_F(PropertiesCriteriaTest, DefaultValueIsNoCriterion) {
  const auto criteria = One({.Name = "X", .DataType = dtLongInteger, .DefaultValue = 5});
  EXPECT_TRUE(criteria->PropertiesMatch(One({.Name = "X", .Value = 6})));
}

TEST_F(PropertiesCriteriaTest, TextThatIsNoNumberCannotBeComparedWithANumber) {
  ExpectReported(RuntimeFailure::TypeMismatch, [] { Matches(1, "=", "abc"); });
}

TEST_F(PropertiesCriteriaTest, BytesCannotBeComparedWithAText) {
  ExpectReported(RuntimeFailure::TypeMismatch, [] { Matches("abc", "=", kBytes); });
}

TEST_F(PropertiesCriteriaTest, FirstCriterionThatFailsEndsTheMatch) {
  const auto criteria = One({.Name = "X", .Value = 1});
  criteria->SetupItem({.Name = "Y", .Value = 2, .Operator = "Like"});
  const auto candidate = One({.Name = "X", .Value = 9});
  candidate->SetupItem({.Name = "Y", .Value = 2});
  EXPECT_FALSE(criteria->PropertiesMatch(candidate));
  candidate->Item("X")->SetValue(1);
  ExpectRaised(errNotSupported_Operator, [&] { criteria->PropertiesMatch(candidate); },
               {.Text = "Operator: 'Like'  Property: 'Y'"});
}

TEST_F(PropertiesCriteriaTest, CandidateIsLookedForByTheIdentityOfTheCriterion) {
  const auto criteria = One({.Name = "x", .Value = 1, .SourceName = "X", .SourceColumn = "c", .SourceTable = "t"});
  EXPECT_TRUE(criteria->PropertiesMatch(One({.Name = "X", .Value = 1})));
  const auto renamed = One({.Name = "Y", .Value = 1, .SourceName = "Z", .SourceColumn = "c", .SourceTable = "t"});
  EXPECT_FALSE(criteria->PropertiesMatch(renamed));
}

TEST_F(PropertiesCriteriaTest, CandidateThatOnlyTheSourceNamePromisesIsAProblemOfFinding) {
  const auto criteria = One({.Name = "x", .Value = 1, .SourceName = "Y", .SourceColumn = "c", .SourceTable = "t"});
  const auto candidate = One({.Name = "Y", .Value = 1, .SourceColumn = "d", .SourceTable = "t"});
  ExpectRaised(errItem_Property, [&] { criteria->PropertiesMatch(candidate); });
  candidate->ItemNotFound += [&](const PropertyKey&, PropertyPtr& item) { item = candidate->Item(1); };
  EXPECT_TRUE(criteria->PropertiesMatch(candidate));
}

TEST_F(PropertiesCriteriaTest, UnknownOperatorIsAnErrorAlsoBehindAnInformation) {
  Framework().Messages()->SetupItem({.Number = errRDO_Info, .SeverityFlags = svfInfo});
  const auto error = Thrown([] { Matches(1, "Like", 1); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), static_cast<std::int32_t>(errNotSupported_Operator));
  EXPECT_EQ(Framework().Messages()->SeverityFlags(), svfError);
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

TEST_F(PropertiesCriteriaTest, PrepareValuesCarriesWhatIsDirtyIfToldTo) {
  const auto given = One({.Name = "A", .Value = 7});
  given->Item("A")->ClearDirty();
  given->Item("A")->SetValue(8);
  const auto parameters = One({.Name = "A", .Value = 1});
  parameters->PrepareValues({.Properties = given, .DirtyOnly = true});
  EXPECT_EQ(parameters->Item("A")->Value().AsLong(), 8);
  parameters->PrepareValues({.Properties = given, .DirtyOnly = true, .UseOldValue = true});
  EXPECT_EQ(parameters->Item("A")->Value().AsLong(), 7);
}

TEST_F(PropertiesCriteriaTest, PrepareValuesCarriesWhatAValueReadsAs) {
  const auto parameters = One({.Name = "A", .Value = 1});
  parameters->PrepareValues({.Properties = One({.Name = "A", .DataType = dtLongInteger})});
  EXPECT_TRUE(parameters->Item("A")->Value() == Variant(0));
  parameters->PrepareValues({.Properties = One({.Name = "A", .Value = Variant::Null()})});
  EXPECT_TRUE(parameters->Item("A")->Value().IsNull());
}

TEST_F(PropertiesCriteriaTest, PrepareValuesIsAChangeOfValueThatListenersMayVeto) {
  const auto parameters = One({.Name = "A", .Value = 1});
  parameters->Item("A")->BeforeValueChange += [](const Variant&, bool& Cancel) { Cancel = true; };
  parameters->PrepareValues({.Properties = One({.Name = "A", .Value = 7})});
  EXPECT_EQ(parameters->Item("A")->Value().AsLong(), 1);
}

TEST_F(PropertiesCriteriaTest, PrepareValuesFillsWhatAListenerSupplies) {
  const auto parameters = One({.Name = "A", .SourceColumn = "d", .SourceTable = "t"});
  const auto supplied = Framework().CreateProperty({.Name = "Supplied"});
  parameters->ItemNotFound += [&](const PropertyKey&, PropertyPtr& item) { item = supplied; };
  parameters->PrepareValues({.Properties = One({.Name = "x", .Value = 7, .SourceName = "A"})});
  EXPECT_EQ(supplied->Value().AsLong(), 7);
}

TEST_F(PropertiesCriteriaTest, PrepareValuesTakesTheValuesOfARow) {
  const SampleRows rows;
  const auto parameters = One({.Name = "Id"});
  rows.Row(1)->Item("Id")->SetValue(20);
  parameters->PrepareValues({.Properties = rows.Row(1)});
  EXPECT_EQ(parameters->Item("Id")->Value().AsLong(), 20);
  parameters->PrepareValues({.Properties = rows.Row(1), .UseOldValue = true});
  EXPECT_EQ(parameters->Item("Id")->Value().AsLong(), 2);
}

TEST_F(PropertiesCriteriaTest, PrepareValuesPassesOverFailuresOfTheHostItself) {
  const auto parameters = One({.Name = "A", .Value = 1});
  parameters->SetupItem({.Name = "B"});
  parameters->Item("A")->BeforeValueChange += [](const Variant&, bool&) { throw std::runtime_error("no"); };
  const auto given = One({.Name = "x", .SourceName = "A", .SourceColumn = "c", .SourceTable = "t"});
  given->SetupItem({.Name = "A", .Value = 7});
  given->SetupItem({.Name = "B", .Value = 2});
  parameters->ItemNotFound += [](const PropertyKey&, PropertyPtr&) { throw std::runtime_error("no"); };
  parameters->PrepareValues({.Properties = given});
  EXPECT_EQ(parameters->Item("A")->Value().AsLong(), 1);
  EXPECT_EQ(parameters->Item("B")->Value().AsLong(), 2);
  EXPECT_EQ(Framework().Messages()->Count(), 0);
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
