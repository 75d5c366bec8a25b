// Results that are opened while the caller goes on.

#include "tests/contract/rdo_contract.h"
#include "tests/support/await_opened.h"

namespace velmoria::test {
namespace {

class Background {
 public:
  explicit Background(const rdoQueryPtr& query, rdoNumber type = rdOpenKeyset)
      : result(query->OpenResultset({.Type = type, .Options = rdAsyncEnable})) {}
  void Poll() const { AwaitOpened(result); }

  rdoResultsetPtr result;
};

TEST_P(RdoContract, ResultOpenedInTheBackgroundHasTheRowsOfOneOpenedAtOnce) {
  for (const bool prepared : {true, false}) {
    for (const rdoNumber type : {rdOpenForwardOnly, rdOpenKeyset, rdOpenStatic}) {
      const auto query = Query(Numbers(3000));
      query->SetPrepared(prepared);
      const Background background(query, type);
      background.Poll();
      EXPECT_EQ(background.result->rdoColumns().Count(), 1U);
      EXPECT_EQ(background.result->GetRows(5000).Rows(), 3000U);
    }
  }
}

TEST_P(RdoContract, ParametersOfAResultOpenedInTheBackgroundMayChangeAtOnce) {
  const auto query = Query("SELECT * FROM ( " + Numbers(100) + " ) AS t WHERE n > ?");
  query->rdoParameters()[0]->SetValue(98);
  const Background background(query);
  query->rdoParameters()[0]->SetValue("another value, which is longer");
  EXPECT_EQ(background.result->GetRows(10).Rows(), 2U);
}

TEST_P(RdoContract, FailureInTheBackgroundIsRaisedByTheResult) {
  for (const bool prepared : {true, false}) {
    const auto query = Query("nonsense");
    query->SetPrepared(prepared);
    const Background background(query);
    background.Poll();
    EXPECT_TRUE(engine->rdoErrors().empty());
    ExpectRdoFailure(Profile().SyntaxError, "nonsense", [&] { background.result->MoveFirst(); });
    EXPECT_FALSE(engine->rdoErrors().empty());
    ExpectRdoFailure(rdErrClosed, "closed", [&] { background.result->MoveFirst(); });
    EXPECT_EQ(Value("SELECT 1 AS a"), Variant(1));
  }
}

TEST_P(RdoContract, EndlessStatementIsStillExecutingUntilItIsCancelled) {
  const Background background(Query(Profile().Endless));
  EXPECT_TRUE(background.result->StillExecuting());
  background.result->Cancel();
  EXPECT_FALSE(background.result->StillExecuting());
  ExpectRdoFailure(rdErrClosed, "closed", [&] { background.result->MoveFirst(); });
  EXPECT_EQ(Value("SELECT 1 AS a"), Variant(1));
}

TEST_P(RdoContract, StatementThatIsCancelledAtOnceEndsEveryTime) {
  for (int time = 0; time < 20; ++time) Background(Query(Profile().Endless)).result->Cancel();
  EXPECT_EQ(Value("SELECT 1 AS a"), Variant(1));
}

TEST_P(RdoContract, EndOfAResultStopsItsStatement) {
  Background(Query(Profile().Endless)).result->Close();
  { const Background background(Query(Profile().Endless)); }
  EXPECT_EQ(Value("SELECT 1 AS a"), Variant(1));
}

TEST_P(RdoContract, EndOfAConnectionStopsWhatItRuns) {
  const Background background(Query(Profile().Endless));
  connection->Close();
  EXPECT_FALSE(background.result->StillExecuting());
  ExpectRdoFailure(rdErrClosed, "closed", [&] { background.result->MoveFirst(); });
}

TEST_P(RdoContract, OtherConnectionWorksWhileOneIsBusy) {
  const auto other = Connect();
  const Background background(Query(Profile().Endless));
  EXPECT_EQ(other->CreateQuery("", "SELECT 1 AS a")->OpenResultset()->GetRows(1).Value(0, 0).AsLong(), 1);
  EXPECT_TRUE(background.result->StillExecuting());
}

TEST_P(RdoContract, NextStatementOfTheConnectionWaitsForTheOneInTheBackground) {
  const Background background(Query(Numbers(3000)));
  EXPECT_EQ(Value("SELECT 1 AS a"), Variant(1));
  EXPECT_EQ(background.result->GetRows(5000).Rows(), 3000U);
}

TEST_P(RdoContract, RefusedTextOfSeveralStatementsLeavesTheConnectionUsable) {
  for (const bool prepared : {true, false}) {
    const auto query = Query("SELECT 1 AS a; SELECT 2 AS b");
    query->SetPrepared(prepared);
    try {
      const Background background(query);
      background.Poll();
      background.result->MoveFirst();
    } catch (const Error&) { EXPECT_FALSE(engine->rdoErrors().empty()); }
    EXPECT_EQ(Value("SELECT 1 AS a"), Variant(1));
  }
}

}  // namespace
}  // namespace velmoria::test
