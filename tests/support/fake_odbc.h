#pragma once

#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/fake_handle.h"
#include "tests/support/fake_odbc_script.h"

namespace velmoria::test {

/// A driver in memory: every statement gives the same result. It counts what is open, records what is asked of it, and
/// fails a call by number or by name.
class FakeOdbc final : public FakeOdbcScript, public odbc::Calls {
 public:
  /// From here on, an execution waits until Release, or until it is cancelled, which fails it.
  void Hold();
  void Release();
  /// Waits until an execution is held.
  void AwaitHeld();

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
  bool Enter(std::string_view name, Handle handle);
  FakeHandle& Of(Handle handle) { return handles_.at(handle); }
  const std::vector<Column>& ColumnsOf(const FakeHandle& state) const {
    return state.OfOutputs ? OutputColumns : Columns;
  }
  const std::vector<Row>& RowsOf(const FakeHandle& state) const {
    return state.OfCatalogue ? Catalogue : state.OfOutputs ? OutputRows : Rows;
  }
  Code Ran(Handle statement);
  bool PassGate();
  Code Give(FakeHandle& statement, std::size_t first);
  void NoteLeftOfRows(const FakeHandle& statement) noexcept;
  Code Deliver(const std::optional<std::string>& value, const FakeBinding& binding, std::size_t row) const;

  std::map<Handle, FakeHandle> handles_;
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
