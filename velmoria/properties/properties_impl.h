#pragma once

#include <cstdint>
#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/fwd.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/properties/properties_data.h"

namespace velmoria {

/// What a Properties is bound to. Of the Parents each style takes its own: psIdentifier the Server and Class,
/// psParameter the Server, Class and Source, psNonPersistent, psPersistent and psDefinition none, any other all of
/// them; a given Action is taken by every style. Whoever makes one includes recordset_impl.h.
struct PropertiesBinding {
  zPropertyStyles Style = psNone;
  PropertiesDataPtr PropertiesData{};
  velmoria::Parents Parents{};
  RecordsetPtr Recordset{};
  std::int32_t Row = -1;
  std::string Name{};
};

}  // namespace velmoria
