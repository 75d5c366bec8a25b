#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "tests/support/odbc_types.h"

namespace velmoria::test {

/// A table of calls over another one, a real driver's or one in memory: every call is passed on to it as it came. What
/// derives from it looks at all of them in Pass, or at single ones.
class ForwardingOdbc : public OdbcTypes, public odbc::Calls {
 public:
  explicit ForwardingOdbc(std::shared_ptr<odbc::Calls> driver) : driver_(std::move(driver)) {}

  odbc::Calls& Driver() const { return *driver_; }

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
  Code FreeStmt(Handle statement, Word option) override;
  Code ProcedureColumns(Handle statement, Char* catalog, Small catalogLength, Char* schema, Small schemaLength,
                        Char* procedure, Small procedureLength, Char* column, Small columnLength) override;
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

 protected:
  using Request = std::function<Code()>;

  /// A call of a name on a handle, on its parent where it makes one; the request makes the call. Freeing a handle and
  /// asking for diagnostics do not come here.
  virtual Code Pass(std::string_view name, Handle handle, const Request& request);

 private:
  std::shared_ptr<odbc::Calls> driver_;
};

}  // namespace velmoria::test
