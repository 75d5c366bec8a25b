// Procedures, texts that give several results, and values that are not fetched with their row.

#include "tests/contract/rdo_contract.h"

namespace velmoria::test {
namespace {

TEST_P(RdoContract, ProceduresParametersAreThoseOfTheCatalogue) {
  if (!Profile().WhyNoProcedures.empty()) GTEST_SKIP() << Profile().WhyNoProcedures;
  RunAll(Profile().MakeAdd);
  const auto query = Query("{ Call {own}_add (?, ?, ?) }");
  const std::vector<std::pair<std::string, rdoNumber>> expected = {
      {"a", rdParamInput}, {"b", rdParamInputOutput}, {"c", Profile().OutputDirection}};
  ASSERT_EQ(query->rdoParameters().size(), expected.size());
  for (std::size_t place = 0; place < expected.size(); ++place) {
    EXPECT_EQ(query->rdoParameters()[place]->Name(), expected[place].first);
    EXPECT_EQ(query->rdoParameters()[place]->Direction(), expected[place].second);
    EXPECT_EQ(query->rdoParameters()[place]->Type(), place == 2 ? rdTypeVARCHAR : rdTypeINTEGER);
  }
}

TEST_P(RdoContract, ProcedureGivesItsOutputsBack) {
  if (!Profile().WhyNoProcedures.empty()) GTEST_SKIP() << Profile().WhyNoProcedures;
  RunAll(Profile().MakeAdd);
  const auto query = Query("{ Call {own}_add (?, ?, ?) }");
  for (const int given : {3, 30}) {
    query->rdoParameters()[0]->SetValue(2);
    query->rdoParameters()[1]->SetValue(given);
    query->Execute();
    EXPECT_EQ(query->rdoParameters()[1]->Value(), Variant(2 + given));
    EXPECT_EQ(query->rdoParameters()[2]->Value(), Variant("sum " + std::to_string(2 + given)));
  }
}

TEST_P(RdoContract, ProcedureReturnsAValue) {
  if (!Profile().WhyNoReturnValues.empty()) GTEST_SKIP() << Profile().WhyNoReturnValues;
  RunAll(Profile().MakeReturning);
  const auto query = Query("{? = Call {own}_double (?) }");
  ASSERT_EQ(query->rdoParameters().size(), 2U);
  EXPECT_EQ(query->rdoParameters()[0]->Name(), "RETURN_VALUE");
  EXPECT_EQ(query->rdoParameters()[0]->Direction(), rdParamReturnValue);
  EXPECT_EQ(query->rdoParameters()[1]->Name(), "a");
  query->rdoParameters()[1]->SetValue(21);
  query->Execute();
  EXPECT_EQ(query->rdoParameters()[0]->Value(), Variant(42));
}

TEST_P(RdoContract, ProcedureGivesRows) {
  if (!Profile().WhyNoProcedures.empty()) GTEST_SKIP() << Profile().WhyNoProcedures;
  RunAll(Profile().MakeRows);
  const auto query = Query("{ Call {own}_rows (?) }");
  query->rdoParameters()[0]->SetValue(200);
  for (const rdoNumber type : {rdOpenForwardOnly, rdOpenKeyset}) {
    const auto block = query->OpenResultset({.Type = type})->GetRows(1000);
    ASSERT_EQ(block.Rows(), 200U);
    EXPECT_EQ(block.Value(0, 199).AsLong(), 200);
  }
}

TEST_P(RdoContract, FirstResultWithColumnsIsOpened) {
  if (!Profile().WhyNoBatches.empty()) GTEST_SKIP() << Profile().WhyNoBatches;
  connection = ConnectForBatches();
  Run("CREATE TABLE {t}words ( w varchar(10) )");
  for (const bool prepared : {true, false}) {
    const auto query = Query("INSERT INTO {t}words VALUES ('x'); SELECT 7 AS n");
    query->SetPrepared(prepared);
    EXPECT_EQ(query->OpenResultset({.Type = rdOpenKeyset})->GetRows(5).Value(0, 0), Variant(7));
  }
  EXPECT_EQ(Value("SELECT count(*) AS n FROM {t}words").AsLong(), 2);
}

TEST_P(RdoContract, TextWithoutAnyResultOpensAResultWithoutColumns) {
  Run("CREATE TABLE {t}words ( w varchar(10) )");
  const auto result = Rows("INSERT INTO {t}words VALUES ('x')");
  EXPECT_EQ(result->rdoColumns().Count(), 0U);
  EXPECT_TRUE(result->AtEOF());
  EXPECT_EQ(Value("SELECT count(*) AS n FROM {t}words").AsLong(), 1);
}

TEST_P(RdoContract, FailureBehindTheFirstResultIsRaised) {
  if (!Profile().WhyNoBatches.empty()) GTEST_SKIP() << Profile().WhyNoBatches;
  connection = ConnectForBatches();
  Run("CREATE TABLE {t}words ( w varchar(10) )");
  const auto query = Query("INSERT INTO {t}words VALUES ('x'); INSERT INTO not_here VALUES (1)");
  for (const bool prepared : {true, false}) {
    query->SetPrepared(prepared);
    ExpectRdoFailure(Profile().NoTableErrorBehind, "not_here", [&] { query->Execute(); });
  }
  EXPECT_EQ(Value("SELECT 1 AS a"), Variant(1));
}

TEST_P(RdoContract, LongValuesAreReadWholeWhateverTheirLength) {
  MakeKinds();
  const auto query = Query("INSERT INTO {t}kinds (v, l, x) VALUES ('long', ?, ?)");
  const std::string text(300000, 'x');
  std::vector<Byte> bytes(200001);
  for (std::size_t place = 0; place < bytes.size(); ++place) bytes[place] = static_cast<Byte>(place % 256);
  query->rdoParameters()[0]->SetValue(text);
  query->rdoParameters()[1]->SetValue(bytes);
  query->Execute();
  for (const rdoNumber type : {rdOpenForwardOnly, rdOpenKeyset, rdOpenStatic}) {
    const auto result = Rows("SELECT l, v, x FROM {t}kinds", type);
    const auto l = result->rdoColumns().At("l");
    const auto x = result->rdoColumns().At("x");
    EXPECT_EQ(x->ColumnSize(), 200001);
    EXPECT_EQ(x->GetChunk(200001), Variant(bytes));
    EXPECT_EQ(l->ColumnSize(), 300000);
    EXPECT_EQ(l->GetChunk(300000), Variant(std::vector<Byte>(text.begin(), text.end())));
    EXPECT_TRUE(l->GetChunk(1).IsEmpty());
    EXPECT_EQ(result->rdoColumns().At("v")->Value(), Variant("long"));
  }
}

TEST_P(RdoContract, EmptyLongValueIsThereAndNullIsNull) {
  MakeKinds();
  Run("INSERT INTO {t}kinds (v, l) VALUES ('short', '')");
  const auto result = Rows("SELECT l, x FROM {t}kinds");
  EXPECT_EQ(result->rdoColumns().At("l")->ColumnSize(), 0);
  EXPECT_EQ(result->rdoColumns().At("x")->ColumnSize(), -1);
  EXPECT_TRUE(result->rdoColumns().At("x")->GetChunk(9).IsNull());
}

TEST_P(RdoContract, LongValuesOfAScrollingResultAreReadInAnyOrder) {
  MakeKinds();
  for (const std::string word : {"one", "two", "three"}) {
    Run("INSERT INTO {t}kinds (v, l) VALUES ('" + word + "', 'long " + word + "')");
  }
  const auto result = Rows("SELECT l, v FROM {t}kinds ORDER BY id", rdOpenStatic);
  const auto l = result->rdoColumns().At("l");
  const auto chunk = [&] {
    const auto value = l->GetChunk(100);
    return std::string(value.Bytes().begin(), value.Bytes().end());
  };
  result->MoveLast();
  EXPECT_EQ(chunk(), "long three");
  result->MoveFirst();
  EXPECT_EQ(chunk(), "long one");
  result->MoveNext();
  EXPECT_EQ(chunk(), "long two");
  EXPECT_EQ(result->rdoColumns().At("v")->Value(), Variant("two"));
}

}  // namespace
}  // namespace velmoria::test
