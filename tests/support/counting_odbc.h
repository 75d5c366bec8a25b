#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "velmoria/platform/odbc/calls.h"

namespace velmoria::test {

/// The real calls, and a count of what passes through them: the handles that are open, the texts as they were sent, the
/// executions, and the bytes of values that are not fetched with their row.
class CountingOdbc final : public odbc::Calls {
 public:
  int OpenHandles() const { return open_; }
  int Executions() const { return executions_; }
  std::int64_t LongBytes() const { return longBytes_; }
  std::vector<std::string> Texts() const;

  odbc::Code AllocHandle(odbc::Small kind, odbc::Handle parent, odbc::Handle* made) override;
  odbc::Code FreeHandle(odbc::Small kind, odbc::Handle handle) override;
  odbc::Code GetDiagRec(odbc::Small kind, odbc::Handle handle, odbc::Small record, odbc::Char* state,
                        odbc::Number* native, odbc::Char* text, odbc::Small capacity, odbc::Small* length) override;
  odbc::Code SetEnvAttr(odbc::Handle environment, odbc::Number attribute, odbc::Handle value,
                        odbc::Number length) override;
  odbc::Code SetConnectAttr(odbc::Handle connection, odbc::Number attribute, odbc::Handle value,
                            odbc::Number length) override;
  odbc::Code GetConnectAttr(odbc::Handle connection, odbc::Number attribute, odbc::Handle value, odbc::Number capacity,
                            odbc::Number* length) override;
  odbc::Code DriverConnect(odbc::Handle connection, odbc::Handle window, odbc::Char* text, odbc::Small length,
                           odbc::Char* completed, odbc::Small capacity, odbc::Small* completedLength,
                           odbc::Word completion) override;
  odbc::Code Disconnect(odbc::Handle connection) override;
  odbc::Code GetInfo(odbc::Handle connection, odbc::Word information, odbc::Handle value, odbc::Small capacity,
                     odbc::Small* length) override;
  odbc::Code EndTran(odbc::Small kind, odbc::Handle handle, odbc::Small completion) override;
  odbc::Code SetStmtAttr(odbc::Handle statement, odbc::Number attribute, odbc::Handle value,
                         odbc::Number length) override;
  odbc::Code GetStmtAttr(odbc::Handle statement, odbc::Number attribute, odbc::Handle value, odbc::Number capacity,
                         odbc::Number* length) override;
  odbc::Code BindParameter(odbc::Handle statement, odbc::Word number, odbc::Small direction, odbc::Small cType,
                           odbc::Small type, odbc::ULength size, odbc::Small digits, odbc::Handle value,
                           odbc::Length capacity, odbc::Length* indicator) override;
  odbc::Code Prepare(odbc::Handle statement, odbc::Char* text, odbc::Number length) override;
  odbc::Code Execute(odbc::Handle statement) override;
  odbc::Code ExecDirect(odbc::Handle statement, odbc::Char* text, odbc::Number length) override;
  odbc::Code RowCount(odbc::Handle statement, odbc::Length* rows) override;
  odbc::Code MoreResults(odbc::Handle statement) override;
  odbc::Code Cancel(odbc::Handle statement) override;
  odbc::Code FreeStmt(odbc::Handle statement, odbc::Word option) override;
  odbc::Code ProcedureColumns(odbc::Handle statement, odbc::Char* catalog, odbc::Small catalogLength,
                              odbc::Char* schema, odbc::Small schemaLength, odbc::Char* procedure,
                              odbc::Small procedureLength, odbc::Char* column, odbc::Small columnLength) override;
  odbc::Code NumResultCols(odbc::Handle statement, odbc::Small* columns) override;
  odbc::Code DescribeCol(odbc::Handle statement, odbc::Word column, odbc::Char* name, odbc::Small capacity,
                         odbc::Small* nameLength, odbc::Small* type, odbc::ULength* size, odbc::Small* digits,
                         odbc::Small* nullable) override;
  odbc::Code ColAttribute(odbc::Handle statement, odbc::Word column, odbc::Word field, odbc::Handle text,
                          odbc::Small capacity, odbc::Small* textLength, odbc::Length* number) override;
  odbc::Code BindCol(odbc::Handle statement, odbc::Word column, odbc::Small cType, odbc::Handle value,
                     odbc::Length capacity, odbc::Length* indicator) override;
  odbc::Code Fetch(odbc::Handle statement) override;
  odbc::Code FetchScroll(odbc::Handle statement, odbc::Small direction, odbc::Length offset) override;
  odbc::Code SetPos(odbc::Handle statement, odbc::ULength row, odbc::Word operation, odbc::Word lock) override;
  odbc::Code GetData(odbc::Handle statement, odbc::Word column, odbc::Small cType, odbc::Handle value,
                     odbc::Length capacity, odbc::Length* indicator) override;

 private:
  void Note(const odbc::Char* text);

  odbc::Calls& real_ = *odbc::UnixOdbc();
  std::atomic<int> open_ = 0;
  std::atomic<int> executions_ = 0;
  std::atomic<std::int64_t> longBytes_ = 0;
  mutable std::mutex noting_;
  std::vector<std::string> texts_;
};

}  // namespace velmoria::test
