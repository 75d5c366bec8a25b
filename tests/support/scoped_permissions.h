#pragma once

#include <csignal>
#include <string>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmoria::test {

/// A user whom permissions bind, for the length of a scope: another one where the tests run as root, else the present.
class ScopedUser {
 public:
  static constexpr uid_t Nobody = 65534;

  /// The folder becomes the user's own.
  explicit ScopedUser(const std::string& folder, uid_t user = Nobody)
      : isOther_(geteuid() == 0 && chown(folder.c_str(), user, gid_t(-1)) == 0 && seteuid(user) == 0) {}
  ~ScopedUser() {
    if (isOther_) isOther_ = seteuid(0) != 0;
  }
  ScopedUser(const ScopedUser&) = delete;
  ScopedUser& operator=(const ScopedUser&) = delete;

  bool IsOther() const noexcept { return isOther_; }

 private:
  bool isOther_;
};

/// Other permissions of a file or folder, for the length of a scope.
class ScopedMode {
 public:
  ScopedMode(std::string path, mode_t mode) : path_(std::move(path)) {
    struct stat status{};
    if (stat(path_.c_str(), &status) == 0) former_ = status.st_mode & 07777U;
    chmod(path_.c_str(), mode);
  }
  ~ScopedMode() { chmod(path_.c_str(), former_); }
  ScopedMode(const ScopedMode&) = delete;
  ScopedMode& operator=(const ScopedMode&) = delete;

 private:
  std::string path_;
  mode_t former_ = 0700;
};

/// No file can grow beyond a size, for the length of a scope: what a full disk is to a writer.
class ScopedFileSizeLimit {
 public:
  explicit ScopedFileSizeLimit(std::size_t bytes) : formerHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit limit{.rlim_cur = bytes, .rlim_max = former_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~ScopedFileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, formerHandler_);
  }
  ScopedFileSizeLimit(const ScopedFileSizeLimit&) = delete;
  ScopedFileSizeLimit& operator=(const ScopedFileSizeLimit&) = delete;

 private:
  void (*formerHandler_)(int);
  rlimit former_{};
};

}  // namespace velmoria::test
