#pragma once

#include <string>
#include <string_view>

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The machine's setting "Default <name> for Engine <number>"; made with the standard value when it is asked for the
/// first time. Raises 91 when there is no Profile.
Variant MachineDefault(std::string_view name, zEngines engine, const Variant& standard, zDataTypes type);

/// A value that is given wins; 0 takes the setting, whose standard is 1.
template <class E>
E GivenOrMachineDefault(E given, std::string_view name, zEngines engine) {
  if (given != E{}) return given;
  return static_cast<E>(MachineDefault(name, engine, std::int32_t{1}, dtLongInteger).AsLong());
}

}  // namespace velmoria
