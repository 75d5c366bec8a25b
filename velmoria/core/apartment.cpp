#include <utility>

#include "velmoria/brokering/business_context.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/profile.h"
#include "velmoria/data/connection_context.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/databases.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/servers.h"
#include "velmoria/platform/rdo/rdo_engine.h"

namespace velmoria {

namespace {

// Plain values, so that they can be read while the thread's own objects are being destroyed.
constinit thread_local ApartmentState* present = nullptr;
constinit thread_local bool isOver = false;

void EndPresent() noexcept {
  if (present) present->End();
  delete std::exchange(present, nullptr);
}

struct EndWithThread {
  EndWithThread() noexcept = default;
  ~EndWithThread() {
    isOver = true;
    EndPresent();
  }
  void Arm() const noexcept {}
};

ApartmentState& Start() {
  if (!present) {
    present = new ApartmentState;
    // Nothing ends behind the end of the thread: what asks then gets a state that never starts and is never released.
    present->StartedFlag = isOver;
  }
  if (!isOver) {
    thread_local const EndWithThread atEnd;
    atEnd.Arm();
  }
  Main(*present);
  return *present;
}

}  // namespace

ApartmentState::ApartmentState() = default;

ApartmentState::~ApartmentState() { End(); }

void ApartmentState::End() noexcept {
  StartedFlag = true;
  BusinessContext = nullptr;
  ConnectionContext = nullptr;
  Servers = nullptr;
  Databases = nullptr;
  ServersData = nullptr;
  DatabasesData = nullptr;
  DefaultKeyFormat = nullptr;
  rdoEngine = nullptr;
  Profile = nullptr;
  Messages = nullptr;
}

ApartmentState& Apartment() { return present && present->StartedFlag ? *present : Start(); }

std::unique_ptr<ApartmentState> ExchangeApartment(std::unique_ptr<ApartmentState> apartment) noexcept {
  return std::unique_ptr<ApartmentState>(std::exchange(present, apartment.release()));
}

}  // namespace velmoria
