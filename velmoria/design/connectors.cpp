#include "velmoria/design/connectors.h"

#include "velmoria/core/engine_list_impl.h"
#include "velmoria/core/engine_support.h"
#include "velmoria/design/connector.h"
#include "velmoria/design/connector_data.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/design_collection_impl.h"

namespace velmoria {

template class DesignCollection<ConnectorKind>;

Connectors::Connectors() = default;
Connectors::~Connectors() = default;

Variant Connectors::ValidEngines() const try {
  Variant engines;
  for (const auto& connector : Members()) AppendEngine(engines, connector->Engine());
  return engines;
} catch (...) { Failed("ValidEngines (Get)"); }

Variant Connectors::AvailableEngines() const try {
  Variant engines;
  for (const auto& connector : Members()) {
    if (SupportsDatabaseEngine(connector->Engine())) AppendEngine(engines, connector->Engine());
  }
  return engines;
} catch (...) { Failed("AvailableEngines (Get)"); }

Variant Connectors::MissingEngines() const try { return EnginesWithout(SupportedEnginesList(), *this); } catch (...) {
  Failed("MissingEngines (Get)");
}

zEngines Connectors::Resolved(const zEngines& engine, bool) const {
  const auto& database = HeldParents().Database;
  return engine != engUnknown || !database ? engine : database->Fields().Engine;
}

}  // namespace velmoria
