#include "velmoria/brokering/identifier.h"
#include "velmoria/core/access_method_impl.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/connection_context.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/connector.h"
#include "velmoria/design/connectors.h"
#include "velmoria/design/database.h"
#include "velmoria/design/parent_change_impl.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/source.h"
#include "velmoria/design/sources.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria {

namespace {

// Finds the property by its own name, then by its source.
PropertyPtr SameProperty(const Properties& parameters, const PropertyPtr& property) {
  return parameters.Find({Variant::Missing(), {}, {}, property});
}

PropertyPtr InputCopy(const PropertyPtr& property) {
  auto copy = property->Copy();
  copy->Data()->SetFlags(copy->Flags() & pfInput);
  return copy;
}

}  // namespace

zEngines Action::DatabaseEngine() const { return Data()->DatabaseEngine(); }

std::string Action::DatabaseEngineName() const { return Data()->DatabaseEngineName(); }

ConnectionPtr Action::Connection() try {
  if (!connection_) connection_ = FindOrSetupConnection();
  return connection_;
} catch (...) { Failed("Connection (Get)"); }

ConnectionPtr Action::FindOrSetupConnection() const {
  const auto context = Present(Apartment().ConnectionContext);
  if (auto found = context->FindConnection(DatabaseName(), ConnectionsName())) return found;
  const auto database = Present(Data()->Database());
  if (!database->AutoConnect()) Raise(errNotSupported_AutoConnect, "Connection (Get)", {database->Name()});
  return context->SetupConnection(
      {.ConnectionsName = ConnectionsName(), .Connector = database->Connectors()->Item(engUnknown)});
}

bool Action::SupportsAsync() try { return Connection()->SupportsAsync(); } catch (...) {
  Failed("SupportsAsync (Get)");
}

std::int32_t Action::RecordSetType() const { return Data()->RecordSetType(); }

bool Action::IsReadOverRDO() { return Sources()->Item()->AccessMethod() == kRdo; }

// A Source of an unknown engine has no columns.
PropertiesPtr Action::CreateProperties() try {
  const bool hasColumns = Sources()->Item()->AccessMethod() != kNoAccess;
  return BoundProperties(psDefinition, hasColumns ? DescribeSource() : nullptr, ParentsForChildren());
} catch (...) { Failed("CreateProperties"); }

PropertiesDataPtr Action::DescribeSource() {
  const auto& parents = HeldParents();
  if (!parents.Class) Raise(errRequires_Class, "CreateProperties", {"Creating Properties"});
  if (!parents.Server) Raise(errRequires_Server, "CreateProperties", {"Creating Properties"});
  Parents above;
  above.Server = parents.Server;
  auto classObject = Make<velmoria::Class>();
  classObject->Bind(parents.Class, above);
  auto agent = Make<DatabaseAgent>();
  agent->Initialize(classObject, ActionPtr(this), CreateParameters(), 0);
  return agent->PropertiesData();
}

PropertiesPtr Action::CreateParameters(const IdentifierPtr& identifier) try {
  auto parameters = Sources()->Item()->Parameters()->Copy();
  if (!identifier) return parameters;
  for (const auto& property : *Present(identifier->Properties())) {
    if (const auto parameter = SameProperty(*parameters, property)) {
      parameter->SetValue(property->Value());
    } else {
      parameters->Add(InputCopy(property));
    }
  }
  parameters->LoadItems();
  return parameters;
} catch (...) { Failed("CreateParameters"); }

}  // namespace velmoria
