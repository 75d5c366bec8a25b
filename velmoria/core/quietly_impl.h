#pragma once

#include <string_view>

#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/core/reporting.h"

namespace velmoria {

/// A look-up for something that may be missing: whatever fails in it is a miss, too, and leaves no message.
template <class Look>
auto Quietly(std::string_view routine, Look look) {
  decltype(look()) found;
  const Suspension quiet{routine};
  WithErrorsIgnored([&] { found = look(); });
  return found;
}

/// The same for one in which nothing can fail but a listener.
template <class Listeners, class Look>
auto QuietlyWhenHeard(const Listeners& listeners, std::string_view routine, Look look) {
  return listeners.HasListeners() ? Quietly(routine, look) : look();
}

}  // namespace velmoria
