#include "plain_odbc.h"

#include <cstdio>
#include <cstdlib>

void Check(SQLRETURN code, const char* what) {
  if (SQL_SUCCEEDED(code)) return;
  std::fprintf(stderr, "the plain loop failed in %s\n", what);
  std::exit(EXIT_FAILURE);
}

Connected::Connected(const std::string& connectString) {
  Check(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_), "SQLAllocHandle");
  Check(SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0),
        "SQLSetEnvAttr");
  Check(SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_), "SQLAllocHandle");
  auto* text = reinterpret_cast<SQLCHAR*>(const_cast<char*>(connectString.c_str()));
  Check(SQLDriverConnect(connection_, nullptr, text, SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT),
        "SQLDriverConnect");
}

Connected::~Connected() {
  SQLDisconnect(connection_);
  SQLFreeHandle(SQL_HANDLE_DBC, connection_);
  SQLFreeHandle(SQL_HANDLE_ENV, environment_);
}

SQLHSTMT Connected::Statement() const {
  SQLHSTMT statement = nullptr;
  Check(SQLAllocHandle(SQL_HANDLE_STMT, connection_, &statement), "SQLAllocHandle");
  return statement;
}

void Connected::Run(SQLHSTMT statement, const std::string& text) {
  Check(SQLPrepare(statement, reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str())), SQL_NTS), "SQLPrepare");
  Check(SQLExecute(statement), "SQLExecute");
}

Block::Block(SQLULEN rows)
    : Id(rows), Quantity(rows), Price(rows), Name(rows), Code(rows), Sold(rows), Paid(rows), Units(rows) {
  for (auto& column : Lengths) column.resize(rows);
}

void Block::Bind(SQLHSTMT statement) {
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
