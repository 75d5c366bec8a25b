#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/data/agents/read_over_fake.h"

namespace velmoria::test {

namespace {

/// Pages that are read from the end of a result to its begin.
class SQLAgentBackwardsTest : public ReadOverFake {
 protected:
  static std::string Ids(const RecordsetPtr& page) {
    std::string text;
    for (std::int32_t row = 0; row < page->Count(); ++row)
      text += (row == 0 ? "" : " ") + std::to_string(IdAt(page, row));
    return text;
  }
};

TEST_F(SQLAgentBackwardsTest, TheFirstPageLeavesOutTheLastRow) {
  Design({.ObjectBuffer = -5});
  const auto page = design_->Read();
  EXPECT_EQ(Ids(page), "20 21 22 23 24");
  EXPECT_EQ(page->PrevBookmark().AsLong(), 19);
  EXPECT_EQ(page->FirstBookmark().AsLong(), 20);
  EXPECT_EQ(page->LastBookmark().AsLong(), 24);
  EXPECT_EQ(page->NextBookmark().AsLong(), 25);
  EXPECT_EQ(page->VirtualFirstNumber(), 0);
}

TEST_F(SQLAgentBackwardsTest, NoNewRowFollowsAPageThatLeavesOutTheLastRow) {
  Design({.ObjectBuffer = -5});
  const auto page = design_->Read();
  ExpectRaised(errBusinessObjects_Buffer, [&] { page->CreatePersistentProperties(""); }, {.Text = "ObjectBuffer: -5"});
}

TEST_F(SQLAgentBackwardsTest, PagesGoToTheFirstRowAndTheLastOfThemBeginsThere) {
  SetRows(12);
  Design({.ObjectBuffer = -5});
  const auto agent = design_->Agent();
  auto page = agent->GetRecordset(0, nullptr, false);
  EXPECT_EQ(Ids(page), "7 8 9 10 11");
  page = agent->GetRecordset(0, page, false);
  EXPECT_EQ(Ids(page), "2 3 4 5 6");
  EXPECT_EQ(page->PrevBookmark().AsLong(), 1);
  page = agent->GetRecordset(0, page, false);
  EXPECT_EQ(Ids(page), "1 2 3 4 5");
  EXPECT_TRUE(page->PrevBookmark().IsEmpty());
  EXPECT_EQ(page->FirstBookmark().AsLong(), 1);
  EXPECT_EQ(driver_->Texts.size(), 1U);
}

TEST_F(SQLAgentBackwardsTest, NumbersFallByTheSizeOfAPageAndOne) {
  Design({.ObjectBuffer = -5});
  const auto agent = design_->Agent();
  const auto first = agent->GetRecordset(0, nullptr, false);
  EXPECT_EQ(agent->GetRecordset(0, first, false)->VirtualFirstNumber(), -6);
}

TEST_F(SQLAgentBackwardsTest, AResultThatFitsIsReadWhole) {
  Design({.ObjectBuffer = -5});
  for (const int rows : {3, 5}) {
    SetRows(rows);
    const auto page = design_->Read();
    EXPECT_EQ(page->Count(), rows);
    EXPECT_EQ(page->FirstBookmark().AsLong(), 1);
    EXPECT_TRUE(page->PrevBookmark().IsEmpty());
    EXPECT_TRUE(page->NextBookmark().IsEmpty());
  }
}

TEST_F(SQLAgentBackwardsTest, AnEmptyResultIsAnEmptyPage) {
  SetRows(0);
  Design({.ObjectBuffer = -5});
  const auto page = design_->Read();
  EXPECT_EQ(page->Count(), 0);
  EXPECT_TRUE(page->FirstBookmark().IsEmpty());
  EXPECT_TRUE(page->LastBookmark().IsEmpty());
}

}  // namespace

}  // namespace velmoria::test
