#pragma once

#include <string>

#include "tests/support/temporary_folder.h"

struct sqlite3;

namespace velmoria::test {

/// A database file of its own for one test, made and looked at without the library, removed at the end.
class SqliteFile {
 public:
  /// Runs the script of SQL statements in the new file.
  explicit SqliteFile(const std::string& script = {});
  ~SqliteFile();
  SqliteFile(const SqliteFile&) = delete;
  SqliteFile& operator=(const SqliteFile&) = delete;

  std::string Path() const { return folder_.Path("test.db"); }
  /// Complete, for the ODBC driver.
  std::string ConnectString() const { return "Driver=SQLite3;SyncPragma=OFF;Database=" + Path(); }
  void Run(const std::string& script);
  /// The values of the first column of all rows, with "|" between; "NULL" for Null.
  std::string Column(const std::string& query);

 private:
  TemporaryFolder folder_;
  sqlite3* database_ = nullptr;
};

}  // namespace velmoria::test
