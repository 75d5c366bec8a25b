#pragma once

#include <string>

/// The yardstick: runs the text and fetches its rows in blocks of 1,024 into buffers that are used again and again.
/// Ends the program when it does not see the expected number of rows.
void FetchPlainly(const std::string& connectString, const char* text, int expectedRows);

/// The yardstick of single rows: one connection; per request the text with a key behind it, one fetch, one value read.
void FetchByKeyPlainly(const std::string& connectString, const std::string& text, int requests, int rows);
