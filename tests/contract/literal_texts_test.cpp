// What is written as a literal is read back as it was, whatever it holds.

#include <array>
#include <random>

#include "tests/contract/rdo_contract.h"
#include "velmoria/data/sql_clauses_impl.h"
#include "velmoria/runtime/utf8_impl.h"

namespace velmoria::test {
namespace {

constexpr int kTexts = 100000;
constexpr int kTextsOfAStatement = 100;
constexpr int kMostCharacters = 24;
constexpr std::uint64_t kSeed = 20260317;

/// Texts of characters that mean something to a server or a driver, and of all others but 0.
class Texts {
 public:
  std::string Next() {
    std::string text;
    for (int left = Below(kMostCharacters + 1); left > 0; --left) AppendNext(text);
    return text;
  }

 private:
  int Below(int end) { return std::uniform_int_distribution(0, end - 1)(engine_); }

  void AppendNext(std::string& text) {
    constexpr std::array kSigns = {"'",  "''", "\\", "\\'", "\"", "`",  "?",  "%",  "_",  ";",  "--", "/*",
                                   "*/", "{",  "}",  "[",   "]",  "$$", ":a", "\n", "\r", "\t", " ",  "N'"};
    constexpr std::array<int, 4> kEnds = {0x80, 0x800, 0x10000, 0x110000};
    if (Below(2) == 0) {
      text += kSigns[static_cast<std::size_t>(Below(static_cast<int>(kSigns.size())))];
      return;
    }
    auto code = 1 + Below(kEnds[static_cast<std::size_t>(Below(4))] - 1);
    if (code >= 0xD800 && code <= 0xDFFF) code -= 0x800;  // halves of a pair are no characters
    AppendUtf8(text, static_cast<char32_t>(code));
  }

  std::mt19937_64 engine_{kSeed};
};

std::string InsertStatement(const std::vector<std::string>& texts, std::size_t first, zEngines engine) {
  std::string sql = "INSERT INTO {t}texts VALUES ";
  for (std::size_t place = first; place < first + kTextsOfAStatement; ++place) {
    if (place != first) sql += ", ";
    sql += "(" + std::to_string(place) + ", ";
    sql::AppendLiteral(sql, texts[place], dtString, engine);
    sql += ")";
  }
  return sql;
}

TEST_P(RdoContract, HundredThousandTextsWrittenAsLiteralsComeBackEqual) {
  if (!Profile().WhyNothingLong.empty()) GTEST_SKIP() << Profile().WhyNothingLong;
  Texts random;
  std::vector<std::string> texts(kTexts);
  for (auto& text : texts) text = random.Next();
  Run("CREATE TABLE {t}texts ( n int, w " + Profile().UnicodeText + "(200) )");
  connection->BeginTrans();
  for (std::size_t first = 0; first < kTexts; first += kTextsOfAStatement) {
    const auto query = Query(InsertStatement(texts, first, Profile().JoinsLines ? engSQLServer : engODBC));
    query->SetPrepared(first % 200 == 0);
    query->Execute();
  }
  connection->CommitTrans();
  const auto block = Rows("SELECT n, w FROM {t}texts ORDER BY n")->GetRows(kTexts + 1);
  ASSERT_EQ(block.Rows(), std::size_t{kTexts});
  int different = 0;
  for (std::size_t row = 0; row < kTexts; ++row) {
    if (block.Value(1, row) == Variant(texts[row])) continue;
    if (++different <= 5) ADD_FAILURE() << row << ": " << ::testing::PrintToString(texts[row]);
  }
  EXPECT_EQ(different, 0);
}

}  // namespace
}  // namespace velmoria::test
