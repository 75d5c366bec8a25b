#include "velmoria/platform/odbc/markers.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace velmoria::odbc {
namespace {

TEST(MarkersTest, OnlyMarkersOutsideQuotesAndCommentsCount) {
  const std::vector<std::pair<std::string, std::size_t>> texts = {
      {"", 0},
      {"SELECT 1", 0},
      {"SELECT ? + ?", 2},
      {"INSERT INTO t VALUES ( 'What?', ? )", 1},
      {"SELECT 'it''s?' , ?", 1},
      {"SELECT \"odd?name\" FROM t WHERE a = ?", 1},
      {"SELECT [odd?name] FROM t WHERE a = ?", 1},
      {"SELECT `odd?name` FROM t WHERE a = ?", 1},
      {"SELECT 1 -- why?\n, ?", 1},
      {"SELECT 1 -- why?", 0},
      {"SELECT /* ? */ ?", 1},
      {"SELECT '?", 0},
      {"SELECT 4 - ? / ?", 2},
      {"{ call p (?, ?) }", 2},
  };
  for (const auto& [text, markers] : texts) EXPECT_EQ(CountMarkers(text), markers) << text;
}

TEST(MarkersTest, SeveralStatementsAreThoseWithOneBehindAnEnd) {
  const std::vector<std::pair<std::string, bool>> texts = {
      {"", false},
      {"SELECT 1", false},
      {"SELECT 1;", false},
      {"SELECT 1 ; ;\n", false},
      {"SELECT ';' AS a", false},
      {"SELECT 1 /* ; */ + 2", false},
      {"SELECT 1; SELECT 2", true},
      {";SELECT 1", true},
      {"INSERT INTO t VALUES ( ';' );SELECT 1", true},
  };
  for (const auto& [text, several] : texts) EXPECT_EQ(HasSeveralStatements(text), several) << text;
}

}  // namespace
}  // namespace velmoria::odbc
