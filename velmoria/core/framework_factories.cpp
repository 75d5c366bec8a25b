#include "velmoria/brokering/business_context.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/brokering/key_format_data.h"
#include "velmoria/core/framework.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/connections.h"
#include "velmoria/design/action.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/actions.h"
#include "velmoria/design/class.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/classes.h"
#include "velmoria/design/connector.h"
#include "velmoria/design/connector_data.h"
#include "velmoria/design/connectors.h"
#include "velmoria/design/database.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/databases.h"
#include "velmoria/design/link.h"
#include "velmoria/design/link_data.h"
#include "velmoria/design/links.h"
#include "velmoria/design/relationship.h"
#include "velmoria/design/relationship_data.h"
#include "velmoria/design/relationships.h"
#include "velmoria/design/server.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/servers.h"
#include "velmoria/design/source.h"
#include "velmoria/design/source_data.h"
#include "velmoria/design/sources.h"
#include "velmoria/properties/attribute_data.h"
#include "velmoria/properties/attributes.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_context.h"
#include "velmoria/properties/property_data.h"

namespace velmoria {

namespace {

// A facade without parents over a new definition of these fields.
template <class Facade, class Data, class Fields>
Ref<Facade> MakeOver(const Fields& fields) {
  auto data = Make<Data>();
  data->Setup(fields);
  auto facade = Make<Facade>();
  facade->Bind(data, {});
  return facade;
}

template <class Collection>
Ref<Collection> MakeTransient(bool locked, bool supportsRemove) {
  auto collection = Make<Collection>();
  collection->Setup(locked, true, supportsRemove);
  return collection;
}

}  // namespace

PropertyContextPtr Framework::CreatePropertyContext(const CreatePropertyContextArguments& arguments) const try {
  auto context = Make<PropertyContext>();
  context->Setup(arguments.Locked, arguments.SupportsAdd, arguments.SupportsRemove);
  return context;
} catch (...) { Failed("CreatePropertyContext"); }

BusinessContextPtr Framework::CreateBusinessContext() const {
  const BusinessContextFields defaults;
  return CreateBusinessContext(defaults);
}

BusinessContextPtr Framework::CreateBusinessContext(const BusinessContextFields& fields) const try {
  auto context = Make<BusinessContext>();
  context->Setup(fields);
  return context;
} catch (...) { Failed("CreateBusinessContext"); }

MessagePtr Framework::CreateMessage(const MessageArguments& arguments) const try {
  return Make<Message>(arguments);
} catch (...) { Failed("CreateMessage"); }

StatisticPtr Framework::CreateStatistic(const StatisticArguments& arguments) const try {
  return Make<Statistic>(arguments);
} catch (...) { Failed("CreateStatistic"); }

StatisticsPtr Framework::CreateStatistics() const try { return Make<Statistics>(); } catch (...) {
  Failed("CreateStatistics");
}

KeyFormatPtr Framework::CreateKeyFormat() const {
  const KeyFormatFields defaults;
  return CreateKeyFormat(defaults);
}

KeyFormatPtr Framework::CreateKeyFormat(const KeyFormatFields& fields) const try {
  return MakeOver<KeyFormat, KeyFormatData>(fields);
} catch (...) { Failed("CreateKeyFormat"); }

ServerPtr Framework::CreateServer(const ServerFields& fields) const try {
  return MakeOver<Server, ServerData>(fields);
} catch (...) { Failed("CreateServer"); }

DatabasePtr Framework::CreateDatabase(const DatabaseFields& fields) const try {
  return MakeOver<Database, DatabaseData>(fields);
} catch (...) { Failed("CreateDatabase"); }

ConnectorPtr Framework::CreateConnector(const ConnectorFields& fields) const try {
  return MakeOver<Connector, ConnectorData>(fields);
} catch (...) { Failed("CreateConnector"); }

ClassPtr Framework::CreateClass(const ClassFields& fields) const try {
  return MakeOver<Class, ClassData>(fields);
} catch (...) { Failed("CreateClass"); }

ActionPtr Framework::CreateAction(const ActionFields& fields) const try {
  return MakeOver<Action, ActionData>(fields);
} catch (...) { Failed("CreateAction"); }

SourcePtr Framework::CreateSource(const SourceFields& fields) const try {
  return MakeOver<Source, SourceData>(fields);
} catch (...) { Failed("CreateSource"); }

RelationshipPtr Framework::CreateRelationship(const RelationshipFields& fields) const try {
  return MakeOver<Relationship, RelationshipData>(fields);
} catch (...) { Failed("CreateRelationship"); }

LinkPtr Framework::CreateLink(const LinkFields& fields) const try {
  return MakeOver<Link, LinkData>(fields);
} catch (...) { Failed("CreateLink"); }

AttributePtr Framework::CreateAttribute(const AttributeFields& fields) const try {
  auto data = Make<AttributeData>();
  data->Setup(fields);
  return Make<Attribute>(data);
} catch (...) { Failed("CreateAttribute"); }

PropertyPtr Framework::CreateProperty(const PropertyFields& fields) const try {
  auto data = Make<PropertyData>();
  data->Setup(psNonPersistent, fields);
  auto property = Make<Property>();
  property->Bind(data, Parents{});
  return property;
} catch (...) { Failed("CreateProperty"); }

PropertiesPtr Framework::CreateProperties(const CreatePropertiesArguments& arguments) const try {
  auto properties = Make<Properties>();
  properties->Setup(arguments.Name, arguments.Locked, true, arguments.SupportsRemove, arguments.Engine);
  return properties;
} catch (...) { Failed("CreateProperties"); }

ConnectionsPtr Framework::CreateConnections(const std::string& name) const try {
  auto connections = Make<Connections>();
  connections->SetName(name);
  return connections;
} catch (...) { Failed("CreateConnections"); }

DatabasesPtr Framework::CreateDatabases(bool locked, bool supportsRemove) const try {
  return MakeTransient<velmoria::Databases>(locked, supportsRemove);
} catch (...) { Failed("CreateDatabases"); }

ServersPtr Framework::CreateServers(bool locked, bool supportsRemove) const try {
  return MakeTransient<velmoria::Servers>(locked, supportsRemove);
} catch (...) { Failed("CreateServers"); }

LinksPtr Framework::CreateLinks(bool locked, bool supportsRemove) const try {
  return MakeTransient<Links>(locked, supportsRemove);
} catch (...) { Failed("CreateLinks"); }

RelationshipsPtr Framework::CreateRelationships(bool locked, bool supportsRemove) const try {
  return MakeTransient<Relationships>(locked, supportsRemove);
} catch (...) { Failed("CreateRelationships"); }

SourcesPtr Framework::CreateSources(bool locked, bool supportsRemove) const try {
  return MakeTransient<Sources>(locked, supportsRemove);
} catch (...) { Failed("CreateSources"); }

ActionsPtr Framework::CreateActions(bool locked, bool supportsRemove) const try {
  return MakeTransient<Actions>(locked, supportsRemove);
} catch (...) { Failed("CreateActions"); }

AttributesPtr Framework::CreateAttributes(bool locked, bool supportsRemove) const try {
  return MakeTransient<Attributes>(locked, supportsRemove);
} catch (...) { Failed("CreateAttributes"); }

ClassesPtr Framework::CreateClasses(bool locked, bool supportsRemove) const try {
  return MakeTransient<Classes>(locked, supportsRemove);
} catch (...) { Failed("CreateClasses"); }

ConnectorsPtr Framework::CreateConnectors(bool locked, bool supportsRemove) const try {
  return MakeTransient<Connectors>(locked, supportsRemove);
} catch (...) { Failed("CreateConnectors"); }

}  // namespace velmoria
