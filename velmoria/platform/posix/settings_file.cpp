#include "velmoria/platform/posix/settings_file.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

FileIdentity IdentityOf(const struct stat& file) {
  return {static_cast<long long>(file.st_dev),          static_cast<long long>(file.st_ino),
          static_cast<long long>(file.st_size),         static_cast<long long>(file.st_mtim.tv_sec),
          static_cast<long long>(file.st_mtim.tv_nsec), static_cast<long long>(file.st_ctim.tv_sec),
          static_cast<long long>(file.st_ctim.tv_nsec)};
}

std::string ReadWhole(int file, const std::string& path) {
  std::string text;
  char block[16384];
  for (;;) {
    const auto got = read(file, block, sizeof block);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) FailPath(errno, path);
    if (got == 0) return text;
    text.append(block, static_cast<std::size_t>(got));
  }
}

void WriteWhole(int file, std::string_view text, const std::string& path) {
  if (!WriteAll(file, text).empty() || fsync(file) != 0) FailPath(errno, path);
}

// A new file beside another, gone again unless it takes that one's place.
class Replacement {
 public:
  explicit Replacement(std::string path) : path_(std::move(path)), ownPath_(path_ + ".XXXXXX") {
    file_ = FileDescriptor(mkostemp(ownPath_.data(), O_CLOEXEC));
    if (!file_.IsOpen()) FailPath(errno, path_);
  }
  ~Replacement() {
    if (!isInPlace_) unlink(ownPath_.c_str());
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  void Write(std::string_view text) { WriteWhole(file_.Number(), text, path_); }

  // Owner and permissions of the file to be replaced, as far as the user may give them.
  void Resemble(int other) {
    struct stat status{};
    if (fstat(other, &status) != 0 || fchown(file_.Number(), status.st_uid, status.st_gid) != 0) return;
    fchmod(file_.Number(), status.st_mode & 07777U);
  }

  void TakePlace() {
    if (rename(ownPath_.c_str(), path_.c_str()) != 0) FailPath(errno, path_);
    isInPlace_ = true;
  }

 private:
  std::string path_;
  std::string ownPath_;
  FileDescriptor file_;
  bool isInPlace_ = false;
};

// What is damaged, under a name of its own; back where it was unless it is to stay.
class Kept {
 public:
  Kept(const std::string& path, const FoundSettings& found) : path_(path), wasMoved_(!found.Obstacle.empty()) {
    for (int number = 1;; ++number) {
      ownPath_ = path + ".damaged" + (number == 1 ? "" : "-" + NumberText(number));
      if (wasMoved_ ? Move() : Copy(found.Text)) return;
    }
  }
  ~Kept() {
    if (isToStay_) return;
    if (wasMoved_) {
      rename(ownPath_.c_str(), path_.c_str());
    } else {
      unlink(ownPath_.c_str());
    }
  }
  Kept(const Kept&) = delete;
  Kept& operator=(const Kept&) = delete;

  void Stay() noexcept { isToStay_ = true; }

 private:
  // False when the name is taken.
  bool Move() const {
    struct stat status{};
    if (lstat(ownPath_.c_str(), &status) == 0) return false;
    if (rename(path_.c_str(), ownPath_.c_str()) != 0) FailPath(errno, path_);
    return true;
  }
  bool Copy(std::string_view text) const {
    const FileDescriptor file(open(ownPath_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.IsOpen() && errno == EEXIST) return false;
    if (!file.IsOpen()) FailPath(errno, ownPath_);
    try {
      WriteWhole(file.Number(), text, ownPath_);
    } catch (...) {
      unlink(ownPath_.c_str());
      throw;
    }
    return true;
  }

  std::string path_;
  std::string ownPath_;
  bool wasMoved_;
  bool isToStay_ = false;
};

// The file that a path leads to, there or not; the path itself where links go round.
std::string BehindLinks(const std::string& path) {
  constexpr int mostLinks = 40;
  std::filesystem::path present(path);
  std::error_code error;
  for (int links = 0; links < mostLinks; ++links) {
    if (!std::filesystem::is_symlink(present, error)) return present.string();
    present = present.parent_path() / std::filesystem::read_symlink(present, error);
  }
  return path;
}

}  // namespace

FileIdentity IdentityAt(const std::string& path) {
  struct stat status{};
  return stat(path.c_str(), &status) == 0 ? IdentityOf(status) : FileIdentity{};
}

FoundSettings ReadSettingsFile(const std::string& path) {
  FoundSettings found;
  found.File = FileDescriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!found.File.IsOpen()) {
    const int error = errno;
    if (error == ENOENT || error == ENOTDIR) return found;
    if (error != EACCES && error != ELOOP && error != ENXIO) FailPath(error, path);
    found.Identity = IdentityAt(path);
    found.Obstacle = std::generic_category().message(error);
    return found;
  }
  struct stat status{};
  if (fstat(found.File.Number(), &status) != 0) FailPath(errno, path);
  found.Identity = IdentityOf(status);
  if (S_ISREG(status.st_mode)) {
    found.Text = ReadWhole(found.File.Number(), path);
  } else {
    found.Obstacle = S_ISDIR(status.st_mode) ? "Is a directory" : "Not a file";
  }
  return found;
}

// A file beside, since the settings file itself is replaced by another.
FileDescriptor LockSettingsFile(const std::string& path) {
  const auto lockPath = path + ".lock";
  FileDescriptor file(open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!file.IsOpen()) FailPath(errno, lockPath);
  struct flock whole{};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  while (fcntl(file.Number(), F_OFD_SETLKW, &whole) != 0) {
    if (errno != EINTR) FailPath(errno, lockPath);
  }
  return file;
}

void ReplaceSettingsFile(const std::string& path, const FoundSettings& found, std::string_view text, bool isDamaged) {
  const bool isFile = found.File.IsOpen() && found.Obstacle.empty();
  const auto target = found.Obstacle.empty() ? BehindLinks(path) : path;
  if (isFile && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) FailPath(errno, target);
  Replacement replacement(target);
  replacement.Write(text);
  if (isFile) replacement.Resemble(found.File.Number());
  if (!isDamaged) return replacement.TakePlace();
  Kept kept(path, found);
  replacement.TakePlace();
  kept.Stay();
}

}  // namespace velmoria
