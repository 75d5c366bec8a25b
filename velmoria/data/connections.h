#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

class rdoEnvironment;

/// What a new Connection is made from. With a Connector all other members are ignored. UserName and Password go into
/// the connect string as they are: one with ';' in it has to come in braces.
struct ConnectionFields {
  std::string DatabaseName{};
  zEngines Engine{};
  zConnectionTypes ConnectionType{};
  std::string ConnectionString{};
  std::string Password{};
  std::string UserName{};
  zCursorDrivers CursorDriver{};
  zCursorTypes CursorType{};
  ConnectorPtr Connector{};
};

/// A named group of Connection objects and what they share by engine: one environment, its log-on and its transaction
/// flag. An engine argument of 0 means the engine of the group's first Connection.
class VELMORIA_API Connections final : public Object, public Reporting {
 public:
  using Iterator = KeyedList<ConnectionPtr>::Iterator;

  Connections();
  ~Connections() override;
  std::string_view ReportedType() const noexcept override { return "Connections"; }

  /// Empty for the default group.
  std::string Name() const { return name_; }
  std::int32_t Count() const { return static_cast<std::int32_t>(items_.Count()); }
  StatisticsPtr Statistics() const;
  std::string Details() const;

  /// By 1-based position or DatabaseName. Raises 15067.
  ConnectionPtr Item(const Variant& index) const;
  Iterator begin() const { return items_.begin(); }
  Iterator end() const { return items_.end(); }

  /// Makes a Connection, opens nothing and adds it under its DatabaseName. Raises 15079 without DatabaseName and
  /// Connector, 15054 and 15055 for a bad recipe, 15008 when it cannot be added, a second one of the name included.
  ConnectionPtr SetupItem(const ConnectionFields& fields);

  /// Sets the log-on with which the engine's environment is made later. Raises 9 for an engine of 8 and above.
  void Prepare(zEngines engine, const std::string& userName, const std::string& password = {});
  /// Disconnects every Connection of the engine, closes the engine's environment and forgets it. Called without an
  /// engine it closes the environment and then fails with 5 to take it out of the group: name the engine to repair
  /// that. Raises 15097 for an engine outside 1 to 5.
  void Disconnect(zEngines engine = {});

  /// Raises 9 for an engine of 8 and above.
  bool TransStarted(zEngines engine = {}) const;
  /// One transaction over all connections of the engine, later ones included. It needs the engine's environment: 5 when
  /// no Connection of the engine was ever opened. A failing call leaves the flag. When a link was lost in it,
  /// TransRollback succeeds and the connection is opened again by its next use. Raises 15097 for an engine outside 1
  /// to 5.
  void TransBegin(zEngines engine = {});
  void TransCommit(zEngines engine = {});
  void TransRollback(zEngines engine = {});

  // Inside the library.

  void SetName(std::string name) { name_ = std::move(name); }
  /// Null on a miss; records nothing.
  ConnectionPtr Find(const Variant& index) const;
  /// The engine's one environment, made on first need. The log-on of the first caller stays. Raises 15097 and 15124.
  Ref<rdoEnvironment> GetEnvironment(zEngines engine, const std::string& userName, const std::string& password);

 private:
  static constexpr std::size_t kEngines = 8;

  std::string StateDetails() const override { return Details(); }
  zEngines Resolved(zEngines engine) const;
  ConnectionPtr MakeItem(const ConnectionFields& fields, zEngines engine) const;
  void AddItem(const ConnectionPtr& item);
  Ref<rdoEnvironment> MakeEnvironment(zEngines engine, const std::string& userName, const std::string& password);
  void CloseEnvironment(zEngines engine, zEngines argument);
  template <class Call>
  void Transact(zEngines engine, const char* routine, bool started, Call call);

  KeyedList<ConnectionPtr> items_;
  std::string name_;
  std::array<std::string, kEngines> userNames_;
  std::array<std::string, kEngines> passwords_;
  std::array<bool, kEngines> transStarted_{};
  KeyedList<Ref<rdoEnvironment>> environments_;
  StatisticsPtr statistics_;
};

}  // namespace velmoria
