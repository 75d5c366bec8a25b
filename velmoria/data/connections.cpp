#include "velmoria/data/connections.h"

#include "velmoria/core/display.h"
#include "velmoria/core/index_text_impl.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/connection_recipe_impl.h"
#include "velmoria/data/rdo_engine_impl.h"
#include "velmoria/design/connector.h"
#include "velmoria/design/connector_data.h"
#include "velmoria/platform/rdo/rdo_engine.h"
#include "velmoria/platform/rdo/rdo_environment.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

std::string EngineKey(zEngines engine) { return NumberText(static_cast<std::int32_t>(engine)); }

std::size_t Slot(zEngines engine, std::size_t slots) {
  const auto number = static_cast<std::int32_t>(engine);
  if (number < 0 || static_cast<std::size_t>(number) >= slots) Fail(RuntimeFailure::SubscriptOutOfRange);
  return static_cast<std::size_t>(number);
}

}  // namespace

Connections::Connections() : statistics_(Make<velmoria::Statistics>()) {}

Connections::~Connections() {
  for (const auto& environment : environments_) CloseQuietly(environment);
}

StatisticsPtr Connections::Statistics() const { return statistics_; }

std::string Connections::Details() const {
  auto text = "Connections Count " + NumberText(static_cast<long long>(items_.Count())) + " for " +
              (name_.empty() ? "(Default)" : Quoted(name_)) + "\r\nTransactions Started: ";
  const char* separator = "";
  for (std::size_t slot = 0; slot < kEngines; ++slot) {
    if (!transStarted_[slot]) continue;
    text += separator + EngineName(static_cast<zEngines>(slot));
    separator = "; ";
  }
  for (const auto& item : items_) text += "\r\n" + item->Details();
  return text;
}

ConnectionPtr Connections::Find(const Variant& index) const { return items_.Get(index); }

ConnectionPtr Connections::Item(const Variant& index) const try {
  const auto found = Find(index);
  if (!found) Raise(errItem_Connection, "Item", {IndexText(index, AnyNumberOrBoolean)});
  return found;
} catch (...) { Failed("Item"); }

zEngines Connections::Resolved(zEngines engine) const {
  if (engine != engUnknown) return engine;
  const auto* first = items_.FindAt(1);
  return first ? (*first)->Engine() : engUnknown;
}

ConnectionPtr Connections::MakeItem(const ConnectionFields& fields, zEngines engine) const {
  auto item = Make<Connection>();
  if (!fields.Connector) {
    if (fields.DatabaseName.empty()) Raise(errMissing_ConnectionInfo, "SetupItem");
    item->Setup({.DatabaseName = fields.DatabaseName,
                 .Engine = engine,
                 .ConnectionType = fields.ConnectionType,
                 .ConnectionString = fields.ConnectionString,
                 .CursorDriver = fields.CursorDriver,
                 .CursorType = fields.CursorType,
                 .ConnectionsName = name_,
                 .Password = fields.Password,
                 .UserName = fields.UserName});
    return item;
  }
  const auto& from = *fields.Connector;
  item->Setup({.DatabaseName = from.DatabaseName(),
               .Engine = from.Engine(),
               .ConnectionType = from.ConnectionType(),
               .ConnectionString = from.ConnectionString(),
               .CursorDriver = from.CursorDriver(),
               .CursorType = from.CursorType(),
               .ConnectionsName = name_,
               .Password = from.Data()->Password(),
               .UserName = from.UserName()});
  return item;
}

ConnectionPtr Connections::SetupItem(const ConnectionFields& fields) try {
  auto item = MakeItem(fields, Resolved(fields.Engine));
  AddItem(item);
  return item;
} catch (...) { Failed("SetupItem"); }

void Connections::AddItem(const ConnectionPtr& item) try { items_.Add(item, item->DatabaseName()); } catch (...) {
  Failed("SetupItem", errAdd_Connection, {item->DatabaseName()});
}

void Connections::Prepare(zEngines engine, const std::string& userName, const std::string& password) try {
  const auto slot = Slot(engine, kEngines);
  userNames_[slot] = userName;
  passwords_[slot] = password;
} catch (...) { Failed("Prepare"); }

Ref<rdoEnvironment> Connections::GetEnvironment(zEngines engine, const std::string& userName,
                                                const std::string& password) try {
  if (!IsServerEngine(engine)) Raise(errNotSupported_Engine, "GetEnvironment", {EngineName(engine)});
  const auto* found = environments_.FindKey(EngineKey(engine));
  return found ? *found : MakeEnvironment(engine, userName, password);
} catch (...) { Failed("GetEnvironment"); }

Ref<rdoEnvironment> Connections::MakeEnvironment(zEngines engine, const std::string& userName,
                                                 const std::string& password) try {
  if (!userName.empty()) Prepare(engine, userName, password);
  const auto slot = Slot(engine, kEngines);
  auto environment = RdoEngine().rdoCreateEnvironment("", userNames_[slot], passwords_[slot]);
  environments_.Add(environment, EngineKey(engine));
  return environment;
} catch (...) {
  Failed("GetEnvironment", errRDO_Environment, {name_, EngineName(engine), userName},
         PasswordHint(passwords_[Slot(engine, kEngines)]));
}

void Connections::Disconnect(zEngines engine) try {
  const auto resolved = Resolved(engine);
  if (resolved != engAccess && !IsServerEngine(resolved))
    Raise(errNotSupported_Engine, "Disconnect", {EngineName(resolved)});
  for (const auto& item : items_)
    if (item->Engine() == resolved) item->Disconnect();
  if (resolved != engAccess) CloseEnvironment(resolved, engine);
} catch (...) { Failed("Disconnect"); }

void Connections::CloseEnvironment(zEngines engine, zEngines argument) {
  const auto* environment = environments_.FindKey(EngineKey(engine));
  if (!environment) return;
  (*environment)->Close();
  // By the argument as it came: a call without one closes the environment and fails here.
  if (!environments_.RemoveKey(EngineKey(argument))) Fail(RuntimeFailure::InvalidArgument);
}

bool Connections::TransStarted(zEngines engine) const try {
  return transStarted_[Slot(Resolved(engine), kEngines)];
} catch (...) { Failed("TransStarted (Get)"); }

// Access has no session here that a transaction could cover, so only its flag changes.
template <class Call>
void Connections::Transact(zEngines engine, const char* routine, bool started, Call call) try {
  const auto resolved = Resolved(engine);
  if (IsServerEngine(resolved))
    call(*environments_.At(Variant(EngineKey(resolved))));
  else if (resolved != engAccess)
    Raise(errNotSupported_Engine, routine, {EngineName(resolved)});
  transStarted_[Slot(resolved, kEngines)] = started;
} catch (...) { Failed(routine); }

void Connections::TransBegin(zEngines engine) {
  Transact(engine, "TransBegin", true, [](rdoEnvironment& environment) { environment.BeginTrans(); });
}

void Connections::TransCommit(zEngines engine) {
  Transact(engine, "TransCommit", false, [](rdoEnvironment& environment) { environment.CommitTrans(); });
}

void Connections::TransRollback(zEngines engine) {
  Transact(engine, "TransRollback", false, [](rdoEnvironment& environment) { environment.RollbackTrans(); });
}

}  // namespace velmoria
