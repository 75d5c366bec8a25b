#pragma once

#include <memory>

namespace velmoria::odbc {

// The types of the call level interface, spelt out so that its header stays inside the sources.
using Handle = void*;
using Code = short;
using Small = short;
using Word = unsigned short;
using Number = int;
using Length = long;
using ULength = unsigned long;
using Char = unsigned char;

/// The table of ODBC calls: the one way to the databases. Each member has the arguments and the meaning of the call of
/// its name; texts are narrow and UTF-8. A test puts a table of its own in its place.
class Calls {
 public:
  Calls() = default;
  Calls(const Calls&) = delete;
  Calls& operator=(const Calls&) = delete;
  virtual ~Calls();

  virtual Code AllocHandle(Small kind, Handle parent, Handle* made) = 0;
  virtual Code FreeHandle(Small kind, Handle handle) = 0;
  virtual Code GetDiagRec(Small kind, Handle handle, Small record, Char* state, Number* native, Char* text,
                          Small capacity, Small* length) = 0;

  virtual Code SetEnvAttr(Handle environment, Number attribute, Handle value, Number length) = 0;
  virtual Code SetConnectAttr(Handle connection, Number attribute, Handle value, Number length) = 0;
  virtual Code GetConnectAttr(Handle connection, Number attribute, Handle value, Number capacity, Number* length) = 0;
  virtual Code DriverConnect(Handle connection, Handle window, Char* text, Small length, Char* completed,
                             Small capacity, Small* completedLength, Word completion) = 0;
  virtual Code Disconnect(Handle connection) = 0;
  virtual Code GetInfo(Handle connection, Word information, Handle value, Small capacity, Small* length) = 0;
  virtual Code EndTran(Small kind, Handle handle, Small completion) = 0;

  virtual Code SetStmtAttr(Handle statement, Number attribute, Handle value, Number length) = 0;
  virtual Code GetStmtAttr(Handle statement, Number attribute, Handle value, Number capacity, Number* length) = 0;
  virtual Code BindParameter(Handle statement, Word number, Small direction, Small cType, Small type, ULength size,
                             Small digits, Handle value, Length capacity, Length* indicator) = 0;
  virtual Code Prepare(Handle statement, Char* text, Number length) = 0;
  virtual Code Execute(Handle statement) = 0;
  virtual Code ExecDirect(Handle statement, Char* text, Number length) = 0;
  virtual Code RowCount(Handle statement, Length* rows) = 0;
  virtual Code MoreResults(Handle statement) = 0;
  /// The one call that may come from another thread than the one that runs the statement.
  virtual Code Cancel(Handle statement) = 0;
  virtual Code FreeStmt(Handle statement, Word option) = 0;

  virtual Code ProcedureColumns(Handle statement, Char* catalog, Small catalogLength, Char* schema, Small schemaLength,
                                Char* procedure, Small procedureLength, Char* column, Small columnLength) = 0;

  virtual Code NumResultCols(Handle statement, Small* columns) = 0;
  virtual Code DescribeCol(Handle statement, Word column, Char* name, Small capacity, Small* nameLength, Small* type,
                           ULength* size, Small* digits, Small* nullable) = 0;
  virtual Code ColAttribute(Handle statement, Word column, Word field, Handle text, Small capacity, Small* textLength,
                            Length* number) = 0;
  virtual Code BindCol(Handle statement, Word column, Small cType, Handle value, Length capacity,
                       Length* indicator) = 0;
  virtual Code Fetch(Handle statement) = 0;
  virtual Code FetchScroll(Handle statement, Small direction, Length offset) = 0;
  virtual Code SetPos(Handle statement, ULength row, Word operation, Word lock) = 0;
  virtual Code GetData(Handle statement, Word column, Small cType, Handle value, Length capacity,
                       Length* indicator) = 0;
};

/// The calls of unixODBC; one table serves the whole process.
const std::shared_ptr<Calls>& UnixOdbc();

}  // namespace velmoria::odbc
