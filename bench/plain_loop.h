#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class Connected;

/// The yardstick: runs the text and fetches its rows in blocks of 1,000 into buffers that are used again and again.
/// Ends the program when it does not see the expected number of rows.
void FetchPlainly(const std::string& connectString, const std::string& text, int expectedRows);

/// The yardstick of single rows: per request the text with a key behind it is prepared and executed, a row fetched, the
/// statement freed.
void FetchByKeyPlainly(const Connected& connected, const std::string& text, int requests, int rows);

/// A row as a host without a framework would hold it.
struct PlainRow {
  std::int32_t Id = 0;
  std::int32_t CustomerId = 0;
  std::string Number;
  std::string Note;
  double Amount = 0;
  double Total = 0;
  std::int64_t Placed = 0;  // seconds of its day and days, packed: comparable
  bool NoteIsNull = false;
  std::int16_t Status = 0;
};

/// The yardstick of collections: the rows of the text, fetched in the same blocks, as structs. The total has to come as
/// a double.
std::vector<PlainRow> FetchRowsPlainly(const std::string& connectString, const std::string& text);

/// The yardstick of writing: each text prepared, executed and freed, each committed by itself. Texts are made as they
/// are needed, by their number from 1.
void WritePlainly(const Connected& connected, int texts, const std::function<std::string(int)>& textOf);
