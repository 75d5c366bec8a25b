#pragma once

/// What a large design costs in time and memory, beside the same fields in plain structs and maps.
void BenchDesignModel();
