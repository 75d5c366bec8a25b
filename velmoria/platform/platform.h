#pragma once

#include <memory>

#include "velmoria/platform/components/component_source_impl.h"
#include "velmoria/platform/posix/clock.h"
#include "velmoria/platform/posix/files.h"
#include "velmoria/platform/posix/host_application.h"
#include "velmoria/platform/posix/log_service.h"
#include "velmoria/platform/posix/settings_store.h"

namespace velmoria {

namespace odbc {
class Calls;
}  // namespace odbc

/// What an apartment takes from the operating system: one replaceable door each. A new Platform has the real ones;
/// a door put in another's place is used from the next call on.
struct Platform {
  Platform();
  ~Platform();
  Platform(const Platform&);
  Platform& operator=(const Platform&);

  std::shared_ptr<SettingsStore> Settings;
  std::shared_ptr<LogService> Log;
  std::shared_ptr<velmoria::Clock> Clock;
  std::shared_ptr<velmoria::Files> Files;
  std::shared_ptr<HostApplication> Host;
  std::shared_ptr<ComponentSource> Components;
  std::shared_ptr<odbc::Calls> Odbc;
};

}  // namespace velmoria
