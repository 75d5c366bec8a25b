#include "tests/support/counting_odbc.h"

#include <algorithm>

#include <sql.h>

namespace velmoria::test {

using odbc::Char;
using odbc::Code;
using odbc::Handle;
using odbc::Length;
using odbc::Number;
using odbc::Small;
using odbc::ULength;
using odbc::Word;

std::vector<std::string> CountingOdbc::Texts() const {
  const std::lock_guard lock(noting_);
  return texts_;
}

void CountingOdbc::Note(const Char* text) {
  const std::lock_guard lock(noting_);
  texts_.emplace_back(reinterpret_cast<const char*>(text));
}

Code CountingOdbc::AllocHandle(Small kind, Handle parent, Handle* made) {
  const Code code = real_.AllocHandle(kind, parent, made);
  if (SQL_SUCCEEDED(code)) ++open_;
  return code;
}
Code CountingOdbc::FreeHandle(Small kind, Handle handle) {
  const Code code = real_.FreeHandle(kind, handle);
  if (SQL_SUCCEEDED(code)) --open_;
  return code;
}
Code CountingOdbc::Prepare(Handle statement, Char* text, Number length) {
  Note(text);
  return real_.Prepare(statement, text, length);
}
Code CountingOdbc::Execute(Handle statement) {
  ++executions_;
  return real_.Execute(statement);
}
Code CountingOdbc::ExecDirect(Handle statement, Char* text, Number length) {
  Note(text);
  ++executions_;
  return real_.ExecDirect(statement, text, length);
}
Code CountingOdbc::GetData(Handle statement, Word column, Small cType, Handle value, Length capacity,
                           Length* indicator) {
  const Code code = real_.GetData(statement, column, cType, value, capacity, indicator);
  if (SQL_SUCCEEDED(code) && *indicator != SQL_NULL_DATA)
    longBytes_ += *indicator < 0 ? capacity : std::min(*indicator, capacity);
  return code;
}

Code CountingOdbc::GetDiagRec(Small kind, Handle handle, Small record, Char* state, Number* native, Char* text,
                              Small capacity, Small* length) {
  return real_.GetDiagRec(kind, handle, record, state, native, text, capacity, length);
}
Code CountingOdbc::SetEnvAttr(Handle environment, Number attribute, Handle value, Number length) {
  return real_.SetEnvAttr(environment, attribute, value, length);
}
Code CountingOdbc::SetConnectAttr(Handle connection, Number attribute, Handle value, Number length) {
  return real_.SetConnectAttr(connection, attribute, value, length);
}
Code CountingOdbc::GetConnectAttr(Handle connection, Number attribute, Handle value, Number capacity, Number* length) {
  return real_.GetConnectAttr(connection, attribute, value, capacity, length);
}
Code CountingOdbc::DriverConnect(Handle connection, Handle window, Char* text, Small length, Char* completed,
                                 Small capacity, Small* completedLength, Word completion) {
  return real_.DriverConnect(connection, window, text, length, completed, capacity, completedLength, completion);
}
Code CountingOdbc::Disconnect(Handle connection) { return real_.Disconnect(connection); }
Code CountingOdbc::GetInfo(Handle connection, Word information, Handle value, Small capacity, Small* length) {
  return real_.GetInfo(connection, information, value, capacity, length);
}
Code CountingOdbc::EndTran(Small kind, Handle handle, Small completion) {
  return real_.EndTran(kind, handle, completion);
}
Code CountingOdbc::SetStmtAttr(Handle statement, Number attribute, Handle value, Number length) {
  return real_.SetStmtAttr(statement, attribute, value, length);
}
Code CountingOdbc::GetStmtAttr(Handle statement, Number attribute, Handle value, Number capacity, Number* length) {
  return real_.GetStmtAttr(statement, attribute, value, capacity, length);
}
Code CountingOdbc::BindParameter(Handle statement, Word number, Small direction, Small cType, Small type, ULength size,
                                 Small digits, Handle value, Length capacity, Length* indicator) {
  return real_.BindParameter(statement, number, direction, cType, type, size, digits, value, capacity, indicator);
}
Code CountingOdbc::RowCount(Handle statement, Length* rows) { return real_.RowCount(statement, rows); }
Code CountingOdbc::MoreResults(Handle statement) { return real_.MoreResults(statement); }
Code CountingOdbc::Cancel(Handle statement) { return real_.Cancel(statement); }
Code CountingOdbc::FreeStmt(Handle statement, Word option) { return real_.FreeStmt(statement, option); }
Code CountingOdbc::ProcedureColumns(Handle statement, Char* catalog, Small catalogLength, Char* schema,
                                    Small schemaLength, Char* procedure, Small procedureLength, Char* column,
                                    Small columnLength) {
  return real_.ProcedureColumns(statement, catalog, catalogLength, schema, schemaLength, procedure, procedureLength,
                                column, columnLength);
}
Code CountingOdbc::NumResultCols(Handle statement, Small* columns) { return real_.NumResultCols(statement, columns); }
Code CountingOdbc::DescribeCol(Handle statement, Word column, Char* name, Small capacity, Small* nameLength,
                               Small* type, ULength* size, Small* digits, Small* nullable) {
  return real_.DescribeCol(statement, column, name, capacity, nameLength, type, size, digits, nullable);
}
Code CountingOdbc::ColAttribute(Handle statement, Word column, Word field, Handle text, Small capacity,
                                Small* textLength, Length* number) {
  return real_.ColAttribute(statement, column, field, text, capacity, textLength, number);
}
Code CountingOdbc::BindCol(Handle statement, Word column, Small cType, Handle value, Length capacity,
                           Length* indicator) {
  return real_.BindCol(statement, column, cType, value, capacity, indicator);
}
Code CountingOdbc::Fetch(Handle statement) { return real_.Fetch(statement); }
Code CountingOdbc::FetchScroll(Handle statement, Small direction, Length offset) {
  return real_.FetchScroll(statement, direction, offset);
}
odbc::Code CountingOdbc::SetPos(Handle statement, ULength row, Word operation, Word lock) {
  return real_.SetPos(statement, row, operation, lock);
}

}  // namespace velmoria::test
