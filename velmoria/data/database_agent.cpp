#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/data/agents/sql_agent_impl.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/source.h"
#include "velmoria/design/sources.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

/// What tells a deleted row: its number when it is bound, for its key cannot be read any more, else a text of its
/// Identifier.
std::string DeletedText(Properties& properties, std::string (*textOf)(const Identifier&)) {
  if (properties.IsBound()) return NumberText(properties.Row());
  const auto identifier = properties.Identifier();
  return identifier ? textOf(*identifier) : std::string();
}

}  // namespace

Agent::~Agent() = default;
RecordsetPtr Agent::GetAsyncRecordset(const DatabaseAgentPtr&) { return {}; }
Variant Agent::GetBLOBFieldValue(const Variant&, const PropertiesPtr&) { return {}; }

DatabaseAgent::DatabaseAgent() = default;
DatabaseAgent::~DatabaseAgent() = default;

void DatabaseAgent::Initialize(const ClassPtr& classObject, const ActionPtr& action, const PropertiesPtr& parameters,
                               std::int32_t objectBuffer) try {
  action_ = action;
  const auto source = action->Sources()->Item();
  accessMethod_ = source->AccessMethod();
  if (accessMethod_ == kDao) Raise(errNotSupported_Engine, "Initialize", {source->EngineName()});
  if (accessMethod_ != kRdo) return;
  auto agent = std::make_unique<SQLAgent>();
  agent->Initialize(classObject, action, parameters, objectBuffer);
  backEnd_ = std::move(agent);
} catch (...) { Failed("Initialize"); }

void DatabaseAgent::Initialize(const ActionPtr& action, std::unique_ptr<Agent> backEnd, std::int32_t accessMethod) {
  action_ = action;
  backEnd_ = std::move(backEnd);
  accessMethod_ = accessMethod;
}

ActionPtr DatabaseAgent::Action() const { return action_; }
ClassPtr DatabaseAgent::Class() const { return backEnd_ ? backEnd_->Class() : nullptr; }
SourcePtr DatabaseAgent::Source() const { return backEnd_ ? backEnd_->Source() : nullptr; }
std::int32_t DatabaseAgent::ObjectBuffer() const { return backEnd_ ? backEnd_->ObjectBuffer() : 0; }
std::string DatabaseAgent::Details() const { return backEnd_ ? backEnd_->Details() : std::string(); }

std::int32_t DatabaseAgent::RowCount() try { return backEnd_ ? backEnd_->RowCount() : 0; } catch (...) {
  Failed("RowCount (Get)");
}

PropertiesDataPtr DatabaseAgent::PropertiesData() try {
  return backEnd_ ? backEnd_->PropertiesData() : nullptr;
} catch (...) { Failed("PropertiesData (Get)"); }

RecordsetPtr DatabaseAgent::GetRecordset(std::int32_t /*pageStep*/, const RecordsetPtr& previous, bool flag) try {
  if (!backEnd_) return {};
  // The flag is for Access alone.
  return backEnd_->GetRecordset(DatabaseAgentPtr(this), previous, accessMethod_ == kDao && flag);
} catch (...) { Failed("GetRecordset"); }

void DatabaseAgent::LoadPersistentProperties() try {
  if (accessMethod_ == kRdo && backEnd_) backEnd_->LoadPersistentProperties();
} catch (...) { Failed("LoadPersistentProperties"); }

void DatabaseAgent::Cancel() try {
  if (AsyncFlag()) backEnd_->Cancel();
} catch (...) { Failed("Cancel"); }

Variant DatabaseAgent::GetBLOBFieldValue(const Variant& index, const PropertiesPtr& properties) try {
  RefuseDeleted(*properties, "GetBLOBFieldValue", [](const Identifier& identifier) { return identifier.Details(); });
  return accessMethod_ == kRdo && backEnd_ ? backEnd_->GetBLOBFieldValue(index, properties) : Variant();
} catch (...) { Failed("GetBLOBFieldValue"); }

bool DatabaseAgent::StillExecuting() try { return AsyncFlag() && backEnd_->StillExecuting(); } catch (...) {
  Failed("StillExecuting (Get)");
}

RecordsetPtr DatabaseAgent::Recordset() try {
  return AsyncFlag() ? backEnd_->GetAsyncRecordset(DatabaseAgentPtr(this)) : RecordsetPtr{};
} catch (...) { Failed("Recordset (Get)"); }

void DatabaseAgent::Execute() try {
  if (backEnd_) backEnd_->Execute();
} catch (...) { Failed("Execute"); }

void DatabaseAgent::RefuseDeleted(Properties& properties, const char* routine, IdentifierText textOf) const {
  if (has(properties.StateFlags(), sfdeleted))
    Raise(errPersistence_Deleted, routine, {DeletedText(properties, textOf)});
}

void DatabaseAgent::CheckEditFlags(bool isNew) const {
  if (has(action_->EditFlags(), isNew ? efInsert : efUpdate)) return;
  Raise(isNew ? errNotSupported_Insert : errNotSupported_Update, "UpdatePersistentProperties",
        {action_->Name(), action_->EditFlagsDisplay()});
}

bool DatabaseAgent::Write(const PropertiesPtr& properties, zStateFlags state) {
  const bool isNew = has(state, sfNew);
  if (has(state, sfpendingdelete)) {
    if (!isNew) backEnd_->DeletePersistentProperties(properties);
    return true;
  }
  if (!properties->DirtyValues()) return false;
  if (isNew)
    backEnd_->InsertPersistentProperties(properties);
  else
    backEnd_->UpdatePersistentProperties(properties);
  return true;
}

void DatabaseAgent::UpdatePersistentProperties(const PropertiesPtr& properties, std::int32_t /*flag*/,
                                               bool& written) try {
  written = false;
  const auto state = properties->StateFlags();
  CheckEditFlags(has(state, sfNew));
  RefuseDeleted(*properties, "UpdatePersistentProperties",
                [](const Identifier& identifier) { return identifier.Key(); });
  if (!backEnd_) return;
  written = Write(properties, state);
  if (!written) return;
  for (const auto& property : *properties) property->MarkUpdated();
} catch (...) { Failed("UpdatePersistentProperties"); }

void DatabaseAgent::DeletePersistentProperties(const PropertiesPtr& properties, std::int32_t /*flag*/) try {
  // Equality, not a bit test: only the bare efDelete is refused, and with the words for updating.
  if (action_->EditFlags() == efDelete)
    Raise(errNotSupported_Update, "DeletePersistentProperties", {action_->Name(), action_->EditFlagsDisplay()});
  RefuseDeleted(*properties, "DeletePersistentProperties",
                [](const Identifier& identifier) { return identifier.Details(); });
  if (backEnd_) backEnd_->DeletePersistentProperties(properties);
} catch (...) { Failed("DeletePersistentProperties"); }

}  // namespace velmoria
