#include "velmoria/design/source_data.h"

#include <algorithm>
#include <array>

#include "velmoria/core/access_method_impl.h"
#include "velmoria/core/engine_list_impl.h"
#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/design_data_impl.h"
#include "velmoria/design/machine_default_impl.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

template class DesignData<SourceKind>;
template class DesignCollectionData<SourceKind>;

namespace {

constexpr std::array kAccessTypes{stTable, stQueryDef, stSQL};
constexpr std::array kServerTypes{stTable, stSQL, stStoredProcedure, stView};

bool IsAllowed(zEngines engine, zSourceTypes type) {
  const auto holds = [type](const auto& types) { return std::ranges::find(types, type) != types.end(); };
  return engine == engAccess ? holds(kAccessTypes) : holds(kServerTypes);
}

// A type that exists is shown by its name, any other by its number.
std::string ShownType(zSourceTypes type) {
  const bool exists = type >= stTable && type <= stView;
  return exists ? SourceTypeName(type) : NumberText(static_cast<std::int32_t>(type));
}

bool AnyDirty(const PropertiesDataPtr& properties) {
  if (!properties) return false;
  return std::ranges::any_of(properties->begin(), properties->end(), [](const auto& item) { return item->Dirty(); });
}

}  // namespace

SourceData::SourceData() = default;
SourceData::~SourceData() = default;

void SourceData::Setup(SourceFields fields) try {
  const auto engine = fields.Engine;
  if (!IsDefinableEngine(engine)) Raise(errInvalid_Engine, "Setup", {KeyedByEngine::Text(engine)});
  if (fields.SourceType == stNone) {
    fields.SourceType = GivenOrMachineDefault(stNone, "SourceType", engine);
  } else if (!IsAllowed(engine, fields.SourceType)) {
    Raise(errInvalid_SourceType, "Setup", {ShownType(fields.SourceType), velmoria::EngineName(engine)});
  }
  Adopt(std::move(fields));
} catch (...) { Failed("Setup"); }

std::string SourceData::Details() const {
  return "Source: " + Quoted(EngineName()) + "  Type: " + Quoted(SourceTypeName(Fields().SourceType)) +
         "  Text: " + Quoted(Fields().SourceText);
}

PropertiesDataPtr SourceData::ParametersData() { return Child<PropertiesData>(); }

std::int32_t SourceData::AccessMethod() const noexcept {
  if (!IsDefinableEngine(Engine())) return kNoAccess;
  return Engine() == engAccess ? kDao : kRdo;
}

std::string SourceData::AccessMethodName() const { return velmoria::AccessMethodName(AccessMethod()); }

// A copy keeps whatever type it has, on whatever engine.
void SourceData::SetupCopy(SourceFields fields) { Adopt(std::move(fields)); }

// The members are asked and not the lists: a Parameter that came or went alone does not make the Source dirty.
bool SourceData::ChildrenDirty() const {
  return AnyDirty(ExistingUserProperties()) || AnyDirty(Existing<PropertiesData>());
}

}  // namespace velmoria
