#include "velmoria/platform/rdo/rdo_connection.h"

#include <algorithm>
#include <array>

#include <sql.h>
#include <sqlext.h>

#include "velmoria/platform/odbc/markers.h"
#include "velmoria/platform/odbc/statement.h"
#include "velmoria/platform/rdo/rdo_cursor.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/platform/rdo/rdo_environment.h"
#include "velmoria/platform/rdo/rdo_query.h"
#include "velmoria/platform/rdo/rdo_tables.h"
#include "velmoria/runtime/text.h"

namespace velmoria {
namespace {

struct Greeting {
  std::string_view Server;  // part of the name that the driver gives the server
  const char* Text;
};

// Doubled quotes have to be the whole truth about literals, and text has to be UTF-8. A statement that is run again has
// to give its rows in the same order, so a large table is always read from its beginning.
constexpr std::array kGreetings = {
    Greeting{"PostgreSQL", "SET standard_conforming_strings = on"},
    Greeting{"PostgreSQL", "SET client_encoding = 'UTF8'"},
    Greeting{"PostgreSQL", "SET synchronize_seqscans = off"},
    Greeting{"MySQL", "SET SESSION sql_mode = CONCAT(@@SESSION.sql_mode, ',NO_BACKSLASH_ESCAPES')"},
    Greeting{"MariaDB", "SET SESSION sql_mode = CONCAT(@@SESSION.sql_mode, ',NO_BACKSLASH_ESCAPES')"},
};

}  // namespace

rdoConnection::rdoConnection(rdoEnvironmentPtr environment, const std::string& connect, rdoNumber prompt, bool readOnly)
    : environment_(std::move(environment)), handle_(environment_->handle_) {
  handle_.Open(connect, prompt == rdDriverPrompt, readOnly);
  oneAtATime_ = handle_.InfoNumber(SQL_MAX_CONCURRENT_ACTIVITIES) == 1;
  commitKeepsResults_ = handle_.InfoNumber(SQL_CURSOR_COMMIT_BEHAVIOR) == SQL_CB_PRESERVE;
  rollbackKeepsResults_ = handle_.InfoNumber(SQL_CURSOR_ROLLBACK_BEHAVIOR) == SQL_CB_PRESERVE;
  GreetServer();
  environment_->Join(this);
}

rdoConnection::~rdoConnection() { Disconnect(); }

std::string_view rdoConnection::ReportedType() const noexcept { return "rdoConnection"; }

const rdoEnginePtr& rdoConnection::Engine() const noexcept { return environment_->Engine(); }

void rdoConnection::GreetServer() {
  const std::string server = handle_.InfoText(SQL_DBMS_NAME);
  for (const auto& greeting : kGreetings) {
    if (!ContainsFolded(server, greeting.Server)) continue;
    odbc::Statement statement(handle_);
    statement.ExecuteDirect(greeting.Text);
  }
}

rdoQueryPtr rdoConnection::CreateQuery(std::string name, std::string sql) {
  Engine()->rdoErrors().clear();
  return Make<rdoQuery>(rdoConnectionPtr(this), std::move(name), std::move(sql));
}

rdoTablesPtr rdoConnection::rdoTables() {
  RefuseLostTransaction();
  return Make<velmoria::rdoTables>(rdoConnectionPtr(this));
}

bool rdoConnection::Transactions() {
  Engine()->rdoErrors().clear();
  return handle_.InfoNumber(SQL_TXN_CAPABLE) != SQL_TC_NONE;
}

void rdoConnection::BeginTrans() {
  Engine()->rdoErrors().clear();
  Begin();
}

void rdoConnection::CommitTrans() {
  Engine()->rdoErrors().clear();
  End(true);
}

void rdoConnection::RollbackTrans() {
  Engine()->rdoErrors().clear();
  End(false);
}

void rdoConnection::Close() {
  Engine()->rdoErrors().clear();
  Disconnect();
}

void rdoConnection::MakeRoom() noexcept {
  if (oneAtATime_) FetchResults();
}

bool rdoConnection::NeedsThisThread(const std::string& sql) {
  return handle_.Manners().RefusalKeepsThread && odbc::HasSeveralStatements(sql);
}

// A cursor that is read to its end, or fails ahead of it, leaves the list.
void rdoConnection::FetchResults() noexcept {
  while (!cursors_.empty()) cursors_.back()->FetchRest();
}

void rdoConnection::Enter(RdoCursor* cursor) { cursors_.push_back(cursor); }

void rdoConnection::Leave(RdoCursor* cursor) noexcept { std::erase(cursors_, cursor); }

void rdoConnection::RefuseLostTransaction() {
  if (inTransaction_ && handle_.IsLost()) odbc::Connection::FailWithLostTransaction();
}

void rdoConnection::Begin() {
  RefuseLostTransaction();
  if (inTransaction_) return;
  const rdoConnectionPtr kept(this);  // the results that are fetched may be all that holds it
  if (oneAtATime_ || handle_.Manners().BeginEndsResults) FetchResults();
  handle_.SetAutoCommit(false);
  inTransaction_ = true;
}

template <class Step>
void rdoConnection::UnlessLost(Step step) {
  try {
    return step();
  } catch (...) {
    if (!inTransaction_ || !handle_.IsLost()) throw;
  }
  Engine()->rdoErrors().clear();
}

void rdoConnection::End(bool commit) {
  const rdoConnectionPtr kept(this);
  if (oneAtATime_ || !(commit ? commitKeepsResults_ : rollbackKeepsResults_)) FetchResults();
  if (commit)
    handle_.EndTransaction(true);
  else
    UnlessLost([&] { handle_.EndTransaction(false); });
  if (!inTransaction_) return;
  UnlessLost([&] { handle_.SetAutoCommit(true); });
  inTransaction_ = false;
}

void rdoConnection::Abandon() noexcept {
  try {
    End(false);
  } catch (...) {
    // The failure that made us give up is the one to report.
    Disconnect();
  }
}

void rdoConnection::Disconnect() noexcept {
  if (handle_.IsOpen()) environment_->Leave(this);
  handle_.Close();
  inTransaction_ = false;
}

}  // namespace velmoria
