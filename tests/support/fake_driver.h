#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "velmoria/platform/odbc/calls.h"

namespace velmoria::test {

/// A table of ODBC calls over no database at all: every connection opens, every statement succeeds and gives no result.
/// It keeps what was sent, and fails where it is told to.
class FakeDriver final : public odbc::Calls {
 public:
  struct Refusal {
    std::string State{};
    std::string Text = "refused";
    int Native = 0;
  };

  std::vector<std::string> Connects;
  std::vector<unsigned> Completions;
  std::vector<std::string> Statements;
  std::vector<std::string> Ends;  // "commit" or "rollback", in the order of the calls
  int Prepared = 0;
  int Disconnects = 0;
  int Environments = 0;

  std::string ServerName = "Fake";
  unsigned short TransactionCapable = 2;
  bool FailEnvironment = false;
  bool FailConnect = false;
  bool FailStatements = false;
  bool FailEnd = false;
  Refusal Why;

  odbc::Code AllocHandle(odbc::Small kind, odbc::Handle parent, odbc::Handle* made) override;
  odbc::Code FreeHandle(odbc::Small, odbc::Handle) override { return 0; }
  odbc::Code GetDiagRec(odbc::Small kind, odbc::Handle handle, odbc::Small record, odbc::Char* state,
                        odbc::Number* native, odbc::Char* text, odbc::Small capacity, odbc::Small* length) override;
  odbc::Code SetEnvAttr(odbc::Handle, odbc::Number, odbc::Handle, odbc::Number) override;
  odbc::Code SetConnectAttr(odbc::Handle, odbc::Number, odbc::Handle, odbc::Number) override { return 0; }
  odbc::Code DriverConnect(odbc::Handle connection, odbc::Handle window, odbc::Char* text, odbc::Small length,
                           odbc::Char* completed, odbc::Small capacity, odbc::Small* completedLength,
                           odbc::Word completion) override;
  odbc::Code Disconnect(odbc::Handle) override { return ++Disconnects, odbc::Code{0}; }
  odbc::Code GetInfo(odbc::Handle connection, odbc::Word information, odbc::Handle value, odbc::Small capacity,
                     odbc::Small* length) override;
  odbc::Code EndTran(odbc::Small kind, odbc::Handle handle, odbc::Small completion) override;
  odbc::Code SetStmtAttr(odbc::Handle, odbc::Number, odbc::Handle, odbc::Number) override { return 0; }
  odbc::Code GetStmtAttr(odbc::Handle, odbc::Number, odbc::Handle, odbc::Number, odbc::Number*) override { return -1; }
  odbc::Code BindParameter(odbc::Handle, odbc::Word, odbc::Small, odbc::Small, odbc::Small, odbc::ULength, odbc::Small,
                           odbc::Handle, odbc::Length, odbc::Length*) override {
    return 0;
  }
  odbc::Code Prepare(odbc::Handle statement, odbc::Char* text, odbc::Number length) override;
  odbc::Code Execute(odbc::Handle) override { return Outcome(); }
  odbc::Code ExecDirect(odbc::Handle statement, odbc::Char* text, odbc::Number length) override;
  odbc::Code RowCount(odbc::Handle statement, odbc::Length* rows) override;
  odbc::Code FreeStmt(odbc::Handle, odbc::Word) override { return 0; }
  odbc::Code NumResultCols(odbc::Handle statement, odbc::Small* columns) override;
  odbc::Code DescribeCol(odbc::Handle, odbc::Word, odbc::Char*, odbc::Small, odbc::Small*, odbc::Small*, odbc::ULength*,
                         odbc::Small*, odbc::Small*) override {
    return -1;
  }
  odbc::Code ColAttribute(odbc::Handle, odbc::Word, odbc::Word, odbc::Handle, odbc::Small, odbc::Small*,
                          odbc::Length*) override {
    return -1;
  }
  odbc::Code BindCol(odbc::Handle, odbc::Word, odbc::Small, odbc::Handle, odbc::Length, odbc::Length*) override {
    return 0;
  }
  odbc::Code Fetch(odbc::Handle) override { return 100; }
  odbc::Code FetchScroll(odbc::Handle, odbc::Small, odbc::Length) override { return 100; }
  odbc::Code GetData(odbc::Handle, odbc::Word, odbc::Small, odbc::Handle, odbc::Length, odbc::Length*) override {
    return -1;
  }

 private:
  odbc::Code Outcome() const { return FailStatements ? odbc::Code{-1} : odbc::Code{0}; }

  std::uintptr_t handles_ = 0;
};

}  // namespace velmoria::test
