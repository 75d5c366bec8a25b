#include "tests/support/odbc_client.h"

#include <array>

#include <gtest/gtest.h>

namespace velmoria::test {
namespace {

SQLCHAR* Sql(const std::string& text) {
  return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str()));  // the driver only reads it
}

const char* Chars(const SQLCHAR* text) { return reinterpret_cast<const char*>(text); }

}  // namespace

OdbcClient::OdbcClient(const std::string& connect) {
  SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_);
  SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection_);
  const SQLRETURN code =
      SQLDriverConnect(connection_, nullptr, Sql(connect), SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
  connected_ = SQL_SUCCEEDED(code);
  if (connected_) {
    SQLAllocHandle(SQL_HANDLE_STMT, connection_, &statement_);
  } else {
    Note(SQL_HANDLE_DBC, connection_);
  }
}

OdbcClient::~OdbcClient() {
  if (statement_ != nullptr) SQLFreeHandle(SQL_HANDLE_STMT, statement_);
  if (connected_) SQLDisconnect(connection_);
  SQLFreeHandle(SQL_HANDLE_DBC, connection_);
  SQLFreeHandle(SQL_HANDLE_ENV, environment_);
}

void OdbcClient::Note(SQLSMALLINT kind, SQLHANDLE handle) {
  std::array<SQLCHAR, 6> state{};
  std::array<SQLCHAR, 600> text{};
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  SQLGetDiagRec(kind, handle, 1, state.data(), &native, text.data(), static_cast<SQLSMALLINT>(text.size()), &length);
  failure_ = std::string(Chars(state.data())) + " " + std::to_string(native) + " " + Chars(text.data());
}

bool OdbcClient::Check(SQLRETURN code) {
  failure_.clear();
  if (SQL_SUCCEEDED(code) || code == SQL_NO_DATA) return true;
  Note(SQL_HANDLE_STMT, statement_);
  return false;
}

void OdbcClient::Renew() {
  SQLFreeStmt(statement_, SQL_CLOSE);
  SQLFreeStmt(statement_, SQL_UNBIND);
  SQLFreeStmt(statement_, SQL_RESET_PARAMS);
}

std::vector<OdbcResult> OdbcClient::Run(const std::string& sql) {
  Renew();
  return Results(SQLExecDirect(statement_, Sql(sql), SQL_NTS));
}

void OdbcClient::RunAll(std::initializer_list<std::string> texts) {
  for (const std::string& text : texts) {
    Run(text);
    EXPECT_EQ(failure_, "") << text;
  }
}

std::string OdbcClient::Value(const std::string& sql) {
  const auto results = Run(sql);
  EXPECT_EQ(failure_, "") << sql;
  return results.empty() || results.back().Rows.empty() ? "" : results.back().Rows.front().front();
}

std::vector<OdbcResult> OdbcClient::Results(SQLRETURN code) {
  std::vector<OdbcResult> results;
  while (Check(code)) {
    SQLSMALLINT columns = 0;
    SQLNumResultCols(statement_, &columns);
    if (columns > 0 || code != SQL_NO_DATA) results.push_back(Fetched(columns));
    if (!failure_.empty()) break;
    code = SQLMoreResults(statement_);
    if (code == SQL_NO_DATA) break;
  }
  return results;
}

OdbcResult OdbcClient::Fetched(SQLSMALLINT columns) {
  OdbcResult result;
  SQLRowCount(statement_, &result.Count);
  for (SQLUSMALLINT column = 1; column <= columns; ++column) {
    std::array<SQLCHAR, 130> name{};
    SQLColAttribute(statement_, column, SQL_DESC_LABEL, name.data(), static_cast<SQLSMALLINT>(name.size()), nullptr,
                    nullptr);
    result.Names.emplace_back(Chars(name.data()));
  }
  while (columns > 0) {
    const SQLRETURN code = SQLFetch(statement_);
    if (!Check(code) || code == SQL_NO_DATA) break;
    auto& row = result.Rows.emplace_back();
    for (SQLUSMALLINT column = 1; column <= columns; ++column) row.push_back(Text(column));
  }
  return result;
}

std::string OdbcClient::Text(SQLUSMALLINT column) {
  std::string text;
  std::array<char, 4096> part{};
  SQLLEN length = 0;
  SQLRETURN code = SQL_SUCCESS_WITH_INFO;
  while (code == SQL_SUCCESS_WITH_INFO) {
    code = SQLGetData(statement_, column, SQL_C_CHAR, part.data(), static_cast<SQLLEN>(part.size()), &length);
    if (!Check(code)) break;
    if (length == SQL_NULL_DATA) return "NULL";
    if (code != SQL_NO_DATA) text += part.data();
  }
  return text;
}

}  // namespace velmoria::test
