#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "velmoria/design/action_kind.h"
#include "velmoria/design/design_object.h"

namespace velmoria {

class rdoResultset;

extern template class VELMORIA_API DesignObject<ActionKind>;

/// One data operation of a Class: the database it runs on, what brokering may do with it, and, through Sources, what
/// carries it out on each engine. Every setter but that of Locked raises 15002 while Locked; children are not guarded.
class VELMORIA_API Action final : public DesignObject<ActionKind> {
 public:
  Action();
  ~Action() override;

  /// That of a registered Database.
  std::string DatabaseName() const;
  void SetDatabaseName(std::string value);
  /// The group of connections; empty for the default group.
  std::string ConnectionsName() const;
  void SetConnectionsName(std::string value);
  /// Whether it may give business objects or Properties, or be executed.
  zUsageFlags UsageFlags() const;
  void SetUsageFlags(zUsageFlags value);
  std::string UsageFlagsDisplay() const;
  /// How what it reads may be changed.
  zEditFlags EditFlags() const;
  void SetEditFlags(zEditFlags value);
  std::string EditFlagsDisplay() const;

  // How a collection makes its business objects, and of whose class they are, when neither the call nor its context
  // says so.

  zCollectionTypes CollectionType() const;
  void SetCollectionType(zCollectionTypes value);
  zObjectTypes ObjectType() const;
  void SetObjectType(zObjectTypes value);

  /// How many rows are read at a time; 0 for all. A negative number, which would read from the end, is refused by
  /// the read with 15130.
  std::int32_t ObjectBuffer() const;
  void SetObjectBuffer(std::int32_t value);
  /// The name of a collection of its business objects when the call gives none.
  std::string BusinessObjectsName() const;
  void SetBusinessObjectsName(std::string value);
  /// Kept for the host: the library does not read it.
  std::string PropertiesName() const;
  void SetPropertiesName(std::string value);

  // Of the parents; empty without them.
  std::string ServerName() const;
  std::string ClassName() const;

  SourcesPtr Sources();
  KeyFormatPtr KeyFormat();
  /// Whether the Connection does; asking may make the Connection, but opens nothing.
  bool SupportsAsync();
  /// New Properties that describe the columns of the Source in force: its parameters are needed, and a procedure is
  /// really executed. Raises 15157 and 15159 without a Class and a Server.
  PropertiesPtr CreateProperties();
  /// A copy of the parameters of the Source in force. With an Identifier its values are filled in; a Property of it
  /// that is no parameter joins as a copy with pfInput alone kept of its Flags.
  PropertiesPtr CreateParameters(const IdentifierPtr& identifier = {});

  // Inside the library.

  /// The connection of DatabaseName and ConnectionsName, set up from the Database's Connector of the engine in force
  /// when there is none. Once found it stays for the life of this object, whatever engine is chosen later. Raises 15084
  /// without AutoConnect, 15069 for an unknown database, 15068 for an engine without Connector.
  ConnectionPtr Connection();
  /// The engine in force for DatabaseName. Raises 15069 for an unknown database.
  zEngines DatabaseEngine() const;
  std::string DatabaseEngineName() const;
  /// What the DAO layer opens the Source of engAccess as, whatever engine is in force: 1 for a table; 2, or 4 without
  /// EditFlags, for a query or a statement; 0 for any other type. Raises 15075 without such a Source.
  std::int32_t RecordSetType() const;
  /// Whether the Source in force is read over RDO. Raises as Sources.Item.
  bool IsReadOverRDO();
  /// What CreateProperties gave when the Server loaded its metadata, or none. It belongs to this object alone.
  PropertiesPtr SchemaCache() const;
  void SetSchemaCache(const PropertiesPtr& value);
  /// The definitions of a result's columns.
  PropertiesDataPtr RDOCreatePropertiesData(rdoResultset& result);

 private:
  void PassOn(const ParentChange& change) override;
  struct LastColumns;
  ConnectionPtr FindOrSetupConnection() const;
  PropertiesDataPtr DescribeSource();
  PropertiesDataPtr MakeDefinitions(const rdoResultset& result, std::string& context);

  SourcesPtr sources_;
  KeyFormatPtr keyFormat_;
  ConnectionPtr connection_;
  PropertiesPtr schemaCache_;
  std::shared_ptr<LastColumns> lastColumns_;
};

}  // namespace velmoria
