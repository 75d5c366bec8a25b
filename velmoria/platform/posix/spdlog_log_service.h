#pragma once

#include <memory>

#include "velmoria/platform/posix/log_service.h"

namespace velmoria {

/// Takes a text with a priority, as syslog(3) does.
using SystemLogCall = void (*)(int priority, const char* text);

/// The log file and the system log, by spdlog. LogFilePath tells where a file lies; it is made by the first text. There
/// a record starts with local time and process number, its further lines are indented; records of several apartments
/// and processes never mix. In the system log a record is one line under the program's own name.
class SpdlogLogService final : public LogService {
 public:
  SpdlogLogService();
  /// With another system log than the operating system's.
  explicit SpdlogLogService(SystemLogCall systemLog);
  ~SpdlogLogService() override;

  void Start(std::string_view fileName, LogServiceMode mode) override;
  void Write(std::string_view text, LogEventType type) override;

 private:
  struct Target;

  SystemLogCall systemLog_;
  std::unique_ptr<Target> target_;
};

}  // namespace velmoria
