#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "velmoria/platform/odbc/environment.h"
#include "velmoria/platform/rdo/fwd.h"
#include "velmoria/platform/rdo_constants.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

struct OpenConnectionArguments {
  std::string dsName{};
  rdoNumber Prompt = rdDriverPrompt;
  bool ReadOnly = false;
  std::string Connect{};
  rdoNumber Options = 0;  // taken and not used: a connection is open when it is there
};

/// A log-on environment: the connections opened in it share its default user and its transactions. The connections
/// keep it alive, not the other way round. After Close it opens nothing more, and a second Close does nothing.
class rdoEnvironment : public Object {
 public:
  rdoEnvironment(rdoEnginePtr engine, std::string userName, std::string password);
  ~rdoEnvironment() override;
  std::string_view ReportedType() const noexcept override;

  rdoNumber CursorDriver() const noexcept { return cursorDriver_; }
  /// Kept only: the result sets keep their own rows, whichever is chosen.
  void SetCursorDriver(rdoNumber value) noexcept { cursorDriver_ = value; }

  /// Connects. A connect string without "UID=" gets the environment's user and password; rdDriverPrompt lets the driver
  /// ask for what is missing. Inside a transaction of the environment the new connection takes part in it. Raises 40071
  /// when the environment is closed.
  rdoConnectionPtr OpenConnection(const OpenConnectionArguments& arguments);

  /// One transaction over all connections, those opened later included. BeginTrans is all or nothing. CommitTrans stops
  /// at the first connection that fails; it and those after it stay in their transaction. A connection whose link was
  /// lost takes part in nothing until it is opened again; lost in a transaction, it has BeginTrans and CommitTrans
  /// refused, and RollbackTrans ends that.
  void BeginTrans();
  void CommitTrans();
  void RollbackTrans();

  /// Closes every connection, rolling back what is open.
  void Close();

  const rdoEnginePtr& Engine() const noexcept { return engine_; }

 private:
  friend class rdoConnection;
  void Join(rdoConnection* connection);
  void Leave(rdoConnection* connection) noexcept;
  std::string Completed(const OpenConnectionArguments& arguments) const;
  std::vector<rdoConnectionPtr> Connections() const;
  void RequireOpen() const;

  rdoEnginePtr engine_;
  std::string userName_;
  std::string password_;
  rdoNumber cursorDriver_ = rdUseIfNeeded;
  odbc::Environment handle_;
  std::vector<rdoConnection*> connections_;
  bool inTransaction_ = false;
  bool closed_ = false;
};

}  // namespace velmoria
