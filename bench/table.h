#pragma once

#include <string>

/// Makes a SQLite database with the table "rows" of 8 mixed columns; gives the connect string that reaches it.
std::string MakeTable(const std::string& file, int rows);

/// The key that a request asks for: they jump about, the same in every run.
constexpr int KeyOf(int request, int rows) { return 1 + request * 37 % rows; }
