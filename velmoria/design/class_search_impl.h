#pragma once

#include <string>
#include <string_view>

#include "velmoria/design/class.h"
#include "velmoria/design/classes.h"
#include "velmoria/design/server.h"
#include "velmoria/design/servers.h"

namespace velmoria {

/// What a report adds when no registered server has the class.
inline constexpr std::string_view NoClassText = "Can't find Class in registered Servers.";

/// The class of the first server that has it, or none; no error is recorded.
inline ClassPtr FirstClassNamed(const std::string& className, const Servers& servers) {
  for (const auto& server : servers) {
    if (auto found = server->Classes()->Find(className)) return found;
  }
  return {};
}

}  // namespace velmoria
