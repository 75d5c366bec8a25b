#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/profile.h"
#include "velmoria/design/machine_default_impl.h"
#include "velmoria/properties/attribute.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

Variant MachineDefault(std::string_view name, zEngines engine, const Variant& standard, zDataTypes type) {
  const auto profile = Apartment().Profile;
  if (!profile) Fail(RuntimeFailure::ObjectNotSet);
  const auto setting = profile->Item({.Index = std::string(name) + NumberText(static_cast<std::int32_t>(engine)),
                                      .DefaultValue = standard,
                                      .DefaultDataType = type});
  if (!setting) Fail(RuntimeFailure::ObjectNotSet);
  return setting->Value();
}

}  // namespace velmoria
