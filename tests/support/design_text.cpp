#include "tests/support/design_text.h"

#include <concepts>
#include <string_view>
#include <type_traits>

#include "velmoria/brokering/key_format_data.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/connector_data.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/link_data.h"
#include "velmoria/design/relationship_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/source_data.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

class Listing {
 public:
  template <class... Values>
  void Add(std::string_view kind, const Values&... values) {
    text_ += kind;
    ((text_ += '|', Append(values)), ...);
    text_ += '\n';
  }
  template <class Collection>
  void AddAll(std::string_view kind, Collection& collection) {
    Add(kind, static_cast<std::int32_t>(collection.Count()));
    for (const auto& member : collection) List(*member);
  }
  std::string Take() { return std::move(text_); }

  void List(ServerData& server);
  void List(DatabaseData& database);

 private:
  void Append(const std::string& value) { text_ += value; }
  template <class Number>
    requires std::integral<Number> || std::is_enum_v<Number>
  void Append(Number value) {
    text_ += std::to_string(static_cast<long long>(value));
  }
  void Append(const Variant& value) {
    Append(value.Type());
    if (!value.IsEmpty() && !value.IsNull() && value.IsGiven()) text_ += "=" + value.AsText();
  }

  void List(ClassData& object);
  void List(ActionData& action);
  void List(SourceData& source);
  void List(RelationshipData& relationship);
  void List(LinkData& link);
  void List(ConnectorData& connector);
  void List(KeyFormatData& keyFormat);
  void List(PropertyData& property);

  std::string text_;
};

void Listing::List(PropertyData& property) {
  const auto& f = property.Fields();
  Add("Property", property.Style(), property.OrderNumber(), f.Name, f.Value, f.DataType, f.Size, f.Operator, f.OrFlag,
      f.SourceName, f.SourceColumn, f.SourceTable, f.SourceDataType, f.Modifiable, f.Flags, f.DefaultValue,
      f.FormatText, f.InputMask, f.Caption, f.Description, f.Locked, f.Engine);
}

void Listing::List(KeyFormatData& keyFormat) {
  const auto& f = keyFormat.Fields();
  Add("KeyFormat", f.Name, f.Separator, f.Mixed, f.IncludeNames, f.EmptyKey, f.Locked);
  AddAll("KeyFormat.Properties", *keyFormat.PropertiesData());
}

void Listing::List(ServerData& server) {
  const auto& f = server.Fields();
  Add("Server", f.Name, f.ActiveXComponent, f.Description, f.LoadOnStartup, f.Locked, f.UseMetaData);
  AddAll("Classes", *server.ClassesData());
  AddAll("UserProperties", *server.UserPropertiesData());
}

void Listing::List(ClassData& object) {
  const auto& f = object.Fields();
  Add("Class", f.Name, f.ActiveXClass, f.ActiveXCollection, f.Description, f.SingleActionName, f.NewActionName,
      f.DefaultActionName, f.Locked);
  AddAll("Identifier", *object.PropertiesData());
  AddAll("Actions", *object.ActionsData());
  AddAll("Relationships", *object.RelationshipsData());
}

void Listing::List(ActionData& action) {
  const auto& f = action.Fields();
  Add("Action", f.Name, f.DatabaseName, f.ConnectionsName, f.UsageFlags, f.EditFlags, f.Description, f.CollectionType,
      f.ObjectType, f.ObjectBuffer, f.BusinessObjectsName, f.PropertiesName, f.Locked);
  List(*action.KeyFormatData());
  AddAll("Sources", *action.SourcesData());
  AddAll("UserProperties", *action.UserPropertiesData());
}

void Listing::List(SourceData& source) {
  const auto& f = source.Fields();
  Add("Source", f.Engine, f.SourceType, f.SourceText, f.KeysetSize, f.RowsetSize, f.OptionFlags, f.Description,
      f.Locked);
  AddAll("Parameters", *source.ParametersData());
  AddAll("UserProperties", *source.UserPropertiesData());
}

void Listing::List(RelationshipData& relationship) {
  const auto& f = relationship.Fields();
  Add("Relationship", f.Name, f.Association, f.RelatedServerName, f.RelatedClassName, f.RelatedActionName,
      f.Description, f.Locked);
  AddAll("Links", *relationship.LinksData());
  AddAll("UserProperties", *relationship.UserPropertiesData());
}

void Listing::List(LinkData& link) {
  const auto& f = link.Fields();
  Add("Link", f.Name, link.LinkType(), f.Description, f.Locked);
  List(*link.PropertyData());
  List(*link.ParameterData());
  AddAll("UserProperties", *link.UserPropertiesData());
}

void Listing::List(DatabaseData& database) {
  const auto& f = database.Fields();
  Add("Database", f.Name, f.Engine, f.Description, f.AutoConnect, f.LoadOnStartup, f.Locked);
  AddAll("Connectors", *database.ConnectorsData());
  AddAll("UserProperties", *database.UserPropertiesData());
}

void Listing::List(ConnectorData& connector) {
  const auto& f = connector.Fields();
  Add("Connector", f.Engine, f.ConnectionType, f.ConnectionString, f.CursorDriver, f.CursorType, f.UserName, f.Password,
      f.DefinitionValidation, f.Description, f.Locked);
  AddAll("UserProperties", *connector.UserPropertiesData());
}

template <class Root>
std::string TextOf(Root& root) {
  Listing listing;
  listing.List(root);
  return listing.Take();
}

}  // namespace

std::string DesignText(ServerData& server) { return TextOf(server); }
std::string DesignText(DatabaseData& database) { return TextOf(database); }

}  // namespace velmoria::test
