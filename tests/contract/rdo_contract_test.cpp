#include "tests/contract/rdo_contract.h"

#include <limits>

namespace velmoria::test {
namespace {

const std::string kEuro = "O'Neil \xE2\x82\xAC\xC3\x9F";  // a quote, the euro sign, a sharp s

TEST_P(RdoContract, UnknownDriverSays01000) {
  ExpectRdoFailure(0, "01000: ", [&] { ConnectWith("Driver=NoSuchDriver"); });
  EXPECT_EQ(engine->rdoErrors().front().SQLState, "01000");
}

TEST_P(RdoContract, UnknownDataSourceSaysIM002) {
  ExpectRdoFailure(0, "IM002: ", [&] { ConnectWith("DSN=velmoria-no-such-source"); });
  EXPECT_EQ(engine->rdoErrors().front().SQLState, "IM002");
}

TEST_P(RdoContract, DatabaseThatCannotBeReachedFailsWithTheDriversOwnNumber) {
  const auto& failure = Profile().UnreachableFailure;
  ExpectRdoFailure(failure.Number, failure.Text, [&] { ConnectWith(Filled(Profile().Unreachable)); });
}

TEST_P(RdoContract, WrongUserFailsAndTheNextConnectionWorks) {
  if (!Profile().WhyNoUsers.empty()) GTEST_SKIP() << Profile().WhyNoUsers;
  const auto& failure = Profile().WrongUserFailure;
  ExpectRdoFailure(failure.Number, failure.Text, [&] { ConnectWith(Filled(Profile().WrongUser)); });
  for (const auto& error : engine->rdoErrors()) EXPECT_EQ(error.Description.find("secret"), std::string::npos);
  EXPECT_NO_THROW(Connect());
}

TEST_P(RdoContract, TextThatDoesNotParseFailsAndTheNextWorks) {
  ExpectRdoFailure(Profile().SyntaxError, "nonsense", [&] { Run("nonsense"); });
  EXPECT_FALSE(engine->rdoErrors().empty());
  EXPECT_EQ(Value("SELECT 1 AS a"), Variant(1));
  EXPECT_TRUE(engine->rdoErrors().empty());
}

TEST_P(RdoContract, TableThatIsNotThereFailsWhenItIsOpened) {
  const auto table = connection->rdoTables()->Item("not_here");
  ExpectRdoFailure(Profile().NoTableError, "not_here", [&] { table->OpenResultset({.Type = rdOpenKeyset}); });
}

TEST_P(RdoContract, ColumnsReportTheirTypes) {
  MakeKinds();
  const auto result = connection->rdoTables()->Item(Filled("{t}kinds"))->OpenResultset({.Type = rdOpenKeyset});
  const auto& types = Profile().KindTypes;
  ASSERT_EQ(result->rdoColumns().Count(), types.size());
  std::size_t place = 0;
  for (const auto& column : result->rdoColumns()) EXPECT_EQ(column->Type(), types[place++]) << column->Name();
}

TEST_P(RdoContract, ColumnsKnowTheirTable) {
  MakeKinds();
  const auto result = Rows("SELECT id, v AS name, i + 1 AS more FROM {t}kinds");
  const auto& columns = result->rdoColumns();
  EXPECT_EQ(columns.At("id")->SourceTable(), Filled("{t}kinds"));
  EXPECT_EQ(columns.At("id")->SourceColumn(), "id");
  EXPECT_TRUE(columns.At("id")->AutoIncrement());
  EXPECT_FALSE(columns.At("name")->AutoIncrement());
  EXPECT_EQ(columns.At("name")->SourceTable(), Filled("{t}kinds"));
  EXPECT_TRUE(columns.At("name")->Required());
  EXPECT_TRUE(columns.At("name")->AllowZeroLength());
  EXPECT_EQ(columns.At("name")->Size(), 12);
  EXPECT_EQ(columns.At("more")->SourceTable(), "");
  EXPECT_EQ(columns.At("more")->SourceColumn(), "more");
  EXPECT_FALSE(columns.At("more")->Required());
}

TEST_P(RdoContract, ValuesOfEveryKindAreReadAsStoredAndNullIsNull) {
  MakeKinds();
  Run("INSERT INTO {t}kinds (i, s, b, d, n, v, da, ti, ts, f, y, l) VALUES (-7, 300, 9007199254740993, 1.5, 12345.678, "
      "'x', '2026-11-20', '14:03:05', '2026-11-20 14:03:05', '1', 200, 'long')");
  Run("INSERT INTO {t}kinds (v) VALUES ('')");
  const auto block = Rows("SELECT i, s, b, d, n, v, da, ti, ts, f, l FROM {t}kinds ORDER BY id")->GetRows(5);
  ASSERT_EQ(block.Rows(), 2U);
  EXPECT_EQ(block.Value(0, 0), Variant(-7));
  EXPECT_EQ(block.Value(1, 0), Variant(std::int16_t{300}));
  EXPECT_EQ(block.Value(2, 0), Variant(Decimal::Parse("9007199254740993")));
  EXPECT_EQ(block.Value(3, 0), Variant(1.5));
  EXPECT_EQ(block.Value(4, 0), Profile().NumericValue);
  EXPECT_EQ(block.Value(6, 0), Variant(Date::From(2026, 11, 20)));
  EXPECT_EQ(block.Value(7, 0), Profile().TimeValue);
  EXPECT_EQ(block.Value(8, 0), Variant(Date::From(2026, 11, 20, 14, 3, 5)));
  EXPECT_EQ(block.Value(9, 0), Profile().TrueValue);
  EXPECT_TRUE(block.Value(10, 0).IsEmpty());
  EXPECT_EQ(block.Value(5, 1), Variant(""));
  for (const std::size_t column : {0U, 1U, 2U, 3U, 4U, 6U, 7U, 8U, 9U}) EXPECT_TRUE(block.Value(column, 1).IsNull());
}

TEST_P(RdoContract, NumberThatItsColumnCannotHoldRaises6WithTheColumn) {
  if (!Profile().WhyNothingTooLarge.empty()) GTEST_SKIP() << Profile().WhyNothingTooLarge;
  Run("CREATE TABLE {t}narrow ( i int, s smallint, y tinyint )");
  Run("INSERT INTO {t}narrow VALUES (2147483648, -32769, 256)");
  for (const std::string column : {"i", "s", "y"}) {
    const std::string sql = "SELECT " + column + " FROM {t}narrow";
    ExpectRdoFailure(static_cast<std::int32_t>(RuntimeFailure::Overflow), "'" + column + "'", [&] { Value(sql); });
  }
  Run("UPDATE {t}narrow SET i = -2147483648, s = 32767, y = 255");
  EXPECT_EQ(Value("SELECT i FROM {t}narrow"), Variant(std::numeric_limits<std::int32_t>::min()));
  EXPECT_EQ(Value("SELECT s FROM {t}narrow"), Variant(std::int16_t{32767}));
  EXPECT_EQ(Value("SELECT y FROM {t}narrow"), Variant(Byte{255}));
}

TEST_P(RdoContract, QuotesAndNonAsciiComeBackAsTheyWent) {
  Run("CREATE TABLE {t}words ( w varchar(40) )");
  Run("INSERT INTO {t}words VALUES ('O''Neil \xE2\x82\xAC\xC3\x9F')");
  const auto query = Query("INSERT INTO {t}words VALUES ( ? )");
  query->rdoParameters()[0]->SetValue(kEuro);
  query->Execute();
  const auto block = Rows("SELECT w FROM {t}words")->GetRows(9);
  ASSERT_EQ(block.Rows(), 2U);
  EXPECT_EQ(block.Value(0, 0), Variant(kEuro));
  EXPECT_EQ(block.Value(0, 1), Variant(kEuro));
  EXPECT_EQ(Value("SELECT count(*) AS n FROM {t}words WHERE w = '"
                  "O''Neil \xE2\x82\xAC\xC3\x9F'")
                .AsLong(),
            2);
}

TEST_P(RdoContract, BackslashIsAnOrdinaryCharacter) {
  Run("CREATE TABLE {t}words ( w varchar(40) )");
  Run("INSERT INTO {t}words VALUES ('a\\''b\\n')");
  EXPECT_EQ(Value("SELECT w FROM {t}words"), Variant("a\\'b\\n"));
}

TEST_P(RdoContract, ServerThatGivesBackslashesAMeaningIsToldNotTo) {
  if (!Profile().WhyNoBackslashes.empty()) GTEST_SKIP() << Profile().WhyNoBackslashes;
  const auto told = ConnectWith(connectText + Profile().WithBackslashes);
  const auto value = [&](const std::string& sql) {
    return told->CreateQuery("", sql)->OpenResultset({.Type = rdOpenKeyset})->GetRows(1).Value(0, 0);
  };
  EXPECT_EQ(value("SELECT length('\\') AS n").AsLong(), 1);
  EXPECT_EQ(value("SELECT length('a\\''b') AS n").AsLong(), 4);
}

TEST_P(RdoContract, TextWithACharacter0IsRefused) {
  const std::string text = std::string("SELECT 'a") + '\0' + "b' AS a";
  for (const bool prepared : {true, false}) {
    for (const rdoNumber options : {0, rdAsyncEnable}) {
      const auto query = Query(text);
      query->SetPrepared(prepared);
      ExpectRdoFailure(static_cast<std::int32_t>(RuntimeFailure::InvalidArgument), "character 0",
                       [&] { query->OpenResultset({.Options = options}); });
    }
  }
}

TEST_P(RdoContract, ValueLongerThanItsColumnDeclaresIsReadWhole) {
  // Where a server keeps to what is declared, the value is longer than any slot instead.
  Run("CREATE TABLE {t}words ( n int, w " + Profile().LongestText + " )");
  std::string text;
  while (text.size() < 10000) text += kEuro;
  const auto query = Query("INSERT INTO {t}words VALUES ( ?, ? )");
  for (int row = 1; row <= 200; ++row) {
    query->rdoParameters()[0]->SetValue(row);
    query->rdoParameters()[1]->SetValue(row % 50 == 3 ? Variant(text) : Variant("short"));
    query->Execute();
  }
  for (const rdoNumber type : {rdOpenForwardOnly, rdOpenKeyset, rdOpenDynamic, rdOpenStatic}) {
    const auto block = Rows("SELECT n, w FROM {t}words ORDER BY n", type)->GetRows(1000);
    ASSERT_EQ(block.Rows(), 200U);
    for (int row = 1; row <= 200; ++row) {
      const auto place = static_cast<std::size_t>(row - 1);
      EXPECT_EQ(block.Value(0, place), Variant(row));
      EXPECT_EQ(block.Value(1, place), row % 50 == 3 ? Variant(text) : Variant("short"));
    }
  }
}

TEST_P(RdoContract, TenThousandRowsAreReadInPagesByEveryCursor) {
  for (const rdoNumber type : {rdOpenForwardOnly, rdOpenKeyset, rdOpenStatic}) {
    const auto result = Rows(Numbers(10000), type);
    int next = 1;
    for (auto page = result->GetRows(500); !page.IsEmpty(); page = result->GetRows(500)) {
      ASSERT_EQ(page.Rows(), 500U);
      for (std::size_t row = 0; row < 500; ++row) EXPECT_EQ(page.Value(0, row).AsLong(), next++);
    }
    EXPECT_EQ(next, 10001);
    EXPECT_TRUE(result->AtEOF());
    EXPECT_EQ(result->RowCount(), 10000);
  }
}

TEST_P(RdoContract, ScrollingResultMovesToAnyRow) {
  const auto result = Rows(Numbers(3000), rdOpenKeyset);
  const auto column = result->rdoColumns().At(std::size_t{1});
  result->MoveLast();
  EXPECT_EQ(column->Value().AsLong(), 3000);
  result->Move(-1000);
  EXPECT_EQ(column->Value().AsLong(), 2000);
  result->MoveFirst();
  EXPECT_EQ(column->Value().AsLong(), 1);
  result->SetBookmark(1500);
  EXPECT_EQ(column->Value().AsLong(), 1500);
}

TEST_P(RdoContract, TableMadeAnewWithItsColumnsSwappedIsNotReadIntoTheOldOnes) {
  const auto make = [&](const std::string& columns) {
    const auto text = "'" + std::string(240, 'x') + "'";
    Run("CREATE TABLE {t}wide ( " + columns + ", v varchar(250), w varchar(250), x varchar(250) )");
    Run("INSERT INTO {t}wide (a, b, v, w, x) SELECT n, -n, " + text + ", " + text + ", " + text + " FROM ( " +
        Numbers(10000) + " ) AS t");
  };
  make("a int, b int");
  const auto result = Query("SELECT * FROM {t}wide")->OpenResultset({.Type = rdOpenKeyset, .Repeatable = true});
  while (!result->AtEOF()) result->GetRows(500);
  result->MoveFirst();
  EXPECT_GT(result->rdoColumns().At("a")->Value().AsLong(), 0);
  while (!result->AtEOF()) result->GetRows(500);
  Run("DROP TABLE {t}wide");
  make("b int, a int");
  result->MoveFirst();
  EXPECT_GT(result->rdoColumns().At("a")->Value().AsLong(), 0);
  while (!result->AtEOF()) result->GetRows(500);
}

TEST_P(RdoContract, TwoOpenResultsOfOneConnectionDoNotDisturbEachOther) {
  const auto up = Rows(Numbers(3000));
  const auto down = Rows(Numbers(3000) + " ORDER BY n DESC");
  for (int row = 0; row < 3000; row += 500) {
    EXPECT_EQ(up->GetRows(500).Value(0, 0).AsLong(), row + 1);
    EXPECT_EQ(down->GetRows(500).Value(0, 0).AsLong(), 3000 - row);
  }
}

TEST_P(RdoContract, TableWithoutRowsGivesItsColumnsAndNoRow) {
  MakeKinds();
  const auto result = connection->rdoTables()->Item(Filled("{t}kinds"))->OpenResultset({.Type = rdOpenKeyset});
  EXPECT_TRUE(result->AtBOF());
  EXPECT_TRUE(result->AtEOF());
  result->MoveLast();
  EXPECT_EQ(result->RowCount(), 0);
  EXPECT_TRUE(result->GetRows(10).IsEmpty());
  EXPECT_EQ(result->rdoColumns().Count(), 14U);
}

std::vector<Variant> ValuesOfEveryType() {
  return {-7,
          std::int16_t{300},
          Decimal::Parse("9007199254740993"),
          1.5,
          Currency::Parse("12345.678"),
          "p'?",
          Date::From(2026, 11, 20),
          Date::From(1899, 12, 30, 14, 3, 5),
          Date::From(2026, 11, 20, 14, 3, 5),
          true,
          Byte{200},
          std::string(20000, 'x'),
          std::vector<Byte>(20000, Byte{255})};
}

/// Sends the values under types of their own, where types are given.
void ExecuteWith(rdoQuery& query, const std::vector<Variant>& values, const std::vector<rdoNumber>& types = {}) {
  for (std::size_t place = 0; place < values.size(); ++place) {
    query.rdoParameters()[place]->SetValue(values[place]);
    query.rdoParameters()[place]->SetType(types.empty() ? 0 : types[place]);
  }
  query.Execute();
  EXPECT_EQ(query.RowsAffected(), 1);
}

/// Expects a row of i, s, b, d, n, v, da, ti, ts and y as it was sent.
void ExpectValuesOfEveryType(const RowBlock& block, std::size_t row) {
  const auto values = ValuesOfEveryType();
  for (const std::size_t column : {0U, 1U, 2U, 3U, 5U, 6U, 7U, 8U}) {
    EXPECT_EQ(block.Value(column, row), values[column]) << column;
  }
  EXPECT_EQ(block.Value(4, row).AsDouble(), 12345.678);
  EXPECT_EQ(block.Value(9, row).AsInteger(), 200);
}

TEST_P(RdoContract, ParametersOfEveryTypeArriveAsTheyWere) {
  MakeKinds();
  const auto query =
      Query("INSERT INTO {t}kinds (i, s, b, d, n, v, da, ti, ts, f, y, l, x) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?)");
  ExecuteWith(*query, ValuesOfEveryType());
  ExecuteWith(*query, ValuesOfEveryType(), {4, 5, -5, 8, 3, 12, 9, Profile().TimeType, 11, -7, -6, -1, -4});
  const auto block = Rows("SELECT i, s, b, d, n, v, da, ti, ts, y FROM {t}kinds ORDER BY id")->GetRows(5);
  ASSERT_EQ(block.Rows(), 2U);
  for (std::size_t row = 0; row < 2; ++row) ExpectValuesOfEveryType(block, row);
  const std::string& length = Profile().ByteLength;
  EXPECT_EQ(Value("SELECT count(*) AS n FROM {t}kinds WHERE " + Profile().TextLength + "(l) = 20000 AND " + length +
                  "(x) = 20000")
                .AsLong(),
            2);
  EXPECT_EQ(Value("SELECT count(*) AS n FROM {t}kinds WHERE f = '1'").AsLong(), 2);
}

TEST_P(RdoContract, NullParametersOfEveryTypeArriveAsNull) {
  MakeKinds();
  const auto query = Query("INSERT INTO {t}kinds (i, b, d, n, da, ts, f, l, x, v) VALUES (?,?,?,?,?,?,?,?,?,?)");
  const std::vector<rdoNumber> types = {4, -5, 8, 3, 9, 11, -7, -1, -4};
  for (const bool typed : {false, true}) {
    for (std::size_t place = 0; place < types.size(); ++place) {
      query->rdoParameters()[place]->SetValue(Variant::Null());
      query->rdoParameters()[place]->SetType(typed ? types[place] : 0);
    }
    query->rdoParameters()[9]->SetValue("nulls");
    query->Execute();
  }
  const std::string isNull = "i IS NULL AND b IS NULL AND d IS NULL AND n IS NULL AND da IS NULL AND ts IS NULL";
  const std::string sql =
      "SELECT count(*) AS n FROM {t}kinds WHERE f IS NULL AND l IS NULL AND x IS NULL AND " + isNull;
  EXPECT_EQ(Value(sql).AsLong(), 2);
}

TEST_P(RdoContract, ParametersChooseTheRowsOfAResult) {
  const auto query = Query("SELECT * FROM ( " + Numbers(100) + " ) AS t WHERE n > ? AND n < ?");
  query->rdoParameters()[0]->SetValue(10);
  query->rdoParameters()[1]->SetValue(13);
  for (const bool prepared : {true, false}) {
    query->SetPrepared(prepared);
    const auto block = query->OpenResultset({.Type = rdOpenKeyset})->GetRows(10);
    ASSERT_EQ(block.Rows(), 2U);
    EXPECT_EQ(block.Value(0, 1).AsLong(), 12);
  }
}

TEST_P(RdoContract, UpdateThatMeetsNoRowIsASuccess) {
  MakeKinds();
  const auto query = Query("UPDATE {t}kinds SET i = 1 WHERE id = 999");
  query->Execute();
  EXPECT_EQ(query->RowsAffected(), 0);
}

TEST_P(RdoContract, TransactionKeepsWhatIsCommittedAndTakesTheRestBack) {
  Run("CREATE TABLE {t}words ( w varchar(10) )");
  EXPECT_TRUE(connection->Transactions());
  connection->BeginTrans();
  Run("INSERT INTO {t}words VALUES ('lost')");
  connection->RollbackTrans();
  connection->BeginTrans();
  Run("INSERT INTO {t}words VALUES ('kept')");
  connection->CommitTrans();
  Run("INSERT INTO {t}words VALUES ('also')");
  EXPECT_EQ(Value("SELECT count(*) AS n FROM {t}words").AsLong(), 2);
}

TEST_P(RdoContract, TransactionOfAnEnvironmentCoversAConnectionOpenedLater) {
  const std::string table = Filled(Profile().SharedTable);
  Run("CREATE TABLE " + table + " ( w varchar(10) )");
  environment->BeginTrans();
  const auto later = Connect();
  later->CreateQuery("", "INSERT INTO " + table + " VALUES ('lost')")->Execute();
  environment->RollbackTrans();
  later->CreateQuery("", "INSERT INTO " + table + " VALUES ('kept')")->Execute();
  EXPECT_EQ(Value("SELECT w FROM " + table), Variant("kept"));
  later->Close();
  Run("DROP TABLE " + table);
}

TEST_P(RdoContract, OpenResultSurvivesCommitAndRollback) {
  for (const bool commit : {true, false}) {
    connection->BeginTrans();
    const auto result = Rows(Numbers(3000));
    EXPECT_EQ(result->GetRows(10).Rows(), 10U);
    commit ? connection->CommitTrans() : connection->RollbackTrans();
    EXPECT_EQ(result->GetRows(5000).Rows(), 2990U);
  }
}

TEST_P(RdoContract, NextStatementAfterAFailureInATransactionWorks) {
  if (!Profile().WhyNothingAfterRefusal.empty()) GTEST_SKIP() << Profile().WhyNothingAfterRefusal;
  Run("CREATE TABLE {t}words ( w varchar(10) NOT NULL )");
  connection->BeginTrans();
  Run("INSERT INTO {t}words VALUES ('kept')");
  EXPECT_THROW(Run("INSERT INTO {t}words VALUES (NULL)"), Error);
  Run("INSERT INTO {t}words VALUES ('also')");
  connection->CommitTrans();
  EXPECT_EQ(Value("SELECT count(*) AS n FROM {t}words").AsLong(), 2);
}

INSTANTIATE_TEST_SUITE_P(, RdoContract, ::testing::ValuesIn(RdoProfilesWithOptions()),
                         [](const auto& profile) { return profile.param.Name + profile.param.With; });

}  // namespace
}  // namespace velmoria::test
