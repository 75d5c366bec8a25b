#include "velmoria/design/sources.h"

#include "velmoria/core/engine_list_impl.h"
#include "velmoria/core/engine_support.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/connectors.h"
#include "velmoria/design/database.h"
#include "velmoria/design/design_collection_impl.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/source.h"
#include "velmoria/design/source_data.h"

namespace velmoria {

template class DesignCollection<SourceKind>;

Sources::Sources() = default;
Sources::~Sources() = default;

std::string Sources::ServerName() const { return NameOf(HeldParents().Server); }
std::string Sources::ClassName() const { return NameOf(HeldParents().Class); }
std::string Sources::ActionName() const { return NameOf(HeldParents().Action); }

Variant Sources::MissingEngines() const try { return EnginesWithout(CandidateEngines(), *this); } catch (...) {
  Failed("MissingEngines (Get)");
}

Variant Sources::CandidateEngines() const {
  const auto& action = HeldParents().Action;
  const auto database = action ? action->FindDatabase() : DatabasePtr();
  return database ? database->Connectors()->ValidEngines() : SupportedEnginesList();
}

zEngines Sources::Resolved(const zEngines& engine, bool raising) const {
  const auto& action = HeldParents().Action;
  if (engine != engUnknown || !action) return engine;
  if (raising) return action->DatabaseEngine();
  const auto database = action->FindDatabase();
  return database ? database->Engine() : engUnknown;
}

}  // namespace velmoria
