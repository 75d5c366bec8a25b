#include "velmoria/platform/odbc/call_outputs.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

/// A call with an input and two outputs, a number and a text.
class CallOutputsTest : public RdoTest {
 protected:
  void SetUp() override {
    odbc->DriverName = "libmaodbc.so";
    odbc->Columns = {{"b", 4}, {"c", 12}};
    odbc->Rows = {{"7", "of the row"}};
    odbc->Outputs = {"1", "of the buffer"};
  }
  static constexpr int kAttributesOfABlock = 2;  // its size and where its status goes

  /// So many rows of numbers, and the row of the outputs behind them.
  void GiveRowsAndOutputs(std::size_t rows) {
    odbc->OutputColumns = std::exchange(odbc->Columns, {{"i", -5}, {"d", 8}, {"r", 7}, {"f", -7}});
    odbc->OutputRows = std::exchange(odbc->Rows, std::vector(rows, FakeOdbc::Row{"9", "1.5", "2.5", "1"}));
  }
  rdoQueryPtr Call() {
    auto query = Open()->CreateQuery("", "{ call p (?, ?, ?) }");
    query->rdoParameters()[0]->SetValue(1);
    query->rdoParameters()[1]->SetDirection(rdParamInputOutput);
    query->rdoParameters()[1]->SetType(rdTypeINTEGER);
    query->rdoParameters()[2]->SetDirection(rdParamOutput);
    return query;
  }
  static void ExpectOutputs(const rdoQueryPtr& query, const Variant& b, const Variant& c) {
    EXPECT_EQ(query->rdoParameters()[1]->Value(), b);
    EXPECT_EQ(query->rdoParameters()[2]->Value(), c);
  }
};

TEST_F(CallOutputsTest, RowOfTheOutputsCountsWhereTheDriverGivesOne) {
  const auto query = Call();
  for (int time = 0; time < 2; ++time) {
    query->Execute();
    ExpectOutputs(query, 7, "of the row");
  }
}

TEST_F(CallOutputsTest, OtherDriversHaveThemInTheirBuffers) {
  odbc->DriverName = "libtdsodbc.so";
  const auto query = Call();
  query->Execute();
  ExpectOutputs(query, 1, "of the buffer");
}

TEST_F(CallOutputsTest, NullOfTheRowIsNullWhateverTheBufferSays) {
  odbc->Rows = {{std::nullopt, std::nullopt}};
  const auto query = Call();
  query->Execute();
  ExpectOutputs(query, Variant::Null(), Variant::Null());
}

TEST_F(CallOutputsTest, ValueOfTheRowIsWholeWhateverItsLength) {
  const std::string text(3'000'000, 'x');
  odbc->Columns[1].Type = -1;
  odbc->Rows = {{"7", text}};
  const auto query = Call();
  query->Execute();
  ExpectOutputs(query, 7, text);
  query->rdoParameters()[2]->SetType(rdTypeLONGVARBINARY);
  query->Execute();
  ExpectOutputs(query, 7, std::vector<Byte>(text.begin(), text.end()));
}

TEST_F(CallOutputsTest, ValueOfTheRowBecomesWhatTheParameterIs) {
  odbc->Columns = {{"b", 12}, {"c", 4}};
  odbc->Rows = {{"12", "13"}};
  const auto query = Call();
  query->Execute();
  ExpectOutputs(query, 12, "13");
  odbc->Rows = {{"twelve", "13"}};
  ExpectRdoFailure(static_cast<std::int32_t>(RuntimeFailure::TypeMismatch), "", [&] { query->Execute(); });
}

TEST_F(CallOutputsTest, ResultOfOtherColumnsIsNotTheRowOfTheOutputs) {
  odbc->Columns.push_back({"d", 4});
  odbc->Rows = {{"7", "of the row", "8"}};
  const auto query = Call();
  query->Execute();
  ExpectOutputs(query, 1, "of the buffer");
  odbc->Columns.resize(2);
  odbc->Rows.clear();
  query->Execute();
  ExpectOutputs(query, 1, "of the buffer");
}

TEST_F(CallOutputsTest, RowThatCannotBeReadIsAFailure) {
  const auto query = Call();
  odbc->FailName = "Fetch";
  ExpectRdoFailure(7, "fake failure", [&] { query->Execute(); });
  odbc->FailName.clear();
  query->Execute();
  ExpectOutputs(query, 7, "of the row");
}

TEST_F(CallOutputsTest, OutputsOfAnOpenedResultAreTakenOnceItHasBeenRead) {
  odbc->DriverName = "libtdsodbc.so";
  odbc->Rows.assign(2000, {"7", "row"});
  for (const auto type : {rdOpenForwardOnly, rdOpenStatic}) {
    const auto query = Call();
    const auto result = query->OpenResultset({.Type = type});
    EXPECT_EQ(result->GetRows(150).Rows(), 150U);
    EXPECT_FALSE(result->TakeOutputs());
    EXPECT_EQ(result->GetRows(1850).Rows(), 1850U);
    EXPECT_TRUE(result->TakeOutputs());
    ExpectOutputs(query, 1, "of the buffer");
    EXPECT_FALSE(result->TakeOutputs());
  }
}

TEST_F(CallOutputsTest, ResultThatIsNothingButTheOutputsIsARowToo) {
  odbc->Columns[1].Type = -1;
  for (const auto type : {rdOpenForwardOnly, rdOpenStatic}) {
    const auto query = Call();
    const auto result = query->OpenResultset({.Type = type});
    EXPECT_EQ(result->rdoColumns().At("b")->Value(), Variant(7));
    EXPECT_EQ(result->rdoColumns().At("c")->ColumnSize(), 10);
    EXPECT_FALSE(result->TakeOutputs());
    result->MoveNext();
    EXPECT_TRUE(result->TakeOutputs());
    ExpectOutputs(query, 7, "of the row");
  }
}

TEST_F(CallOutputsTest, RowOfTheOutputsBehindRowsIsReadWithNothingBoundForTheRows) {
  GiveRowsAndOutputs(100);
  for (const auto type : {rdOpenForwardOnly, rdOpenStatic}) {
    const auto query = Call();
    const auto result = query->OpenResultset({.Type = type});
    const auto block = result->GetRows(1000);
    EXPECT_TRUE(result->TakeOutputs());
    ExpectOutputs(query, 7, "of the row");
    EXPECT_EQ(odbc->LeftOfRows, 0);
    EXPECT_EQ(block.Rows(), 100U);
    EXPECT_EQ(block.Value(1, 99), Variant(1.5));
  }
}

TEST_F(CallOutputsTest, RowOfTheOutputsBehindRowsReadOneByOneIsReadToo) {
  GiveRowsAndOutputs(100);
  odbc->Columns[2] = {"t", 12, 5};
  const auto query = Call();
  const auto result = query->OpenResultset({.Type = rdOpenForwardOnly});
  result->GetRows(1000);
  EXPECT_TRUE(result->TakeOutputs());
  ExpectOutputs(query, 7, "of the row");
  EXPECT_EQ(odbc->LargestArray, 0U);
}

TEST_F(CallOutputsTest, WhereWhatWasBoundForTheRowsIsNotTakenBackTheOutputsAreNotFetched) {
  GiveRowsAndOutputs(12);
  for (int attribute = 1; attribute <= 3; ++attribute) {
    const auto result = Call()->OpenResultset({.Type = rdOpenForwardOnly});
    odbc->FailName = "SetStmtAttr";
    odbc->FailNameFrom = odbc->CallsOf["SetStmtAttr"] + kAttributesOfABlock + attribute;
    EXPECT_EQ(result->GetRows(1000).Rows(), 12U);
    ExpectRdoFailure(7, "fake failure", [&] { result->TakeOutputs(); });
    EXPECT_EQ(odbc->CallsOf["MoreResults"], 0);
    odbc->FailName.clear();
  }
}

TEST_F(CallOutputsTest, OutputsAreThereWhereAnotherStatementHadTheRowsFetched) {
  odbc->DriverName = "libtdsodbc.so";
  odbc->ActiveStatements = 1;
  odbc->Rows.assign(200, {"7", "row"});
  const auto connection = Open();
  const auto query = connection->CreateQuery("", "{ call p (?) }");
  query->rdoParameters()[0]->SetDirection(rdParamOutput);
  const auto result = query->OpenResultset();
  connection->CreateQuery("", "DELETE FROM t")->Execute();
  EXPECT_EQ(result->GetRows(200).Rows(), 200U);
  EXPECT_TRUE(result->TakeOutputs());
  EXPECT_EQ(query->rdoParameters()[0]->Value(), Variant("1"));
}

TEST_F(CallOutputsTest, FailureBehindTheRowsIsRaisedWithTheOutputs) {
  odbc->FailName = "MoreResults";
  const auto query = Call();
  const auto result = query->OpenResultset();
  EXPECT_EQ(result->GetRows(10).Rows(), 1U);
  ExpectRdoFailure(7, "fake failure", [&] { result->TakeOutputs(); });
  EXPECT_FALSE(result->TakeOutputs());
}

TEST_F(CallOutputsTest, ClosedResultGivesNoOutputs) {
  const auto query = Call();
  const auto result = query->OpenResultset();
  result->Close();
  EXPECT_FALSE(result->TakeOutputs());
}

TEST_F(CallOutputsTest, StatementWithoutOutputsGivesNone) {
  const auto result = OpenNumbers(3);
  result->GetRows(10);
  EXPECT_FALSE(result->TakeOutputs());
}

}  // namespace
}  // namespace velmoria::test
