#pragma once

#include <cstdint>
#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/fwd.h"

namespace velmoria::test {

struct OneActionFields {
  zEngines Engine = engODBC;
  zSourceTypes SourceType = stTable;
  std::string SourceText = "orders";
  std::string ConnectString = "Driver=Fake";
  zEditFlags EditFlags = efAll;
  std::int32_t ObjectBuffer = 0;
  zOptionFlags OptionFlags = ofNone;
  zCursorTypes CursorType = crtStatic;
};

/// One registered Class "Order" (key Id, a number, not marked as counter) with one Action "Get" over one Source of the
/// database "Shop", which connects by itself.
class OneAction {
 public:
  explicit OneAction(const OneActionFields& fields = {});

  ServerPtr Server;
  ClassPtr Class;
  ActionPtr Action;
  SourcePtr Source;
  DatabasePtr Database;

  /// An agent for the Action, initialised with the parameters and the Action's page size.
  DatabaseAgentPtr Agent(const PropertiesPtr& parameters = {}) const;
  /// The Action's first page.
  RecordsetPtr Read(const PropertiesPtr& parameters = {}) const;
  /// Parameters that hold the key.
  PropertiesPtr Key(std::int32_t id) const;
};

}  // namespace velmoria::test
