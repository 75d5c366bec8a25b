#include <gtest/gtest.h>

#include "tests/support/await_opened.h"
#include "tests/support/expect_raised.h"
#include "tests/unit/data/agents/read_over_fake.h"

namespace velmoria::test {

namespace {

/// A read whose statement runs while the caller goes on; the driver holds it until it is released.
class SQLAgentAsyncTest : public ReadOverFake {
 protected:
  SQLAgentAsyncTest() {
    Design({});
    agent_ = design_->Agent();
    driver_->Hold();
  }
  void TearDown() override { driver_->Release(); }

  void Load() { agent_->LoadPersistentProperties(); }
  /// Lets the statement run to its end.
  void Finish() {
    driver_->Release();
    AwaitOpened(agent_);
  }

  DatabaseAgentPtr agent_;
};

TEST_F(SQLAgentAsyncTest, TheCallerGoesOnAndAsksUntilThePageIsThere) {
  EXPECT_FALSE(agent_->AsyncFlag());
  Load();
  EXPECT_TRUE(agent_->AsyncFlag());
  EXPECT_TRUE(agent_->StillExecuting());
  EXPECT_FALSE(agent_->Recordset());
  EXPECT_FALSE(agent_->GetRecordset(0, nullptr, false));
  Finish();
  const auto page = agent_->Recordset();
  ASSERT_TRUE(page);
  EXPECT_EQ(page->Count(), 25);
  EXPECT_FALSE(agent_->AsyncFlag());
  EXPECT_EQ(driver_->Texts.size(), 1U);
}

TEST_F(SQLAgentAsyncTest, TheRowCountIsUnknownMeanwhile) {
  Load();
  EXPECT_EQ(agent_->RowCount(), -1);
  Finish();
  EXPECT_EQ(agent_->RowCount(), 25);
}

TEST_F(SQLAgentAsyncTest, WhatIsOpenOrBeingOpenedIsNotOpenedAgain) {
  Load();
  Load();
  Finish();
  EXPECT_EQ(driver_->Texts.size(), 1U);
}

TEST_F(SQLAgentAsyncTest, AnotherReadOfAnOpenedResultIsTheSamePage) {
  Load();
  Finish();
  EXPECT_EQ(agent_->GetRecordset(0, nullptr, false)->Count(), 25);
  EXPECT_EQ(driver_->Texts.size(), 1U);
}

TEST_F(SQLAgentAsyncTest, CancelGivesItUpAndTheNextReadOpensAnew) {
  Load();
  agent_->Cancel();
  EXPECT_FALSE(agent_->AsyncFlag());
  EXPECT_FALSE(agent_->StillExecuting());
  EXPECT_FALSE(agent_->Recordset());
  driver_->Release();
  EXPECT_EQ(agent_->GetRecordset(0, nullptr, false)->Count(), 25);
}

TEST_F(SQLAgentAsyncTest, CancelWithNoOpenResultDoesNothing) {
  agent_->Cancel();
  EXPECT_EQ(driver_->CallsOf["Cancel"], 0);
  EXPECT_FALSE(agent_->AsyncFlag());
}

TEST_F(SQLAgentAsyncTest, AFailedOpenIsRaisedWhenThePageIsAskedForAndTheNextReadWorks) {
  driver_->FailName = "ExecDirect";
  Load();
  Finish();
  ExpectRaised(errRDO_Table, [&] { agent_->Recordset(); }, {.Text = "SQL/Name: orders"});
  EXPECT_FALSE(agent_->AsyncFlag());
  driver_->FailName.clear();
  EXPECT_EQ(agent_->GetRecordset(0, nullptr, false)->Count(), 25);
}

TEST_F(SQLAgentAsyncTest, AnAgentThatGoesMeanwhileEndsTheStatement) {
  Load();
  const auto handles = driver_->OpenHandles();
  agent_ = nullptr;
  EXPECT_EQ(driver_->OpenHandles(), handles - 1) << "with the statement still held";
}

}  // namespace

}  // namespace velmoria::test
