#pragma once

#include <string>
#include <string_view>

#include "velmoria/core/enumerations.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// The value of a setting of this machine that is kept for each engine; made with the standard value when it is asked
/// for the first time. The name ends with a blank, behind which the engine's number goes.
Variant MachineDefault(std::string_view name, zEngines engine, const Variant& standard, zDataTypes type);

/// A value that is given wins; 0 takes the setting, whose standard is 1.
template <class E>
E GivenOrMachineDefault(E given, std::string_view name, zEngines engine) {
  if (given != E{}) return given;
  return static_cast<E>(MachineDefault(name, engine, std::int32_t{1}, dtLongInteger).AsLong());
}

}  // namespace velmoria
