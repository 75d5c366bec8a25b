#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/odbc_types.h"

namespace velmoria::test {

/// What a test tells a driver in memory to give and to fail, and what the driver has seen.
struct FakeOdbcScript : OdbcTypes {
  struct Column {
    std::string Name;
    Small Type;
    ULength Size = 10;
    bool WithoutSign = false;
  };
  struct Diagnostic {
    std::string State;
    Number Native;
    std::string Text;
  };
  struct Parameter {
    Small CType;
    Small Type;
    bool IsNull;
    std::string Bytes;
    const void* Place;  // where they were read
  };
  using Row = std::vector<std::optional<std::string>>;

  // What it gives.
  std::vector<Column> Columns;
  std::vector<Row> Rows;
  std::vector<Diagnostic> Diagnostics = {{"HY000", 7, "fake failure"}};
  std::string Server = "Fake";
  bool Scrolls = true;
  Word TransactionCapable = 2;   // all statements
  bool NothingAffected = false;  // an execution ends with "no data"
  bool LinkLost = false;         // until the next connect
  std::optional<std::size_t> FailingRow;
  int CountsBefore = 0;               // results without columns before the one with them
  Row Outputs;                        // of the output parameters, in their order; given behind the last result
  std::vector<Column> OutputColumns;  // of a result behind the one with the rows
  std::vector<Row> OutputRows;        // none: there is no such result
  std::vector<Row> Catalogue;         // what SQLProcedureColumns lists, column 1 first
  std::string DriverName = "fake.so";
  /// What a timestamp's structure is given instead of what the text says; an empty text is a Null with zeros in it.
  std::map<std::string, std::string> MisreadAs;
  Word ActiveStatements = 0;  // as many as wanted
  bool TransactionKeepsResults = true;
  bool TellsLengths = true;      // of bytes that GetData has not given whole
  bool TellsTextLengths = true;  // of such a text
  int LostCancels = 0;           // so many come before the execution that they mean

  // What fails: the n-th of all calls (freeing is not counted), or every call of a name from the n-th of them on.
  int FailAt = 0;
  std::string FailName;
  int FailNameFrom = 1;

  // What it saw.
  int CallCount = 0;
  std::map<std::string, int, std::less<>> CallsOf;
  std::vector<std::string> Texts;     // prepared and executed
  std::vector<std::string> Connects;  // connect strings
  std::vector<Word> Completions;
  std::vector<std::string> Transactions;  // "begin 1", "commit 1": connections in their order of opening
  std::vector<Parameter> Parameters;      // of the last execution
  ULength LargestArray = 0;
  const void* LongPlace = nullptr;  // where GetData put the beginning of a value
  bool ReadOnly = false;
  int LeftOfRows = 0;  // what was still bound or set for the rows when the result behind them was fetched
  int Misuses = 0;     // calls with a handle that is not open
};

}  // namespace velmoria::test
