#include "velmoria/design/connector_data.h"

#include "velmoria/core/engine_list_impl.h"
#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/design_data_impl.h"
#include "velmoria/design/machine_default_impl.h"
#include "velmoria/platform/odbc/passwords.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

template class DesignData<ConnectorKind>;
template class DesignCollectionData<ConnectorKind>;

namespace {

// A file needs no cursor: what is given for one is dropped.
void CompleteForAccess(ConnectorFields& fields) {
  if (fields.ConnectionType == ctNone) fields.ConnectionType = ctFile;
  fields.CursorDriver = crdNone;
  fields.CursorType = crtNone;
}

void CompleteForServer(ConnectorFields& fields) {
  fields.ConnectionType = GivenOrMachineDefault(fields.ConnectionType, "ConnectionType", fields.Engine);
  fields.CursorDriver = GivenOrMachineDefault(fields.CursorDriver, "CursorDriver", fields.Engine);
  fields.CursorType = GivenOrMachineDefault(fields.CursorType, "CursorType", fields.Engine);
}

// A semicolon stands in front even where the text ends in one; a Connection adds none there.
void AppendPart(std::string& text, std::string_view key, const std::string& value) {
  if (!text.empty()) text += ';';
  text.append(key).append(value);
}

void AppendLogOnPart(std::string& text, std::string_view key, const std::string& value) {
  if (!value.empty() && !ContainsFolded(text, key)) AppendPart(text, key, value);
}

}  // namespace

ConnectorData::ConnectorData() = default;
ConnectorData::~ConnectorData() = default;

void ConnectorData::Setup(ConnectorFields fields) try {
  const auto engine = fields.Engine;
  if (!IsDefinableEngine(engine)) Raise(errInvalid_Engine, "Setup", {KeyedByEngine::Text(engine)});
  engine == engAccess ? CompleteForAccess(fields) : CompleteForServer(fields);
  if (fields.UserName.empty()) { fields.UserName = MachineDefault("Username", engine, "", dtString).AsText(); }
  Adopt(std::move(fields));
  SetUserProperties({});
} catch (...) { Failed("Setup"); }

std::string ConnectorData::Details() const {
  const auto& fields = Fields();
  return "Connector: " + Quoted(EngineName()) + "  ConnectionType: " + Quoted(ConnectionTypeName()) +
         "  ConnectionString: " + Quoted(odbc::WithoutPasswords(fields.ConnectionString)) +
         "  Username: " + Quoted(fields.UserName) +
         "  DefinitionValidation: " + Quoted(Variant(fields.DefinitionValidation).AsText()) +
         "  CursorDriver: " + Quoted(CursorDriverName(fields.CursorDriver)) +
         "  CursorType: " + Quoted(CursorTypeName(fields.CursorType));
}

std::string ConnectorData::ConnectionTypeName() const { return velmoria::ConnectionTypeName(Fields().ConnectionType); }

std::string ConnectorData::ConnectionsName() const { return NumberText(connectionsName_); }

void ConnectorData::SetConnectionsName(const std::string& value) {
  const auto number = Variant(value).AsLong();
  if (number == connectionsName_) return;
  connectionsName_ = number;
  Stamp();
}

std::string ConnectorData::ODBCConnectionString() const {
  const auto type = Fields().ConnectionType;
  if (type < ctDSN || type > ctPrompt) {
    Raise(ErrInvalid_ConnectionType, "ODBCConnectionString (Get)",
          {NumberText(static_cast<std::int32_t>(type)), EngineName()});
  }
  const auto& given = Fields().ConnectionString;
  if (type == ctFile || type == ctPrompt) return given;
  std::string text = type == ctText ? given : std::string();
  AppendLogOnPart(text, "UID=", Fields().UserName);
  AppendLogOnPart(text, "PWD=", Fields().Password);
  if (type == ctDSN) AppendPart(text, "DSN=", given);
  return text;
}

}  // namespace velmoria
