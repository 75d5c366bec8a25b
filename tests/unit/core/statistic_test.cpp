#include "velmoria/core/statistic.h"

#include <limits>

#include <gtest/gtest.h>

namespace velmoria {
namespace {

const Date kStart = Date::From(1998, 6, 1, 9, 14, 2);

Date After(std::int64_t milliseconds) { return Date{kStart.Days + static_cast<double>(milliseconds) / 86400000.0}; }

StatisticPtr Started() { return Make<Statistic>(StatisticArguments{.Name = "Load", .StartTime = kStart}); }

StatisticPtr Lasting(std::int64_t seconds) {
  auto statistic = Started();
  statistic->SetEndTime(After(seconds * 1000));
  return statistic;
}

TEST(StatisticTest, KeepsItsArguments) {
  const auto statistic = Make<Statistic>(StatisticArguments{"Load", "Row", 7, kStart, {}, true});
  EXPECT_EQ(statistic->Name(), "Load");
  EXPECT_EQ(statistic->SubjectLabel(), "Row");
  EXPECT_EQ(statistic->SubjectCount(), 7);
  EXPECT_EQ(statistic->StartTime(), kStart);
  EXPECT_TRUE(statistic->Locked());
}

TEST(StatisticTest, LaterEndTimeIsLeftOutWhenSetUp) {
  const auto statistic = Make<Statistic>(StatisticArguments{"Load", "", 0, kStart, After(1000)});
  EXPECT_EQ(statistic->EndTime(), Date{});
}

TEST(StatisticTest, EndTimeThatCrossesASecondIsLeftOutWhenSetUp) {
  EXPECT_EQ(Make<Statistic>(StatisticArguments{"Load", "", 0, After(900), After(1100)})->EndTime(), Date{});
  EXPECT_EQ(Make<Statistic>(StatisticArguments{"Load", "", 0, After(100), After(900)})->EndTime(), kStart);
}

TEST(StatisticTest, EarlierEndTimeIsTakenWhenSetUpThoughItsSetterRefusesIt) {
  const auto statistic = Make<Statistic>(StatisticArguments{"Load", "", 0, kStart, After(-5000)});
  EXPECT_EQ(statistic->TotalSeconds(), -5);
  statistic->SetEndTime(After(-1000));
  EXPECT_EQ(statistic->TotalSeconds(), -5);
}

TEST(StatisticTest, EndTimeOfTheSameSecondIsTakenWhenSetUp) {
  const auto statistic = Make<Statistic>(StatisticArguments{"Load", "", 0, kStart, kStart});
  EXPECT_EQ(statistic->EndTime(), kStart);
}

TEST(StatisticTest, EndTimeBeforeStartTimeIsIgnored) {
  const auto statistic = Lasting(5);
  statistic->SetEndTime(After(-1000));
  EXPECT_EQ(statistic->TotalSeconds(), 5);
}

TEST(StatisticTest, EndTimeInTheSecondOfStartTimeIsTaken) {
  const auto statistic = Make<Statistic>(StatisticArguments{.Name = "Load", .StartTime = After(900)});
  statistic->SetEndTime(After(100));
  EXPECT_EQ(statistic->EndTime(), kStart);
}

TEST(StatisticTest, EndTimeMayBeSetAgainToALaterAndToAnEarlierOne) {
  const auto statistic = Lasting(5);
  statistic->SetEndTime(After(9000));
  EXPECT_EQ(statistic->TotalSeconds(), 9);
  statistic->SetEndTime(After(2000));
  EXPECT_EQ(statistic->TotalSeconds(), 2);
}

TEST(StatisticTest, StartTimeOfAFreshOneLeavesNoEndTime) {
  const auto statistic = Make<Statistic>(StatisticArguments{.Name = "Load"});
  statistic->SetStartTime(kStart);
  EXPECT_EQ(statistic->StartTime(), kStart);
  EXPECT_EQ(statistic->EndTime(), Date{});
}

TEST(StatisticTest, StartTimeOfOneThatTookNoSecondStartsItAnew) {
  const auto statistic = Lasting(0);
  statistic->SetStartTime(After(2000));
  EXPECT_EQ(statistic->StartTime(), After(2000));
  EXPECT_EQ(statistic->EndTime(), Date{});
}

TEST(StatisticTest, EarlierStartTimeChangesAFinishedOneAsLittle) {
  const auto statistic = Lasting(5);
  statistic->SetStartTime(After(-2000));
  EXPECT_EQ(statistic->TotalSeconds(), 5);
}

TEST(StatisticTest, StartTimeAfterALaterEndTimeChangesNothing) {
  const auto statistic = Lasting(5);
  statistic->SetStartTime(After(2000));
  EXPECT_EQ(statistic->StartTime(), kStart);
  EXPECT_EQ(statistic->TotalSeconds(), 5);
}

TEST(StatisticTest, TimesReadWithoutTheirFraction) {
  const auto statistic = Make<Statistic>(StatisticArguments{.Name = "Load", .StartTime = After(900)});
  statistic->SetEndTime(After(3700));
  EXPECT_EQ(SecondsBetween(statistic->StartTime(), kStart), 0);
  EXPECT_EQ(statistic->StartTime().Parts().Millisecond, 0);
  EXPECT_EQ(statistic->EndTime().Parts().Millisecond, 0);
}

TEST(StatisticTest, TotalSecondsCountsSecondBoundaries) {
  const auto statistic = Make<Statistic>(StatisticArguments{.Name = "Load", .StartTime = After(900)});
  statistic->SetEndTime(After(1100));
  EXPECT_EQ(statistic->TotalSeconds(), 1);
}

TEST(StatisticTest, CopyHasAllTheValuesTheEndTimeIncluded) {
  const auto statistic = Make<Statistic>(StatisticArguments{"Load", "Row", 4, kStart, {}, true});
  statistic->SetEndTime(After(90000));
  const auto copy = statistic->Copy();
  EXPECT_EQ(copy->Details(), statistic->Details());
  EXPECT_EQ(copy->TotalSeconds(), 90);
  EXPECT_TRUE(copy->Locked());
}

TEST(StatisticTest, CopyIsOfItsOwn) {
  const auto statistic = Lasting(90);
  const auto copy = statistic->Copy();
  copy->SetName("Other");
  copy->SetEndTime(After(1000));
  EXPECT_EQ(statistic->Name(), "Load");
  EXPECT_EQ(statistic->TotalSeconds(), 90);
}

TEST(StatisticTest, LockedGuardsNothing) {
  const auto statistic = Started();
  statistic->SetLocked(true);
  statistic->SetName("Other");
  statistic->SetSubjectCount(3);
  EXPECT_TRUE(statistic->Locked());
  EXPECT_EQ(statistic->Name(), "Other");
  EXPECT_EQ(statistic->SubjectCount(), 3);
}

TEST(StatisticTest, TotalDetailsTellTheTimeInWords) {
  EXPECT_EQ(Lasting(0)->TotalDetails(), "0 seconds");
  EXPECT_EQ(Lasting(3725)->TotalDetails(), "62 minutes and 5 seconds");
  EXPECT_EQ(Lasting(40000)->TotalDetails(), "666 minutes and 40 seconds");
}

TEST(StatisticTest, UnfinishedOneHasANegativeTotalAndNoText) {
  EXPECT_LT(Started()->TotalSeconds(), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(Started()->TotalDetails(), "");
}

TEST(StatisticTest, NegativeTotalsHaveNoText) {
  for (const std::int64_t seconds : {-1, -59, -60, -61}) {
    const auto statistic = Make<Statistic>(StatisticArguments{"Load", "", 0, kStart, After(seconds * 1000)});
    EXPECT_EQ(statistic->TotalSeconds(), seconds);
    EXPECT_EQ(statistic->TotalDetails(), "") << seconds;
  }
}

TEST(StatisticTest, TotalBeyond32BitsHasNoText) {
  const std::int64_t greatest = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(Lasting(greatest)->TotalDetails(), "35791394 minutes and 7 seconds");
  EXPECT_EQ(Lasting(greatest + 1)->TotalSeconds(), greatest + 1);
  EXPECT_EQ(Lasting(greatest + 1)->TotalDetails(), "");
}

TEST(StatisticTest, TimesBeyondTheCalendarLeaveTheTextsEmptyAndRaiseNothing) {
  const auto statistic = Make<Statistic>(StatisticArguments{.Name = "Load", .StartTime = Date{1e9}});
  EXPECT_EQ(statistic->StartTime().Days, 1e9);
  EXPECT_EQ(statistic->Details(), "");
  EXPECT_EQ(statistic->ProcedureDetails(), "");
  EXPECT_EQ(statistic->TotalDetails(), "");
  EXPECT_EQ(statistic->Subject(), "Subject: (Unknown)  Count: 0");
}

TEST(StatisticTest, SubjectIsShownByItsLabelAndItsCount) {
  const auto statistic = Started();
  statistic->SetSubjectCount(3);
  EXPECT_EQ(statistic->Subject(), "Subject: (Unknown)  Count: 3");
  EXPECT_EQ(statistic->Subjects(), "Subject Count: 3");
  statistic->SetSubjectLabel("Row");
  EXPECT_EQ(statistic->Subject(), "Subject: Row  Count: 3");
  EXPECT_EQ(statistic->Subjects(), "Subjects: 'Row'  Count: 3");
}

TEST(StatisticTest, ProcedureDetailsHaveNameAndTimes) {
  const auto statistic = Lasting(60);
  EXPECT_EQ(statistic->ProcedureDetails(), "Procedure: Load  Started: 6/1/98 9:14:02 AM  Ended: 6/1/98 9:15:02 AM");
  statistic->SetName("");
  EXPECT_EQ(statistic->ProcedureDetails(),
            "Procedure: (Unknown)  Started: 6/1/98 9:14:02 AM  Ended: 6/1/98 9:15:02 AM");
}

TEST(StatisticTest, DetailsNameProcedureAndSubject) {
  const auto statistic = Lasting(60);
  statistic->SetSubjectLabel("Row");
  statistic->SetSubjectCount(3);
  EXPECT_EQ(statistic->Details(),
            "Started: 6/1/98 9:14:02 AM\r\nEnded: 6/1/98 9:15:02 AM\r\nTotal: 1 minute and 0 seconds\r\n"
            "Procedure: Load\r\nRow: 3");
}

TEST(StatisticTest, DetailsOfAnUnfinishedOneEndAtDayZeroAndHaveNoTotal) {
  EXPECT_EQ(Started()->Details(),
            "Started: 6/1/98 9:14:02 AM\r\nEnded: 12:00:00 AM\r\nTotal: \r\nProcedure: Load\r\nSubjects: 0");
}

TEST(StatisticTest, DetailsLeaveOutAMissingNameAndSubject) {
  const auto statistic = Lasting(1);
  statistic->SetName("");
  EXPECT_EQ(statistic->Details(),
            "Started: 6/1/98 9:14:02 AM\r\nEnded: 6/1/98 9:14:03 AM\r\nTotal: 1 second\r\nSubjects: 0");
}

}  // namespace
}  // namespace velmoria
