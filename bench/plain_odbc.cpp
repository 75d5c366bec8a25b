#include "plain_odbc.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr SQLUSMALLINT TotalColumn = 6;

SQLSMALLINT TotalType(SQLHSTMT statement) {
  SQLLEN type = 0;
  Check(SQLColAttribute(statement, TotalColumn, SQL_DESC_CONCISE_TYPE, nullptr, 0, nullptr, &type), "SQLColAttribute");
  return type == SQL_DOUBLE ? SQL_C_DOUBLE : SQL_C_CHAR;
}

}  // namespace

void Check(SQLRETURN code, const char* what, SQLSMALLINT handleType, SQLHANDLE handle) {
  if (SQL_SUCCEEDED(code)) return;
  SQLCHAR state[6] = "";
  SQLCHAR reason[SQL_MAX_MESSAGE_LENGTH] = "";
  if (handle) SQLGetDiagRec(handleType, handle, 1, state, nullptr, reason, sizeof reason, nullptr);
  std::fprintf(stderr, "the plain loop failed in %s %s %s\n", what, reinterpret_cast<const char*>(state),
               reinterpret_cast<const char*>(reason));
  std::exit(EXIT_FAILURE);
}

Connected::Connected(const std::string& connectString) {
  Check(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_), "SQLAllocHandle");
  Check(SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0),
        "SQLSetEnvAttr");
  Check(SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_), "SQLAllocHandle");
  auto* text = reinterpret_cast<SQLCHAR*>(const_cast<char*>(connectString.c_str()));
  Check(SQLDriverConnect(connection_, nullptr, text, SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT),
        "SQLDriverConnect", SQL_HANDLE_DBC, connection_);
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
  Check(SQLPrepare(statement, reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str())), SQL_NTS), text.c_str(),
        SQL_HANDLE_STMT, statement);
  Check(SQLExecute(statement), text.c_str(), SQL_HANDLE_STMT, statement);
}

void Connected::BeginTransaction() const {
  const auto off = reinterpret_cast<SQLPOINTER>(std::uintptr_t{SQL_AUTOCOMMIT_OFF});
  Check(SQLSetConnectAttr(connection_, SQL_ATTR_AUTOCOMMIT, off, 0), "SQLSetConnectAttr");
}

void Connected::Commit() const { Check(SQLEndTran(SQL_HANDLE_DBC, connection_, SQL_COMMIT), "SQLEndTran"); }

Block::Block(SQLULEN rows)
    : Id(rows), CustomerId(rows), Number(rows), Note(rows), Amount(rows), Total(rows), Placed(rows), Status(rows) {
  for (auto& column : Lengths) column.resize(rows);
}

void Block::Bind(SQLHSTMT statement) {
  if (totalType_ == 0) totalType_ = TotalType(statement);
  const auto bind = [&](SQLUSMALLINT column, SQLSMALLINT type, auto& values) {
    Check(SQLBindCol(statement, column, type, values.data(), sizeof values[0], Lengths[column - 1U].data()),
          "SQLBindCol");
  };
  bind(1, SQL_C_SLONG, Id);
  bind(2, SQL_C_SLONG, CustomerId);
  bind(3, SQL_C_CHAR, Number);
  bind(4, SQL_C_CHAR, Note);
  bind(5, SQL_C_DOUBLE, Amount);
  Check(SQLBindCol(statement, TotalColumn, totalType_, Total.data(), sizeof Total[0], Lengths[TotalColumn - 1U].data()),
        "SQLBindCol");
  bind(7, SQL_C_TYPE_TIMESTAMP, Placed);
  bind(8, SQL_C_SSHORT, Status);
}
