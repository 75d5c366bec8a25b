#pragma once

#include <array>
#include <string>
#include <vector>

#include <sql.h>
#include <sqlext.h>

/// Ends the program when a call of the yardstick failed, with the driver's reason where its handle is given.
void Check(SQLRETURN code, const char* what, SQLSMALLINT handleType = 0, SQLHANDLE handle = nullptr);

/// One connection over ODBC, with nothing between.
class Connected {
 public:
  explicit Connected(const std::string& connectString);
  ~Connected();
  Connected(const Connected&) = delete;
  Connected& operator=(const Connected&) = delete;

  SQLHSTMT Statement() const;
  /// Prepares and executes the text on the statement.
  static void Run(SQLHSTMT statement, const std::string& text);
  void BeginTransaction() const;
  void Commit() const;

 private:
  SQLHENV environment_ = nullptr;
  SQLHDBC connection_ = nullptr;
};

/// The buffers of a block of the tables, column by column.
struct Block {
  explicit Block(SQLULEN rows);
  /// The total lands as a text where the driver says that it is exact, else as a double.
  void Bind(SQLHSTMT statement);

  std::vector<SQLINTEGER> Id;
  std::vector<SQLINTEGER> CustomerId;
  std::vector<std::array<char, 21>> Number;
  std::vector<std::array<char, 61>> Note;
  std::vector<double> Amount;
  std::vector<std::array<char, 16>> Total;
  std::vector<SQL_TIMESTAMP_STRUCT> Placed;
  std::vector<SQLSMALLINT> Status;
  std::array<std::vector<SQLLEN>, 8> Lengths;

 private:
  SQLSMALLINT totalType_ = 0;  // 0 until the first statement was bound
};
