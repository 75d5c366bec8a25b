#include "velmoria/data/connection.h"

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/display.h"
#include "velmoria/core/now.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/connection_context.h"
#include "velmoria/data/connection_recipe_impl.h"
#include "velmoria/data/connections.h"
#include "velmoria/data/rdo_engine_impl.h"
#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_environment.h"

namespace velmoria {

namespace {

struct DriverRow {
  zCursorDrivers Driver;
  rdoNumber Value;
};
constexpr DriverRow kDrivers[] = {
    {crdNone, rdUseNone},
    {crdClientSide, rdUseODBC},
    {crdServerSide, rdUseServer},
    {crdOptimisticBatch, rdUseClientBatch},
    {crdTryServerSide, rdUseIfNeeded},
};

/// A value outside the table leaves the environment as it is.
void SetDriver(rdoEnvironment& environment, zCursorDrivers driver) {
  for (const auto& row : kDrivers)
    if (row.Driver == driver) environment.SetCursorDriver(row.Value);
}

constexpr char kDriverManagerRefused[] = "IM002";

}  // namespace

Connection::Connection() : statistics_(Make<velmoria::Statistics>()) {}

Connection::~Connection() { CloseQuietly(rdoConnection_); }

StatisticsPtr Connection::Statistics() const { return statistics_; }
std::string Connection::EngineName() const { return velmoria::EngineName(engine_); }
std::string Connection::CursorDriverName() const { return velmoria::CursorDriverName(cursorDriver_); }
std::string Connection::CursorTypeName() const { return velmoria::CursorTypeName(cursorType_); }
bool Connection::ConnectionOpen() const { return rdoConnection_ != nullptr; }

std::string Connection::Details() const {
  auto text = "Connection to Database: '" + databaseName_ + "'  Engine: '" + EngineName() + "'  Connect Type: '" +
              velmoria::ConnectionTypeName(connectionType_) + "'  Username: '" + userName_ + "'";
  if (!rdoConnection_) return text;
  text += "\r\n    Connected to '" + EngineName() + "'  CursorDriver: '" + CursorDriverName() + "'  CursorType: '" +
          CursorTypeName() + "'";
  if (transStarted_) text += " (Transaction Started)";
  return text;
}

StatisticPtr Connection::AddStatistic(const char* name) {
  return statistics_->SetupItem(
      {.Name = name, .SubjectLabel = "RDO Connection", .SubjectCount = 1, .StartTime = Now()});
}

Ref<rdoConnection> Connection::GetConnection() try {
  if (!IsServerEngine(engine_)) Raise(errNotSupported_Engine, "GetConnection", {EngineName()});
  // A server that went away and came back must not need a Disconnect before the next call works.
  if (rdoConnection_ && rdoConnection_->IsLost()) Disconnect();
  if (!rdoConnection_) Open();
  return rdoConnection_;
} catch (...) { Failed("GetConnection"); }

// After a failure the connection stays set up and its statistic has no end.
void Connection::Open() try {
  const auto statistic = AddStatistic("Open RDO Connection");
  const auto group = Present(Apartment().ConnectionContext)->Item(connectionsName_);
  const auto environment = group->GetEnvironment(engine_, userName_, password_);
  SetDriver(*environment, cursorDriver_);
  const auto prompt = connectionType_ == ctPrompt ? rdDriverPrompt : rdDriverNoPrompt;
  rdoConnection_ = environment->OpenConnection({.Prompt = prompt, .Connect = connectString_});
  statistic->SetEndTime(Now());
} catch (...) {
  // Read before anything is recorded, for that empties the engine's list.
  const bool refused = FirstSQLState() == kDriverManagerRefused;
  Failed("GetConnection", errRDO_Connection, {connectionsName_, databaseName_, EngineName(), userName_},
         refused
             ? "Examine your ConnectionString, Could be a security issue, it may also have a problem finding the DSN."
             : PasswordHint(password_));
}

void Connection::Connect() try { GetConnection(); } catch (...) {
  Failed("Connect");
}

void Connection::Disconnect() try {
  if (!rdoConnection_) return;
  const auto statistic = AddStatistic("Close RDO Connection");
  rdoConnection_->Close();
  rdoConnection_ = nullptr;
  statistic->SetEndTime(Now());
} catch (...) { Failed("Disconnect"); }

Ref<rdoConnection> Connection::Checked(const char* routine) {
  if (!IsServerEngine(engine_)) Raise(errNotSupported_Engine, routine, {EngineName()});
  return GetConnection();
}

bool Connection::SupportsTransactions() try {
  return Checked("SupportsTransactions (Get)")->Transactions();
} catch (...) { Failed("SupportsTransactions (Get)"); }

void Connection::TransBegin() try {
  Checked("TransBegin")->BeginTrans();
  transStarted_ = true;
} catch (...) { Failed("TransBegin"); }

void Connection::TransCommit() try {
  Checked("TransCommit")->CommitTrans();
  transStarted_ = false;
} catch (...) { Failed("TransCommit"); }

void Connection::TransRollback() try {
  Checked("TransRollback")->RollbackTrans();
  transStarted_ = false;
} catch (...) { Failed("TransRollback"); }

}  // namespace velmoria
