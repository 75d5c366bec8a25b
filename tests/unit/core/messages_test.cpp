#include "velmoria/core/messages.h"

#include <limits>

#include "tests/unit/core/messages_fixture.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {
namespace {

TEST_F(MessagesTest, EmptyCollectionHasNoSummary) {
  EXPECT_EQ(messages_.Count(), 0);
  EXPECT_EQ(messages_.Number(), 0);
  EXPECT_EQ(messages_.ErrNo(), 0);
  EXPECT_EQ(messages_.ErrLine(), 0);
  EXPECT_EQ(messages_.Description(), "");
  EXPECT_EQ(messages_.HelpFile(), "");
  EXPECT_EQ(messages_.HelpContext(), 0);
  EXPECT_EQ(messages_.TypeFlags(), tfUnknown);
  EXPECT_EQ(messages_.SeverityFlags(), svfNone);
}

TEST_F(MessagesTest, SummaryIsOfTheMostSevere) {
  Record(13, svfWarning);
  messages_.SetupItem({.Number = errItem_Class,
                       .ErrLine = 5,
                       .SeverityFlags = svfError,
                       .Replace1 = "'x'",
                       .HelpContextID = 8,
                       .HelpFile = "help"});
  EXPECT_EQ(messages_.Number(), 15065);
  EXPECT_EQ(messages_.ErrNo(), ErrorBase + 15065);
  EXPECT_EQ(messages_.ErrLine(), 5);
  EXPECT_EQ(messages_.TypeFlags(), tfVelmoria);
  EXPECT_EQ(messages_.SeverityFlags(), svfError);
  EXPECT_EQ(messages_.HelpContext(), 8);
  EXPECT_EQ(messages_.HelpFile(), "help");
}

TEST_F(MessagesTest, DescriptionIsTheWholeDetails) {
  const auto message = Record(13, svfError);
  EXPECT_EQ(messages_.Description(), message->Details());
}

TEST_F(MessagesTest, ItemFindsByPositionAndByNumberText) {
  Record(13, svfError);
  const auto second = Record(9, svfError);
  EXPECT_EQ(messages_.Item(2), second);
  EXPECT_EQ(messages_.Item("9"), second);
}

TEST_F(MessagesTest, ItemGivesNothingForAMiss) {
  Record(13, svfError);
  EXPECT_FALSE(messages_.Item(2));
  EXPECT_FALSE(messages_.Item(0));
  EXPECT_FALSE(messages_.Item("15065"));
}

TEST_F(MessagesTest, IndexThatIsNeitherPositionNorKeyFindsNothing) {
  Record(13, svfError);
  for (const auto& index : {Variant(), Variant::Missing(), Variant::Null(), Variant(Ref<Object>()), Variant("")})
    EXPECT_FALSE(messages_.Item(index)) << index.TypeName();
}

TEST_F(MessagesTest, MessageOfNumberZeroIsKeyed36571) {
  const auto message = Record(0, svfError);
  EXPECT_EQ(messages_.Item("36571"), message);
  EXPECT_EQ(static_cast<std::uint32_t>(messages_.ErrNo()), 0x80043A98U);
}

TEST_F(MessagesTest, WalkIsInOrderOfAddition) {
  Record(13, svfWarning);
  Record(9, svfError);
  Record(11, svfInfo);
  EXPECT_EQ(Numbers(), (Values{13, 9, 11}));
}

TEST_F(MessagesTest, SameNumberAsErrorKeepsTheFirst) {
  messages_.SetupItem({.Number = errItem_Class, .SeverityFlags = svfError, .Replace1 = "first"});
  const auto declined = messages_.SetupItem({.Number = errItem_Class, .SeverityFlags = svfError, .Replace1 = "second"});
  EXPECT_EQ(messages_.Count(), 1);
  EXPECT_EQ(messages_.Item("15065")->Replace1(), "first");
  EXPECT_EQ(declined->Replace1(), "second");
}

TEST_F(MessagesTest, SameNumberAsInformationTakesThePlace) {
  Record(15129, svfInfo, "first");
  Record(15129, svfInfo, "second");
  EXPECT_EQ(messages_.Count(), 1);
  EXPECT_EQ(messages_.Item(1)->Description(), "second");
}

TEST_F(MessagesTest, MostSevereStaysTheMessageThatAnInformationReplaced) {
  const auto first = Record(15129, svfInfo, "first");
  Record(15129, svfInfo, "second");
  EXPECT_EQ(messages_.Description(), first->Details());
}

TEST_F(MessagesTest, OnlyTheLastStatementIsHeldAndTheReportShowsTheFirst) {
  Record(15129, svfInfo, "SELECT 1");
  Record(15129, svfInfo, "SELECT 2");
  EXPECT_EQ(messages_.Item("15129")->Description(), "SELECT 2");
  EXPECT_NE(messages_.Details().find("SELECT 1"), std::string::npos);
  EXPECT_EQ(messages_.Details().find("SELECT 2"), std::string::npos);
}

TEST_F(MessagesTest, RaisedFormOfAHeldNumberIsDeclined) {
  Record(15065, svfError, "first");
  Record(ErrorBase + 15065, svfError, "raised");
  EXPECT_EQ(Numbers(), Values{15065});
}

TEST_F(MessagesTest, RaisedFormAsInformationTakesThePlace) {
  Record(15065, svfError, "first");
  Record(ErrorBase + 15065, svfInfo, "raised");
  EXPECT_EQ(Numbers(), Values{ErrorBase + 15065});
}

TEST_F(MessagesTest, CatalogueFormAfterTheRaisedFormIsAdded) {
  Record(ErrorBase + 15065, svfError);
  Record(15065, svfError);
  EXPECT_EQ(messages_.Count(), 2);
}

TEST_F(MessagesTest, GreatestNumberWithAnUnraisedFormIsDeclinedForIt) {
  Record(std::numeric_limits<std::int32_t>::max(), svfError);
  Record(262143, svfError);
  EXPECT_EQ(Numbers(), Values{std::numeric_limits<std::int32_t>::max()});
}

TEST_F(MessagesTest, NumberTooGreatForAnUnraisedFormIsComparedAsItselfOnly) {
  Record(std::numeric_limits<std::int32_t>::min(), svfError);  // where a sum that wraps would look
  Record(262144, svfError);
  Record(std::numeric_limits<std::int32_t>::max(), svfError);
  EXPECT_EQ(Numbers(),
            (Values{std::numeric_limits<std::int32_t>::min(), 262144, std::numeric_limits<std::int32_t>::max()}));
}

TEST_F(MessagesTest, InformationTakesThePlacesOfBothFormsAtOnce) {
  Record(ErrorBase + 15065, svfWarning);
  Record(15065, svfWarning);
  Record(9, svfWarning);
  Record(ErrorBase + 15065, svfInfo);
  EXPECT_EQ(Numbers(), (Values{9, ErrorBase + 15065}));
}

TEST_F(MessagesTest, EarliestOfEqualSeverityStaysMostSevere) {
  Record(13, svfError);
  Record(9, svfError);
  EXPECT_EQ(messages_.Number(), 13);
}

TEST_F(MessagesTest, InformationReplacesAWarningAsMostSevere) {
  Record(13, svfWarning);
  Record(9, svfInfo);
  EXPECT_EQ(messages_.Number(), 9);
}

TEST_F(MessagesTest, InformationNeverReplacesAnErrorAsMostSevere) {
  Record(13, svfError);
  Record(9, svfInfo);
  EXPECT_EQ(messages_.Number(), 13);
}

TEST_F(MessagesTest, WarningDoesNotReplaceAnInformationAsMostSevere) {
  Record(13, svfInfo);
  Record(9, svfWarning);
  EXPECT_EQ(messages_.Number(), 13);
}

TEST_F(MessagesTest, ErrorReplacesAnInformationAsMostSevere) {
  Record(13, svfInfo);
  Record(9, svfError);
  EXPECT_EQ(messages_.Number(), 9);
}

TEST_F(MessagesTest, SeveritiesAreComparedAsNumbersWhateverTheirFlags) {
  Record(1, svfAll);
  Record(2, svfNone);
  EXPECT_EQ(messages_.Number(), 2);
  Record(3, svfError);
  Record(4, svfError | svfWarning);
  EXPECT_EQ(messages_.Number(), 4);
}

TEST_F(MessagesTest, DeclinedErrorDoesNotBecomeMostSevereOverAWarning) {
  Record(13, svfWarning);
  Record(13, svfError);
  EXPECT_EQ(messages_.SeverityFlags(), svfWarning);
}

TEST_F(MessagesTest, AddTakesAMessageBuiltElsewhere) {
  const auto message = Make<Message>(MessageArguments{.Number = zErrors{13}, .SeverityFlags = svfError});
  messages_.Add(message);
  EXPECT_EQ(messages_.Item("13"), message);
}

TEST_F(MessagesTest, AddOfNothingIsPassedOver) {
  messages_.Add({});
  EXPECT_EQ(messages_.Count(), 0);
}

TEST_F(MessagesTest, ClearEmptiesAllButSuspensionAndLogSettings) {
  Record(13, svfError);
  messages_.SetLogTypeFlags(tfRDO);
  messages_.SetSuspendRoutine("A");
  messages_.Clear();
  EXPECT_EQ(messages_.Count(), 0);
  EXPECT_EQ(messages_.ErrNo(), 0);
  EXPECT_EQ(messages_.SuspendRoutine(), "A");
  EXPECT_EQ(messages_.LogTypeFlags(), tfRDO);
}

TEST_F(MessagesTest, NothingIsRecordedWhileSuspended) {
  messages_.SetSuspendRoutine("A");
  EXPECT_FALSE(Record(13, svfError));
  messages_.Add(Make<Message>());
  EXPECT_EQ(messages_.Count(), 0);
}

TEST_F(MessagesTest, NestedSuspenderIsIgnored) {
  messages_.SetSuspendRoutine("A");
  messages_.SetSuspendRoutine("B");
  EXPECT_EQ(messages_.SuspendRoutine(), "A");
  messages_.SetSuspendRoutine("A");
  EXPECT_EQ(messages_.SuspendRoutine(), "");
  EXPECT_TRUE(Record(13, svfError));
}

TEST_F(MessagesTest, EmptyNameWhileRecordingChangesNothing) {
  messages_.SetSuspendRoutine("");
  EXPECT_EQ(messages_.SuspendRoutine(), "");
  EXPECT_TRUE(Record(13, svfError));
}

TEST_F(MessagesTest, SuspendersAreToldApartByCase) {
  messages_.SetSuspendRoutine("Class.Routine");
  messages_.SetSuspendRoutine("class.routine");
  EXPECT_EQ(messages_.SuspendRoutine(), "Class.Routine");
}

TEST_F(MessagesTest, EmptyNameEndsAnyonesSuspension) {
  messages_.SetSuspendRoutine("A");
  messages_.SetSuspendRoutine("");
  EXPECT_EQ(messages_.SuspendRoutine(), "");
}

TEST_F(MessagesTest, SameRoutineReenteredEndsTheOuterSuspension) {
  messages_.SetSuspendRoutine("A");
  messages_.SetSuspendRoutine("A");
  EXPECT_EQ(messages_.SuspendRoutine(), "");
}

}  // namespace
}  // namespace velmoria::test
