#pragma once

struct Backend;

/// One row and one object by key at a time, beside the same statement prepared, executed, fetched and freed.
void BenchByKey(const Backend& backend);

/// One row changed, made and deleted at a time, beside the same texts prepared, executed and freed.
void BenchWrites(const Backend& backend);
