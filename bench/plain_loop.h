#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The yardstick: runs the text and fetches its rows in blocks of 1,024 into buffers that are used again and again.
/// Ends the program when it does not see the expected number of rows.
void FetchPlainly(const std::string& connectString, const std::string& text, int expectedRows);

/// The yardstick of single rows: one connection; per request the text with a key behind it is prepared and executed, a
/// row fetched, the statement freed.
void FetchByKeyPlainly(const std::string& connectString, const std::string& text, int requests, int rows);

/// A row as a host without a framework would hold it.
struct PlainRow {
  std::int32_t Id = 0;
  std::int16_t Quantity = 0;
  double Price = 0;
  std::string Name;
  std::string Code;
  std::int64_t Sold = 0;  // seconds of its day and days, packed: comparable
  bool Paid = false;
  bool CodeIsNull = false;
  std::int32_t Units = 0;
};

/// The yardstick of collections: the rows of the text, fetched in the same blocks, as structs.
std::vector<PlainRow> FetchRowsPlainly(const std::string& connectString, const std::string& text);

/// The yardstick of writing: one connection, each text prepared, executed and freed, each committed by itself.
void WritePlainly(const std::string& connectString, const std::vector<std::string>& texts);
