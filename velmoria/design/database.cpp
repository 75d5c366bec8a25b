#include "velmoria/design/database.h"

#include "velmoria/design/connectors.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/design_object_impl.h"

namespace velmoria {

template class DesignObject<DatabaseKind>;

Database::Database() = default;
Database::~Database() = default;

void Database::SetName(std::string value) { Let("Name (Let)", &DatabaseFields::Name, std::move(value)); }

std::string Database::FileName() const { return Data()->FileName(); }
void Database::SetFileName(std::string value) {
  RefuseLocked("FileName (Let)");
  Data()->SetFileName(std::move(value));
}

zEngines Database::Engine() const { return Get(&DatabaseFields::Engine); }
void Database::SetEngine(zEngines value) { Let("Engine (Let)", &DatabaseFields::Engine, value); }
std::string Database::EngineName() const { return Data()->EngineName(); }

bool Database::AutoConnect() const { return Get(&DatabaseFields::AutoConnect); }
void Database::SetAutoConnect(bool value) { Let("AutoConnect (Let)", &DatabaseFields::AutoConnect, value); }

bool Database::LoadOnStartup() const { return Get(&DatabaseFields::LoadOnStartup); }
void Database::SetLoadOnStartup(bool value) { Let("LoadOnStartup (Let)", &DatabaseFields::LoadOnStartup, value); }

ConnectorsPtr Database::Connectors() { return Child(connectors_); }

void Database::PassOn(const ParentChange& change) {
  change.To(connectors_);
  DesignObject::PassOn(change);
}

}  // namespace velmoria
