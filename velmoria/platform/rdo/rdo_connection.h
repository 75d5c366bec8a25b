#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "velmoria/platform/odbc/columns.h"
#include "velmoria/platform/odbc/connection.h"
#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

/// An open connection. It keeps its environment alive; queries and results keep the connection alive. Close, or its
/// end, rolls back an open transaction and ends the statements of every query and result that still hangs on it; a
/// result keeps the rows it has fetched. Whatever needs the driver afterwards raises 40071.
class rdoConnection : public Object {
 public:
  /// Connects; the connect string is complete.
  rdoConnection(rdoEnvironmentPtr environment, const std::string& connect, rdoNumber prompt, bool readOnly);
  ~rdoConnection() override;
  std::string_view ReportedType() const noexcept override;

  /// A query over the text, which goes to the driver as it stands.
  rdoQueryPtr CreateQuery(std::string name, std::string sql);
  rdoTablesPtr rdoTables();

  /// Whether the server has transactions at all.
  bool Transactions();
  /// A second BeginTrans changes nothing; a commit or rollback without a transaction is harmless. When the link to the
  /// server was lost, a commit is refused, and a rollback succeeds: the server has taken back what was not committed.
  void BeginTrans();
  void CommitTrans();
  void RollbackTrans();

  /// Called before a statement runs: where the driver has one result at a time, what is left of the others is fetched.
  void MakeRoom() noexcept;
  /// Raises 40071 when the link to the server was lost in a transaction: queries, tables and BeginTrans are refused
  /// then.
  void RefuseLostTransaction();
  /// Whether the driver wants this text on the thread that otherwise uses the connection.
  bool NeedsThisThread(const std::string& sql);
  const odbc::DriverManners& Manners() const noexcept { return handle_.Manners(); }

  /// Whether it is closed, or the link to the server is gone outside a transaction; inside one, the owner has to roll
  /// back first.
  bool IsLost() noexcept { return !handle_.IsOpen() || (!inTransaction_ && handle_.IsLost()); }
  void Close();

  /// The columns that results of this shape had when the driver was asked last, or none.
  odbc::Columns& KnownColumns(const std::string& shape) { return knownColumns_[shape]; }

  const rdoEnginePtr& Engine() const noexcept;
  odbc::Connection& Handle() noexcept { return handle_; }

 private:
  friend class rdoEnvironment;
  friend class RdoCursor;
  void Enter(RdoCursor* cursor);
  void Leave(RdoCursor* cursor) noexcept;
  void FetchResults() noexcept;
  void GreetServer();
  /// Runs what a lost link has done already.
  template <class Step>
  void UnlessLost(Step step);
  void Begin();
  void End(bool commit);
  void Abandon() noexcept;
  void Disconnect() noexcept;

  rdoEnvironmentPtr environment_;
  odbc::Connection handle_;
  std::vector<RdoCursor*> cursors_;  // those that still need the driver
  std::unordered_map<std::string, odbc::Columns> knownColumns_;
  bool oneAtATime_ = false;
  bool commitKeepsResults_ = true;
  bool rollbackKeepsResults_ = true;
  bool inTransaction_ = false;
};

}  // namespace velmoria
