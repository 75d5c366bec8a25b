#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/profile.h"
#include "velmoria/design/machine_default_impl.h"
#include "velmoria/properties/attribute.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

Variant MachineDefault(std::string_view name, zEngines engine, const Variant& standard, zDataTypes type) {
  const auto profile = Present(Apartment().Profile);
  std::string index = "Default ";
  index.append(name).append(" for Engine ").append(NumberText(static_cast<std::int32_t>(engine)));
  return Present(profile->Item({.Index = index, .DefaultValue = standard, .DefaultDataType = type}))->Value();
}

}  // namespace velmoria
