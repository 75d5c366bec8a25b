#include "velmoria/core/statistics.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"

namespace velmoria::test {
namespace {

const Date kStart = Date::From(1998, 6, 1, 9, 14, 2);

class StatisticsTest : public testing::Test {
 protected:
  static Date After(int seconds) { return Date{kStart.Days + seconds / 86400.0}; }
  StatisticPtr Add(const std::string& name, int from = 0, int to = 0, const Position& position = {}) {
    auto item = statistics_->SetupItem({.Name = name, .StartTime = After(from)}, position);
    item->SetEndTime(After(to));
    return item;
  }
  std::string Names() const {
    std::string names;
    for (const auto& item : *statistics_) names += item->Name();
    return names;
  }

  ScopedApartment apartment_;
  StatisticsPtr statistics_ = Make<Statistics>();
};

TEST_F(StatisticsTest, ItemFindsByPositionAndName) {
  Add("a");
  const auto second = Add("b");
  EXPECT_EQ(statistics_->Item(2), second);
  EXPECT_EQ(statistics_->Item("B"), second);
}

TEST_F(StatisticsTest, SecondOfANameTakesThePlaceOfTheFirst) {
  Add("a");
  Add("b");
  const auto newest = Add("A");
  EXPECT_EQ(statistics_->Count(), 2);
  EXPECT_EQ(statistics_->Item("a"), newest);
  EXPECT_EQ(Names(), "bA");
}

TEST_F(StatisticsTest, MembersWithoutANameReplaceEachOtherToo) {
  Add("");
  const auto newest = Add("");
  EXPECT_EQ(statistics_->Count(), 1);
  EXPECT_EQ(statistics_->Item(""), newest);
}

TEST_F(StatisticsTest, NameChangedLaterLeavesTheKey) {
  const auto item = Add("a");
  item->SetName("b");
  EXPECT_EQ(statistics_->Item("a"), item);
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { statistics_->Item("b"); });
}

TEST_F(StatisticsTest, SetupItemGivesWhatItAdds) {
  const auto item = statistics_->SetupItem({"Load", "Row", 7, kStart, After(9), true});
  EXPECT_EQ(statistics_->Item(1), item);
  EXPECT_EQ(item->Subject(), "Subject: Row  Count: 7");
  EXPECT_EQ(item->StartTime(), kStart);
  EXPECT_EQ(item->EndTime(), Date{});
  EXPECT_TRUE(item->Locked());
}

TEST_F(StatisticsTest, AddTakesAStatisticMadeElsewhere) {
  const auto item = Make<Statistic>(StatisticArguments{.Name = "Load"});
  statistics_->Add(item);
  EXPECT_EQ(statistics_->Item("load"), item);
}

TEST_F(StatisticsTest, PositionsPutAMemberBeforeOrAfter) {
  Add("a");
  Add("b");
  Add("c", 0, 0, {.Before = "b"});
  Add("d", 0, 0, {.After = 1});
  EXPECT_EQ(Names(), "adcb");
}

TEST_F(StatisticsTest, BothPositionsRaise15018) {
  Add("x");
  ExpectRaised(errAdd_Statistic, [&] { Add("a", 0, 0, {.Before = 1, .After = "x"}); },
               {.Text = "ProcedureName: 'a'  Before: 1  After: x\r\n"
                        "Passing both Before and After arguments is not allowed.",
                .Count = 1});
}

TEST_F(StatisticsTest, RefusedSetupItemIsReportedByAdd) {
  EXPECT_TRUE(Thrown([&] { statistics_->SetupItem({.Name = "a"}, {.Before = 1, .After = 1}); }));
  ASSERT_EQ(apartment_.Messages().Count(), 1);
  EXPECT_EQ(apartment_.Messages().Item(1)->RoutineName(), "Add");
}

TEST_F(StatisticsTest, RefusalNamesClassRoutineAndState) {
  static_cast<void>(Thrown([&] { Add("a", 0, 0, {.Before = 1, .After = 2}); }));
  const auto message = apartment_.Messages().Item("15018");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->TypeName() + "." + message->RoutineName(), "Statistics.Add");
  EXPECT_EQ(message->StateDetails(), statistics_->Details());
}

TEST_F(StatisticsTest, RefusedAddHasAlreadyRemovedTheEarlierOne) {
  Add("a");
  ExpectRaised(errAdd_Statistic, [&] { Add("a", 0, 0, {.Before = 1, .After = 1}); });
  EXPECT_EQ(statistics_->Count(), 0);
}

TEST_F(StatisticsTest, EmptyPositionsCountAsNotGiven) {
  Add("a", 0, 0, {.Before = {}, .After = {}});
  EXPECT_EQ(statistics_->Count(), 1);
}

TEST_F(StatisticsTest, OneEmptyPositionLeavesTheOther) {
  Add("a");
  Add("b", 0, 0, {.Before = 1, .After = {}});
  EXPECT_EQ(Names(), "ba");
}

TEST_F(StatisticsTest, EarlierOneOfTheNameIsNoPositionAnyMore) {
  Add("a");
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { Add("a", 0, 0, {.After = "a"}); });
  EXPECT_EQ(statistics_->Count(), 0);
}

TEST_F(StatisticsTest, PositionThatIsNotThereIsAPlainFailure) {
  ExpectReported(RuntimeFailure::SubscriptOutOfRange, [&] { Add("a", 0, 0, {.Before = 3}); });
  EXPECT_EQ(statistics_->Count(), 0);
}

TEST_F(StatisticsTest, MissesArePlainFailures) {
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { statistics_->Item("a"); });
  ExpectReported(RuntimeFailure::SubscriptOutOfRange, [&] { statistics_->Item(1); });
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { statistics_->Remove("a"); });
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { statistics_->Add({}); });
}

TEST_F(StatisticsTest, RemoveTakesAMemberOut) {
  Add("a");
  Add("b");
  statistics_->Remove("A");
  EXPECT_EQ(Names(), "b");
  statistics_->Remove(1);
  EXPECT_EQ(statistics_->Count(), 0);
}

TEST_F(StatisticsTest, ClearLeavesNone) {
  Add("a");
  statistics_->Clear();
  EXPECT_EQ(statistics_->Count(), 0);
}

TEST_F(StatisticsTest, TimesSpanTheMembers) {
  Add("a", 10, 20);
  Add("b", 5, 12);
  EXPECT_EQ(SecondsBetween(kStart, statistics_->StartTime()), 5);
  EXPECT_EQ(SecondsBetween(kStart, statistics_->EndTime()), 20);
}

TEST_F(StatisticsTest, ParallelWorkCountsTwiceInTheTotalOnly) {
  Add("a", 10, 20);
  Add("b", 5, 12);
  EXPECT_EQ(statistics_->TotalSeconds(), 17);
  EXPECT_EQ(statistics_->TotalDetails(), "17 seconds");
  EXPECT_EQ(statistics_->ElapsedSeconds(), 15);
  EXPECT_EQ(statistics_->ElapsedDetails(), "15 seconds");
}

TEST_F(StatisticsTest, EmptyCollectionHasNoTime) {
  EXPECT_EQ(statistics_->StartTime(), Date{});
  EXPECT_EQ(statistics_->EndTime(), Date{});
  EXPECT_EQ(statistics_->TotalSeconds(), 0);
  EXPECT_EQ(statistics_->ElapsedSeconds(), 0);
}

TEST_F(StatisticsTest, ElapsedDetailsOfAnEmptyCollectionAreZeroSeconds) {
  EXPECT_EQ(statistics_->ElapsedDetails(), "0 seconds");
}

TEST_F(StatisticsTest, TotalDetailsOfAnEmptyCollectionAreZeroSeconds) {
  EXPECT_EQ(statistics_->TotalDetails(), "0 seconds");
}

TEST_F(StatisticsTest, DetailsOfAnEmptyCollectionCountNothing) {
  EXPECT_EQ(statistics_->Details(),
            "Statistics Count 0\r\nTotal: 0 seconds  Elapsed: 0 seconds  Started: 12:00:00 AM  Ended: 12:00:00 AM");
}

TEST_F(StatisticsTest, TotalBeyond16BitsHasNoText) {
  Add("a", 0, 32767);
  EXPECT_EQ(statistics_->TotalDetails(), "546 minutes and 7 seconds");
  Add("b", 0, 1);
  EXPECT_EQ(statistics_->TotalDetails(), "");
  EXPECT_EQ(statistics_->ElapsedDetails(), "546 minutes and 7 seconds");
}

TEST_F(StatisticsTest, ElapsedBeyond16BitsHasNoText) {
  Add("a", 0, 1);
  Add("b", 32767, 32768);
  EXPECT_EQ(statistics_->ElapsedSeconds(), 32768);
  EXPECT_EQ(statistics_->ElapsedDetails(), "");
  EXPECT_EQ(statistics_->TotalDetails(), "2 seconds");
}

TEST_F(StatisticsTest, MembersOwnTextIsNotBoundTo16Bits) {
  Add("a", 0, 40000);
  EXPECT_EQ(statistics_->Item("a")->TotalDetails(), "666 minutes and 40 seconds");
  EXPECT_EQ(statistics_->TotalDetails(), "");
}

TEST_F(StatisticsTest, SumsAreReckonedIn64Bits) {
  const auto first = statistics_->SetupItem({.Name = "a", .StartTime = kStart});
  statistics_->SetupItem({.Name = "b", .StartTime = kStart});
  EXPECT_LT(first->TotalSeconds(), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(statistics_->TotalSeconds(), 2 * first->TotalSeconds());
}

TEST_F(StatisticsTest, EndTimeOfUnfinishedMembersIsDayZeroAndTheFinishedOneCounts) {
  statistics_->SetupItem({.Name = "a", .StartTime = kStart});
  EXPECT_EQ(statistics_->EndTime(), Date{});
  Add("b", 0, 7);
  EXPECT_EQ(statistics_->EndTime(), After(7));
}

TEST_F(StatisticsTest, UnfinishedMembersLeaveNoText) {
  statistics_->SetupItem({.Name = "a", .StartTime = kStart});
  statistics_->SetupItem({.Name = "b", .StartTime = kStart});
  EXPECT_EQ(statistics_->TotalDetails(), "");
  EXPECT_EQ(statistics_->ElapsedDetails(), "");
}

TEST_F(StatisticsTest, DetailsListTheMembers) {
  Add("Open", 0, 60)->SetSubjectCount(2);
  EXPECT_EQ(statistics_->Details(),
            "Statistics Count 1\r\nTotal: 1 minute and 0 seconds  Elapsed: 1 minute and 0 seconds"
            "  Started: 6/1/98 9:14:02 AM  Ended: 6/1/98 9:15:02 AM"
            "\r\n    Procedure: Open  Started: 6/1/98 9:14:02 AM  Ended: 6/1/98 9:15:02 AM"
            "\r\n    Subject: (Unknown)  Count: 2  Total: 1 minute and 0 seconds");
}

TEST_F(StatisticsTest, DetailsListTheMembersInTheirOrder) {
  Add("Open", 0, 1);
  Add("Close", 2, 3);
  const auto details = statistics_->Details();
  EXPECT_LT(details.find("\r\n    Procedure: Open  "), details.find("\r\n    Procedure: Close  "));
  EXPECT_EQ(details.substr(0, 18), "Statistics Count 2");
}

}  // namespace
}  // namespace velmoria::test
