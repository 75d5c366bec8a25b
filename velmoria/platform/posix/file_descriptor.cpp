#include "velmoria/platform/posix/file_descriptor.h"

#include <cerrno>
#include <string>
#include <system_error>

#include "velmoria/runtime/error.h"

namespace velmoria {

namespace {

RuntimeFailure FailureOf(int error) noexcept {
  switch (error) {
    case ENOENT: return RuntimeFailure::FileNotFound;
    case ENOTDIR: return RuntimeFailure::PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS: return RuntimeFailure::PermissionDenied;
    case ENOSPC:
    case EDQUOT: return RuntimeFailure::DiskFull;
    default: return RuntimeFailure::PathFileAccess;
  }
}

}  // namespace

std::string_view WriteAll(int file, std::string_view text) {
  while (!text.empty()) {
    const auto put = write(file, text.data(), text.size());
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) break;
    text.remove_prefix(static_cast<std::size_t>(put));
  }
  return text;
}

void FailPath(int error, std::string_view path) {
  const auto failure = FailureOf(error);
  std::string text = RuntimeFailureText(failure);
  text.append(": ").append(path).append(" (").append(std::generic_category().message(error)).append(")");
  Fail(failure, std::move(text));
}

}  // namespace velmoria
