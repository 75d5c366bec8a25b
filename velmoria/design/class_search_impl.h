#pragma once

#include <string>
#include <string_view>

#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/core/reporting.h"
#include "velmoria/design/class.h"
#include "velmoria/design/classes.h"
#include "velmoria/design/server.h"
#include "velmoria/design/servers.h"

namespace velmoria {

/// What a report adds when no registered server has the class.
inline constexpr std::string_view NoClassText = "Can't find Class in registered Servers.";

/// The class of the first server that has it, or none. A server that cannot be read counts as one without it: messaging
/// is suspended under the routine meanwhile, and nothing is recorded.
inline ClassPtr FirstClassNamed(const std::string& className, const Servers& servers, std::string_view routine) {
  const Suspension quiet{routine};
  ClassPtr found;
  for (const auto& server : servers) {
    WithErrorsIgnored([&] { found = server->Classes()->Find(className); });
    if (found) break;
  }
  return found;
}

}  // namespace velmoria
