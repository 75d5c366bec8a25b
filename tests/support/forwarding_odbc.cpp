#include "tests/support/forwarding_odbc.h"

namespace velmoria::test {

ForwardingOdbc::Code ForwardingOdbc::Pass(std::string_view, Handle, const Request& request) { return request(); }

ForwardingOdbc::Code ForwardingOdbc::AllocHandle(Small kind, Handle parent, Handle* made) {
  return Pass("AllocHandle", parent, [&] { return driver_->AllocHandle(kind, parent, made); });
}

ForwardingOdbc::Code ForwardingOdbc::FreeHandle(Small kind, Handle handle) { return driver_->FreeHandle(kind, handle); }

ForwardingOdbc::Code ForwardingOdbc::GetDiagRec(Small kind, Handle handle, Small record, Char* state, Number* native,
                                                Char* text, Small capacity, Small* length) {
  return driver_->GetDiagRec(kind, handle, record, state, native, text, capacity, length);
}

ForwardingOdbc::Code ForwardingOdbc::SetEnvAttr(Handle environment, Number attribute, Handle value, Number length) {
  return Pass("SetEnvAttr", environment, [&] { return driver_->SetEnvAttr(environment, attribute, value, length); });
}

ForwardingOdbc::Code ForwardingOdbc::SetConnectAttr(Handle connection, Number attribute, Handle value, Number length) {
  return Pass("SetConnectAttr", connection,
              [&] { return driver_->SetConnectAttr(connection, attribute, value, length); });
}

ForwardingOdbc::Code ForwardingOdbc::GetConnectAttr(Handle connection, Number attribute, Handle value, Number capacity,
                                                    Number* length) {
  return Pass("GetConnectAttr", connection,
              [&] { return driver_->GetConnectAttr(connection, attribute, value, capacity, length); });
}

ForwardingOdbc::Code ForwardingOdbc::DriverConnect(Handle connection, Handle window, Char* text, Small length,
                                                   Char* completed, Small capacity, Small* completedLength,
                                                   Word completion) {
  return Pass("DriverConnect", connection, [&] {
    return driver_->DriverConnect(connection, window, text, length, completed, capacity, completedLength, completion);
  });
}

ForwardingOdbc::Code ForwardingOdbc::Disconnect(Handle connection) {
  return Pass("Disconnect", connection, [&] { return driver_->Disconnect(connection); });
}

ForwardingOdbc::Code ForwardingOdbc::GetInfo(Handle connection, Word information, Handle value, Small capacity,
                                             Small* length) {
  return Pass("GetInfo", connection,
              [&] { return driver_->GetInfo(connection, information, value, capacity, length); });
}

ForwardingOdbc::Code ForwardingOdbc::EndTran(Small kind, Handle handle, Small completion) {
  return Pass("EndTran", handle, [&] { return driver_->EndTran(kind, handle, completion); });
}

ForwardingOdbc::Code ForwardingOdbc::SetStmtAttr(Handle statement, Number attribute, Handle value, Number length) {
  return Pass("SetStmtAttr", statement, [&] { return driver_->SetStmtAttr(statement, attribute, value, length); });
}

ForwardingOdbc::Code ForwardingOdbc::GetStmtAttr(Handle statement, Number attribute, Handle value, Number capacity,
                                                 Number* length) {
  return Pass("GetStmtAttr", statement,
              [&] { return driver_->GetStmtAttr(statement, attribute, value, capacity, length); });
}

ForwardingOdbc::Code ForwardingOdbc::BindParameter(Handle statement, Word number, Small direction, Small cType,
                                                   Small type, ULength size, Small digits, Handle value,
                                                   Length capacity, Length* indicator) {
  return Pass("BindParameter", statement, [&] {
    return driver_->BindParameter(statement, number, direction, cType, type, size, digits, value, capacity, indicator);
  });
}

ForwardingOdbc::Code ForwardingOdbc::Prepare(Handle statement, Char* text, Number length) {
  return Pass("Prepare", statement, [&] { return driver_->Prepare(statement, text, length); });
}

ForwardingOdbc::Code ForwardingOdbc::Execute(Handle statement) {
  return Pass("Execute", statement, [&] { return driver_->Execute(statement); });
}

ForwardingOdbc::Code ForwardingOdbc::ExecDirect(Handle statement, Char* text, Number length) {
  return Pass("ExecDirect", statement, [&] { return driver_->ExecDirect(statement, text, length); });
}

ForwardingOdbc::Code ForwardingOdbc::RowCount(Handle statement, Length* rows) {
  return Pass("RowCount", statement, [&] { return driver_->RowCount(statement, rows); });
}

ForwardingOdbc::Code ForwardingOdbc::MoreResults(Handle statement) {
  return Pass("MoreResults", statement, [&] { return driver_->MoreResults(statement); });
}

ForwardingOdbc::Code ForwardingOdbc::Cancel(Handle statement) {
  return Pass("Cancel", statement, [&] { return driver_->Cancel(statement); });
}

ForwardingOdbc::Code ForwardingOdbc::FreeStmt(Handle statement, Word option) {
  return Pass("FreeStmt", statement, [&] { return driver_->FreeStmt(statement, option); });
}

ForwardingOdbc::Code ForwardingOdbc::ProcedureColumns(Handle statement, Char* catalog, Small catalogLength,
                                                      Char* schema, Small schemaLength, Char* procedure,
                                                      Small procedureLength, Char* column, Small columnLength) {
  return Pass("ProcedureColumns", statement, [&] {
    return driver_->ProcedureColumns(statement, catalog, catalogLength, schema, schemaLength, procedure,
                                     procedureLength, column, columnLength);
  });
}

ForwardingOdbc::Code ForwardingOdbc::NumResultCols(Handle statement, Small* columns) {
  return Pass("NumResultCols", statement, [&] { return driver_->NumResultCols(statement, columns); });
}

ForwardingOdbc::Code ForwardingOdbc::DescribeCol(Handle statement, Word column, Char* name, Small capacity,
                                                 Small* nameLength, Small* type, ULength* size, Small* digits,
                                                 Small* nullable) {
  return Pass("DescribeCol", statement, [&] {
    return driver_->DescribeCol(statement, column, name, capacity, nameLength, type, size, digits, nullable);
  });
}

ForwardingOdbc::Code ForwardingOdbc::ColAttribute(Handle statement, Word column, Word field, Handle text,
                                                  Small capacity, Small* textLength, Length* number) {
  return Pass("ColAttribute", statement,
              [&] { return driver_->ColAttribute(statement, column, field, text, capacity, textLength, number); });
}

ForwardingOdbc::Code ForwardingOdbc::BindCol(Handle statement, Word column, Small cType, Handle value, Length capacity,
                                             Length* indicator) {
  return Pass("BindCol", statement,
              [&] { return driver_->BindCol(statement, column, cType, value, capacity, indicator); });
}

ForwardingOdbc::Code ForwardingOdbc::Fetch(Handle statement) {
  return Pass("Fetch", statement, [&] { return driver_->Fetch(statement); });
}

ForwardingOdbc::Code ForwardingOdbc::FetchScroll(Handle statement, Small direction, Length offset) {
  return Pass("FetchScroll", statement, [&] { return driver_->FetchScroll(statement, direction, offset); });
}

ForwardingOdbc::Code ForwardingOdbc::SetPos(Handle statement, ULength row, Word operation, Word lock) {
  return Pass("SetPos", statement, [&] { return driver_->SetPos(statement, row, operation, lock); });
}

ForwardingOdbc::Code ForwardingOdbc::GetData(Handle statement, Word column, Small cType, Handle value, Length capacity,
                                             Length* indicator) {
  return Pass("GetData", statement,
              [&] { return driver_->GetData(statement, column, cType, value, capacity, indicator); });
}

}  // namespace velmoria::test
