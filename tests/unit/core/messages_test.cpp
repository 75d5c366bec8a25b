#include "velmoria/core/messages.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/scoped_apartment.h"
#include "velmoria/core/reporting.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {
namespace {

class MessagesTest : public testing::Test {
 protected:
  MessagePtr Record(std::int32_t number, zSeverityFlags severity, std::string text = "text") {
    return messages_.SetupItem({.Number = zErrors{number}, .Description = std::move(text), .SeverityFlags = severity});
  }
  std::vector<std::int32_t> Numbers() const {
    std::vector<std::int32_t> numbers;
    for (const auto& message : messages_) numbers.push_back(message->Number());
    return numbers;
  }

  ScopedApartment apartment_;
  Messages& messages_ = apartment_.Messages();
};

using Values = std::vector<std::int32_t>;

TEST_F(MessagesTest, EmptyCollectionHasNoSummary) {
  EXPECT_EQ(messages_.Count(), 0);
  EXPECT_EQ(messages_.Number(), 0);
  EXPECT_EQ(messages_.ErrNo(), 0);
  EXPECT_EQ(messages_.Description(), "");
  EXPECT_EQ(messages_.HelpFile(), "");
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
  EXPECT_FALSE(messages_.Item({}));
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

TEST_F(MessagesTest, NumberTooGreatForAnUnraisedFormIsAdded) {
  Record(262143, svfError);
  Record(262144, svfError);
  Record(2147483647, svfError);
  EXPECT_EQ(Numbers(), (Values{262143, 262144, 2147483647}));
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

class EngineErrorsTest : public MessagesTest {
 protected:
  EngineErrorsTest() { apartment_.State().rdoEngine = Make<rdoEngine>(); }
  std::vector<EngineError>& Errors() { return apartment_.State().rdoEngine->rdoErrors(); }
};

TEST_F(EngineErrorsTest, EngineErrorsFollowAnyMessageAsWarnings) {
  Errors() = {{208, "no such table", "help", 4, "S0002"}, {8180, "not prepared", "", 0, "37000"}};
  Record(15129, svfInfo);
  EXPECT_EQ(Numbers(), (Values{15129, 208, 8180}));
  const auto warning = messages_.Item("208");
  EXPECT_EQ(warning->Description(), "no such table");
  EXPECT_EQ(warning->SeverityFlags(), svfWarning);
  EXPECT_EQ(warning->TypeFlags(), tfRDO);
  EXPECT_EQ(warning->HelpFile(), "help");
  EXPECT_EQ(warning->HelpContextID(), 4);
}

TEST_F(EngineErrorsTest, RecordingEmptiesTheEnginesList) {
  Errors() = {{208, "no such table"}};
  Record(13, svfError);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(EngineErrorsTest, SuspendedRecordingLeavesTheEnginesListForTheNextMessage) {
  Errors() = {{208, "no such table"}};
  messages_.SetSuspendRoutine("A");
  Record(13, svfError);
  EXPECT_EQ(Errors().size(), 1U);
  messages_.SetSuspendRoutine("A");
  Record(9, svfError);
  EXPECT_EQ(Numbers(), (Values{9, 208}));
}

TEST_F(EngineErrorsTest, OfSeveralZerosOneIsKept) {
  Errors() = {{0, "first"}, {0, "second"}};
  Record(13, svfError);
  EXPECT_EQ(Numbers(), (Values{13, 36571}));
  EXPECT_EQ(messages_.Item("36571")->Description(), "first");
}

TEST_F(EngineErrorsTest, EngineErrorOfAHeldNumberIsDropped) {
  Errors() = {{208, "no such table"}};
  Record(208, svfError, "caught");
  EXPECT_EQ(messages_.Count(), 1);
  EXPECT_EQ(messages_.Item(1)->Description(), "caught");
}

TEST_F(EngineErrorsTest, EngineErrorsJoinADeclinedMessage) {
  Record(13, svfError);
  Errors() = {{208, "no such table"}};
  Record(13, svfError);
  EXPECT_EQ(Numbers(), (Values{13, 208}));
}

class MessagesDetailsTest : public MessagesTest {
 protected:
  static std::string Title() { return "Velmoria v1.0-0h [TestHost 123]\r\n" + std::string(31, '-'); }
};

TEST_F(MessagesDetailsTest, EmptyReportIsTheTitle) { EXPECT_EQ(messages_.Details(), Title()); }

TEST_F(MessagesDetailsTest, SuspendedReportNamesTheSuspender) {
  Record(13, svfError);
  messages_.SetSuspendRoutine("Class.Routine");
  EXPECT_EQ(messages_.Details(), Title() + "\r\nMessaging Suspended by 'Class.Routine'");
}

TEST_F(MessagesDetailsTest, MostSevereStandsFirstWithItsState) {
  const auto message =
      messages_.SetupItem({.Number = errVelmoria_Locked, .StateDetails = "Property: 'x'", .SeverityFlags = svfError});
  EXPECT_EQ(messages_.Details(), Title() + "\r\n" + message->Details() +
                                     "\r\n\r\nRepository Object State Details\r\n-------------------------------"
                                     "\r\nProperty: 'x'");
}

TEST_F(MessagesDetailsTest, OthersFollowBySeverity) {
  const auto information = Record(1, svfInfo);
  const auto warning = Record(2, svfWarning);
  const auto first = Record(3, svfError);
  const auto error = Record(4, svfError);
  const auto secondWarning = Record(5, svfWarning);
  EXPECT_EQ(messages_.Details(), Title() + "\r\n" + first->Details() + "\r\n\r\nError Messages\r\n--------------\r\n" +
                                     error->Details() + "\r\n\r\nWarning Messages\r\n----------------\r\n" +
                                     warning->Details() + "\r\n\r\n" + secondWarning->Details() +
                                     "\r\n\r\nInformational Messages\r\n----------------------\r\n" +
                                     information->Details());
}

TEST_F(MessagesDetailsTest, OtherSeveritiesAreLeftOut) {
  const auto first = Record(3, svfError);
  Record(4, svfNone);
  Record(5, svfWarning | svfInfo);
  EXPECT_EQ(messages_.Details(), Title() + "\r\n" + first->Details());
}

TEST_F(MessagesDetailsTest, UnderlineOfTheTitleCountsCharacters) {
  apartment_.Host().HostName = "Käse";
  EXPECT_EQ(messages_.Details(), "Velmoria v1.0-0h [Käse 123]\r\n" + std::string(27, '-'));
}

class SuspensionTest : public MessagesTest {};

TEST_F(SuspensionTest, SuspendsForItsScope) {
  {
    Suspension quiet{"Class.Routine"};
    EXPECT_EQ(messages_.SuspendRoutine(), "Class.Routine");
  }
  EXPECT_EQ(messages_.SuspendRoutine(), "");
}

TEST_F(SuspensionTest, EndsOnUnwinding) {
  try {
    Suspension quiet{"Class.Routine"};
    throw 1;
  } catch (int) { EXPECT_EQ(messages_.SuspendRoutine(), ""); }
}

TEST_F(SuspensionTest, EndLiftsItBeforeTheScopeDoes) {
  Suspension quiet{"Class.Routine"};
  quiet.End();
  EXPECT_EQ(messages_.SuspendRoutine(), "");
  messages_.SetSuspendRoutine("Host");
  quiet.End();
  EXPECT_EQ(messages_.SuspendRoutine(), "Host");
}

TEST_F(SuspensionTest, InnerOneOfTheSameNameLeavesTheOuterInForce) {
  Suspension outer{"Class.Routine"};
  { Suspension inner{"Class.Routine"}; }
  EXPECT_EQ(messages_.SuspendRoutine(), "Class.Routine");
}

TEST_F(SuspensionTest, LeavesASuspensionOfTheHostInForce) {
  messages_.SetSuspendRoutine("Host");
  { Suspension quiet{"Class.Routine"}; }
  EXPECT_EQ(messages_.SuspendRoutine(), "Host");
}

TEST_F(SuspensionTest, DoesNotEndWhatTheHostStartedMeanwhile) {
  {
    Suspension quiet{"Class.Routine"};
    messages_.SetSuspendRoutine("");
    messages_.SetSuspendRoutine("Class.Routine");
  }
  EXPECT_EQ(messages_.SuspendRoutine(), "Class.Routine");
}

TEST_F(SuspensionTest, IsNothingWithoutMessages) {
  const auto messages = std::exchange(apartment_.State().Messages, nullptr);
  { Suspension quiet{"Class.Routine"}; }
  apartment_.State().Messages = messages;
  EXPECT_EQ(messages_.SuspendRoutine(), "");
}

}  // namespace
}  // namespace velmoria::test
