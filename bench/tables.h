#pragma once

#include <string>

/// Makes and fills "many" and "few" over the connect string, unless they are there. The rows are the same everywhere
/// and in every run.
void MakeTables(const std::string& connectString);
