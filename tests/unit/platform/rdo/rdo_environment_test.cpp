#include "velmoria/platform/rdo/rdo_environment.h"

#include <algorithm>

#include <sql.h>
#include <sqlext.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

using Texts = std::vector<std::string>;

class RdoEnvironmentTest : public RdoTest {
 protected:
  std::string ConnectText(const std::string& user, const std::string& password, const std::string& connect,
                          const std::string& dsn = "") {
    const auto own = engine->rdoCreateEnvironment("", user, password);
    own->OpenConnection({.dsName = dsn, .Prompt = rdDriverNoPrompt, .Connect = connect});
    return odbc->Connects.back();
  }
};

TEST_F(RdoEnvironmentTest, ConnectStringWithoutAUserGetsTheEnvironments) {
  EXPECT_EQ(ConnectText("", "", "DSN=Sales"), "DSN=Sales");
  EXPECT_EQ(ConnectText("u", "p", "DSN=Sales"), "DSN=Sales;UID=u;PWD=p");
  EXPECT_EQ(ConnectText("u", "", "DSN=Sales;"), "DSN=Sales;UID=u");
  EXPECT_EQ(ConnectText("u", "p", "uid=own;DSN=Sales"), "uid=own;DSN=Sales");
  EXPECT_EQ(ConnectText("u", "p", "PWD=own;DSN=Sales"), "PWD=own;DSN=Sales;UID=u");
  EXPECT_EQ(ConnectText("u", "a;b}c", "DSN=Sales"), "DSN=Sales;UID=u;PWD={a;b}}c}");
  EXPECT_EQ(ConnectText("", "", "", "Sales"), "DSN=Sales");
}

TEST_F(RdoEnvironmentTest, PromptLetsTheDriverCompleteTheConnectString) {
  environment->OpenConnection({.Prompt = rdDriverPrompt});
  environment->OpenConnection({.Prompt = rdDriverNoPrompt});
  EXPECT_EQ(odbc->Completions, (std::vector<odbc::Word>{SQL_DRIVER_COMPLETE, SQL_DRIVER_NOPROMPT}));
}

TEST_F(RdoEnvironmentTest, ReadOnlyConnectionIsAskedForAsSuch) {
  environment->OpenConnection({.Prompt = rdDriverNoPrompt});
  EXPECT_FALSE(odbc->ReadOnly);
  environment->OpenConnection({.Prompt = rdDriverNoPrompt, .ReadOnly = true});
  EXPECT_TRUE(odbc->ReadOnly);
}

TEST_F(RdoEnvironmentTest, TransactionCoversAllConnectionsAndThoseOpenedLater) {
  const auto first = Open();
  environment->BeginTrans();
  const auto second = Open();
  environment->CommitTrans();
  EXPECT_EQ(odbc->Transactions, (Texts{"begin 1", "begin 2", "commit 1", "commit 2"}));
  const auto third = Open();
  EXPECT_EQ(odbc->Transactions.size(), 4U);
}

TEST_F(RdoEnvironmentTest, BeginTransIsAllOrNothing) {
  const auto first = Open();
  const auto second = Open();
  odbc->FailAt = odbc->CallCount + 2;
  ExpectRdoFailure(7, "fake failure", [&] { environment->BeginTrans(); });
  EXPECT_EQ(odbc->Transactions, (Texts{"begin 1", "rollback 1"}));
  environment->BeginTrans();
  EXPECT_EQ(odbc->Transactions.back(), "begin 2");
}

TEST_F(RdoEnvironmentTest, FailedCommitLeavesTheTransactionToBeRolledBack) {
  const auto first = Open();
  const auto second = Open();
  environment->BeginTrans();
  odbc->FailName = "EndTran";
  odbc->FailNameFrom = 2;
  ExpectRdoFailure(7, "fake failure", [&] { environment->CommitTrans(); });
  odbc->FailName.clear();
  environment->RollbackTrans();
  EXPECT_EQ(odbc->Transactions.back(), "rollback 2");
  environment->BeginTrans();
  EXPECT_EQ(odbc->Transactions.back(), "begin 2");
}

TEST_F(RdoEnvironmentTest, ClosedConnectionTakesNoPartInTransactions) {
  const auto first = Open();
  first->Close();
  environment->BeginTrans();
  EXPECT_TRUE(odbc->Transactions.empty());
}

TEST_F(RdoEnvironmentTest, ClosingAConnectionRollsBack) {
  const auto connection = Open();
  connection->BeginTrans();
  connection->Close();
  EXPECT_EQ(odbc->Transactions.back(), "rollback 1");
}

TEST_F(RdoEnvironmentTest, SecondBeginAndCommitWithoutBeginAreHarmless) {
  const auto connection = Open();
  connection->CommitTrans();
  connection->BeginTrans();
  connection->BeginTrans();
  connection->RollbackTrans();
  EXPECT_EQ(odbc->Transactions, (Texts{"commit 1", "begin 1", "rollback 1"}));
}

TEST_F(RdoEnvironmentTest, ClosedEnvironmentOpensNothingAndClosesAgain) {
  const auto connection = Open();
  environment->Close();
  EXPECT_EQ(odbc->OpenHandles(), 0U);
  ExpectRdoFailure(rdErrClosed, "environment is closed", [&] { Open(); });
  ExpectRdoFailure(rdErrClosed, "environment is closed", [&] { environment->BeginTrans(); });
  environment->Close();
  connection->Close();
  EXPECT_EQ(odbc->Misuses, 0);
}

TEST_F(RdoEnvironmentTest, CursorDriverIsKept) {
  EXPECT_EQ(environment->CursorDriver(), rdUseIfNeeded);
  environment->SetCursorDriver(rdUseServer);
  EXPECT_EQ(environment->CursorDriver(), rdUseServer);
}

TEST_F(RdoEnvironmentTest, ServersThatReadBackslashesInLiteralsAreToldNotTo) {
  struct Case {
    const char* Server;
    const char* Part;
  };
  for (const auto& [server, part] : {Case{"MariaDB", "NO_BACKSLASH_ESCAPES"}, Case{"MySQL", "NO_BACKSLASH_ESCAPES"},
                                     Case{"PostgreSQL", "standard_conforming_strings = on"}}) {
    odbc->Texts.clear();
    odbc->Server = server;
    Open();
    ASSERT_FALSE(odbc->Texts.empty()) << server;
    EXPECT_NE(odbc->Texts.front().find(part), std::string::npos) << server;
  }
  odbc->Texts.clear();
  odbc->Server = "SQLite";
  Open();
  EXPECT_TRUE(odbc->Texts.empty());
}

TEST_F(RdoEnvironmentTest, AServerThatBeginsALargeTableWhereItReadLastIsToldNotTo) {
  odbc->Server = "PostgreSQL";
  Open();
  EXPECT_NE(std::ranges::find(odbc->Texts, "SET synchronize_seqscans = off"), odbc->Texts.end());
}

}  // namespace
}  // namespace velmoria::test
