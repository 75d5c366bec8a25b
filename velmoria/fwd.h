#pragma once

// Every class of the library, forward-declared with its handle. A header needs no more than this of its own floor.

#include "velmoria/runtime/ref.h"

namespace velmoria {

// core
class Framework;
class Message;
class Messages;
class Profile;
class Statistic;
class Statistics;
using MessagePtr = Ref<Message>;
using MessagesPtr = Ref<Messages>;
using ProfilePtr = Ref<Profile>;
using StatisticPtr = Ref<Statistic>;
using StatisticsPtr = Ref<Statistics>;

// properties
class Attribute;
class AttributeData;
class Attributes;
class AttributesData;
class Properties;
class PropertiesData;
class Property;
class PropertyContext;
class PropertyData;
struct Parents;
using AttributePtr = Ref<Attribute>;
using AttributeDataPtr = Ref<AttributeData>;
using AttributesPtr = Ref<Attributes>;
using AttributesDataPtr = Ref<AttributesData>;
using PropertiesPtr = Ref<Properties>;
using PropertiesDataPtr = Ref<PropertiesData>;
using PropertyPtr = Ref<Property>;
using PropertyContextPtr = Ref<PropertyContext>;
using PropertyDataPtr = Ref<PropertyData>;

// design
class Action;
class ActionData;
class Actions;
class Class;
class ClassData;
class Classes;
class Connector;
class ConnectorData;
class Connectors;
class Database;
class DatabaseData;
class Databases;
class Link;
class LinkData;
class Links;
class Relationship;
class RelationshipData;
class Relationships;
class Server;
class ServerData;
class Servers;
class Source;
class SourceData;
class Sources;
template <class Kind>
class DesignCollectionData;
struct ActionKind;
struct ClassKind;
struct ConnectorKind;
struct DatabaseKind;
struct LinkKind;
struct RelationshipKind;
struct ServerKind;
struct SourceKind;
using ActionPtr = Ref<Action>;
using ActionDataPtr = Ref<ActionData>;
using ActionsPtr = Ref<Actions>;
using ActionsData = DesignCollectionData<ActionKind>;
using ActionsDataPtr = Ref<ActionsData>;
using ClassPtr = Ref<Class>;
using ClassDataPtr = Ref<ClassData>;
using ClassesPtr = Ref<Classes>;
using ClassesData = DesignCollectionData<ClassKind>;
using ClassesDataPtr = Ref<ClassesData>;
using ConnectorPtr = Ref<Connector>;
using ConnectorDataPtr = Ref<ConnectorData>;
using ConnectorsPtr = Ref<Connectors>;
using ConnectorsData = DesignCollectionData<ConnectorKind>;
using ConnectorsDataPtr = Ref<ConnectorsData>;
using DatabasePtr = Ref<Database>;
using DatabaseDataPtr = Ref<DatabaseData>;
using DatabasesPtr = Ref<Databases>;
using DatabasesData = DesignCollectionData<DatabaseKind>;
using DatabasesDataPtr = Ref<DatabasesData>;
using LinkPtr = Ref<Link>;
using LinkDataPtr = Ref<LinkData>;
using LinksPtr = Ref<Links>;
using LinksData = DesignCollectionData<LinkKind>;
using LinksDataPtr = Ref<LinksData>;
using RelationshipPtr = Ref<Relationship>;
using RelationshipDataPtr = Ref<RelationshipData>;
using RelationshipsPtr = Ref<Relationships>;
using RelationshipsData = DesignCollectionData<RelationshipKind>;
using RelationshipsDataPtr = Ref<RelationshipsData>;
using ServerPtr = Ref<Server>;
using ServerDataPtr = Ref<ServerData>;
using ServersPtr = Ref<Servers>;
using ServersData = DesignCollectionData<ServerKind>;
using ServersDataPtr = Ref<ServersData>;
using SourcePtr = Ref<Source>;
using SourceDataPtr = Ref<SourceData>;
using SourcesPtr = Ref<Sources>;
using SourcesData = DesignCollectionData<SourceKind>;
using SourcesDataPtr = Ref<SourcesData>;

// data
class Connection;
class ConnectionContext;
class Connections;
class DatabaseAgent;
class Recordset;
class SQLAgent;
using ConnectionPtr = Ref<Connection>;
using ConnectionContextPtr = Ref<ConnectionContext>;
using ConnectionsPtr = Ref<Connections>;
using DatabaseAgentPtr = Ref<DatabaseAgent>;
using RecordsetPtr = Ref<Recordset>;
using SQLAgentPtr = Ref<SQLAgent>;

// brokering
class BusinessCollection;
class BusinessContext;
class BusinessObject;
class BusinessObjects;
class IBusinessObject;
class IBusinessObjects;
class Identifier;
class KeyFormat;
class KeyFormatData;
class Model;
using BusinessCollectionPtr = Ref<BusinessCollection>;
using BusinessContextPtr = Ref<BusinessContext>;
using BusinessObjectPtr = Ref<BusinessObject>;
using BusinessObjectsPtr = Ref<BusinessObjects>;
using IBusinessObjectPtr = Ref<IBusinessObject>;
using IBusinessObjectsPtr = Ref<IBusinessObjects>;
using IdentifierPtr = Ref<Identifier>;
using KeyFormatPtr = Ref<KeyFormat>;
using KeyFormatDataPtr = Ref<KeyFormatData>;
using ModelPtr = Ref<Model>;

// repository
class DataFile;
using DataFilePtr = Ref<DataFile>;

}  // namespace velmoria
