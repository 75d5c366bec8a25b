#pragma once

#include <string>

/// Makes a SQLite database with the table "rows" of 8 mixed columns; gives the connect string that reaches it.
std::string MakeTable(const std::string& file, int rows);
