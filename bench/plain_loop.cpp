#include "plain_loop.h"

#include "measure.h"
#include "plain_odbc.h"

namespace {

constexpr SQLULEN BlockRows = 1024;

/// Runs the text and hands each block, with the number of its rows, to the work.
void ForEachBlock(const std::string& connectString, const std::string& text, auto&& work) {
  const Connected connected(connectString);
  SQLHSTMT statement = connected.Statement();
  SQLULEN fetched = 0;
  SQLSetStmtAttr(statement, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(BlockRows), 0);
  SQLSetStmtAttr(statement, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0);
  Block block(BlockRows);
  block.Bind(statement);
  Connected::Run(statement, text);
  while (SQL_SUCCEEDED(SQLFetchScroll(statement, SQL_FETCH_NEXT, 0))) work(block, fetched);
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
}

std::int64_t Packed(const SQL_TIMESTAMP_STRUCT& at) {
  return ((((at.year * 12LL + at.month) * 31 + at.day) * 24 + at.hour) * 60 + at.minute) * 60 + at.second;
}

PlainRow RowOf(const Block& block, SQLULEN at) {
  return {.Id = block.Id[at],
          .Quantity = block.Quantity[at],
          .Price = block.Price[at],
          .Name = block.Name[at].data(),
          .Code = block.Lengths[4][at] == SQL_NULL_DATA ? "" : block.Code[at].data(),
          .Sold = Packed(block.Sold[at]),
          .Paid = block.Paid[at] != 0,
          .CodeIsNull = block.Lengths[4][at] == SQL_NULL_DATA,
          .Units = block.Units[at]};
}

}  // namespace

void FetchPlainly(const std::string& connectString, const std::string& text, int expectedRows) {
  SQLULEN rows = 0;
  ForEachBlock(connectString, text, [&rows](const Block&, SQLULEN fetched) { rows += fetched; });
  if (rows != static_cast<SQLULEN>(expectedRows)) Check(SQL_ERROR, "counting the rows");
}

void FetchByKeyPlainly(const std::string& connectString, const std::string& text, int requests, int rows) {
  const Connected connected(connectString);
  Block row(1);
  for (int request = 0; request < requests; ++request) {
    const int key = Jump(request, rows);
    SQLHSTMT statement = connected.Statement();
    row.Bind(statement);
    Connected::Run(statement, text + std::to_string(key));
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

void WritePlainly(const std::string& connectString, const std::vector<std::string>& texts) {
  const Connected connected(connectString);
  for (const auto& text : texts) {
    SQLHSTMT statement = connected.Statement();
    Connected::Run(statement, text);
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
  }
}
