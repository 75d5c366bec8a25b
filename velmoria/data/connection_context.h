#pragma once

#include <cstdint>
#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/core/position.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

/// What ConnectionContext::SetupConnection takes: the fields of a Connection and the group that it goes to.
struct SetupConnectionArguments {
  std::string DatabaseName{};
  std::string ConnectionsName{};
  zEngines Engine{};
  zConnectionTypes ConnectionType{};
  std::string ConnectionString{};
  std::string Password{};
  std::string UserName{};
  zCursorDrivers CursorDriver{};
  zCursorTypes CursorType{};
  ConnectorPtr Connector{};
};

/// All Connections groups of the apartment by name. The default group, whose name is empty, is there from the start.
class VELMORIA_API ConnectionContext final : public Object, public Reporting {
 public:
  using Iterator = KeyedList<ConnectionsPtr>::Iterator;

  ConnectionContext();
  ~ConnectionContext() override;
  std::string_view ReportedType() const noexcept override { return "ConnectionContext"; }

  std::int32_t Count() const { return static_cast<std::int32_t>(items_.Count()); }
  StatisticsPtr Statistics() const;
  std::string Details() const;

  /// By 1-based position or name. Raises 15066.
  ConnectionsPtr Item(const Variant& index) const;
  Iterator begin() const { return items_.begin(); }
  Iterator end() const { return items_.end(); }

  /// Adds the group under its name. Raises 15009, also when both positions are given.
  void Add(const ConnectionsPtr& item, const Position& position = {});
  /// Takes the group out and hands it back. Raises 15136.
  ConnectionsPtr Remove(const Variant& index);
  /// Makes a group of the name and adds it. Raises 15009.
  ConnectionsPtr SetupItem(const std::string& name = {}, const Position& position = {});

  /// The Connection of a database in a group, the default one unless named. Raises 15066 and 15067.
  ConnectionPtr GetConnection(const std::string& databaseName, const std::string& connectionsName = {}) const;
  /// Sets up a Connection in the named group, which is made when it is not there. Raises as Connections::SetupItem.
  ConnectionPtr SetupConnection(const SetupConnectionArguments& arguments);

  // Inside the library: null on a miss; they record nothing.

  ConnectionsPtr Find(const Variant& index) const;
  ConnectionPtr FindConnection(const std::string& databaseName, const std::string& connectionsName = {}) const;

 private:
  std::string StateDetails() const override { return Details(); }

  StatisticsPtr statistics_;
  KeyedList<ConnectionsPtr> items_;
};

}  // namespace velmoria
