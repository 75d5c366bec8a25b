#include "tables.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>

#include "backends.h"
#include "plain_odbc.h"

namespace {

constexpr int RowsOfText = 500;
constexpr const char* Schema =
    "CREATE TABLE %s (id integer primary key, customer_id integer, number varchar(20), note varchar(60), "
    "amount double precision, total numeric(12,2), placed timestamp, status smallint)";

/// Numbers that look random, from a fixed seed.
class Numbers {
 public:
  unsigned Below(unsigned limit) {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = (state_ ^ (state_ >> 30U)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
    return static_cast<unsigned>((mixed ^ (mixed >> 31U)) % limit);
  }

 private:
  std::uint64_t state_ = 20261122;
};

std::string Note(Numbers& numbers) {
  std::string note = "'";
  for (unsigned left = 22 + numbers.Below(33); left > 0; --left)
    note += left % 6 == 1 ? ' ' : static_cast<char>('a' + numbers.Below(26));
  return note + "'";
}

std::string RowText(int id, Numbers& numbers) {
  const auto note = id % 5 == 0 ? std::string("NULL") : Note(numbers);
  char text[256];
  const unsigned customer = 1 + numbers.Below(50000);
  const unsigned cents = numbers.Below(100000000);
  const unsigned day = numbers.Below(28 * 12 * 20);
  const unsigned second = numbers.Below(86400);
  std::snprintf(text, sizeof text, "(%d, %u, 'A-%04u-%05d', %s, %u.%03u, %u.%02u, '%04u-%02u-%02u %02u:%02u:%02u', %u)",
                id, customer, 2000 + day % 20, id % 100000, note.c_str(), numbers.Below(1000000), numbers.Below(1000),
                cents / 100, cents % 100, 2000 + day % 20, 1 + day / 20 % 12, 1 + day / 240, second / 3600,
                second / 60 % 60, second % 60, numbers.Below(6));
  return text;
}

void Execute(const Connected& connected, const std::string& text) {
  SQLHSTMT statement = connected.Statement();
  Connected::Run(statement, text);
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
}

bool IsThere(const Connected& connected, const char* name) {
  SQLHSTMT statement = connected.Statement();
  auto* text = reinterpret_cast<SQLCHAR*>(const_cast<char*>(name));
  Check(SQLTables(statement, nullptr, 0, nullptr, 0, text, SQL_NTS, nullptr, 0), "SQLTables");
  const bool found = SQL_SUCCEEDED(SQLFetch(statement));
  SQLFreeHandle(SQL_HANDLE_STMT, statement);
  return found;
}

void MakeTable(const Connected& connected, const char* name, int rows) {
  if (IsThere(connected, name)) return;
  char schema[512];
  std::snprintf(schema, sizeof schema, Schema, name);
  Execute(connected, schema);
  Numbers numbers;
  std::string text;
  for (int id = 1; id <= rows; ++id) {
    text += text.empty() ? "INSERT INTO " + std::string(name) + " VALUES " : ", ";
    text += RowText(id, numbers);
    if (id % RowsOfText != 0 && id != rows) continue;
    Execute(connected, text);
    text.clear();
  }
}

}  // namespace

void MakeTables(const std::string& connectString) {
  const Connected connected(connectString);
  connected.BeginTransaction();
  MakeTable(connected, "many", Rows);
  MakeTable(connected, "few", FewRows);
  connected.Commit();
}
