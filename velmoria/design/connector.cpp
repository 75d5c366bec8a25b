#include "velmoria/design/connector.h"

#include "velmoria/core/display.h"
#include "velmoria/design/connector_data.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/design_object_impl.h"

namespace velmoria {

template class DesignObject<ConnectorKind>;

Connector::Connector() = default;
Connector::~Connector() = default;

zConnectionTypes Connector::ConnectionType() const { return Get(&ConnectorFields::ConnectionType); }
void Connector::SetConnectionType(zConnectionTypes value) {
  Let("ConnectionType (Let)", &ConnectorFields::ConnectionType, value);
}

std::string Connector::ConnectionString() const { return Get(&ConnectorFields::ConnectionString); }
void Connector::SetConnectionString(std::string value) {
  Let("ConnectionString (Let)", &ConnectorFields::ConnectionString, std::move(value));
}

zCursorDrivers Connector::CursorDriver() const { return Get(&ConnectorFields::CursorDriver); }
void Connector::SetCursorDriver(zCursorDrivers value) {
  Let("CursorDriver (Let)", &ConnectorFields::CursorDriver, value);
}
std::string Connector::CursorDriverName() const { return velmoria::CursorDriverName(CursorDriver()); }

zCursorTypes Connector::CursorType() const { return Get(&ConnectorFields::CursorType); }
void Connector::SetCursorType(zCursorTypes value) { Let("CursorType (Let)", &ConnectorFields::CursorType, value); }
std::string Connector::CursorTypeName() const { return velmoria::CursorTypeName(CursorType()); }

std::string Connector::UserName() const { return Get(&ConnectorFields::UserName); }
void Connector::SetUserName(std::string value) { Let("UserName (Let)", &ConnectorFields::UserName, std::move(value)); }

std::string Connector::Password() const { return Get(&ConnectorFields::Password); }
void Connector::SetPassword(std::string value) { Let("Password (Let)", &ConnectorFields::Password, std::move(value)); }

bool Connector::DefinitionValidation() const { return Get(&ConnectorFields::DefinitionValidation); }
void Connector::SetDefinitionValidation(bool value) {
  Let("DefinitionValidation (Let)", &ConnectorFields::DefinitionValidation, value);
}

std::string Connector::DatabaseName() const { return NameOf(HeldParents().Database); }

}  // namespace velmoria
