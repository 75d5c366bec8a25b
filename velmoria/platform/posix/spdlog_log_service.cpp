#include "velmoria/platform/posix/spdlog_log_service.h"

#include <algorithm>
#include <string>
#include <utility>

#include <spdlog/details/null_mutex.h>
#include <spdlog/logger.h>
#include <spdlog/sinks/base_sink.h>
#include <syslog.h>

#include "velmoria/platform/posix/log_file_path.h"
#include "velmoria/platform/posix/record_file.h"

namespace velmoria {

struct SpdlogLogService::Target {
  spdlog::logger Logger;
  bool IsFile;
  std::string Path;
};

namespace {

// Its apartment alone writes to a sink, so none needs a lock.
using Sink = spdlog::sinks::base_sink<spdlog::details::null_mutex>;

class FileSink final : public Sink {
 public:
  explicit FileSink(std::string path) : file_(std::move(path)) { set_pattern_("%Y-%m-%d %H:%M:%S.%e %P %v"); }

 protected:
  void sink_it_(const spdlog::details::log_msg& message) override {
    spdlog::memory_buf_t record;
    formatter_->format(message, record);
    file_.Append({record.data(), record.size()});
  }
  void flush_() override {}

 private:
  RecordFile file_;
};

int PriorityOf(spdlog::level::level_enum level) {
  switch (level) {
    case spdlog::level::warn: return LOG_WARNING;
    case spdlog::level::info: return LOG_INFO;
    default: return LOG_ERR;
  }
}

class SystemSink final : public Sink {
 public:
  explicit SystemSink(SystemLogCall call) : call_(call) {}

 protected:
  void sink_it_(const spdlog::details::log_msg& message) override {
    std::string text(message.payload.data(), message.payload.size());
    std::ranges::replace(text, '\0', ' ');
    call_(LOG_USER | PriorityOf(message.level), text.c_str());
  }
  void flush_() override {}

 private:
  SystemLogCall call_;
};

// Not opened with a name of ours: name and options of the process's system log are the host's.
void WriteToSystemLog(int priority, const char* text) { syslog(priority, "%s", text); }

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
    if (text[at] != '\r' && text[at] != '\n') {
      result += text[at];
    } else {
      if (text.substr(at, 2) == "\r\n") ++at;
      result += lineBreak;
    }
  }
  return result;
}

}  // namespace

SpdlogLogService::SpdlogLogService() : SpdlogLogService(WriteToSystemLog) {}

SpdlogLogService::SpdlogLogService(SystemLogCall systemLog) : systemLog_(systemLog) {}

SpdlogLogService::~SpdlogLogService() = default;

// A file that goes on stays the same one: it knows whether its last record was cut off.
void SpdlogLogService::Start(std::string_view fileName, LogServiceMode mode) {
  const auto former = std::exchange(target_, nullptr);
  if (mode == LogServiceMode::Off) return;
  const bool toFile = mode == LogServiceMode::File;
  const auto path = toFile ? LogFilePath(fileName) : std::string();
  spdlog::sink_ptr sink;
  if (!toFile) {
    sink = std::make_shared<SystemSink>(systemLog_);
  } else if (former && former->IsFile && former->Path == path) {
    sink = former->Logger.sinks().front();
  } else {
    sink = std::make_shared<FileSink>(path);
  }
  target_ = std::make_unique<Target>(Target{spdlog::logger("velmoria", std::move(sink)), toFile, path});
  target_->Logger.set_error_handler([](const std::string&) {});  // without one, spdlog would print what is lost
}

void SpdlogLogService::Write(std::string_view text, LogEventType type) {
  if (!target_) return;
  const auto record = WithLineBreaks(text, target_->IsFile ? "\n    " : " | ");
  target_->Logger.log(LevelOf(type), spdlog::string_view_t(record.data(), record.size()));
}

}  // namespace velmoria
