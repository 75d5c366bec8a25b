#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include <sql.h>
#include <sqlext.h>

namespace velmoria::test {

/// What one result holds, as texts; "NULL" for NULL. Without columns it is the count of a change.
struct OdbcResult {
  std::vector<std::string> Names;
  std::vector<std::vector<std::string>> Rows;
  SQLLEN Count = -1;
};

/// A connection by plain ODBC calls with one statement, for tests of what a driver and a server do.
class OdbcClient {
 public:
  explicit OdbcClient(const std::string& connect);
  ~OdbcClient();
  OdbcClient(const OdbcClient&) = delete;
  OdbcClient& operator=(const OdbcClient&) = delete;

  bool Connected() const { return connected_; }
  /// "state native text" of the first record of the last failure; "" after success.
  const std::string& Failure() const { return failure_; }

  /// Executes a text and fetches all its results, up to the first failure.
  std::vector<OdbcResult> Run(const std::string& sql);
  /// Executes a text that must not fail.
  void RunAll(std::initializer_list<std::string> texts);
  /// The first value of the first row of the last result; "" without one.
  std::string Value(const std::string& sql);
  /// The results of what was executed on Statement() with this return code.
  std::vector<OdbcResult> Results(SQLRETURN code);

  /// Notes the failure, if it is one; whether the call went well.
  bool Check(SQLRETURN code);
  SQLHSTMT Statement() const { return statement_; }
  SQLHDBC Connection() const { return connection_; }
  /// The statement as new: closed, without bindings.
  void Renew();

 private:
  void Note(SQLSMALLINT kind, SQLHANDLE handle);
  OdbcResult Fetched(SQLSMALLINT columns);
  std::string Text(SQLUSMALLINT column);

  SQLHENV environment_ = nullptr;
  SQLHDBC connection_ = nullptr;
  SQLHSTMT statement_ = nullptr;
  bool connected_ = false;
  std::string failure_;
};

}  // namespace velmoria::test
