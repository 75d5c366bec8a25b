#pragma once

#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

class rdoConnection;
struct ConnectionRecipe;

/// One log-on to one database: the recipe and, once opened, the database's handle, which it owns and closes. Setting it
/// up opens nothing; the first use of the handle does. A failed open leaves it set up, and the next use tries again.
/// It lives in a Connections group under its DatabaseName; both logon texts stay in memory as long as it does.
class VELMORIA_API Connection final : public Object, public Reporting {
 public:
  Connection();
  ~Connection() override;
  std::string_view ReportedType() const noexcept override { return "Connection"; }

  zEngines Engine() const { return engine_; }
  std::string EngineName() const;
  std::string DatabaseName() const { return databaseName_; }
  /// The name of the group that holds this Connection; empty for the default group.
  std::string ConnectionsName() const { return connectionsName_; }
  zConnectionTypes ConnectionType() const { return connectionType_; }
  /// The text as it was given, not the one composed from it.
  std::string ConnectionString() const { return connectionString_; }
  std::string UserName() const { return userName_; }
  /// Stores only: the text composed when the Connection was set up stays.
  void SetUserName(std::string value) { userName_ = std::move(value); }
  void SetPassword(std::string value) { password_ = std::move(value); }
  /// Shown only: every result keeps its own rows, whichever was chosen.
  zCursorDrivers CursorDriver() const { return cursorDriver_; }
  std::string CursorDriverName() const;
  /// Whether the driver is asked for a static cursor, which crtStatic wants always and crtNone never; it is asked for
  /// no other kind.
  zCursorTypes CursorType() const { return cursorType_; }
  std::string CursorTypeName() const;
  StatisticsPtr Statistics() const;
  /// Everything but the password.
  std::string Details() const;

  /// Whether the handle exists.
  bool ConnectionOpen() const;
  /// True for SQL Server only, whatever the driver can do.
  bool SupportsAsync() const { return engine_ == engSQLServer; }
  /// Asks the database, opening the connection if it is not open. Raises 15097 for an engine outside 2 to 5.
  bool SupportsTransactions();
  bool TransStarted() const { return transStarted_; }

  /// Opens the connection now. Raises 15124 or 15125 when that fails, 15097 for an engine outside 2 to 5.
  void Connect();
  /// Closes the handle if there is one; the next use opens it again.
  void Disconnect();

  /// The transaction of this one connection, which is opened if needed. Neither nesting nor a missing begin is refused
  /// here. A failing call leaves TransStarted untouched. When the link to the server was lost in a transaction, all
  /// that is asked of the connection fails until TransRollback, which succeeds, or Disconnect; the next use opens it
  /// again. Raises 15097 for an engine outside 2 to 5.
  void TransBegin();
  void TransCommit();
  void TransRollback();

  // Inside the library.

  /// Stores the recipe and composes the connect string. Raises 15054 and 15055.
  void Setup(const ConnectionRecipe& recipe);
  /// The open handle; opens it first if needed, and again when the link to the server was lost outside a transaction.
  /// Raises as Connect.
  Ref<rdoConnection> GetConnection();

 private:
  std::string StateDetails() const override { return Details(); }
  void SetupServerEngine(const ConnectionRecipe& recipe);
  void Open();
  StatisticPtr AddStatistic(const char* name);
  Ref<rdoConnection> Checked(const char* routine);

  std::string connectionsName_;
  std::string databaseName_;
  std::string userName_;
  std::string password_;
  zConnectionTypes connectionType_{};
  std::string connectionString_;
  std::string connectString_;
  zEngines engine_{};
  zCursorDrivers cursorDriver_{};
  zCursorTypes cursorType_{};
  StatisticsPtr statistics_;
  bool transStarted_ = false;
  Ref<rdoConnection> rdoConnection_;
};

}  // namespace velmoria
