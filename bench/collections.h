#pragma once

/// What an object of each type of collection occupies, its row included, beside the plain struct.
void BenchMemory();

/// Walks by position, by range-for and by key, for each type of collection, beside plain structs from the same fetch.
void BenchWalks();
