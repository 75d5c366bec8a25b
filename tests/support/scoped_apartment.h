#pragma once

#include <memory>

#include "tests/support/fakes.h"
#include "velmoria/core/apartment_impl.h"

namespace velmoria::test {

/// A fresh apartment over fakes for the length of a scope; the thread's former one comes back behind it.
/// Objects made in the scope must be released before it ends, so let it be the first member of a fixture. Scopes nest.
class ScopedApartment {
 public:
  /// A store that is passed in keeps what this apartment writes at its end. `prepare` may change the doors before Main.
  explicit ScopedApartment(std::shared_ptr<FakeSettingsStore> settings = std::make_shared<FakeSettingsStore>(),
                           void (*prepare)(ApartmentState&) = nullptr);
  ~ScopedApartment();
  ScopedApartment(const ScopedApartment&) = delete;
  ScopedApartment& operator=(const ScopedApartment&) = delete;

  ApartmentState& State() const { return Apartment(); }
  FakeSettingsStore& Settings() const { return *settings_; }
  FakeLogService& Log() const { return *log_; }
  FakeClock& Clock() const { return *clock_; }
  FakeHostApplication& Host() const { return *host_; }
  /// The collection where failures land.
  velmoria::Messages& Messages() const { return *Apartment().Messages; }

 private:
  std::shared_ptr<FakeSettingsStore> settings_;
  std::shared_ptr<FakeLogService> log_ = std::make_shared<FakeLogService>();
  std::shared_ptr<FakeClock> clock_ = std::make_shared<FakeClock>();
  std::shared_ptr<FakeHostApplication> host_ = std::make_shared<FakeHostApplication>();
  ApartmentState* own_ = nullptr;
  std::unique_ptr<ApartmentState> former_;
};

}  // namespace velmoria::test
