#include <gtest/gtest.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

// Everything a host does, once.
void WholeJob(const rdoEnginePtr& engine) {
  const auto environment = engine->rdoCreateEnvironment("", "u", "p");
  const auto connection = environment->OpenConnection({.Prompt = rdDriverNoPrompt, .ReadOnly = true});
  connection->BeginTrans();
  const auto query = connection->CreateQuery("", "UPDATE t SET a = ?");
  query->rdoParameters()[0]->SetValue("x");
  query->Execute();
  query->Execute();
  connection->CommitTrans();
  environment->BeginTrans();
  const auto result = connection->rdoTables()->Item("a table")->OpenResultset({.Type = rdOpenStatic});
  result->GetRows(2000);
  environment->RollbackTrans();
  result->Close();
  connection->Close();
}

std::shared_ptr<FakeOdbc> JobDriver() {
  auto odbc = std::make_shared<FakeOdbc>();
  odbc->Server = "PostgreSQL";
  odbc->Columns = {{"id", 4}, {"t", 12, 5}};
  for (int row = 0; row < 1500; ++row) odbc->Rows.push_back({"1", std::string(row == 1300 ? 500 : 1, 'x')});
  return odbc;
}

TEST(HandlesTest, EveryHandleIsFreedWhicheverCallFails) {
  auto odbc = JobDriver();
  WholeJob(Make<rdoEngine>(odbc));
  const int calls = odbc->CallCount;
  ASSERT_GT(calls, 50);
  EXPECT_EQ(odbc->OpenHandles(), 0U);

  int failures = 0;
  for (int call = 1; call <= calls; ++call) {
    odbc = JobDriver();
    odbc->FailAt = call;
    try {
      WholeJob(Make<rdoEngine>(odbc));
    } catch (const Error&) { ++failures; }
    EXPECT_EQ(odbc->OpenHandles(), 0U) << "call " << call;
    EXPECT_EQ(odbc->Misuses, 0) << "call " << call;
  }
  // Descriptions of columns, cursor types, names of servers and the end itself are not worth a failure.
  EXPECT_GT(failures, calls / 3);
}

using ConnectionEndTest = RdoTest;

TEST_F(ConnectionEndTest, CloseEndsTheResultsThatHangOnTheConnection) {
  const auto result = OpenNumbers(5000);
  environment->Close();
  EXPECT_EQ(odbc->OpenHandles(), 0U);
  EXPECT_EQ(result->GetRows(5).Rows(), 5U);
  ExpectRdoFailure(rdErrClosed, "", [&] { result->GetRows(5000); });
  EXPECT_EQ(odbc->Misuses, 0);
}

TEST_F(ConnectionEndTest, ResultThatIsReadToItsEndHoldsNoHandle) {
  const auto connection = Open();
  const auto before = odbc->OpenHandles();
  odbc->Columns = {{"Id", 4}};
  odbc->Rows = {{"1"}};
  const auto result = connection->CreateQuery("", "SELECT")->OpenResultset();
  EXPECT_EQ(odbc->OpenHandles(), before);
  EXPECT_EQ(result->RowCount(), 1);
}

TEST_F(ConnectionEndTest, ColumnOutlivesEverythingElse) {
  auto result = OpenNumbers(3);
  const auto column = result->rdoColumns().At(std::size_t{1});
  result.reset();
  environment.reset();
  EXPECT_EQ(column->Value(), Variant(1));
  EXPECT_EQ(odbc->Misuses, 0);
}

}  // namespace
}  // namespace velmoria::test
