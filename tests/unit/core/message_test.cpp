#include "velmoria/core/message.h"

#include <memory>

#include <gtest/gtest.h>

#include "tests/support/scoped_apartment.h"
#include "velmoria/runtime/error.h"

namespace velmoria::test {
namespace {

class MessageTest : public testing::Test {
 protected:
  static MessagePtr Made(MessageArguments arguments) { return Make<velmoria::Message>(std::move(arguments)); }

  ScopedApartment apartment_;
};

TEST_F(MessageTest, KeepsEveryArgument) {
  const auto message = Made({zErrors{7}, "d", "T", "R", "S", 12, tfOLE, svfInfo, "x", "1", "2", "3", "4", 9, "h"});
  EXPECT_EQ(message->Number(), 7);
  EXPECT_EQ(message->Description(), "d");
  EXPECT_EQ(message->TypeName() + message->RoutineName() + message->StateDetails(), "TRS");
  EXPECT_EQ(message->ErrLine(), 12);
  EXPECT_EQ(message->TypeFlags(), tfOLE);
  EXPECT_EQ(message->SeverityFlags(), svfInfo);
  EXPECT_EQ(message->ExtraText(), "x");
  EXPECT_EQ(message->Replace1() + message->Replace2() + message->Replace3() + message->Replace4(), "1234");
  EXPECT_EQ(message->HelpContextID(), 9);
  EXPECT_EQ(message->HelpFile(), "h");
}

TEST_F(MessageTest, SettersChangeTheirField) {
  const auto message = Made({});
  message->SetNumber(15002);
  message->SetDescription("text |1|");
  message->SetReplace1("one");
  message->SetTypeFlags(tfRDO);
  message->SetSeverityFlags(svfWarning);
  message->SetHelpContextID(3);
  EXPECT_EQ(message->Number(), 15002);
  EXPECT_EQ(message->Description(), "text one");
  EXPECT_EQ(message->TypeFlags(), tfRDO | tfVelmoria);
  EXPECT_EQ(message->SeverityFlags(), svfWarning);
  EXPECT_EQ(message->HelpContextID(), 3);
}

TEST_F(MessageTest, EverySetterOfATextChangesItsOwnField) {
  const auto message = Made({});
  message->SetTypeName("T");
  message->SetRoutineName("R");
  message->SetStateDetails("S");
  message->SetErrLine(12);
  message->SetExtraText("x");
  message->SetReplace1("1");
  message->SetReplace2("2");
  message->SetReplace3("3");
  message->SetReplace4("4");
  message->SetHelpFile("h");
  EXPECT_EQ(message->TypeName() + message->RoutineName() + message->StateDetails() + message->ExtraText(), "TRSx");
  EXPECT_EQ(message->Replace1() + message->Replace2() + message->Replace3() + message->Replace4(), "1234");
  EXPECT_EQ(message->ErrLine(), 12);
  EXPECT_EQ(message->HelpFile(), "h");
}

TEST_F(MessageTest, DescriptionGivenStandsOverTheCatalogueText) {
  EXPECT_EQ(Made({.Number = errVelmoria_Locked, .Description = "d"})->Description(), "d");
}

TEST_F(MessageTest, TextOfACatalogueNumberDoesNotNeedTheFlag) {
  EXPECT_EQ(Made({.Number = errItem_Class, .TypeFlags = tfRDO, .Replace1 = "7"})->Description(),
            "Problem finding Class.  Index: 7");
}

TEST_F(MessageTest, EmptyDescriptionTakesTheCatalogueText) {
  EXPECT_EQ(Made({.Number = errVelmoria_Locked})->Description(), "This property is locked and cannot be changed.");
}

TEST_F(MessageTest, PlaceholdersAreFilledInLiteralTexts) {
  EXPECT_EQ(
      Made({.Number = zErrors{3021}, .Description = "a |1| b |4|", .Replace1 = "x", .Replace4 = "y"})->Description(),
      "a x b y");
}

TEST_F(MessageTest, SecondPlaceOfAPlaceholderStays) {
  EXPECT_EQ(Made({.Description = "|1| and |1|", .Replace1 = "x"})->Description(), "x and |1|");
}

TEST_F(MessageTest, ValueThatHoldsALaterPlaceholderIsFilled) {
  EXPECT_EQ(Made({.Description = "|1|", .Replace1 = "<|2|>", .Replace2 = "y"})->Description(), "<y>");
}

TEST_F(MessageTest, ValueThatHoldsAnEarlierPlaceholderIsNot) {
  EXPECT_EQ(Made({.Description = "|2|", .Replace1 = "x", .Replace2 = "<|1|>"})->Description(), "<|1|>");
}

TEST_F(MessageTest, Row15068KeepsItsLastBar) {
  const auto message = Made({.Number = errItem_Connector, .Replace1 = "Oracle", .Replace2 = "3"});
  EXPECT_EQ(message->Description(), "Problem finding Connector.  Engine: Oracle  Index: 3|");
}

TEST_F(MessageTest, Row15137KeepsItsLastBar) {
  const auto message = Made({.Number = errRemove_Connector, .Replace1 = "Oracle", .Replace2 = "3"});
  EXPECT_EQ(message->Description(), "Problem removing Connector.  Engine: Oracle  Index: 3|");
}

TEST_F(MessageTest, Row15053KeepsItsSecondPlaceholder) {
  const auto message = Made({.Number = errInvalid_SourceType, .Replace1 = "Table", .Replace2 = "Oracle"});
  EXPECT_EQ(message->Description(),
            "SourceType is invalid or not supported by the database Engine.  SourceType: Table  Engine: '|1|'");
}

TEST_F(MessageTest, NumberWithoutARowIsUnknown) {
  for (const std::int32_t number : {15001, 15139, 15165, 15178, 3021, 0}) {
    EXPECT_EQ(Made({.Number = zErrors{number}})->Description(), "(Unknown Message Number)") << number;
  }
}

TEST_F(MessageTest, TextThatIsEmptyOnceFilledIsUnknown) {
  EXPECT_EQ(Made({.Number = zErrors{13}, .Description = "|1|"})->Description(), "(Unknown Message Number)");
}

TEST_F(MessageTest, FlagOfTheLibraryGivesANumberWithoutARowNoText) {
  EXPECT_EQ(Made({.Number = zErrors{3021}, .TypeFlags = tfVelmoria})->Description(), "(Unknown Message Number)");
}

TEST_F(MessageTest, AllFourPlaceholdersAreFilled) {
  const auto message =
      Made({.Number = errItem_Property, .Replace1 = "a", .Replace2 = "b", .Replace3 = "c", .Replace4 = "d"});
  EXPECT_EQ(message->Description(),
            "Problem finding Property.  Index: a  SourceName: 'b'  SourceKey: 'c'  Parameter: d");
}

TEST_F(MessageTest, PlaceholdersAreFilledWhenTheTextIsReadNotWhenItIsMade) {
  const auto message = Made({.Number = errItem_Class, .Replace1 = "before"});
  message->SetReplace1("after");
  EXPECT_EQ(message->Description(), "Problem finding Class.  Index: after");
}

TEST_F(MessageTest, NumberZeroReadsAs36571) {
  const auto message = Made({});
  EXPECT_EQ(message->Number(), 36571);
  EXPECT_EQ(static_cast<std::uint32_t>(message->ErrNo()), 0x80043A98U);
}

TEST_F(MessageTest, ErrNoIsTheBasePlusACatalogueNumber) {
  EXPECT_EQ(Made({.Number = errVelmoria_Unknown})->ErrNo(), -2147206504);
  EXPECT_EQ(Made({.Number = zErrors{15180}})->ErrNo(), ErrorBase + 15180);
}

TEST_F(MessageTest, ErrNoOfAnyOtherNumberIs15000) {
  for (const std::int32_t number : {14999, 15181, 3021, -1, ErrorBase + 15065}) {
    EXPECT_EQ(Made({.Number = zErrors{number}})->ErrNo(), ErrorBase + 15000) << number;
  }
}

TEST_F(MessageTest, CatalogueNumbersAreOfTheLibraryWhateverWasSet) {
  EXPECT_EQ(Made({.Number = errItem_Class})->TypeFlags(), tfVelmoria);
  EXPECT_EQ(Made({.Number = errItem_Class, .TypeFlags = tfVelmoria})->TypeFlags(), tfVelmoria);
  EXPECT_EQ(Made({.Number = errItem_Class, .TypeFlags = tfRDO})->TypeFlags(), tfVelmoria | tfRDO);
  EXPECT_EQ(Made({.Number = zErrors{3021}})->TypeFlags(), tfUnknown);
  EXPECT_EQ(Made({.Number = zErrors{15001}, .TypeFlags = tfDAO})->TypeFlags(), tfVelmoria | tfDAO);
}

TEST_F(MessageTest, DetailsHaveHeadingTextAndExtraText) {
  const auto message = Made({.Number = errItem_Class,
                             .TypeName = "Framework",
                             .RoutineName = "CreateIdentifier",
                             .ErrLine = 12,
                             .TypeFlags = tfVelmoria,
                             .SeverityFlags = svfError,
                             .ExtraText = "Can't find Class in registered Servers.",
                             .Replace1 = "'Order'"});
  EXPECT_EQ(message->Details(),
            "15065-Error-Velmoria Framework.CreateIdentifier at Line: 12 at 6/1/98 9:14:02 AM\r\n"
            "Problem finding Class.  Index: 'Order'\r\n"
            "Can't find Class in registered Servers.");
}

TEST_F(MessageTest, HeadingLeavesOutWhatIsNotThere) {
  EXPECT_EQ(Made({.Number = zErrors{13}, .Description = "d"})->Details(),
            "13-(None)-(Unknown) at 6/1/98 9:14:02 AM\r\nd");
  EXPECT_EQ(Made({.Number = zErrors{13}, .Description = "d", .TypeName = "Class"})->Details(),
            "13-(None)-(Unknown) Class at 6/1/98 9:14:02 AM\r\nd");
  EXPECT_EQ(Made({.Number = zErrors{13}, .Description = "d", .RoutineName = "Name (Let)"})->Details(),
            "13-(None)-(Unknown) Name (Let) at 6/1/98 9:14:02 AM\r\nd");
}

TEST_F(MessageTest, HeadingShowsTheFlagsAsSetAndTheNumberAsRead) {
  EXPECT_EQ(Made({.Number = errVelmoria_Locked})->Details().substr(0, 28), "15002-(None)-(Unknown) at 6/");
  EXPECT_EQ(Made({.Description = "d"})->Details().substr(0, 23), "36571-(None)-(Unknown) ");
}

TEST_F(MessageTest, HeadingShowsANegativeNumberAndLine) {
  EXPECT_EQ(Made({.Number = zErrors{-7}, .Description = "d", .ErrLine = -1})->Details(),
            "-7-(None)-(Unknown) at Line: -1 at 6/1/98 9:14:02 AM\r\nd");
}

TEST_F(MessageTest, HeadingJoinsTheWordsOfSeveralFlags) {
  const auto message = Made(
      {.Number = zErrors{13}, .Description = "d", .TypeFlags = tfRDO | tfSystem, .SeverityFlags = svfError | svfInfo});
  EXPECT_EQ(message->Details(), "13-Error; Information-RDO; System at 6/1/98 9:14:02 AM\r\nd");
}

// A clock that cannot be read.
class StoppedClock final : public Clock {
 public:
  Date Now() override { Fail(RuntimeFailure::DeviceError); }
  void Sleep(std::int32_t) override {}
};

TEST_F(MessageTest, MessageWithoutATimeStillReads) {
  apartment_.State().Platform.Clock = std::make_shared<StoppedClock>();
  EXPECT_EQ(Made({.Number = zErrors{13}, .Description = "d"})->Details(), "13-(None)-(Unknown) at 12:00:00 AM\r\nd");
}

TEST_F(MessageTest, HeadingHasTheTimeOfCreation) {
  const auto message = Made({.Number = zErrors{13}, .Description = "d"});
  apartment_.Clock().Advance(60);
  EXPECT_EQ(message->Details(), "13-(None)-(Unknown) at 6/1/98 9:14:02 AM\r\nd");
}

}  // namespace
}  // namespace velmoria::test
