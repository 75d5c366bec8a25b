#include "velmoria/platform/platform.h"

#include "velmoria/platform/components/offered_components_impl.h"
#include "velmoria/platform/odbc/calls.h"
#include "velmoria/platform/posix/file_settings_store.h"
#include "velmoria/platform/posix/posix_files.h"
#include "velmoria/platform/posix/process_host_application.h"
#include "velmoria/platform/posix/spdlog_log_service.h"
#include "velmoria/platform/posix/system_clock.h"

namespace velmoria {

Platform::Platform()
    : Settings(std::make_shared<FileSettingsStore>()),
      Log(std::make_shared<SpdlogLogService>()),
      Clock(std::make_shared<SystemClock>()),
      Files(std::make_shared<PosixFiles>()),
      Host(std::make_shared<ProcessHostApplication>()),
      Components(std::make_shared<OfferedComponents>()),
      Odbc(odbc::UnixOdbc()) {}

Platform::~Platform() = default;
Platform::Platform(const Platform&) = default;
Platform& Platform::operator=(const Platform&) = default;

}  // namespace velmoria
