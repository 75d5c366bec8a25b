#include "velmoria/platform/rdo/rdo_environment.h"

#include <algorithm>
#include <exception>

#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/runtime/text.h"

namespace velmoria {
namespace {

// A value with signs that mean something in a connect string stands in braces.
std::string ConnectValue(const std::string& value) {
  if (value.find_first_of(";{}=[] ") == std::string::npos) return value;
  std::string result = "{";
  for (const char c : value) result.append(c == '}' ? 2 : 1, c);
  return result += '}';
}

void Append(std::string& connect, std::string_view key, const std::string& value) {
  if (value.empty() || ContainsFolded(connect, key)) return;
  if (!connect.empty() && connect.back() != ';') connect += ';';
  connect.append(key).append(ConnectValue(value));
}

}  // namespace

rdoEnvironment::rdoEnvironment(rdoEnginePtr engine, std::string userName, std::string password)
    : engine_(std::move(engine)),
      userName_(std::move(userName)),
      password_(std::move(password)),
      handle_(engine_->Driver()) {
  handle_.Get();
}

rdoEnvironment::~rdoEnvironment() = default;

std::string_view rdoEnvironment::ReportedType() const noexcept { return "rdoEnvironment"; }

std::string rdoEnvironment::Completed(const OpenConnectionArguments& arguments) const {
  std::string connect = arguments.Connect;
  Append(connect, "DSN=", arguments.dsName);
  if (!ContainsFolded(connect, "UID=") && !userName_.empty()) {
    Append(connect, "UID=", userName_);
    Append(connect, "PWD=", password_);
  }
  return connect;
}

rdoConnectionPtr rdoEnvironment::OpenConnection(const OpenConnectionArguments& arguments) {
  engine_->rdoErrors().clear();
  RequireOpen();
  auto connection =
      Make<rdoConnection>(rdoEnvironmentPtr(this), Completed(arguments), arguments.Prompt, arguments.ReadOnly);
  if (inTransaction_) connection->BeginTrans();
  return connection;
}

void rdoEnvironment::BeginTrans() {
  engine_->rdoErrors().clear();
  RequireOpen();
  const auto connections = Connections();
  std::vector<rdoConnection*> begun;
  try {
    for (const auto& connection : connections) {
      connection->RefuseLostTransaction();
      if (connection->inTransaction_ || connection->IsLost()) continue;
      connection->Begin();
      begun.push_back(connection.get());
    }
  } catch (...) {
    for (auto* const connection : begun) connection->Abandon();
    throw;
  }
  inTransaction_ = true;
}

void rdoEnvironment::CommitTrans() {
  engine_->rdoErrors().clear();
  RequireOpen();
  const auto connections = Connections();
  for (const auto& connection : connections) connection->End(true);
  inTransaction_ = false;
}

void rdoEnvironment::RollbackTrans() {
  engine_->rdoErrors().clear();
  RequireOpen();
  const auto connections = Connections();
  std::exception_ptr failure;
  for (const auto& connection : connections) {
    try {
      connection->End(false);
    } catch (...) {
      if (!failure) failure = std::current_exception();
    }
  }
  if (failure) std::rethrow_exception(failure);
  inTransaction_ = false;
}

void rdoEnvironment::Close() {
  engine_->rdoErrors().clear();
  while (!connections_.empty()) connections_.back()->Disconnect();
  handle_.Close();
  inTransaction_ = false;
  closed_ = true;
}

void rdoEnvironment::Join(rdoConnection* connection) { connections_.push_back(connection); }

void rdoEnvironment::Leave(rdoConnection* connection) noexcept { std::erase(connections_, connection); }

/// Kept, since a transaction may end the results that are all that holds one of them.
std::vector<rdoConnectionPtr> rdoEnvironment::Connections() const { return {connections_.begin(), connections_.end()}; }

void rdoEnvironment::RequireOpen() const {
  if (closed_) odbc::FailClosed("The environment is closed.");
}

}  // namespace velmoria
