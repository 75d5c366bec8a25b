#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "tests/support/fake_values.h"

namespace velmoria::test {

struct FakeBoundParameter {
  odbc::Small CType;
  odbc::Small Type;
  void* Value;
  odbc::Length* Indicator;
  odbc::Small Direction;
  odbc::Length Capacity;
};

/// A handle of a driver in memory. All but the first three is a statement's.
struct FakeHandle {
  odbc::Small Kind;
  odbc::Handle Parent;
  int Number = 0;  // of a connection
  bool Scrolling = false;
  odbc::ULength ArraySize = 1;
  odbc::Word* Status = nullptr;
  odbc::ULength* Fetched = nullptr;
  bool OfCatalogue = false;
  bool OfOutputs = false;
  int Result = 0;                           // of the execution, from 0
  std::size_t Next = 0;                     // the row that the next fetch begins with
  std::size_t First = 0;                    // of the rows of the last fetch
  std::size_t Current = 0;                  // the row that GetData reads
  std::map<odbc::Word, std::size_t> Given;  // how much of a value GetData has given
  std::map<odbc::Word, FakeBinding> Bindings;
  std::vector<FakeBoundParameter> Bound;
};

}  // namespace velmoria::test
