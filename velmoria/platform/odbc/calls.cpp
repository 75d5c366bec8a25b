#include "velmoria/platform/odbc/calls.h"

#include <type_traits>

#include <sql.h>
#include <sqlext.h>

namespace velmoria::odbc {
namespace {

static_assert(std::is_same_v<Handle, SQLHANDLE>);
static_assert(std::is_same_v<Handle, SQLPOINTER>);
// NOLINTBEGIN(misc-redundant-expression)
static_assert(std::is_same_v<Code, SQLRETURN>);
static_assert(std::is_same_v<Small, SQLSMALLINT>);
static_assert(std::is_same_v<Word, SQLUSMALLINT>);
// NOLINTEND(misc-redundant-expression)
static_assert(std::is_same_v<Number, SQLINTEGER>);
static_assert(std::is_same_v<Length, SQLLEN>);
static_assert(std::is_same_v<ULength, SQLULEN>);
static_assert(std::is_same_v<Char, SQLCHAR>);

class UnixOdbcCalls final : public Calls {
 public:
  Code AllocHandle(Small kind, Handle parent, Handle* made) override { return SQLAllocHandle(kind, parent, made); }
  Code FreeHandle(Small kind, Handle handle) override { return SQLFreeHandle(kind, handle); }
  Code GetDiagRec(Small kind, Handle handle, Small record, Char* state, Number* native, Char* text, Small capacity,
                  Small* length) override {
    return SQLGetDiagRec(kind, handle, record, state, native, text, capacity, length);
  }

  Code SetEnvAttr(Handle environment, Number attribute, Handle value, Number length) override {
    return SQLSetEnvAttr(environment, attribute, value, length);
  }
  Code SetConnectAttr(Handle connection, Number attribute, Handle value, Number length) override {
    return SQLSetConnectAttr(connection, attribute, value, length);
  }
  Code GetConnectAttr(Handle connection, Number attribute, Handle value, Number capacity, Number* length) override {
    return SQLGetConnectAttr(connection, attribute, value, capacity, length);
  }
  Code DriverConnect(Handle connection, Handle window, Char* text, Small length, Char* completed, Small capacity,
                     Small* completedLength, Word completion) override {
    return SQLDriverConnect(connection, window, text, length, completed, capacity, completedLength, completion);
  }
  Code Disconnect(Handle connection) override { return SQLDisconnect(connection); }
  Code GetInfo(Handle connection, Word information, Handle value, Small capacity, Small* length) override {
    return SQLGetInfo(connection, information, value, capacity, length);
  }
  Code EndTran(Small kind, Handle handle, Small completion) override { return SQLEndTran(kind, handle, completion); }

  Code SetStmtAttr(Handle statement, Number attribute, Handle value, Number length) override {
    return SQLSetStmtAttr(statement, attribute, value, length);
  }
  Code GetStmtAttr(Handle statement, Number attribute, Handle value, Number capacity, Number* length) override {
    return SQLGetStmtAttr(statement, attribute, value, capacity, length);
  }
  Code BindParameter(Handle statement, Word number, Small direction, Small cType, Small type, ULength size,
                     Small digits, Handle value, Length capacity, Length* indicator) override {
    return SQLBindParameter(statement, number, direction, cType, type, size, digits, value, capacity, indicator);
  }
  Code Prepare(Handle statement, Char* text, Number length) override { return SQLPrepare(statement, text, length); }
  Code Execute(Handle statement) override { return SQLExecute(statement); }
  Code ExecDirect(Handle statement, Char* text, Number length) override {
    return SQLExecDirect(statement, text, length);
  }
  Code RowCount(Handle statement, Length* rows) override { return SQLRowCount(statement, rows); }
  Code MoreResults(Handle statement) override { return SQLMoreResults(statement); }
  Code Cancel(Handle statement) override { return SQLCancel(statement); }
  Code FreeStmt(Handle statement, Word option) override { return SQLFreeStmt(statement, option); }

  Code ProcedureColumns(Handle statement, Char* catalog, Small catalogLength, Char* schema, Small schemaLength,
                        Char* procedure, Small procedureLength, Char* column, Small columnLength) override {
    return SQLProcedureColumns(statement, catalog, catalogLength, schema, schemaLength, procedure, procedureLength,
                               column, columnLength);
  }

  Code NumResultCols(Handle statement, Small* columns) override { return SQLNumResultCols(statement, columns); }
  Code DescribeCol(Handle statement, Word column, Char* name, Small capacity, Small* nameLength, Small* type,
                   ULength* size, Small* digits, Small* nullable) override {
    return SQLDescribeCol(statement, column, name, capacity, nameLength, type, size, digits, nullable);
  }
  Code ColAttribute(Handle statement, Word column, Word field, Handle text, Small capacity, Small* textLength,
                    Length* number) override {
    return SQLColAttribute(statement, column, field, text, capacity, textLength, number);
  }
  Code BindCol(Handle statement, Word column, Small cType, Handle value, Length capacity, Length* indicator) override {
    return SQLBindCol(statement, column, cType, value, capacity, indicator);
  }
  Code Fetch(Handle statement) override { return SQLFetch(statement); }
  Code FetchScroll(Handle statement, Small direction, Length offset) override {
    return SQLFetchScroll(statement, direction, offset);
  }
  Code SetPos(Handle statement, ULength row, Word operation, Word lock) override {
    return SQLSetPos(statement, row, operation, lock);
  }
  Code GetData(Handle statement, Word column, Small cType, Handle value, Length capacity, Length* indicator) override {
    return SQLGetData(statement, column, cType, value, capacity, indicator);
  }
};

}  // namespace

Calls::~Calls() = default;

const std::shared_ptr<Calls>& UnixOdbc() {
  static const std::shared_ptr<Calls> calls = std::make_shared<UnixOdbcCalls>();
  return calls;
}

}  // namespace velmoria::odbc
