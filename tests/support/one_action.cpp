#include "tests/support/one_action.h"

#include "velmoria/brokering/identifier.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/actions.h"
#include "velmoria/design/class.h"
#include "velmoria/design/classes.h"
#include "velmoria/design/connector.h"
#include "velmoria/design/connectors.h"
#include "velmoria/design/database.h"
#include "velmoria/design/databases.h"
#include "velmoria/design/server.h"
#include "velmoria/design/servers.h"
#include "velmoria/design/source.h"
#include "velmoria/design/sources.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"

namespace velmoria::test {

OneAction::OneAction(const OneActionFields& fields) {
  Database = Apartment().Databases->SetupItem({.Name = "Shop", .Engine = fields.Engine, .AutoConnect = true});
  Database->Connectors()->SetupItem({.Engine = fields.Engine,
                                     .ConnectionType = fields.Engine == engAccess ? ctFile : ctText,
                                     .ConnectionString = fields.ConnectString,
                                     .CursorDriver = crdClientSide,
                                     .CursorType = fields.CursorType});
  Server = Apartment().Servers->SetupItem({.Name = "Sales"});
  Class = Server->Classes()->SetupItem({.Name = "Order", .SingleActionName = "Get", .DefaultActionName = "Get"});
  Class->Properties()->SetupItem(
      {.Name = "Id", .DataType = dtLongInteger, .SourceName = "Id", .SourceColumn = "Id", .Flags = pfInput});
  Action = Class->Actions()->SetupItem({.Name = "Get",
                                        .DatabaseName = "Shop",
                                        .UsageFlags = ufAll,
                                        .EditFlags = fields.EditFlags,
                                        .ObjectType = otModel,
                                        .ObjectBuffer = fields.ObjectBuffer});
  Source = Action->Sources()->SetupItem({.Engine = fields.Engine,
                                         .SourceType = fields.SourceType,
                                         .SourceText = fields.SourceText,
                                         .OptionFlags = fields.OptionFlags});
}

DatabaseAgentPtr OneAction::Agent(const PropertiesPtr& parameters) const {
  auto agent = Make<DatabaseAgent>();
  agent->Initialize(Class, Action, parameters, -1);
  return agent;
}

RecordsetPtr OneAction::Read(const PropertiesPtr& parameters) const {
  return Agent(parameters)->GetRecordset(0, nullptr, false);
}

PropertiesPtr OneAction::Key(std::int32_t id) const {
  auto parameters = Class->CreateIdentifier()->Properties()->Copy();
  parameters->Item("Id")->SetValue(id);
  return parameters;
}

}  // namespace velmoria::test
