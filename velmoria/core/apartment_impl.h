#pragma once

#include <memory>
#include <vector>

#include "velmoria/fwd.h"
#include "velmoria/platform/engine_error.h"
#include "velmoria/platform/platform.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

class rdoEngine;

/// The module-level state of the library: one per thread apartment, made and started at its first use.
struct ApartmentState {
  ApartmentState();
  ~ApartmentState();
  ApartmentState(const ApartmentState&) = delete;
  ApartmentState& operator=(const ApartmentState&) = delete;

  /// Lets go of all globals in order, Profile and then Messages last, which write their settings. The apartment does
  /// not start again. Call it while the state stands in its thread's place: what ends may still ask for it.
  void End() noexcept;

  bool StartedFlag = false;
  bool Starting = false;  // Main runs: what fails is no Error yet
  velmoria::Platform Platform;
  MessagesPtr Messages;
  ProfilePtr Profile;
  KeyFormatPtr DefaultKeyFormat;
  ServersDataPtr ServersData;
  DatabasesDataPtr DatabasesData;
  DatabasesPtr Databases;
  ServersPtr Servers;
  ConnectionContextPtr ConnectionContext;
  BusinessContextPtr BusinessContext;
  Ref<velmoria::rdoEngine> rdoEngine;  // made on first need
  std::vector<EngineError> DaoErrors;  // DBEngine.Errors: what DAO said about its last failure
};

/// The state of the calling thread's apartment; the first call runs Main. The thread's end ends it. What is released
/// even later finds a state without globals.
ApartmentState& Apartment();

/// A global that may be missing, because it could not be made at the start or has ended: raises 91 then.
template <class Global>
Ref<Global> Present(Ref<Global> global) {
  if (!global) Fail(RuntimeFailure::ObjectNotSet);
  return global;
}

/// Builds the apartment's globals, once; a failing step becomes a Warning in Messages and the next step follows.
void Main(ApartmentState& apartment);

/// Puts another state in the place of the thread's own and gives back the one that stood there, if any.
std::unique_ptr<ApartmentState> ExchangeApartment(std::unique_ptr<ApartmentState> apartment) noexcept;

}  // namespace velmoria
