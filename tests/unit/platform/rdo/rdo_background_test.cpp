#include <thread>

#include "tests/support/await_opened.h"
#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

class RdoBackgroundTest : public RdoTest {
 protected:
  RdoBackgroundTest() {
    odbc->Columns = {{"Id", 4}};
    odbc->Rows = {{"1"}, {"2"}};
  }
  rdoResultsetPtr OpenHeld(const rdoConnectionPtr& connection, const std::string& sql = "SELECT") {
    odbc->Hold();
    return connection->CreateQuery("", sql)->OpenResultset({.Type = rdOpenKeyset, .Options = rdAsyncEnable});
  }
};

TEST_F(RdoBackgroundTest, OpenReturnsBeforeTheServerAnswers) {
  const auto result = OpenHeld(Open());
  EXPECT_TRUE(result->StillExecuting());
  odbc->Release();
  AwaitOpened(result);
  EXPECT_EQ(result->GetRows(9).Rows(), 2U);
}

TEST_F(RdoBackgroundTest, WhoeverNeedsTheResultWaitsForIt) {
  const auto result = OpenHeld(Open());
  std::thread server([this] { odbc->Release(); });
  EXPECT_EQ(result->rdoColumns().Count(), 1U);
  server.join();
}

TEST_F(RdoBackgroundTest, CancelIsRepeatedUntilTheStatementEnds) {
  odbc->LostCancels = 2;
  const auto result = OpenHeld(Open());
  odbc->AwaitHeld();
  result->Cancel();
  EXPECT_GE(odbc->CallsOf["Cancel"], 3);
  EXPECT_FALSE(result->StillExecuting());
  ExpectRdoFailure(rdErrClosed, "closed", [&] { result->MoveFirst(); });
}

TEST_F(RdoBackgroundTest, CancelOfAnOpenResultDoesNothing) {
  const auto result = OpenNumbers(3);
  result->Cancel();
  EXPECT_EQ(result->GetRows(9).Rows(), 3U);
  EXPECT_EQ(odbc->CallsOf["Cancel"], 0);
}

TEST_F(RdoBackgroundTest, CancelOfAResultThatNobodyLookedAtClosesIt) {
  const auto result = OpenHeld(Open());
  odbc->Release();
  AwaitOpened(result);
  result->Cancel();
  ExpectRdoFailure(rdErrClosed, "closed", [&] { result->MoveFirst(); });
}

TEST_F(RdoBackgroundTest, EndOfTheResultStopsTheStatement) {
  const auto connection = Open();
  const auto before = odbc->OpenHandles();
  OpenHeld(connection);
  EXPECT_EQ(odbc->OpenHandles(), before);
  EXPECT_EQ(odbc->Misuses, 0);
}

TEST_F(RdoBackgroundTest, EndOfTheEnvironmentStopsTheStatement) {
  const auto result = OpenHeld(Open());
  environment->Close();
  EXPECT_FALSE(result->StillExecuting());
  ExpectRdoFailure(rdErrClosed, "closed", [&] { result->MoveFirst(); });
  EXPECT_EQ(odbc->Misuses, 0);
}

TEST_F(RdoBackgroundTest, NextStatementWaitsForTheOneThatRuns) {
  const auto connection = Open();
  const auto result = OpenHeld(connection);
  std::thread server([this] { odbc->Release(); });
  connection->CreateQuery("", "DELETE")->Execute();
  server.join();
  EXPECT_FALSE(result->StillExecuting());
  EXPECT_EQ(odbc->Texts.back(), "DELETE");
}

TEST_F(RdoBackgroundTest, FailureIsRaisedOnceAndLeavesTheResultClosed) {
  odbc->FailName = "Execute";
  const auto result = Open()->CreateQuery("", "SELECT")->OpenResultset({.Options = rdAsyncEnable});
  ExpectRdoFailure(7, "HY000: fake failure", [&] { result->RowCount(); });
  EXPECT_EQ(engine->rdoErrors().size(), 1U);
  ExpectRdoFailure(rdErrClosed, "closed", [&] { result->RowCount(); });
}

TEST_F(RdoBackgroundTest, DriverThatKeepsItsLockGetsSeveralStatementsOnTheCallersThread) {
  odbc->DriverName = "libmaodbc.so";
  const auto connection = Open();
  const auto open = [&](const std::string& sql) {
    return connection->CreateQuery("", sql)->OpenResultset({.Options = rdAsyncEnable})->StillExecuting();
  };
  odbc->FailName = "Execute";
  ExpectRdoFailure(7, "fake", [&] { open("SELECT 1; SELECT 2"); });
  EXPECT_NO_THROW(open("SELECT ';'; "));
}

TEST_F(RdoBackgroundTest, ResultsOfADriverWithOneAtATimeAreFetchedBeforeTheNextStatement) {
  odbc->ActiveStatements = 1;
  const auto connection = Open();
  for (int row = 3; row <= 500; ++row) odbc->Rows.push_back({std::to_string(row)});
  const auto first = connection->CreateQuery("", "SELECT")->OpenResultset();
  EXPECT_EQ(first->RowCount(), -1);
  connection->CreateQuery("", "SELECT")->Execute();
  EXPECT_EQ(first->RowCount(), 500);
  EXPECT_EQ(first->GetRows(900).Rows(), 500U);
}

TEST_F(RdoBackgroundTest, ResultsThatATransactionWouldEndAreFetchedBefore) {
  odbc->TransactionKeepsResults = false;
  const auto connection = Open();
  for (int row = 3; row <= 500; ++row) odbc->Rows.push_back({std::to_string(row)});
  const auto result = connection->CreateQuery("", "SELECT")->OpenResultset();
  connection->BeginTrans();
  EXPECT_EQ(result->RowCount(), -1);
  connection->CommitTrans();
  EXPECT_EQ(result->RowCount(), 500);
}

TEST_F(RdoBackgroundTest, FailureOfFetchingAheadIsRaisedWhereTheRowsAreRead) {
  odbc->ActiveStatements = 1;
  const auto connection = Open();
  for (int row = 3; row <= 500; ++row) odbc->Rows.push_back({std::to_string(row)});
  odbc->FailingRow = 300;
  const auto result = connection->CreateQuery("", "SELECT")->OpenResultset();
  connection->CreateQuery("", "DELETE")->Execute();
  EXPECT_TRUE(engine->rdoErrors().empty());
  EXPECT_EQ(result->GetRows(10).Rows(), 10U);
  ExpectRdoFailure(7, "fake", [&] { result->GetRows(900); });
}

}  // namespace
}  // namespace velmoria::test
