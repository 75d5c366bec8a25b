#include "tests/support/scoped_apartment.h"

#include <cassert>
#include <cstdlib>
#include <utility>

#include "velmoria/core/messages.h"

namespace velmoria::test {

namespace {

// Whatever a test starts outside a scope must not find the user's own settings: nothing can be stored here.
[[maybe_unused]] const bool isolated = [] { return setenv("VELMORIA_SETTINGS_DIR", "/dev/null/tests", 0) == 0; }();

}  // namespace

ScopedApartment::ScopedApartment(std::shared_ptr<FakeSettingsStore> settings, void (*prepare)(ApartmentState&))
    : settings_(std::move(settings)) {
  auto fresh = std::make_unique<ApartmentState>();
  fresh->Platform.Settings = settings_;
  fresh->Platform.Log = log_;
  fresh->Platform.Clock = clock_;
  fresh->Platform.Host = host_;
  if (prepare) prepare(*fresh);
  own_ = fresh.get();
  former_ = ExchangeApartment(std::move(fresh));
  Apartment();
}

ScopedApartment::~ScopedApartment() {
  assert(&Apartment() == own_);
  own_->End();
  ExchangeApartment(std::move(former_));
}

}  // namespace velmoria::test
