#pragma once

#include <string>

/// Makes a SQLite database of 500 customers, 20,000 orders and 60,000 or more order lines in a new file. The same seed
/// gives the same rows on every machine. Throws std::runtime_error when the file cannot be written.
void MakeDatabase(const std::string& file, unsigned seed);
