#include "velmoria/data/connection_context.h"

#include "velmoria/core/index_text_impl.h"
#include "velmoria/core/insert_at_impl.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/connections.h"
#include "velmoria/design/connector.h"

namespace velmoria {

namespace {

std::string ShownIndex(const Variant& index) { return IndexText(index, AnyNumberOrBoolean); }

std::string ShownPlace(const Variant& place) { return place.IsGiven() ? ShownIndex(place) : PlaceText(place); }

Replacements ShownForAdding(const std::string& name, const Position& position) {
  return {name, ShownPlace(position.Before), ShownPlace(position.After)};
}

}  // namespace

ConnectionContext::ConnectionContext() : statistics_(Make<velmoria::Statistics>()) {
  items_.Add(Make<Connections>(), "");
}

ConnectionContext::~ConnectionContext() = default;

StatisticsPtr ConnectionContext::Statistics() const { return statistics_; }

std::string ConnectionContext::Details() const {
  std::string text;
  const char* separator = "";
  for (const auto& item : items_) {
    text += separator + item->Details();
    separator = "\r\n";
  }
  return text;
}

ConnectionsPtr ConnectionContext::Find(const Variant& index) const { return items_.Get(index); }

ConnectionPtr ConnectionContext::FindConnection(const std::string& databaseName,
                                                const std::string& connectionsName) const {
  const auto* group = items_.FindKey(connectionsName);
  return group ? (*group)->Find(databaseName) : nullptr;
}

ConnectionsPtr ConnectionContext::Item(const Variant& index) const try {
  const auto found = Find(index);
  if (!found) Raise(errItem_Connections, "Item", {ShownIndex(index)});
  return found;
} catch (...) { Failed("Item"); }

void ConnectionContext::Add(const ConnectionsPtr& item, const Position& position) try {
  if (!item) Fail(RuntimeFailure::ObjectNotSet);
  if (position.IsBoth()) Raise(errAdd_Connections, "Add", ShownForAdding(item->Name(), position), BothPositionsText);
  InsertAt(items_, item, item->Name(), position);
} catch (...) { Failed("Add", errAdd_Connections, ShownForAdding(item ? item->Name() : std::string(), position)); }

ConnectionsPtr ConnectionContext::Remove(const Variant& index) try {
  const auto place = items_.PositionOf(index);
  if (place == 0) Raise(errRemove_Connections, "Remove", {ShownIndex(index)});
  auto item = items_.At(place);
  items_.RemoveAt(place);
  return item;
} catch (...) { Failed("Remove"); }

ConnectionsPtr ConnectionContext::SetupItem(const std::string& name, const Position& position) try {
  auto item = Make<Connections>();
  item->SetName(name);
  Add(item, position);
  return item;
} catch (...) { Failed("SetupItem"); }

ConnectionPtr ConnectionContext::GetConnection(const std::string& databaseName,
                                               const std::string& connectionsName) const try {
  return Item(connectionsName)->Item(databaseName);
} catch (...) { Failed("GetConnection"); }

ConnectionPtr ConnectionContext::SetupConnection(const SetupConnectionArguments& arguments) try {
  auto group = Find(arguments.ConnectionsName);
  if (!group) group = SetupItem(arguments.ConnectionsName);
  return group->SetupItem({.DatabaseName = arguments.DatabaseName,
                           .Engine = arguments.Engine,
                           .ConnectionType = arguments.ConnectionType,
                           .ConnectionString = arguments.ConnectionString,
                           .Password = arguments.Password,
                           .UserName = arguments.UserName,
                           .CursorDriver = arguments.CursorDriver,
                           .CursorType = arguments.CursorType,
                           .Connector = arguments.Connector});
} catch (...) { Failed("SetupConnection"); }

}  // namespace velmoria
