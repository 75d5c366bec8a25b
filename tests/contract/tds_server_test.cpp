#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/odbc_client.h"

namespace velmoria::test {
namespace {

using Rows = std::vector<std::vector<std::string>>;

std::string Setting(const char* name) {
  const char* const text = std::getenv(name);
  return text == nullptr ? "" : text;
}

SQLCHAR* Sql(const char* text) { return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text)); }

/// Our T-SQL server as the real driver sees it. What a test leaves lies in temporary tables, gone with its connection.
class TdsServerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    connect = Setting("VELMORIA_TEST_TDS");
    if (connect.empty()) GTEST_SKIP() << "VELMORIA_TEST_TDS names no server";
    client = std::make_unique<OdbcClient>(connect);
    ASSERT_TRUE(client->Connected()) << client->Failure();
  }
  void TearDown() override {
    if (client == nullptr) return;
    for (const std::string& text : leftovers) client->Run(text);
  }

  std::string WithLogin(const std::string& user, const std::string& password) {
    return Setting("VELMORIA_TEST_TDS_SERVER") + ";UID=" + user + ";PWD=" + password;
  }
  /// A name that no other test has, and what removes it in the end.
  std::string Own(const std::string& kind) {
    const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = std::string(test->name()) + "_" + kind + std::to_string(leftovers.size());
    client->Run("DROP " + kind + " " + name);
    leftovers.push_back("DROP " + kind + " " + name);
    return name;
  }
  void Prepare(const char* sql) { ASSERT_TRUE(client->Check(SQLPrepare(client->Statement(), Sql(sql), SQL_NTS))); }
  void BindText(SQLUSMALLINT place, SQLSMALLINT type, std::string& text, SQLLEN& length) {
    length = static_cast<SQLLEN>(text.size());
    const SQLSMALLINT host = type == SQL_LONGVARBINARY || type == SQL_VARBINARY ? SQL_C_BINARY : SQL_C_CHAR;
    ASSERT_TRUE(client->Check(SQLBindParameter(client->Statement(), place, SQL_PARAM_INPUT, host, type,
                                               text.empty() ? 1 : text.size(), 0, text.data(), length, &length)));
  }
  void BindNumber(SQLUSMALLINT place, SQLSMALLINT direction, SQLINTEGER& number, SQLLEN& length) {
    length = sizeof number;
    ASSERT_TRUE(client->Check(SQLBindParameter(client->Statement(), place, direction, SQL_C_SLONG, SQL_INTEGER, 10, 0,
                                               &number, sizeof number, &length)));
  }
  std::vector<OdbcResult> Execute() { return client->Results(SQLExecute(client->Statement())); }
  /// Runs a text in another thread and cancels it until it ends.
  std::string FailureOfCancelled(const char* sql);

  std::string connect;
  std::unique_ptr<OdbcClient> client;
  std::vector<std::string> leftovers;
};

std::string TdsServerTest::FailureOfCancelled(const char* sql) {
  client->Renew();
  std::atomic<bool> ended = false;
  std::thread worker([&] {
    client->Results(SQLExecDirect(client->Statement(), Sql(sql), SQL_NTS));
    ended = true;
  });
  while (!ended) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    SQLCancel(client->Statement());
  }
  worker.join();
  return client->Failure();
}

TEST_F(TdsServerTest, WrongPasswordIsRefused) {
  const OdbcClient other(WithLogin(Setting("VELMORIA_TEST_TDS_UID"), "wrong"));
  EXPECT_FALSE(other.Connected());
  EXPECT_NE(other.Failure().find("18456 "), std::string::npos) << other.Failure();
  EXPECT_NE(other.Failure().find("Login failed for user 'velmoria'."), std::string::npos) << other.Failure();
}

TEST_F(TdsServerTest, UnknownDatabaseIsRefused) {
  const OdbcClient none(std::string(connect).replace(connect.find("Database=velmoria"), 17, "Database=none"));
  EXPECT_FALSE(none.Connected());
  EXPECT_NE(none.Failure().find("4060 "), std::string::npos) << none.Failure();
}

TEST_F(TdsServerTest, IdentityOfAnInsertIsTheSecondResult) {
  client->RunAll({"CREATE TABLE #t (Id int IDENTITY PRIMARY KEY, v varchar(60))"});
  const auto results =
      client->Run("INSERT INTO #t (v) VALUES ('it''s SELECT [1] \"x\" -- no') SELECT 'Id' = @@IDENTITY");
  ASSERT_EQ(results.size(), 2U) << client->Failure();
  EXPECT_EQ(results[0].Count, 1);
  EXPECT_EQ(results[1].Names, std::vector<std::string>{"Id"});
  EXPECT_EQ(results[1].Rows, (Rows{{"1"}}));
  EXPECT_EQ(client->Value("SELECT v FROM #t"), "it's SELECT [1] \"x\" -- no");
}

TEST_F(TdsServerTest, IdentityOfAPreparedInsertIsTheOnlyResult) {
  client->RunAll({"CREATE TABLE #t (Id int IDENTITY PRIMARY KEY, v varchar(60))"});
  client->Renew();
  std::string text = "x";
  SQLLEN length = 0;
  Prepare("INSERT INTO #t (v) VALUES (?) SELECT 'Id' = @@IDENTITY");
  BindText(1, SQL_VARCHAR, text, length);
  const auto results = Execute();
  ASSERT_EQ(results.size(), 1U) << client->Failure();
  EXPECT_EQ(results[0].Rows, (Rows{{"1"}}));
}

TEST_F(TdsServerTest, FailuresHaveStatesAndNumbers) {
  client->RunAll({"CREATE TABLE #p (id int PRIMARY KEY, v varchar(3) NOT NULL, d datetime)",
                  "INSERT INTO #p (id, v) VALUES (1, 'a')"});
  const std::vector<std::pair<std::string, std::string>> failures = {
      {"SELECT * FROM none", "42S02 208 "},
      {"SELECT none FROM #p", "42S22 207 "},
      {"INSERT INTO #p (id, v) VALUES (1, 'b')", "23000 2627 "},
      {"INSERT INTO #p (id) VALUES (2)", "23000 515 "},
      {"INSERT INTO #p (id, v) VALUES (2, 'long')", "22001 8152 "},
      {"INSERT INTO #p (id, v, d) VALUES (2, 'b', 'x')", "22007 241 "},
      {"SELECT 1 / 0", "22012 8134 "},
      {"SELECT FROM WHERE", "42000 102 "},
      {"EXEC none", "42000 2812 "},
  };
  for (const auto& [sql, failure] : failures) {
    client->Run(sql);
    EXPECT_EQ(client->Failure().substr(0, failure.size()), failure) << sql << ": " << client->Failure();
    EXPECT_EQ(client->Value("SELECT COUNT(*) FROM #p"), "1");
  }
}

/// A type of columns: a literal of it, that value as a text, and what the driver calls the type.
struct Kind {
  const char* Type;
  const char* Literal;
  const char* Shown;
  SQLSMALLINT Code;
};
constexpr Kind kKinds[] = {
    {"int", "-7", "-7", SQL_INTEGER},
    {"smallint", "300", "300", SQL_SMALLINT},
    {"tinyint", "200", "200", SQL_TINYINT},
    {"bigint", "9007199254740993", "9007199254740993", SQL_BIGINT},
    {"bit", "1", "1", SQL_BIT},
    {"real", "1.5", "1.5", SQL_REAL},
    {"float", "2.25", "2.25", SQL_DOUBLE},
    {"numeric(12,3)", "12345.678", "12345.678", SQL_NUMERIC},
    {"decimal(9,2)", "-1.5", "-1.50", SQL_NUMERIC},
    {"money", "12.5", "12.5000", SQL_DECIMAL},
    {"smallmoney", "-2", "-2.0000", SQL_DECIMAL},
    {"char(3)", "'a'", "a  ", SQL_CHAR},
    {"varchar(20)", "'it''s'", "it's", SQL_VARCHAR},
    {"nchar(3)", "N'\xD0\x96'", "\xD0\x96  ", SQL_WCHAR},
    {"nvarchar(20)", "N'\xE2\x82\xAC \xE4\xB8\xAD \xF0\x9F\x98\x80'", "\xE2\x82\xAC \xE4\xB8\xAD \xF0\x9F\x98\x80",
     SQL_WVARCHAR},
    {"text", "'long'", "long", SQL_LONGVARCHAR},
    {"ntext", "N'\xD0\x96'", "\xD0\x96", SQL_WLONGVARCHAR},
    {"image", "0x00FF", "00ff", SQL_LONGVARBINARY},
    {"binary(3)", "0x01", "010000", SQL_BINARY},
    {"varbinary(9)", "0xABCD", "abcd", SQL_VARBINARY},
    {"datetime", "'11/20/26 2:03:05 PM'", "2026-11-20 14:03:05.000", SQL_TYPE_TIMESTAMP},
    {"smalldatetime", "'2026-11-20 14:03'", "2026-11-20 14:03:00", SQL_TYPE_TIMESTAMP},
    {"uniqueidentifier", "'00112233-4455-6677-8899-AABBCCDDEEFF'", "00112233-4455-6677-8899-AABBCCDDEEFF", SQL_GUID},
};

TEST_F(TdsServerTest, ValuesOfEveryTypeComeBack) {
  for (const Kind& kind : kKinds) {
    const std::string type = kind.Type;
    client->RunAll({"CREATE TABLE #t (v " + type + ")", "INSERT INTO #t VALUES (" + std::string(kind.Literal) + ")",
                    "INSERT INTO #t VALUES (NULL)"});
    const auto results = client->Run("SELECT v FROM #t");
    ASSERT_EQ(results.size(), 1U) << client->Failure();
    EXPECT_EQ(results[0].Rows, (Rows{{kind.Shown}, {"NULL"}})) << type;
    client->Renew();
    SQLLEN code = 0;
    SQLExecDirect(client->Statement(), Sql("SELECT v FROM #t"), SQL_NTS);
    SQLColAttribute(client->Statement(), 1, SQL_DESC_CONCISE_TYPE, nullptr, 0, nullptr, &code);
    EXPECT_EQ(code, kind.Code) << type;
    client->RunAll({"DROP TABLE #t"});
  }
}

TEST_F(TdsServerTest, LongValuesGoInAndOut) {
  client->RunAll({"CREATE TABLE #t (b image, t text, n ntext)"});
  std::string bytes;
  bytes.resize(20'000'000);
  for (std::size_t place = 0; place < bytes.size(); ++place) bytes[place] = static_cast<char>(place * 7);
  std::string narrow(100'000, 'x');
  std::string wide = narrow + "\xD0\x96";
  std::array<SQLLEN, 3> lengths{};
  client->Renew();
  Prepare("INSERT INTO #t VALUES (?, ?, ?)");
  BindText(1, SQL_LONGVARBINARY, bytes, lengths[0]);
  BindText(2, SQL_LONGVARCHAR, narrow, lengths[1]);
  BindText(3, SQL_WLONGVARCHAR, wide, lengths[2]);
  Execute();
  ASSERT_EQ(client->Failure(), "");
  EXPECT_EQ(client->Value("SELECT t FROM #t"), narrow);
  EXPECT_EQ(client->Value("SELECT n FROM #t"), wide);
  client->Renew();
  SQLExecDirect(client->Statement(), Sql("SELECT b FROM #t"), SQL_NTS);
  ASSERT_TRUE(client->Check(SQLFetch(client->Statement())));
  std::string back(bytes.size(), '\0');
  SQLLEN length = 0;
  SQLGetData(client->Statement(), 1, SQL_C_BINARY, back.data(), static_cast<SQLLEN>(back.size()), &length);
  EXPECT_EQ(length, static_cast<SQLLEN>(bytes.size()));
  EXPECT_TRUE(back == bytes);
}

TEST_F(TdsServerTest, ProcedureGivesRowsStatusAndOutput) {
  const std::string name = Own("PROCEDURE");
  client->RunAll({"CREATE PROCEDURE " + name + " @a int, @b int OUTPUT AS SELECT @a AS a SET @b = @a + @b RETURN 7"});
  SQLINTEGER status = 0;
  SQLINTEGER a = 1;
  SQLINTEGER b = 2;
  std::array<SQLLEN, 3> lengths{};
  client->Renew();
  Prepare(("{? = call " + name + " (?, ?)}").c_str());
  BindNumber(1, SQL_PARAM_OUTPUT, status, lengths[0]);
  BindNumber(2, SQL_PARAM_INPUT, a, lengths[1]);
  BindNumber(3, SQL_PARAM_INPUT_OUTPUT, b, lengths[2]);
  const auto results = Execute();
  ASSERT_EQ(results.size(), 1U) << client->Failure();
  EXPECT_EQ(results[0].Rows, (Rows{{"1"}}));
  EXPECT_EQ(status, 7);
  EXPECT_EQ(b, 3);
}

TEST_F(TdsServerTest, CatalogTellsTablesColumnsKeysAndParameters) {
  const std::string table = Own("TABLE");
  const std::string procedure = Own("PROCEDURE");
  client->RunAll({"CREATE TABLE " + table + " (id int IDENTITY PRIMARY KEY, v varchar(20) NOT NULL, n numeric(9,2))",
                  "CREATE PROCEDURE " + procedure + " @a int, @b varchar(5) OUTPUT AS RETURN"});
  SQLHSTMT statement = client->Statement();
  const auto name = [](const std::string& text) { return Sql(text.c_str()); };
  client->Renew();
  const auto columns = client->Results(SQLColumns(statement, nullptr, 0, nullptr, 0, name(table), SQL_NTS, nullptr, 0));
  ASSERT_EQ(columns.size(), 1U) << client->Failure();
  ASSERT_EQ(columns[0].Rows.size(), 3U);
  EXPECT_EQ(columns[0].Rows[0][5], "int identity");
  EXPECT_EQ(columns[0].Rows[1][4], std::to_string(SQL_VARCHAR));
  EXPECT_EQ(columns[0].Rows[2][6], "9");
  client->Renew();
  const auto keys = client->Results(SQLPrimaryKeys(statement, nullptr, 0, nullptr, 0, name(table), SQL_NTS));
  EXPECT_EQ(keys.at(0).Rows.at(0).at(3), "id");
  client->Renew();
  const auto tables = client->Results(SQLTables(statement, nullptr, 0, nullptr, 0, name(table), SQL_NTS, nullptr, 0));
  EXPECT_EQ(tables.at(0).Rows.at(0).at(3), "TABLE");
  client->Renew();
  const auto parameters =
      client->Results(SQLProcedureColumns(statement, nullptr, 0, nullptr, 0, name(procedure), SQL_NTS, nullptr, 0));
  ASSERT_EQ(parameters.at(0).Rows.size(), 3U);
  EXPECT_EQ(parameters[0].Rows[0][3], "@RETURN_VALUE");
  EXPECT_EQ(parameters[0].Rows[2][4], std::to_string(SQL_PARAM_INPUT_OUTPUT));
}

TEST_F(TdsServerTest, ColumnsKnowTheirTablesAndNames) {
  client->RunAll({"CREATE TABLE #t (id int IDENTITY PRIMARY KEY, v int)"});
  client->Renew();
  SQLExecDirect(client->Statement(), Sql("SELECT id, v AS w, v + 1 AS x FROM #t"), SQL_NTS);
  const auto text = [&](SQLUSMALLINT column, SQLUSMALLINT field) {
    std::array<char, 130> buffer{};
    SQLColAttribute(client->Statement(), column, field, buffer.data(), static_cast<SQLSMALLINT>(buffer.size()), nullptr,
                    nullptr);
    return std::string(buffer.data());
  };
  SQLLEN counts = 0;
  SQLColAttribute(client->Statement(), 1, SQL_DESC_AUTO_UNIQUE_VALUE, nullptr, 0, nullptr, &counts);
  EXPECT_EQ(counts, SQL_TRUE);
  EXPECT_EQ(text(1, SQL_DESC_BASE_TABLE_NAME), "#t");
  EXPECT_EQ(text(2, SQL_DESC_BASE_TABLE_NAME), "#t");
  EXPECT_EQ(text(2, SQL_DESC_BASE_COLUMN_NAME), "v");
  EXPECT_EQ(text(3, SQL_DESC_BASE_TABLE_NAME), "");
}

/// A scrolling cursor over whole numbers, in blocks of three.
class TdsCursor {
 public:
  TdsCursor(SQLHDBC connection, SQLULEN type, const char* sql) {
    SQLAllocHandle(SQL_HANDLE_STMT, connection, &statement_);
    SQLSetStmtAttr(statement_, SQL_ATTR_CURSOR_TYPE, reinterpret_cast<SQLPOINTER>(type), 0);
    SQLSetStmtAttr(statement_, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(numbers_.size()), 0);
    SQLSetStmtAttr(statement_, SQL_ATTR_ROWS_FETCHED_PTR, &count_, 0);
    SQLBindCol(statement_, 1, SQL_C_SLONG, numbers_.data(), 0, lengths_.data());
    EXPECT_TRUE(SQL_SUCCEEDED(SQLExecDirect(statement_, Sql(sql), SQL_NTS)));
  }
  ~TdsCursor() { SQLFreeHandle(SQL_HANDLE_STMT, statement_); }
  TdsCursor(const TdsCursor&) = delete;
  TdsCursor& operator=(const TdsCursor&) = delete;

  SQLSMALLINT Columns() const {
    SQLSMALLINT count = 0;
    SQLNumResultCols(statement_, &count);
    return count;
  }
  /// The numbers of the block; -1 for NULL.
  std::vector<int> Move(SQLSMALLINT direction, SQLLEN offset = 0) {
    if (!SQL_SUCCEEDED(SQLFetchScroll(statement_, direction, offset))) return {};
    std::vector<int> block;
    for (SQLULEN row = 0; row < count_; ++row) block.push_back(lengths_[row] == SQL_NULL_DATA ? -1 : numbers_[row]);
    return block;
  }

 private:
  SQLHSTMT statement_ = nullptr;
  std::array<SQLINTEGER, 3> numbers_{};
  std::array<SQLLEN, 3> lengths_{};
  SQLULEN count_ = 0;
};

TEST_F(TdsServerTest, ScrollingCursorsMoveInBlocks) {
  client->RunAll({"CREATE TABLE #t (id int PRIMARY KEY)",
                  "DECLARE @i int SET @i = 0 WHILE @i < 10 BEGIN SET @i = @i + 1 INSERT INTO #t VALUES (@i) END"});
  for (const SQLULEN type : {SQL_CURSOR_STATIC, SQL_CURSOR_KEYSET_DRIVEN}) {
    TdsCursor cursor(client->Connection(), type, "SELECT id FROM #t ORDER BY id");
    EXPECT_EQ(cursor.Columns(), 1);
    using Numbers = std::vector<int>;
    EXPECT_EQ(cursor.Move(SQL_FETCH_NEXT), (Numbers{1, 2, 3}));
    EXPECT_EQ(cursor.Move(SQL_FETCH_NEXT), (Numbers{4, 5, 6}));
    EXPECT_EQ(cursor.Move(SQL_FETCH_LAST), (Numbers{8, 9, 10}));
    EXPECT_EQ(cursor.Move(SQL_FETCH_PRIOR), (Numbers{5, 6, 7}));
    EXPECT_EQ(cursor.Move(SQL_FETCH_ABSOLUTE, 9), (Numbers{9, 10}));
    EXPECT_EQ(cursor.Move(SQL_FETCH_ABSOLUTE, -2), (Numbers{9, 10}));
    EXPECT_EQ(cursor.Move(SQL_FETCH_RELATIVE, -4), (Numbers{5, 6, 7}));
    EXPECT_EQ(cursor.Move(SQL_FETCH_ABSOLUTE, 50), Numbers{});
    EXPECT_EQ(cursor.Move(SQL_FETCH_PRIOR), (Numbers{8, 9, 10}));
    EXPECT_EQ(cursor.Move(SQL_FETCH_FIRST), (Numbers{1, 2, 3}));
    EXPECT_EQ(cursor.Move(SQL_FETCH_PRIOR), Numbers{});
  }
}

TEST_F(TdsServerTest, CursorWithoutATableHidesItsOwnColumn) {
  TdsCursor cursor(client->Connection(), SQL_CURSOR_STATIC, "SELECT 5 AS a");
  EXPECT_EQ(cursor.Columns(), 1);
  EXPECT_EQ(cursor.Move(SQL_FETCH_FIRST), std::vector<int>{5});
}

TEST_F(TdsServerTest, KeysetShowsChangesAndStaticDoesNot) {
  client->RunAll({"CREATE TABLE #t (id int PRIMARY KEY, n int)", "INSERT INTO #t VALUES (1, 10), (2, 20), (3, 30)"});
  TdsCursor still(client->Connection(), SQL_CURSOR_STATIC, "SELECT n FROM #t ORDER BY id");
  TdsCursor live(client->Connection(), SQL_CURSOR_KEYSET_DRIVEN, "SELECT n FROM #t ORDER BY id");
  client->RunAll({"UPDATE #t SET n = 11 WHERE id = 1", "DELETE #t WHERE id = 2", "INSERT INTO #t VALUES (4, 40)"});
  EXPECT_EQ(still.Move(SQL_FETCH_FIRST), (std::vector<int>{10, 20, 30}));
  EXPECT_EQ(live.Move(SQL_FETCH_FIRST), (std::vector<int>{11, -1, 30}));
}

TEST_F(TdsServerTest, CancelEndsWhatRunsAndLeavesTheConnection) {
  const std::string endless = "WITH g (n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM g) SELECT ";
  for (const std::string& sql : {std::string("WAITFOR DELAY '10:00:00'"), endless + "COUNT(*) FROM g",
                                 endless + "CAST(n AS int) FROM g WHERE n < 2000000000"}) {
    EXPECT_EQ(FailureOfCancelled(sql.c_str()).substr(0, 5), "HY008") << sql;
    EXPECT_EQ(client->Value("SELECT 1"), "1");
  }
}

TEST_F(TdsServerTest, AutocommitOffIsOneTransaction) {
  client->RunAll({"CREATE TABLE #t (a int)"});
  SQLSetConnectAttr(client->Connection(), SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_OFF), 0);
  client->RunAll({"INSERT INTO #t VALUES (1)"});
  EXPECT_EQ(SQLEndTran(SQL_HANDLE_DBC, client->Connection(), SQL_ROLLBACK), SQL_SUCCESS);
  EXPECT_EQ(client->Value("SELECT COUNT(*) FROM #t"), "0");
  client->RunAll({"INSERT INTO #t VALUES (2)"});
  EXPECT_EQ(SQLEndTran(SQL_HANDLE_DBC, client->Connection(), SQL_COMMIT), SQL_SUCCESS);
  SQLSetConnectAttr(client->Connection(), SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_ON), 0);
  EXPECT_EQ(client->Value("SELECT COUNT(*) FROM #t"), "1");
}

TEST_F(TdsServerTest, ConnectionsSeeWhatOthersCommittedAndLoseWhatTheyDidNot) {
  const std::string table = Own("TABLE");
  client->RunAll({"CREATE TABLE " + table + " (a int)"});
  {
    OdbcClient other(connect);
    other.RunAll({"INSERT INTO " + table + " VALUES (1)", "BEGIN TRAN INSERT INTO " + table + " VALUES (2)"});
    EXPECT_EQ(client->Value("SELECT COUNT(*) FROM " + table), "1");
  }
  client->RunAll({"INSERT INTO " + table + " VALUES (3)"});
  EXPECT_EQ(client->Value("SELECT SUM(a) FROM " + table), "4");
}

}  // namespace
}  // namespace velmoria::test
