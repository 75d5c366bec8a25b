#include <utility>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/engine_errors_impl.h"
#include "velmoria/platform/rdo/rdo_engine.h"

namespace velmoria {

std::vector<EngineError> DaoErrorsOf(std::int32_t number) {
  const auto& errors = Apartment().DaoErrors;
  if (errors.empty() || errors.back().Number != number) return {};
  return errors;
}

std::vector<EngineError> TakeRdoErrors() {
  const auto& engine = Apartment().rdoEngine;
  if (!engine) return {};
  return std::exchange(engine->rdoErrors(), {});
}

}  // namespace velmoria
