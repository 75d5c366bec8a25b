#include "plain_loop.h"

#include <cstring>

#include "measure.h"
#include "plain_odbc.h"

namespace {

constexpr SQLULEN BlockRows = 1000;

/// Runs the text and hands each block, with the number of its rows, to the work.
void ForEachBlock(const std::string& connectString, const std::string& text, auto&& work) {
  const Connected connected(connectString);
  SQLHSTMT statement = connected.Statement();
  SQLULEN fetched = 0;
  SQLSetStmtAttr(statement, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(BlockRows), 0);
  SQLSetStmtAttr(statement, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0);
  Connected::Run(statement, text);
  Block block(BlockRows);
  block.Bind(statement);
  while (SQL_SUCCEEDED(SQLFetchScroll(statement, SQL_FETCH_NEXT, 0))) work(block, fetched);
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
}

std::int64_t Packed(const SQL_TIMESTAMP_STRUCT& at) {
  return ((((at.year * 12LL + at.month) * 31 + at.day) * 24 + at.hour) * 60 + at.minute) * 60 + at.second;
}

PlainRow RowOf(const Block& block, SQLULEN at) {
  const bool noNote = block.Lengths[3][at] == SQL_NULL_DATA;
  double total = 0;
  std::memcpy(&total, block.Total[at].data(), sizeof total);
  return {.Id = block.Id[at],
          .CustomerId = block.CustomerId[at],
          .Number = block.Number[at].data(),
          .Note = noNote ? "" : block.Note[at].data(),
          .Amount = block.Amount[at],
          .Total = total,
          .Placed = Packed(block.Placed[at]),
          .NoteIsNull = noNote,
          .Status = block.Status[at]};
}

}  // namespace

void FetchPlainly(const std::string& connectString, const std::string& text, int expectedRows) {
  SQLULEN rows = 0;
  ForEachBlock(connectString, text, [&rows](const Block&, SQLULEN fetched) { rows += fetched; });
  if (rows != static_cast<SQLULEN>(expectedRows)) Check(SQL_ERROR, "counting the rows");
}

void FetchByKeyPlainly(const Connected& connected, const std::string& text, int requests, int rows) {
  Block row(1);
  for (int request = 0; request < requests; ++request) {
    const int key = Jump(request, rows);
    SQLHSTMT statement = connected.Statement();
    Connected::Run(statement, text + std::to_string(key));
    row.Bind(statement);
    Check(SQLFetch(statement), "SQLFetch");
    if (row.Id[0] != key) Check(SQL_ERROR, "reading the key");
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
  }
}

std::vector<PlainRow> FetchRowsPlainly(const std::string& connectString, const std::string& text) {
  std::vector<PlainRow> rows;
  ForEachBlock(connectString, text, [&rows](const Block& block, SQLULEN fetched) {
    for (SQLULEN at = 0; at < fetched; ++at) rows.push_back(RowOf(block, at));
  });
  return rows;
}

void WritePlainly(const Connected& connected, int texts, const std::function<std::string(int)>& textOf) {
  for (int number = 1; number <= texts; ++number) {
    SQLHSTMT statement = connected.Statement();
    Connected::Run(statement, textOf(number));
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
  }
}
