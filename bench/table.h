#pragma once

#include <string>

/// The tables "rows" and "few" of 8 mixed columns, filled alike.
constexpr int Rows = 1000000;
constexpr int FewRows = 100000;

/// The connect string of a SQLite database with both tables, which is made at the first call. It does not wait for the
/// disk, so that figures of writing are those of the code.
const std::string& BenchDatabase();

/// Makes the database known to the framework: a class "Row" whose action "Get" finds one of "rows" by its Id, while
/// "All" gives "few", and a class "HostRow" of the same with a host class around each object.
void DescribeBenchDatabase();
