#pragma once

/// What the way of the rows costs, beside a plain loop that fetches the same blocks through ODBC and keeps nothing.
void BenchRows();

/// One object by its key at a time, beside the same statement prepared, executed and fetched.
void BenchByKey();
