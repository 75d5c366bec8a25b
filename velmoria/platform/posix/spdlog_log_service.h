#pragma once

#include <memory>

#include "velmoria/platform/posix/log_service.h"

namespace velmoria {

/// The log file and the system log. All services of a process that write to one file share its sink, so that lines of
/// several apartments never mix. In the file each record starts at the line's begin, its further lines are indented.
class SpdlogLogService final : public LogService {
 public:
  SpdlogLogService();
  ~SpdlogLogService() override;

  /// Raises 75 when the file cannot be opened; the service is then off.
  void Start(std::string_view fileName, LogServiceMode mode) override;
  void Write(std::string_view text, LogEventType type) override;

 private:
  struct Target;
  std::unique_ptr<Target> target_;
};

}  // namespace velmoria
