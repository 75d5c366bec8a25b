#include "velmoria/platform/rdo/rdo_engine.h"

#include "velmoria/core/apartment_impl.h"
#include "velmoria/data/rdo_engine_impl.h"

namespace velmoria {

rdoEngine& RdoEngine() {
  auto& apartment = Apartment();
  if (!apartment.rdoEngine) apartment.rdoEngine = Make<rdoEngine>(apartment.Platform.Odbc);
  return *apartment.rdoEngine;
}

std::string FirstSQLState() {
  const auto& engine = Apartment().rdoEngine;
  if (!engine || engine->rdoErrors().empty()) return {};
  return engine->rdoErrors().front().SQLState;
}

}  // namespace velmoria
