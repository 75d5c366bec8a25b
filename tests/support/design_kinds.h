#pragma once

#include <string>

#include <gtest/gtest.h>

#include "tests/support/design_keys.h"
#include "velmoria/core/apartment_impl.h"
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
#include "velmoria/properties/parents_data.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

// What a test over all kinds of design object needs of one: how to make a collection over definitions, fields under the
// n-th of its keys, how its collection is asked by that key, and the documented numbers.

struct Numbers {
  zErrors Adding, Finding, Removing, Rekeying;
};

struct ServerSample : NamedSample {
  using Kind = ServerKind;
  using Collection = Servers;
  static constexpr Numbers Raises{zErrors{15016}, zErrors{15074}, zErrors{15144}, zErrors{15155}};
  static ServerFields Fields(int n) { return {.Name = Key(n)}; }
  static ServersPtr Bound() {
    auto servers = Make<Servers>();
    servers->Bind(Make<ServersData>());
    return servers;
  }
};

struct ClassSample : NamedSample {
  using Kind = ClassKind;
  using Collection = Classes;
  static constexpr Numbers Raises{zErrors{15007}, zErrors{15065}, zErrors{15135}, zErrors{15149}};
  static ClassFields Fields(int n) { return {.Name = Key(n)}; }
  static ClassesPtr Bound() { return Make<Server>()->Classes(); }
};

struct ActionSample : NamedSample {
  using Kind = ActionKind;
  using Collection = Actions;
  static constexpr Numbers Raises{zErrors{15003}, zErrors{15061}, zErrors{15131}, zErrors{15147}};
  static ActionFields Fields(int n) { return {.Name = Key(n)}; }
  static ActionsPtr Bound() { return Make<Class>()->Actions(); }
};

struct SourceSample : EngineSample {
  using Kind = SourceKind;
  using Collection = Sources;
  static constexpr Numbers Raises{zErrors{15017}, zErrors{15075}, zErrors{15145}, zErrors{15156}};
  static SourceFields Fields(int n) { return {.Engine = Key(n), .SourceType = stTable}; }
  static SourcesPtr Bound() { return Make<Action>()->Sources(); }
};

struct RelationshipSample : NamedSample {
  using Kind = RelationshipKind;
  using Collection = Relationships;
  static constexpr Numbers Raises{zErrors{15015}, zErrors{15073}, zErrors{15143}, zErrors{15154}};
  static RelationshipFields Fields(int n) { return {.Name = Key(n)}; }
  static RelationshipsPtr Bound() { return Make<Class>()->Relationships(); }
};

struct LinkSample : NamedSample {
  using Kind = LinkKind;
  using Collection = Links;
  static constexpr Numbers Raises{zErrors{15012}, zErrors{15070}, zErrors{15140}, zErrors{15152}};
  static LinkFields Fields(int n) { return {.Name = Key(n)}; }
  static LinksPtr Bound() { return Make<Relationship>()->Links(); }
};

struct DatabaseSample : NamedSample {
  using Kind = DatabaseKind;
  using Collection = Databases;
  static constexpr Numbers Raises{zErrors{15011}, zErrors{15069}, zErrors{15138}, zErrors{15151}};
  static DatabaseFields Fields(int n) { return {.Name = Key(n)}; }
  static DatabasesPtr Bound() {
    auto databases = Make<Databases>();
    databases->Bind(Make<DatabasesData>());
    return databases;
  }
};

struct ConnectorSample : EngineSample {
  using Kind = ConnectorKind;
  using Collection = Connectors;
  static constexpr Numbers Raises{zErrors{15010}, zErrors{15068}, zErrors{15137}, zErrors{15150}};
  static ConnectorFields Fields(int n) { return {.Engine = Key(n), .ConnectionType = ctDSN}; }
  static ConnectorsPtr Bound() { return Make<Database>()->Connectors(); }
};

using DesignSamples = testing::Types<ServerSample, ClassSample, ActionSample, SourceSample, RelationshipSample,
                                     LinkSample, DatabaseSample, ConnectorSample>;

/// The numbers of a list of engines with a blank behind each; "Empty" for none.
inline std::string EngineTexts(const Variant& engines) {
  if (engines.IsEmpty()) return "Empty";
  EXPECT_EQ(engines.LowerBound(), 0);
  std::string text;
  for (auto index = 0; index <= engines.UpperBound(); ++index) text += engines.Element(index).AsText() + " ";
  return text;
}

/// A facade over a new definition that was set up with these fields, outside any collection.
template <class Kind>
Ref<typename Kind::Facade> MakeDesign(const typename Kind::Fields& fields) {
  auto data = Make<typename Kind::Data>();
  data->Setup(fields);
  auto facade = Make<typename Kind::Facade>();
  facade->Bind(data, Parents());
  return facade;
}

}  // namespace velmoria::test
