#pragma once

struct Backend;

/// What the way of the rows costs, beside a plain loop that fetches the same blocks through ODBC and keeps nothing.
void BenchRows(const Backend& backend);

/// The same in pages of 500, one held at a time.
void BenchPages(const Backend& backend);

/// What the process grows by for all rows, and for the plain loop and the pages, which keep none.
void BenchRowMemory(const Backend& backend);
