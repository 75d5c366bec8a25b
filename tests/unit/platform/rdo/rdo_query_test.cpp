#include "velmoria/platform/rdo/rdo_query.h"

#include <tuple>

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

TEST_F(RdoQueryTest, OutputsAreTakenBehindTheLastResult) {
  odbc->CountsBefore = 2;
  odbc->Outputs = {"5", "text"};
  const auto query = Open()->CreateQuery("", "{ call p (?, ?, ?) }");
  query->rdoParameters()[1]->SetDirection(rdParamInputOutput);
  query->rdoParameters()[1]->SetType(rdTypeINTEGER);
  query->rdoParameters()[1]->SetValue(3);
  query->rdoParameters()[2]->SetDirection(rdParamOutput);
  query->Execute();
  EXPECT_EQ(odbc->CallsOf["MoreResults"], 3);
  EXPECT_EQ(query->rdoParameters()[1]->Value(), Variant(5));
  EXPECT_EQ(query->rdoParameters()[2]->Value(), Variant("text"));
}

TEST_F(RdoQueryTest, OutputThatTheDriverLeavesIsNull) {
  const auto query = Open()->CreateQuery("", "{ call p (?) }");
  query->rdoParameters()[0]->SetDirection(rdParamOutput);
  query->Execute();
  EXPECT_TRUE(query->rdoParameters()[0]->Value().IsNull());
}

TEST_F(RdoQueryTest, InputOfAnOutputHasToFitItsType) {
  const auto query = Open()->CreateQuery("", "{ call p (?) }");
  query->rdoParameters()[0]->SetDirection(rdParamInputOutput);
  query->rdoParameters()[0]->SetType(rdTypeINTEGER);
  query->rdoParameters()[0]->SetValue(1.5);
  ExpectRdoFailure(static_cast<std::int32_t>(RuntimeFailure::Overflow), "", [&] { query->Execute(); });
}

// Name, kind (1 in, 2 in and out, 3 column of the result, 4 out, 5 return value) and driver's type, as a catalogue has
// them.
FakeOdbc::Row Listed(const std::string& name, const std::string& kind, const std::string& type) {
  return {"", "", "p;1", name, kind, type, "", "10", "", "0"};
}

TEST_F(RdoQueryTest, ParametersOfACallHaveTheCataloguesNames) {
  odbc->Catalogue = {Listed("@RETURN_VALUE", "5", "4"), Listed("@a", "1", "-9"), Listed("[b]", "2", "93"),
                     Listed("row", "3", "4"), Listed("@c", "4", "4")};
  const auto connection = Open();
  const auto query = connection->CreateQuery("", "{? = Call dbo.p (?, ?, ?) }");
  const std::vector<std::tuple<std::string, rdoNumber, rdoNumber>> expected = {
      {"RETURN_VALUE", rdParamReturnValue, rdTypeINTEGER},
      {"a", rdParamInput, rdTypeVARCHAR},
      {"b", rdParamInputOutput, rdTypeTIMESTAMP},
      {"c", rdParamOutput, rdTypeINTEGER}};
  EXPECT_EQ(odbc->Texts.back(), "procedure p");
  for (std::size_t place = 0; place < expected.size(); ++place) {
    const auto& parameter = *query->rdoParameters()[place];
    EXPECT_EQ(std::tuple(parameter.Name(), parameter.Direction(), parameter.Type()), expected[place]);
  }
  EXPECT_EQ(connection->CreateQuery("", "{ Call p (?, ?, ?) }")->rdoParameters()[0]->Name(), "a");
}

TEST_F(RdoQueryTest, ReturnValueWithoutANameIsNamed) {
  odbc->Catalogue = {Listed("", "5", "4")};
  EXPECT_EQ(Open()->CreateQuery("", "{ ?=call p() }")->rdoParameters()[0]->Name(), "RETURN_VALUE");
}

TEST_F(RdoQueryTest, ParametersThatTheCatalogueDoesNotListKeepTheOrderOfTheMarkers) {
  const auto connection = Open();
  const auto query = connection->CreateQuery("", "{? = call p (?) }");
  EXPECT_EQ(query->rdoParameters()[0]->Name(), "RETURN_VALUE");
  EXPECT_EQ(query->rdoParameters()[1]->Name(), "Param2");
  odbc->FailName = "ProcedureColumns";
  EXPECT_EQ(connection->CreateQuery("", "{ call p (?) }")->rdoParameters()[0]->Name(), "Param1");
  EXPECT_TRUE(engine->rdoErrors().empty());
}

TEST_F(RdoQueryTest, TextThatIsNoCallAsksNoCatalogue) {
  const auto connection = Open();
  for (const std::string text : {"call p (?)", "{ ts ? }", "{ ? call p }", "{ cal", "SELECT ?"}) {
    connection->CreateQuery("", text);
  }
  EXPECT_EQ(odbc->CallsOf["ProcedureColumns"], 0);
}

TEST_F(RdoQueryTest, QueryGoesOnAfterAFailure) {
  const auto query = Open()->CreateQuery("", "DELETE FROM t");
  odbc->FailName = "Execute";
  ExpectRdoFailure(7, "HY000: fake failure", [&] { query->Execute(); });
  EXPECT_EQ(engine->rdoErrors().size(), 1U);
  odbc->FailName.clear();
  query->Execute();
  EXPECT_TRUE(engine->rdoErrors().empty());
}

TEST_F(RdoQueryTest, QueryOfAClosedConnectionIsRefused) {
  const auto query = Open()->CreateQuery("", "DELETE FROM t");
  environment->Close();
  ExpectRdoFailure(rdErrClosed, "closed", [&] { query->Execute(); });
  ExpectRdoFailure(rdErrClosed, "closed", [&] { query->OpenResultset(); });
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
