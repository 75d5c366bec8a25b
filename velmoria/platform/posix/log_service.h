#pragma once

#include <cstdint>
#include <string_view>

namespace velmoria {

/// Where the log service writes. Automatic is the platform's own target, which is the system log.
enum class LogServiceMode : std::uint8_t { Off, Automatic, File, System };

enum class LogEventType : std::uint8_t { Error, Warning, Information };

/// Takes one text with one event type at a time, for one apartment. It is off until it is started. A text that cannot
/// be written is lost and nothing else happens.
class LogService {
 public:
  virtual ~LogService() = default;

  /// Starts or restarts; the file name counts for LogServiceMode::File only, and an existing file is continued.
  virtual void Start(std::string_view fileName, LogServiceMode mode) = 0;
  /// The lines of a text, however they end, stay together.
  virtual void Write(std::string_view text, LogEventType type) = 0;

 protected:
  LogService() = default;
  LogService(const LogService&) = default;
  LogService& operator=(const LogService&) = default;
};

}  // namespace velmoria
