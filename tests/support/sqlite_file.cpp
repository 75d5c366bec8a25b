#include "tests/support/sqlite_file.h"

#include <stdexcept>

#include <sqlite3.h>

namespace velmoria::test {

SqliteFile::SqliteFile(const std::string& script) {
  if (sqlite3_open(Path().c_str(), &database_) != SQLITE_OK) throw std::runtime_error("cannot make " + Path());
  // Nobody reads the file behind a power cut.
  Run("pragma synchronous = off;" + script);
}

SqliteFile::~SqliteFile() { sqlite3_close(database_); }

void SqliteFile::Run(const std::string& script) {
  if (sqlite3_exec(database_, script.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(database_));
}

std::string SqliteFile::Column(const std::string& query) {
  std::string text;
  const auto append = [](void* place, int, char** values, char**) {
    auto& joined = *static_cast<std::string*>(place);
    if (!joined.empty()) joined += '|';
    joined += values[0] ? values[0] : "NULL";
    return 0;
  };
  if (sqlite3_exec(database_, query.c_str(), append, &text, nullptr) != SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(database_));
  return text;
}

}  // namespace velmoria::test
