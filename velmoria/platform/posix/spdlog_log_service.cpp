#include "velmoria/platform/posix/spdlog_log_service.h"

#include <filesystem>
#include <map>
#include <mutex>
#include <string>

#include <spdlog/logger.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/syslog_sink.h>
#include <syslog.h>

#include "velmoria/runtime/error.h"

namespace velmoria {

struct SpdlogLogService::Target {
  spdlog::logger Logger;
  std::string_view LineBreak;
};

namespace {

// Sinks in use, by file path; "" is the system log.
struct Sinks {
  std::mutex Guard;
  std::map<std::string, std::weak_ptr<spdlog::sinks::sink>> Open;
};

Sinks& TheSinks() {
  static Sinks only;
  return only;
}

spdlog::sink_ptr OpenSink(const std::string& path) {
  if (path.empty()) return std::make_shared<spdlog::sinks::syslog_sink_mt>("velmoria", LOG_PID, LOG_USER, false);
  auto sink = std::make_shared<spdlog::sinks::basic_file_sink_mt>(path, false);
  sink->set_pattern("%Y-%m-%d %H:%M:%S.%e %P %v");
  return sink;
}

spdlog::sink_ptr SharedSink(const std::string& path) {
  auto& sinks = TheSinks();
  const std::scoped_lock lock(sinks.Guard);
  auto& known = sinks.Open[path];
  auto sink = known.lock();
  if (!sink) known = sink = OpenSink(path);
  return sink;
}

std::string FilePath(std::string_view fileName) {
  return std::filesystem::absolute(std::filesystem::path(fileName)).lexically_normal().string();
}

spdlog::level::level_enum LevelOf(LogEventType type) {
  switch (type) {
    case LogEventType::Warning: return spdlog::level::warn;
    case LogEventType::Information: return spdlog::level::info;
    default: return spdlog::level::err;
  }
}

std::string WithLineBreaks(std::string_view text, std::string_view lineBreak) {
  std::string result;
  result.reserve(text.size() + 16);
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isPair = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
    if (isPair) ++at;
    if (isPair || text[at] == '\n') {
      result += lineBreak;
    } else {
      result += text[at];
    }
  }
  return result;
}

}  // namespace

SpdlogLogService::SpdlogLogService() = default;
SpdlogLogService::~SpdlogLogService() = default;

void SpdlogLogService::Start(std::string_view fileName, LogServiceMode mode) try {
  target_.reset();
  if (mode == LogServiceMode::Off) return;
  const bool toFile = mode == LogServiceMode::File;
  target_ = std::make_unique<Target>(Target{
      spdlog::logger("velmoria", SharedSink(toFile ? FilePath(fileName) : std::string())), toFile ? "\n    " : " | "});
  target_->Logger.set_level(spdlog::level::info);
  target_->Logger.flush_on(spdlog::level::info);
  target_->Logger.set_error_handler([](const std::string&) {});  // a text that cannot be written is lost, quietly
} catch (const spdlog::spdlog_ex& failure) { Fail(RuntimeFailure::PathFileAccess, failure.what()); }

void SpdlogLogService::Write(std::string_view text, LogEventType type) {
  if (!target_) return;
  const auto record = WithLineBreaks(text, target_->LineBreak);
  target_->Logger.log(LevelOf(type), spdlog::string_view_t(record.data(), record.size()));
}

}  // namespace velmoria
