#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "velmoria/core/message.h"
#include "velmoria/core/reporting.h"
#include "velmoria/core/statistic.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

// Each stands beside its class; velmoria/velmoria.h has them all.
struct ActionFields;
struct AttributeFields;
struct BusinessContextFields;
struct ClassFields;
struct ConnectorFields;
struct CreateBusinessObjectArguments;
struct DatabaseFields;
struct GetBusinessObjectArguments;
struct GetBusinessObjectsArguments;
struct KeyFormatFields;
struct LinkFields;
struct PropertyFields;
struct RelationshipFields;
struct ServerFields;
struct SetupConnectionArguments;
struct SourceFields;

struct CreateBusinessObjectsArguments {
  std::string ClassName{};  // of the host collection to wrap the new one in; empty for none
  std::string Name{};
  KeyFormatPtr KeyFormat{};
  bool Locked = false;
  StatisticsPtr Statistics{};
  bool SupportsRemove = true;
  std::string ServerName{};
};

struct CreatePropertiesArguments {
  std::string Name{};
  bool Locked = false;
  bool SupportsRemove = true;
  zEngines Engine = engUnknown;
};

struct CreatePropertyContextArguments {
  bool Locked = false;
  bool SupportsAdd = true;
  bool SupportsRemove = true;
};

/// The front door. It has no state of its own: every Framework forwards to the apartment of the calling thread, which
/// starts at its first use, so any number of them behave as one. What a factory makes is new, belongs to nothing and
/// lives as long as somebody holds it. Every routine raises 15000 when the part of the apartment that it needs could
/// not be made at the start.
class VELMORIA_API Framework final : public Reporting {
 public:
  std::string_view ReportedType() const noexcept override { return "Framework"; }

  Framework& Self() noexcept { return *this; }
  std::string Version() const;
  MessagesPtr Messages() const;
  ProfilePtr Profile() const;
  /// The registered ones.
  DatabasesPtr Databases() const;
  ServersPtr Servers() const;
  ConnectionContextPtr ConnectionContext() const;
  /// The engines that the Profile supports, as an array of 16-bit integers from 0; Empty when there is none.
  Variant SupportedEngines() const;

  /// BusinessContext.GetBusinessObject on the apartment's default context. The ServerName, an empty one too, stays in
  /// that context for the next call.
  IBusinessObjectPtr GetBusinessObject(const GetBusinessObjectArguments& arguments) const;
  /// BusinessContext.GetBusinessObjects on the same context.
  IBusinessObjectsPtr GetBusinessObjects(const GetBusinessObjectsArguments& arguments) const;
  /// BusinessContext.CreateBusinessObject on the same context, whose ObjectType goes back to otDefault first. The one
  /// that decides stays there, and so decides for the next call of the other two.
  IBusinessObjectPtr CreateBusinessObject(const CreateBusinessObjectArguments& arguments) const;

  /// The identifier of a class with no values yet. Without a ServerName the first registered server that has the class
  /// answers; 15065 when none does. With one raises 15074 and 15065.
  IdentifierPtr CreateIdentifier(const std::string& className, const std::string& serverName = {}) const;
  PropertyContextPtr CreatePropertyContext(const CreatePropertyContextArguments& arguments = {}) const;
  BusinessContextPtr CreateBusinessContext() const;
  BusinessContextPtr CreateBusinessContext(const BusinessContextFields& fields) const;
  /// A collection to be filled by hand; with a ClassName whose Class has an ActiveXCollection, inside a new host
  /// collection of that name. Raises 15065 for an unknown class, 15167 and 15168 when the host collection cannot be
  /// made or set up, 15074 when an ActiveXCollection without "." meets an unknown or empty ServerName.
  IBusinessObjectsPtr CreateBusinessObjects(const CreateBusinessObjectsArguments& arguments = {}) const;
  /// ConnectionContext.SetupConnection.
  ConnectionPtr SetupConnection(const SetupConnectionArguments& arguments) const;

  /// A Message that is recorded nowhere.
  MessagePtr CreateMessage(const MessageArguments& arguments = {}) const;
  StatisticPtr CreateStatistic(const StatisticArguments& arguments) const;
  StatisticsPtr CreateStatistics() const;

  KeyFormatPtr CreateKeyFormat() const;
  KeyFormatPtr CreateKeyFormat(const KeyFormatFields& fields) const;
  ServerPtr CreateServer(const ServerFields& fields) const;
  DatabasePtr CreateDatabase(const DatabaseFields& fields) const;
  ConnectorPtr CreateConnector(const ConnectorFields& fields) const;
  ClassPtr CreateClass(const ClassFields& fields) const;
  ActionPtr CreateAction(const ActionFields& fields) const;
  SourcePtr CreateSource(const SourceFields& fields) const;
  RelationshipPtr CreateRelationship(const RelationshipFields& fields) const;
  LinkPtr CreateLink(const LinkFields& fields) const;
  AttributePtr CreateAttribute(const AttributeFields& fields) const;
  /// Of style psNonPersistent.
  PropertyPtr CreateProperty(const PropertyFields& fields) const;
  PropertiesPtr CreateProperties(const CreatePropertiesArguments& arguments = {}) const;
  ConnectionsPtr CreateConnections(const std::string& name) const;

  // Transient collections, which hold what is added to them and register nothing.
  DatabasesPtr CreateDatabases(bool locked = false, bool supportsRemove = true) const;
  ServersPtr CreateServers(bool locked = false, bool supportsRemove = true) const;
  LinksPtr CreateLinks(bool locked = false, bool supportsRemove = true) const;
  RelationshipsPtr CreateRelationships(bool locked = false, bool supportsRemove = true) const;
  SourcesPtr CreateSources(bool locked = false, bool supportsRemove = true) const;
  ActionsPtr CreateActions(bool locked = false, bool supportsRemove = true) const;
  AttributesPtr CreateAttributes(bool locked = false, bool supportsRemove = true) const;
  ClassesPtr CreateClasses(bool locked = false, bool supportsRemove = true) const;
  ConnectorsPtr CreateConnectors(bool locked = false, bool supportsRemove = true) const;
};

}  // namespace velmoria
