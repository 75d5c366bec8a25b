#include "velmoria/platform/posix/record_file.h"

#include <cerrno>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

#include "velmoria/platform/posix/file_descriptor.h"
#include "velmoria/platform/posix/user_folders.h"

namespace velmoria {

namespace {

FileDescriptor OpenToAppend(const std::string& path) {
  constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  return FileDescriptor(open(path.c_str(), flags, 0666));
}

FileDescriptor OpenToRecord(const std::string& path) {
  auto file = OpenToAppend(path);
  if (!file.IsOpen() && errno == ENOENT) {
    MakeFolder(std::filesystem::path(path).parent_path().string());
    file = OpenToAppend(path);
  }
  struct stat status{};
  if (file.IsOpen() && fstat(file.Number(), &status) == 0 && (S_ISREG(status.st_mode) || S_ISCHR(status.st_mode))) {
    return file;
  }
  return {};
}

}  // namespace

RecordFile::RecordFile(std::string path) : path_(std::move(path)) {}

// One write a record: the operating system keeps what several append apart. A record behind a torn one begins a line.
void RecordFile::Append(std::string_view record) {
  const auto file = OpenToRecord(path_);
  if (!file.IsOpen()) return;
  auto text = std::string(isTorn_ ? "\n" : "").append(record);
  const auto lost = WriteAll(file.Number(), text);
  if (lost.size() < text.size()) isTorn_ = !lost.empty();
}

}  // namespace velmoria
