#pragma once

#include <string>
#include <vector>

/// The tables "many" and "few" of 8 mixed columns, filled alike: id, customer_id, number, note, amount, total, placed
/// and status, with about 42 bytes of text in a row and no note in every fifth.
constexpr int Rows = 1000000;
constexpr int FewRows = 100000;

/// A driver with its options. The framework knows it as a database of the same name, with a class "Row <name>" whose
/// action "Get" finds rows of "many" by their id, "All" gives "few" and "Page" gives "many" in pages of 500; the class
/// "HostRow <name>" is the same with a host class around each object.
struct Backend {
  std::string Name;
  std::string Connect;
  bool Streams;  // hands on rows as it gets them, instead of keeping the whole result

  std::string Class() const { return "Row " + Name; }
  std::string HostClass() const { return "HostRow " + Name; }
};

/// SQLite; and PostgreSQL, when VELMORIA_BENCH_PG is a connect string of one. None of them waits for the disk, so that
/// figures of writing are those of the code.
const std::vector<Backend>& Backends();

/// What measures no database uses the first one.
const Backend& AnyBackend();

/// Makes the tables where they are not there yet, and describes the database to the framework.
void Prepare(const Backend& backend);
