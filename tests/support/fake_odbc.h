#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "velmoria/platform/odbc/calls.h"

namespace velmoria::test {

/// A driver in memory: every statement gives the same result. It counts what is open, records what is asked of it, and
/// fails a call by number or by name.
class FakeOdbc final : public odbc::Calls {
 public:
  using Small = odbc::Small;
  using Word = odbc::Word;
  using Number = odbc::Number;
  using Length = odbc::Length;
  using ULength = odbc::ULength;
  using Char = odbc::Char;
  using Code = odbc::Code;
  using Handle = odbc::Handle;

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
  /// From here on, an execution waits until Release, or until it is cancelled, which fails it.
  void Hold();
  void Release();
  /// Waits until an execution is held.
  void AwaitHeld();

  int Misuses = 0;  // calls with a handle that is not open
  std::size_t OpenHandles() const { return handles_.size(); }

  Code AllocHandle(Small kind, Handle parent, Handle* made) override;
  Code FreeHandle(Small kind, Handle handle) override;
  Code GetDiagRec(Small kind, Handle handle, Small record, Char* state, Number* native, Char* text, Small capacity,
                  Small* length) override;
  Code SetEnvAttr(Handle environment, Number attribute, Handle value, Number length) override;
  Code SetConnectAttr(Handle connection, Number attribute, Handle value, Number length) override;
  Code GetConnectAttr(Handle connection, Number attribute, Handle value, Number capacity, Number* length) override;
  Code DriverConnect(Handle connection, Handle window, Char* text, Small length, Char* completed, Small capacity,
                     Small* completedLength, Word completion) override;
  Code Disconnect(Handle connection) override;
  Code GetInfo(Handle connection, Word information, Handle value, Small capacity, Small* length) override;
  Code EndTran(Small kind, Handle handle, Small completion) override;
  Code SetStmtAttr(Handle statement, Number attribute, Handle value, Number length) override;
  Code GetStmtAttr(Handle statement, Number attribute, Handle value, Number capacity, Number* length) override;
  Code BindParameter(Handle statement, Word number, Small direction, Small cType, Small type, ULength size,
                     Small digits, Handle value, Length capacity, Length* indicator) override;
  Code Prepare(Handle statement, Char* text, Number length) override;
  Code Execute(Handle statement) override;
  Code ExecDirect(Handle statement, Char* text, Number length) override;
  Code RowCount(Handle statement, Length* rows) override;
  Code MoreResults(Handle statement) override;
  Code Cancel(Handle statement) override;
  Code ProcedureColumns(Handle statement, Char* catalog, Small catalogLength, Char* schema, Small schemaLength,
                        Char* procedure, Small procedureLength, Char* column, Small columnLength) override;
  Code FreeStmt(Handle statement, Word option) override;
  Code NumResultCols(Handle statement, Small* columns) override;
  Code DescribeCol(Handle statement, Word column, Char* name, Small capacity, Small* nameLength, Small* type,
                   ULength* size, Small* digits, Small* nullable) override;
  Code ColAttribute(Handle statement, Word column, Word field, Handle text, Small capacity, Small* textLength,
                    Length* number) override;
  Code BindCol(Handle statement, Word column, Small cType, Handle value, Length capacity, Length* indicator) override;
  Code Fetch(Handle statement) override;
  Code FetchScroll(Handle statement, Small direction, Length offset) override;
  Code SetPos(Handle statement, ULength row, Word operation, Word lock) override;
  Code GetData(Handle statement, Word column, Small cType, Handle value, Length capacity, Length* indicator) override;

 private:
  struct Binding {
    Small CType;
    void* Value;
    Length Capacity;
    Length* Indicator;
  };
  struct BoundParameter {
    Small CType;
    Small Type;
    void* Value;
    Length* Indicator;
    Small Direction;
    Length Capacity;
  };
  struct State {
    Small Kind;
    Handle Parent;
    int Number = 0;  // of a connection
    bool Scrolling = false;
    ULength ArraySize = 1;
    Word* Status = nullptr;
    ULength* Fetched = nullptr;
    bool OfCatalogue = false;
    bool OfOutputs = false;
    int Result = 0;                     // of the execution, from 0
    std::size_t Next = 0;               // the row that the next fetch begins with
    std::size_t First = 0;              // of the rows of the last fetch
    std::size_t Current = 0;            // the row that GetData reads
    std::map<Word, std::size_t> Given;  // how much of a value GetData has given
    std::map<Word, Binding> Bindings;
    std::vector<BoundParameter> Bound;
  };

  bool Enter(std::string_view name, Handle handle);
  State& Of(Handle handle) { return handles_.at(handle); }
  const std::vector<Column>& ColumnsOf(const State& state) const { return state.OfOutputs ? OutputColumns : Columns; }
  const std::vector<Row>& RowsOf(const State& state) const {
    return state.OfCatalogue ? Catalogue : state.OfOutputs ? OutputRows : Rows;
  }
  Code Ran(Handle statement);
  bool PassGate();
  Code Give(State& statement, std::size_t first);
  void NoteLeftOfRows(const State& statement) noexcept;
  void DeliverStamp(const std::string& text, const Binding& binding, std::size_t row) const;
  Code Deliver(const std::optional<std::string>& value, const Binding& binding, std::size_t row);

  std::map<Handle, State> handles_;
  std::recursive_mutex entering_;
  std::mutex gate_;
  std::condition_variable_any opening_;
  bool isHeld_ = false;
  bool hasHeld_ = false;
  bool isCancelled_ = false;
  int connections_ = 0;
  std::uintptr_t lastHandle_ = 0;
};

}  // namespace velmoria::test
