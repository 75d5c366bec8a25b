#include "velmoria/platform/rdo/rdo_query.h"

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

using RdoQueryTest = RdoTest;

TEST_F(RdoQueryTest, ParametersFollowTheMarkers) {
  const auto query = Open()->CreateQuery("q", "UPDATE t SET a = ?, b = 'What?' WHERE c = ?");
  ASSERT_EQ(query->rdoParameters().size(), 2U);
  EXPECT_EQ(query->rdoParameters()[1]->Name(), "Param2");
  EXPECT_EQ(query->rdoParameters()[1]->Direction(), rdParamInput);
  EXPECT_EQ(query->Name(), "q");
  query->SetSQL("DELETE FROM t");
  EXPECT_TRUE(query->rdoParameters().empty());
}

TEST_F(RdoQueryTest, PreparedQueryIsPreparedOnce) {
  const auto query = Open()->CreateQuery("", "DELETE FROM t");
  query->Execute();
  query->Execute();
  EXPECT_EQ(odbc->CallsOf["Prepare"], 1);
  EXPECT_EQ(odbc->CallsOf["Execute"], 2);
}

TEST_F(RdoQueryTest, QueryThatIsNotPreparedIsExecutedDirectly) {
  const auto query = Open()->CreateQuery("", "DELETE FROM t");
  query->SetPrepared(false);
  query->Execute();
  EXPECT_EQ(odbc->CallsOf["Prepare"], 0);
  EXPECT_EQ(odbc->CallsOf["ExecDirect"], 1);
}

TEST_F(RdoQueryTest, ExecutionThatTouchesNoRowIsASuccess) {
  odbc->NothingAffected = true;
  const auto query = Open()->CreateQuery("", "DELETE FROM t");
  query->Execute();
  EXPECT_EQ(query->RowsAffected(), 0);
}

TEST_F(RdoQueryTest, OutputParameterIsRefused) {
  const auto query = Open()->CreateQuery("", "DELETE FROM t WHERE a = ?");
  query->rdoParameters()[0]->SetDirection(rdParamOutput);
  ExpectFailure(static_cast<std::int32_t>(RuntimeFailure::InvalidArgument), "'Param1'", [&] { query->Execute(); });
}

TEST_F(RdoQueryTest, QueryGoesOnAfterAFailure) {
  const auto query = Open()->CreateQuery("", "DELETE FROM t");
  odbc->FailName = "Execute";
  ExpectFailure(7, "HY000: fake failure", [&] { query->Execute(); });
  EXPECT_EQ(engine->rdoErrors().size(), 1U);
  odbc->FailName.clear();
  query->Execute();
  EXPECT_TRUE(engine->rdoErrors().empty());
}

TEST_F(RdoQueryTest, QueryOfAClosedConnectionIsRefused) {
  const auto query = Open()->CreateQuery("", "DELETE FROM t");
  environment->Close();
  ExpectFailure(rdErrClosed, "closed", [&] { query->Execute(); });
  ExpectFailure(rdErrClosed, "closed", [&] { query->OpenResultset(); });
}

TEST_F(RdoQueryTest, TableIsReadWholeAndItsNameDelimitedOnlyWhereItMust) {
  const std::vector<std::pair<std::string, std::string>> names = {
      {"Orders", "Orders"},
      {"dbo.Orders", "dbo.Orders"},
      {"Order Lines", "\"Order Lines\""},
      {"[Order Lines]", "[Order Lines]"},
      {"Stra\xC3\x9F"
       "en",
       "Stra\xC3\x9F"
       "en"},
      {"a-b", "\"a-b\""},
  };
  const auto connection = Open();
  odbc->Columns = {{"Id", 4}};
  for (const auto& [name, text] : names) {
    connection->rdoTables()->Item(name)->OpenResultset();
    EXPECT_EQ(odbc->Texts.back(), "SELECT * FROM " + text);
  }
}

TEST_F(RdoQueryTest, StatementWithoutColumnsGivesAnEmptyResult) {
  const auto result = Open()->CreateQuery("", "DELETE FROM t")->OpenResultset();
  EXPECT_TRUE(result->rdoColumns().IsEmpty());
  EXPECT_TRUE(result->AtBOF());
  EXPECT_TRUE(result->AtEOF());
  EXPECT_EQ(result->RowCount(), 0);
}

}  // namespace
}  // namespace velmoria::test
