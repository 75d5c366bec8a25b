#include "velmoria/core/reporting.h"

#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"

namespace velmoria::test {
namespace {

// A class as the library has them: each routine with its one handler.
class Reporter : public Reporting {
 public:
  std::string_view ReportedType() const noexcept override { return "Reporter"; }

  void Deep() const try { Raise(errItem_Class, "Deep", {"'Order'"}, "Not there."); } catch (...) {
    Failed("Deep");
  }
  void Middle() const try { Deep(); } catch (...) {
    Failed("Middle");
  }
  void Outer() const try { Middle(); } catch (...) {
    Failed("Outer");
  }
  template <class Thrown>
  void Foreign(const Thrown& thrown) const try {
    throw thrown;
  } catch (...) { Failed("Foreign"); }
  template <class Thrown>
  void ForeignTwoDeep(const Thrown& thrown) const try {
    Foreign(thrown);
  } catch (...) { Failed("ForeignTwoDeep"); }
  template <class Thrown>
  void ForeignFourDeep(const Thrown& thrown) const try {
    try {
      ForeignTwoDeep(thrown);
    } catch (...) { Failed("ForeignThreeDeep"); }
  } catch (...) { Failed("ForeignFourDeep"); }
  template <class Thrown>
  void Owner(const Thrown& thrown) const try {
    throw thrown;
  } catch (...) { Failed("Owner", errDAO_Database, {"c", "d", "e", "u"}, "hint"); }
  void WithOtherState() const try {
    RaiseWithState("Parameters: 2", errBusinessObject_Get, "WithOtherState");
  } catch (...) { Failed("WithOtherState"); }
  void OwnerOfDeep() const try { Deep(); } catch (...) {
    Failed("OwnerOfDeep", errRemove_Class, {"1"});
  }
};

class ReporterWithState : public Reporter {
 public:
  std::string StateDetails() const override {
    ++Asked;
    SuspendedBy = Apartment().Messages->SuspendRoutine();
    if (Recurse) Outer();
    if (Other) Thrown([this] { Other->Outer(); });
    if (Throw) throw std::runtime_error("no state");
    return State;
  }

  std::string State = "Reporter: 'x'";
  const Reporter* Other = nullptr;  // fails while this one is asked
  bool Recurse = false;
  bool Throw = false;
  mutable int Asked = 0;
  mutable std::string SuspendedBy;
};

const Error kTypeMismatch(13, "Type mismatch");

class ReportingTest : public testing::Test {
 protected:
  MessagePtr Held(const char* number) const { return messages_.Item(number); }
  static std::int32_t NumberOf(const std::optional<Error>& error) { return error ? error->Number() : 0; }
  static std::string TextOf(const std::optional<Error>& error) { return error ? error->Description() : "nothing"; }

  ScopedApartment apartment_;
  Messages& messages_ = apartment_.Messages();
  Reporter reporter_;
};

TEST_F(ReportingTest, CatalogueErrorThreeRoutinesDeepLeavesOneMessage) {
  ExpectRaised(errItem_Class, [&] { reporter_.Outer(); }, {.Text = "Index: 'Order'", .Count = 1});
}

TEST_F(ReportingTest, RaisedTextIsTheDetailsOfTheMessage) {
  const auto error = Thrown([&] { reporter_.Outer(); });
  const auto message = Held("15065");
  EXPECT_EQ(TextOf(error), message->Details());
  EXPECT_EQ(message->TypeName() + "." + message->RoutineName(), "Reporter.Deep");
  EXPECT_EQ(message->TypeFlags(), tfVelmoria);
  EXPECT_EQ(message->SeverityFlags(), svfError);
  EXPECT_EQ(message->ExtraText(), "Not there.");
  EXPECT_GT(message->ErrLine(), 0);
}

TEST_F(ReportingTest, RaisedErrorHasNoHelpWhereTheMostSevereHasNone) {
  const auto error = Thrown([&] { reporter_.Outer(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->HelpFile(), "");
  EXPECT_EQ(error->HelpContext(), 0);
}

TEST_F(ReportingTest, HandlersAskForTheStateOfTheirOwnObject) {
  static_cast<void>(Thrown([] { ReporterWithState().ForeignTwoDeep(kTypeMismatch); }));
  EXPECT_EQ(messages_.Item(1)->StateDetails(), "Reporter: 'x'");
  EXPECT_EQ(messages_.Item(2)->StateDetails(), "Reporter: 'x'");
}

TEST_F(ReportingTest, RaisedErrorCarriesTheHelpOfTheMostSevere) {
  messages_.SetupItem({.Number = zErrors{3021}, .SeverityFlags = svfError, .HelpContextID = 12, .HelpFile = "x.hlp"});
  const auto error = Thrown([&] { reporter_.Outer(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->HelpFile(), "x.hlp");
  EXPECT_EQ(error->HelpContext(), 12);
}

TEST_F(ReportingTest, ForeignFailureIsRaisedAs15000WithItsText) {
  ExpectReported(RuntimeFailure::TypeMismatch, [&] { reporter_.Foreign(kTypeMismatch); });
}

TEST_F(ReportingTest, ForeignFailureLeavesTwoMessagesAndTheTextOfTheFirst) {
  const auto error = Thrown([&] { reporter_.ForeignTwoDeep(kTypeMismatch); });
  ASSERT_EQ(messages_.Count(), 2);
  EXPECT_EQ(messages_.Item(1)->Number(), 13);
  EXPECT_EQ(messages_.Item(1)->RoutineName(), "Foreign");
  EXPECT_EQ(messages_.Item(2)->Number(), ErrorBase + 15000);
  EXPECT_EQ(messages_.Item(2)->RoutineName(), "ForeignTwoDeep");
  EXPECT_EQ(NumberOf(error), ErrorBase + 15000);
  EXPECT_EQ(TextOf(error), messages_.Item(1)->Details());
}

TEST_F(ReportingTest, HandlersFurtherUpAddNothingToAForeignFailure) {
  const auto error = Thrown([&] { reporter_.ForeignFourDeep(kTypeMismatch); });
  EXPECT_EQ(messages_.Count(), 2);
  EXPECT_EQ(NumberOf(error), ErrorBase + 15000);
  EXPECT_EQ(TextOf(error), messages_.Item(1)->Details());
}

TEST_F(ReportingTest, FailureNumberedZeroIsRecordedAs36571) {
  const auto error = Thrown([&] { reporter_.Foreign(Error(0, "no number")); });
  EXPECT_EQ(NumberOf(error), ErrorBase + 15000);
  ASSERT_TRUE(Held("36571"));
  EXPECT_EQ(Held("36571")->Description(), "no number");
}

TEST_F(ReportingTest, RaisedFormThatIsNoLongerHeldIsRaisedAs15000WithItsText) {
  const auto error = Thrown([&] { reporter_.Foreign(Error(ErrorBase + 15065, "raised before a Clear")); });
  EXPECT_EQ(NumberOf(error), ErrorBase + 15000);
  EXPECT_NE(TextOf(error).find("raised before a Clear"), std::string::npos);
}

TEST_F(ReportingTest, LaterForeignFailureIsRaisedAsTheEarlierOneUntilCleared) {
  static_cast<void>(Thrown([&] { reporter_.Foreign(kTypeMismatch); }));
  const auto later = Thrown([&] { reporter_.Foreign(Error(9, "Subscript out of range")); });
  EXPECT_EQ(TextOf(later), Held("13")->Details());
  EXPECT_TRUE(Held("9"));
}

TEST_F(ReportingTest, ErrorIsRaisedOverEarlierWarningsAndInformation) {
  messages_.SetupItem({.Number = errRDO_Info, .SeverityFlags = svfInfo});
  messages_.SetupItem({.Number = zErrors{208}, .SeverityFlags = svfWarning});
  EXPECT_EQ(NumberOf(Thrown([&] { reporter_.Outer(); })), ErrorBase + 15065);
}

TEST_F(ReportingTest, ForeignFailureIsRecordedWithoutCatalogueText) {
  static_cast<void>(Thrown([&] { reporter_.Foreign(kTypeMismatch); }));
  EXPECT_EQ(Held("13")->Description(), "Type mismatch");
  EXPECT_EQ(Held("13")->TypeFlags(), tfUnknown);
  EXPECT_EQ(Held("13")->SeverityFlags(), svfError);
}

TEST_F(ReportingTest, EarlierErrorLendsItsNumberUntilCleared) {
  static_cast<void>(Thrown([&] { reporter_.Owner(kTypeMismatch); }));
  EXPECT_EQ(NumberOf(Thrown([&] { reporter_.Outer(); })), ErrorBase + 15032);
  messages_.Clear();
  EXPECT_EQ(NumberOf(Thrown([&] { reporter_.Outer(); })), ErrorBase + 15065);
}

TEST_F(ReportingTest, OwnedNumberIsRaisedOverAForeignFailure) {
  ExpectRaised(errDAO_Database, [&] { reporter_.Owner(kTypeMismatch); },
               {.Text = "Connections: 'c'  Database: 'd'  Engine: 'e'  Username: 'u'\r\nhint", .Count = 2});
}

TEST_F(ReportingTest, OwnerRecordsTheCaughtFailureFirstAsAWarning) {
  static_cast<void>(Thrown([&] { reporter_.Owner(kTypeMismatch); }));
  EXPECT_EQ(messages_.Item(1)->Number(), 13);
  EXPECT_EQ(messages_.Item(1)->Description(), "Type mismatch");
  EXPECT_EQ(messages_.Item(1)->SeverityFlags(), svfWarning);
  EXPECT_EQ(messages_.Item(2)->Number(), 15032);
}

TEST_F(ReportingTest, CatalogueErrorStaysTheOneSeenOverAnOwnedNumber) {
  ExpectRaised(errItem_Class, [&] { reporter_.OwnerOfDeep(); }, {.Count = 2});
}

TEST_F(ReportingTest, OwnerAddsItsNumberBesideACatalogueError) {
  static_cast<void>(Thrown([&] { reporter_.OwnerOfDeep(); }));
  EXPECT_EQ(messages_.Item(1)->Number(), 15065);
  EXPECT_EQ(messages_.Item(2)->Number(), 15135);
}

TEST_F(ReportingTest, SuspendedRaiseUsesTheMostSevereHeld) {
  messages_.SetupItem({.Number = errRDO_Info, .SeverityFlags = svfInfo});
  Suspension quiet{"Test.Routine"};
  const auto error = Thrown([&] { reporter_.Outer(); });
  EXPECT_EQ(NumberOf(error), ErrorBase + 15129);
  EXPECT_EQ(messages_.Count(), 1);
}

TEST_F(ReportingTest, SuspendedRaiseWithNothingHeldThrowsItsOwnNumberAndText) {
  Suspension quiet{"Test.Routine"};
  const auto error = Thrown([&] { reporter_.Outer(); });
  EXPECT_EQ(NumberOf(error), ErrorBase + 15065);
  EXPECT_EQ(TextOf(error), "Problem finding Class.  Index: 'Order'\r\nNot there.");
  EXPECT_EQ(messages_.Count(), 0);
}

TEST_F(ReportingTest, SuspendedRaiseWithoutExtraTextThrowsTheTextAlone) {
  Suspension quiet{"Test.Routine"};
  EXPECT_EQ(TextOf(Thrown([&] { reporter_.WithOtherState(); })),
            "Problem getting business object from database Source.");
}

TEST_F(ReportingTest, SuspendedOwnerUsesTheMostSevereHeldToo) {
  messages_.SetupItem({.Number = errItem_Class, .SeverityFlags = svfError});
  Suspension quiet{"Test.Routine"};
  EXPECT_EQ(NumberOf(Thrown([&] { reporter_.Owner(kTypeMismatch); })), ErrorBase + 15065);
  EXPECT_EQ(messages_.Count(), 1);
}

TEST_F(ReportingTest, SuspendedForeignFailureWithNothingHeldPassesAsItIs) {
  Suspension quiet{"Test.Routine"};
  const auto error = Thrown([&] { reporter_.ForeignTwoDeep(kTypeMismatch); });
  EXPECT_EQ(NumberOf(error), 13);
  EXPECT_EQ(TextOf(error), "Type mismatch");
}

TEST_F(ReportingTest, SuspendedOwnerWithNothingHeldThrowsItsNumber) {
  Suspension quiet{"Test.Routine"};
  EXPECT_EQ(NumberOf(Thrown([&] { reporter_.Owner(kTypeMismatch); })), ErrorBase + 15032);
}

TEST_F(ReportingTest, WithoutMessagesTheNumberAndTextAreItsOwn) {
  const auto messages = std::exchange(apartment_.State().Messages, nullptr);
  const auto error = Thrown([&] { reporter_.Outer(); });
  apartment_.State().Messages = messages;
  EXPECT_EQ(NumberOf(error), ErrorBase + 15065);
}

TEST_F(ReportingTest, WithoutMessagesAForeignFailurePassesAsItIs) {
  const auto messages = std::exchange(apartment_.State().Messages, nullptr);
  const auto foreign = Thrown([&] { reporter_.ForeignTwoDeep(kTypeMismatch); });
  const auto owned = Thrown([&] { reporter_.Owner(kTypeMismatch); });
  apartment_.State().Messages = messages;
  EXPECT_EQ(NumberOf(foreign), 13);
  EXPECT_EQ(NumberOf(owned), ErrorBase + 15032);
}

TEST_F(ReportingTest, DuringStartUpNothingIsRecorded) {
  messages_.SetupItem({.Number = zErrors{53}, .SeverityFlags = svfWarning});
  apartment_.State().Starting = true;
  const auto error = Thrown([&] { reporter_.Outer(); });
  apartment_.State().Starting = false;
  EXPECT_EQ(NumberOf(error), ErrorBase + 15065);
  EXPECT_EQ(messages_.Count(), 1);
}

TEST_F(ReportingTest, ExhaustedMemoryIsFailure7) {
  static_cast<void>(Thrown([&] { reporter_.Foreign(std::bad_alloc()); }));
  EXPECT_EQ(Held("7")->Description(), "Out of memory");
}

TEST_F(ReportingTest, PlainExceptionIsFailure5WithItsText) {
  const auto error = Thrown([&] { reporter_.Foreign(std::runtime_error("thrown by a listener")); });
  EXPECT_EQ(NumberOf(error), ErrorBase + 15000);
  EXPECT_EQ(Held("5")->Description(), "thrown by a listener");
}

TEST_F(ReportingTest, AnythingElseThrownIsFailure5) {
  const auto error = Thrown([&] { reporter_.Foreign(42); });
  EXPECT_EQ(NumberOf(error), ErrorBase + 15000);
  EXPECT_TRUE(Held("5"));
}

TEST_F(ReportingTest, MessageHoldsTheStateOfItsObject) {
  static_cast<void>(Thrown([] { ReporterWithState().Outer(); }));
  EXPECT_EQ(Held("15065")->StateDetails(), "Reporter: 'x'");
}

TEST_F(ReportingTest, RoutineMayGiveAnotherStateThanItsObjects) {
  static_cast<void>(Thrown([] { ReporterWithState().WithOtherState(); }));
  EXPECT_EQ(Held("15025")->StateDetails(), "Parameters: 2");
}

TEST_F(ReportingTest, StateThatFailsIsEmpty) {
  ReporterWithState reporter;
  reporter.Throw = true;
  ExpectRaised(errItem_Class, [&] { reporter.Outer(); }, {.Count = 1});
}

TEST_F(ReportingTest, StateIsAskedWithMessagingSuspended) {
  const ReporterWithState reporter;
  static_cast<void>(Thrown([&] { reporter.Outer(); }));
  EXPECT_EQ(reporter.SuspendedBy, "Reporter.StateDetails");
  EXPECT_EQ(messages_.SuspendRoutine(), "");
}

TEST_F(ReportingTest, StateIsNotAskedWhileNothingIsRecorded) {
  const ReporterWithState reporter;
  Suspension quiet{"Test.Routine"};
  static_cast<void>(Thrown([&] { reporter.Outer(); }));
  EXPECT_EQ(reporter.Asked, 0);
}

TEST_F(ReportingTest, FailureOfAnotherObjectWhileAStateIsBuiltLeavesNoTrace) {
  const ReporterWithState other;
  ReporterWithState reporter;
  reporter.Other = &other;
  static_cast<void>(Thrown([&] { reporter.Outer(); }));
  EXPECT_EQ(messages_.Count(), 1);
  EXPECT_EQ(Held("15065")->StateDetails(), "Reporter: 'x'");
  EXPECT_EQ(other.Asked, 0);
}

TEST_F(ReportingTest, StateIsAskedAgainAfterOneThatFailed) {
  ReporterWithState reporter;
  reporter.Throw = true;
  static_cast<void>(Thrown([&] { reporter.Outer(); }));
  messages_.Clear();
  reporter.Throw = false;
  static_cast<void>(Thrown([&] { reporter.Outer(); }));
  EXPECT_EQ(Held("15065")->StateDetails(), "Reporter: 'x'");
}

TEST_F(ReportingTest, StateThatReportsItselfEndsAndLeavesNoTrace) {
  ReporterWithState reporter;
  reporter.Recurse = true;
  const auto error = Thrown([&] { reporter.Outer(); });
  EXPECT_EQ(NumberOf(error), ErrorBase + 15065);
  EXPECT_EQ(messages_.Count(), 1);
  EXPECT_EQ(Held("15065")->StateDetails(), "");
  EXPECT_EQ(messages_.SuspendRoutine(), "");
}

}  // namespace
}  // namespace velmoria::test
