#pragma once

#include <array>
#include <string>
#include <vector>

#include <sql.h>
#include <sqlext.h>

/// Ends the program when a call of the yardstick failed.
void Check(SQLRETURN code, const char* what);

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

 private:
  SQLHENV environment_ = nullptr;
  SQLHDBC connection_ = nullptr;
};

/// The buffers of a block of the table "rows", column by column.
struct Block {
  explicit Block(SQLULEN rows);
  void Bind(SQLHSTMT statement);

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
