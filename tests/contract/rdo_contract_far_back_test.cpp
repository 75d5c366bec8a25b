#include <cstdlib>
#include <string>
#include <vector>

#include "tests/contract/rdo_contract.h"
#include "tests/support/open_files.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/sqlite_file.h"
#include "tests/support/temporary_folder.h"

namespace velmoria::test {
namespace {

constexpr int kPage = 500;

// Some 900 bytes a row, in columns that no driver takes for long ones.
const std::string kFillers = "w1 varchar(225), w2 varchar(225), w3 varchar(225), w4 varchar(225)";
const std::string kFiller(225, 'x');
const std::string kFilling = "'" + kFiller + "', '" + kFiller + "', '" + kFiller + "', '" + kFiller + "'";
const std::string kFilled = "8:" + kFiller + "|8:" + kFiller + "|8:" + kFiller + "|8:" + kFiller + "|";

const OpenResultsetArguments kOnlyReads = {.Type = rdOpenKeyset, .Repeatable = true};

using Texts = std::vector<std::string>;

/// The values of a row with their types. A page that is held would keep its rows in memory.
std::string TextOf(const RowBlock& rows, std::size_t row) {
  std::string text;
  for (std::size_t column = 0; column < rows.Columns(); ++column) {
    const auto value = rows.Value(column, row);
    text += std::to_string(static_cast<int>(value.Type())) + ":" + (value.IsNull() ? "" : value.AsText()) + "|";
  }
  return text;
}

/// The rows from the current one on, so many pages of them.
Texts ReadPages(rdoResultset& result, int pages) {
  Texts texts;
  for (; pages > 0 && !result.AtEOF(); --pages) {
    const auto rows = result.GetRows(kPage);
    for (std::size_t row = 0; row < rows.Rows(); ++row) texts.push_back(TextOf(rows, row));
  }
  return texts;
}

/// Expects the rows that were read from the first on: here and there, backwards, and then all of them.
void ExpectSameRows(rdoResultset& result, const Texts& expected) {
  const int pages = static_cast<int>(expected.size()) / kPage;
  for (int page = pages - 1; page >= 0; page -= 7) {
    result.SetBookmark(kPage * page + 1);
    ASSERT_EQ(ReadPages(result, 1).at(0), expected.at(static_cast<std::size_t>(kPage * page))) << page;
  }
  result.MoveFirst();
  EXPECT_TRUE(ReadPages(result, pages) == expected);
}

/// Expects of a result of whole pages the same rows behind a change as before it; gives them.
template <class Change>
Texts ExpectRowsFetchedFirst(rdoResultset& result, int pagesBefore, Change change, int pagesBehind) {
  auto rows = ReadPages(result, pagesBefore);
  change();
  const auto rest = ReadPages(result, pagesBehind);
  EXPECT_TRUE(result.AtEOF());
  rows.insert(rows.end(), rest.begin(), rest.end());
  EXPECT_EQ(rows.size(), static_cast<std::size_t>(kPage * (pagesBefore + pagesBehind)));
  ExpectSameRows(result, rows);
  return rows;
}

/// Where files without a name are made meanwhile.
struct FileFolder {
  TemporaryFolder Folder;
  ScopedVariable Variable{"TMPDIR", Folder.Path().c_str()};
  std::size_t Files() const { return NamelessFilesIn(Folder.Path()).size(); }
};

class FarBackContract : public RdoContract {
 protected:
  FileFolder temporary;
};

TEST_P(FarBackContract, RowsOfEveryTypeAreThoseThatWereFetchedFirst) {
  MakeKinds();
  for (const char* const name : {"w1", "w2", "w3", "w4"}) {
    Run("ALTER TABLE {t}kinds ADD " + std::string(name) + " varchar(225)");
  }
  Run("INSERT INTO {t}kinds (i, s, b, d, n, v, da, ti, ts, f, y, l, w1, w2, w3, w4) SELECT n, 300, 9007199254740993, "
      "1.5, 12345.678,"
      " 'O''Neil \xE2\x82\xAC\xC3\x9F', '2026-11-20', '14:03:05', '2026-11-20 14:03:05', '1', 200, 'long', " +
      kFilling + " FROM ( " + Numbers(9000) + " ) AS t");
  Run("INSERT INTO {t}kinds (v, w1, w2, w3, w4) SELECT '', " + kFilling + " FROM ( " + Numbers(9000) + " ) AS t");
  const auto result = Query("SELECT * FROM {t}kinds")->OpenResultset(kOnlyReads);
  const auto change = [this] {
    Run("UPDATE {t}kinds SET i = -1, v = 'changed', da = NULL WHERE id < 5000");
    Run("DELETE FROM {t}kinds WHERE id > 100 AND id < 300");
    Run("INSERT INTO {t}kinds (v) VALUES ('newer')");
  };
  ExpectRowsFetchedFirst(*result, 30, change, 6);
  EXPECT_EQ(temporary.Files(), 1U);
}

INSTANTIATE_TEST_SUITE_P(, FarBackContract, ::testing::ValuesIn(RdoProfiles()),
                         [](const auto& tested) { return tested.param.Name; });

/// A large table of a file that others write to while rows of it come as they are asked for.
class SqliteFarBackContract : public testing::Test {
 protected:
  SqliteFile file{
      "PRAGMA journal_mode = wal;"
      "CREATE TABLE far ( id integer PRIMARY KEY, name varchar(40), " +
      kFillers +
      " );"
      "INSERT INTO far WITH RECURSIVE g(n) AS ( SELECT 1 UNION ALL SELECT n + 1 FROM g WHERE n < 15000 )"
      " SELECT n, 'Größe 漢字 🚀 ' || n, " +
      kFilling + " FROM g;"};
  FileFolder temporary;
  rdoEnvironmentPtr environment = Make<rdoEngine>()->rdoCreateEnvironment("", "", "");
  rdoConnectionPtr connection = environment->OpenConnection(
      {.Prompt = rdDriverNoPrompt, .Connect = file.ConnectString() + ";StepAPI=1;JournalMode=WAL"});

  rdoResultsetPtr Open() { return connection->rdoTables()->Item("far")->OpenResultset(kOnlyReads); }
  void MakeLong(int row) {
    file.Run("UPDATE far SET name = '" + std::string(5000, 'y') + "' WHERE id = " + std::to_string(row));
  }
};

TEST_F(SqliteFarBackContract, RowsAreThoseThatWereFetchedFirstWhateverOthersWrite) {
  const auto result = Open();
  const auto change = [this] {
    file.Run(
        "UPDATE far SET id = id + 100000 WHERE id < 100; DELETE FROM far WHERE id > 7000 AND id < 8000;"
        "UPDATE far SET name = NULL WHERE id < 5000; INSERT INTO far (id, name) VALUES (-5, 'newer')");
  };
  const auto rows = ExpectRowsFetchedFirst(*result, 26, change, 4);
  EXPECT_EQ(rows.at(0), "3:1|8:Größe 漢字 🚀 1|" + kFilled);
  EXPECT_EQ(temporary.Files(), 1U);
}

TEST_F(SqliteFarBackContract, AValueLongerThanItsColumnIsReadWholeBehindManyRows) {
  MakeLong(14000);
  const auto result = Open();
  const auto rows = ReadPages(*result, 30);
  ASSERT_EQ(rows.size(), 15000U);
  EXPECT_EQ(rows[13999], "3:14000|8:" + std::string(5000, 'y') + "|" + kFilled);
  EXPECT_EQ(temporary.Files(), 1U);
  ExpectSameRows(*result, rows);
}

TEST_F(SqliteFarBackContract, AValueLongerThanItsColumnIsRefusedBehindRowsThatHaveChanged) {
  MakeLong(14000);
  const auto result = Open();
  const auto rows = ReadPages(*result, 26);
  file.Run("INSERT INTO far (id, name) VALUES (-5, 'newer')");
  ExpectRdoFailure(rdErrClosed, "rows of the result have changed", [&] { ReadPages(*result, 4); });
  EXPECT_EQ(result->AbsolutePosition(), 13001);
  EXPECT_EQ(temporary.Files(), 1U);
  ExpectSameRows(*result, rows);
}

/// A table so large that the server would rather begin in its middle, where it has read last.
class PostgresFarBackContract : public testing::Test {
 protected:
  void SetUp() override {
    const char* const connect = std::getenv("VELMORIA_TEST_PG");
    if (connect == nullptr || *connect == '\0') GTEST_SKIP() << "VELMORIA_TEST_PG holds no connect string";
    environment = Make<rdoEngine>()->rdoCreateEnvironment("", "", "");
    other = Connect(connect);
    connection = Connect(std::string(connect) + ";UseDeclareFetch=1;Fetch=1000");
    Change("CREATE TABLE velmoria_far ( id int, " + kFillers + " )");
    Change("INSERT INTO velmoria_far SELECT n, " + kFilling + " FROM generate_series(1, 100000) AS g(n)");
  }
  void TearDown() override {
    if (connection) connection->Close();
    if (other) Change("DROP TABLE velmoria_far");
  }
  rdoConnectionPtr Connect(const std::string& text) {
    return environment->OpenConnection({.Prompt = rdDriverNoPrompt, .Connect = text});
  }
  void Change(const std::string& text) { other->CreateQuery("", text)->Execute(); }

  FileFolder temporary;
  rdoEnvironmentPtr environment;
  rdoConnectionPtr connection;
  rdoConnectionPtr other;
};

TEST_F(PostgresFarBackContract, RowsAreThoseThatWereFetchedFirstWhateverOthersWrite) {
  const auto result = connection->rdoTables()->Item("velmoria_far")->OpenResultset(kOnlyReads);
  const auto change = [this] {
    Change("UPDATE velmoria_far SET w1 = 'changed' WHERE id < 1000");
    Change("DELETE FROM velmoria_far WHERE id > 70000 AND id < 80000");
    Change("INSERT INTO velmoria_far (id, w1) VALUES (0, 'newer')");
  };
  ExpectRowsFetchedFirst(*result, 150, change, 50);
  EXPECT_EQ(temporary.Files(), 1U);
}

TEST_F(PostgresFarBackContract, ALargeTableIsReadFromItsBeginningEachTime) {
  for (int time = 0; time < 3; ++time) {
    const auto result = connection->rdoTables()->Item("velmoria_far")->OpenResultset(kOnlyReads);
    EXPECT_EQ(ReadPages(*result, 1 + 40 * time).at(0), "3:1|" + kFilled) << time;
  }
}

}  // namespace
}  // namespace velmoria::test
