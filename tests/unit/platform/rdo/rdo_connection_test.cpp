#include "velmoria/platform/rdo/rdo_connection.h"

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

using Texts = std::vector<std::string>;

/// A driver whose results end with a transaction, and results of a hundred rows.
class RdoConnectionTest : public RdoTest {
 protected:
  RdoConnectionTest() {
    odbc->TransactionKeepsResults = false;
    odbc->Columns = {{"Id", 4}};
    odbc->Rows.assign(100, {"1"});
  }
  rdoResultsetPtr OpenOn(const rdoConnectionPtr& connection) {
    return connection->CreateQuery("", "SELECT")->OpenResultset();
  }
};

TEST_F(RdoConnectionTest, TransactionFetchesAllResultsThatAreOpen) {
  const auto connection = Open();
  const auto first = OpenOn(connection);
  const auto second = OpenOn(connection);
  connection->CommitTrans();
  EXPECT_EQ(first->RowCount(), 100);
  EXPECT_EQ(second->RowCount(), 100);
}

TEST_F(RdoConnectionTest, ResultThatFailsToBeFetchedAheadDoesNotHoldUpTheOthers) {
  const auto connection = Open();
  const auto first = OpenOn(connection);
  const auto second = OpenOn(connection);
  odbc->FailName = "FetchScroll";
  connection->CommitTrans();
  EXPECT_EQ(odbc->CallsOf["FetchScroll"], 4);
  ExpectRdoFailure(7, "fake failure", [&] { first->GetRows(900); });
  ExpectRdoFailure(7, "fake failure", [&] { second->GetRows(900); });
}

TEST_F(RdoConnectionTest, TransactionMayEndTheResultThatWasAllThatHeldTheConnection) {
  odbc->ActiveStatements = 1;
  const auto result = OpenOn(Open());
  environment->BeginTrans();
  EXPECT_EQ(result->RowCount(), 100);
  EXPECT_EQ(odbc->Transactions, (Texts{"begin 1", "rollback 1"}));
  environment->CommitTrans();
  EXPECT_EQ(odbc->Transactions.size(), 2U);
  EXPECT_EQ(odbc->Misuses, 0);
}

TEST_F(RdoConnectionTest, CommitAndRollbackMayEndItToo) {
  for (const auto end : {&rdoEnvironment::CommitTrans, &rdoEnvironment::RollbackTrans}) {
    environment->BeginTrans();
    const auto open = odbc->OpenHandles();
    const auto result = OpenOn(Open());
    ((*environment).*end)();
    EXPECT_EQ(result->RowCount(), 100);
    EXPECT_EQ(odbc->OpenHandles(), open);
  }
  EXPECT_EQ(odbc->Transactions, (Texts{"begin 1", "commit 1", "begin 2", "rollback 2"}));
  EXPECT_EQ(odbc->Misuses, 0);
}

}  // namespace
}  // namespace velmoria::test
