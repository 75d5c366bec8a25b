#include "velmoria/core/engine_support.h"

#include <algorithm>
#include <array>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/engine_list_impl.h"
#include "velmoria/core/profile.h"
#include "velmoria/properties/attribute.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

namespace {

struct EngineSetting {
  zEngines Engine;
  const char* Name;
  bool Default;
};

constexpr std::array kEngineSettings{
    EngineSetting{engAccess, "SupportsMSAccess", true},
    EngineSetting{engODBC, "SupportsODBC", true},
    EngineSetting{engSQLServer, "SupportsSQLServer", true},
    EngineSetting{engSybase, "SupportsSybase", true},
    EngineSetting{engOracle, "SupportsOracle", false},
    EngineSetting{engInformix, "SupportsInformix", false},
    EngineSetting{engRMS, "SupportsRMS", false},
};

}  // namespace

bool SupportsDatabaseEngine(zEngines engine) {
  const auto setting = std::ranges::find(kEngineSettings, engine, &EngineSetting::Engine);
  if (setting == kEngineSettings.end()) return false;
  const auto profile = Present(Apartment().Profile);
  const auto attribute =
      profile->Item({.Index = setting->Name, .DefaultValue = setting->Default, .DefaultDataType = dtBoolean});
  if (!attribute) Fail(RuntimeFailure::ObjectNotSet);
  return attribute->Value().AsBoolean();
}

Variant SupportedEnginesList() {
  Variant engines;
  for (const auto& setting : kEngineSettings) {
    if (SupportsDatabaseEngine(setting.Engine)) AppendEngine(engines, setting.Engine);
  }
  return engines;
}

}  // namespace velmoria
