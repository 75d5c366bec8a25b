#pragma once

#include <string>

#include "velmoria/platform/rdo/fwd.h"

namespace velmoria {

/// The apartment's one rdoEngine, made on first need over the apartment's table of ODBC calls.
rdoEngine& RdoEngine();

/// The SQLState of the first entry in the engine's error list, "" when there is none. Recording a message empties the
/// list, so ask first.
std::string FirstSQLState();

/// Closes an environment, connection, result or query that may be absent; a failure is of no interest any more.
template <class Handle>
void CloseQuietly(const Ref<Handle>& handle) noexcept {
  if (!handle) return;
  try {
    handle->Close();
  } catch (...) {  // what is being given up anyway
  }
}

}  // namespace velmoria
