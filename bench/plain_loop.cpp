#include "plain_loop.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <sql.h>
#include <sqlext.h>

#include "table.h"

namespace {

constexpr SQLULEN BlockRows = 1024;

void Check(SQLRETURN code, const char* what) {
  if (SQL_SUCCEEDED(code)) return;
  std::fprintf(stderr, "the plain loop failed in %s\n", what);
  std::exit(EXIT_FAILURE);
}

class Connected {
 public:
  explicit Connected(const std::string& connectString) {
    Check(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_), "SQLAllocHandle");
    Check(SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0),
          "SQLSetEnvAttr");
    Check(SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_), "SQLAllocHandle");
    auto* text = reinterpret_cast<SQLCHAR*>(const_cast<char*>(connectString.c_str()));
    Check(SQLDriverConnect(connection_, nullptr, text, SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT),
          "SQLDriverConnect");
  }
  ~Connected() {
    SQLDisconnect(connection_);
    SQLFreeHandle(SQL_HANDLE_DBC, connection_);
    SQLFreeHandle(SQL_HANDLE_ENV, environment_);
  }
  Connected(const Connected&) = delete;
  Connected& operator=(const Connected&) = delete;

  SQLHSTMT Statement() const {
    SQLHSTMT statement = nullptr;
    Check(SQLAllocHandle(SQL_HANDLE_STMT, connection_, &statement), "SQLAllocHandle");
    return statement;
  }

 private:
  SQLHENV environment_ = nullptr;
  SQLHDBC connection_ = nullptr;
};

/// The buffers of one block, column by column.
struct Block {
  explicit Block(SQLULEN rows)
      : Id(rows), Quantity(rows), Price(rows), Name(rows), Code(rows), Sold(rows), Paid(rows), Units(rows) {
    for (auto& column : Lengths) column.resize(rows);
  }
  void Bind(SQLHSTMT statement) {
    const auto bind = [&](SQLUSMALLINT column, SQLSMALLINT type, void* values, SQLLEN width) {
      Check(SQLBindCol(statement, column, type, values, width, Lengths[column - 1U].data()), "SQLBindCol");
    };
    bind(1, SQL_C_SLONG, Id.data(), sizeof(SQLINTEGER));
    bind(2, SQL_C_SSHORT, Quantity.data(), sizeof(SQLSMALLINT));
    bind(3, SQL_C_DOUBLE, Price.data(), sizeof(double));
    bind(4, SQL_C_CHAR, Name.data(), sizeof Name[0]);
    bind(5, SQL_C_CHAR, Code.data(), sizeof Code[0]);
    bind(6, SQL_C_TYPE_TIMESTAMP, Sold.data(), sizeof(SQL_TIMESTAMP_STRUCT));
    bind(7, SQL_C_BIT, Paid.data(), 1);
    bind(8, SQL_C_SLONG, Units.data(), sizeof(SQLINTEGER));
  }

  std::vector<SQLINTEGER> Id;
  std::vector<SQLSMALLINT> Quantity;
  std::vector<double> Price;
  std::vector<std::array<char, 41>> Name;
  std::vector<std::array<char, 13>> Code;
  std::vector<SQL_TIMESTAMP_STRUCT> Sold;
  std::vector<unsigned char> Paid;
  std::vector<SQLINTEGER> Units;
  std::array<std::vector<SQLLEN>, 8> Lengths;
};

}  // namespace

void FetchPlainly(const std::string& connectString, const char* text, int expectedRows) {
  const Connected connected(connectString);
  SQLHSTMT statement = connected.Statement();
  SQLULEN fetched = 0;
  SQLSetStmtAttr(statement, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(BlockRows), 0);
  SQLSetStmtAttr(statement, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0);
  Block block(BlockRows);
  block.Bind(statement);
  Check(SQLExecDirect(statement, reinterpret_cast<SQLCHAR*>(const_cast<char*>(text)), SQL_NTS), "SQLExecDirect");
  SQLULEN rows = 0;
  while (SQL_SUCCEEDED(SQLFetchScroll(statement, SQL_FETCH_NEXT, 0))) rows += fetched;
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
  if (rows != static_cast<SQLULEN>(expectedRows)) Check(SQL_ERROR, "counting the rows");
}

void FetchByKeyPlainly(const std::string& connectString, const std::string& text, int requests, int rows) {
  const Connected connected(connectString);
  Block row(1);
  for (int request = 0; request < requests; ++request) {
    const int key = KeyOf(request, rows);
    std::string statementText = text + std::to_string(key);
    SQLHSTMT statement = connected.Statement();
    row.Bind(statement);
    Check(SQLExecDirect(statement, reinterpret_cast<SQLCHAR*>(statementText.data()), SQL_NTS), "SQLExecDirect");
    Check(SQLFetch(statement), "SQLFetch");
    if (row.Id[0] != key) Check(SQL_ERROR, "reading the key");
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
  }
}
