#include "velmoria/platform/posix/temporary_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/uio.h>

namespace velmoria {

namespace {

constexpr std::size_t kPiecesOfWrite = 64;

FileDescriptor OpenTemporary() noexcept {
  const char* const own = std::getenv("TMPDIR");
  const char* const folder = own && *own ? own : "/tmp";
  try {
    auto file = OpenWithoutName(folder);
    return file.IsOpen() ? std::move(file) : OpenAndUnlink(folder);
  } catch (...) { return {}; }
}

std::uint64_t LargestFile() noexcept {
  rlimit limit{};
  return getrlimit(RLIMIT_FSIZE, &limit) == 0 ? limit.rlim_cur : RLIM_INFINITY;
}

/// Takes away what has been written; a piece of which only a part was is made shorter.
void TakeAway(std::span<iovec>& pieces, std::size_t written) noexcept {
  while (!pieces.empty() && written >= pieces.front().iov_len) {
    written -= pieces.front().iov_len;
    pieces = pieces.subspan(1);
  }
  if (pieces.empty()) return;
  pieces.front().iov_base = static_cast<std::byte*>(pieces.front().iov_base) + written;
  pieces.front().iov_len -= written;
}

bool WriteAllAt(int file, std::span<iovec> pieces, std::int64_t offset) noexcept {
  TakeAway(pieces, 0);
  while (!pieces.empty()) {
    const auto written = pwritev(file, pieces.data(), static_cast<int>(pieces.size()), offset);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    offset += written;
    TakeAway(pieces, static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

TemporaryFile::TemporaryFile() noexcept : TemporaryFile(OpenTemporary()) {}

TemporaryFile::TemporaryFile(FileDescriptor file) noexcept : file_(std::move(file)), largest_(LargestFile()) {}

bool TemporaryFile::Write(const std::vector<std::span<const std::byte>>& pieces, std::int64_t offset) noexcept {
  std::array<iovec, kPiecesOfWrite> batch{};
  for (std::size_t first = 0; first < pieces.size(); first += kPiecesOfWrite) {
    const std::size_t count = std::min(kPiecesOfWrite, pieces.size() - first);
    std::uint64_t bytes = 0;
    for (std::size_t place = 0; place < count; ++place) {
      const auto piece = pieces[first + place];
      batch[place] = {const_cast<std::byte*>(piece.data()), piece.size()};
      bytes += piece.size();
    }
    const auto end = static_cast<std::uint64_t>(offset) + bytes;
    if (end > largest_ || !WriteAllAt(file_.Number(), std::span(batch).first(count), offset)) return false;
    offset = static_cast<std::int64_t>(end);
  }
  return true;
}

bool TemporaryFile::Read(std::span<std::byte> bytes, std::int64_t offset) const noexcept {
  while (!bytes.empty()) {
    const auto got = pread(file_.Number(), bytes.data(), bytes.size(), offset);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    offset += got;
    bytes = bytes.subspan(static_cast<std::size_t>(got));
  }
  return true;
}

FileDescriptor OpenWithoutName(const std::string& folder) noexcept {
  return FileDescriptor(open(folder.c_str(), O_TMPFILE | O_EXCL | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR));
}

FileDescriptor OpenAndUnlink(const std::string& folder) noexcept try {
  std::string path = folder + "/velmoria-XXXXXX";
  FileDescriptor file(mkostemp(path.data(), O_CLOEXEC));
  if (file.IsOpen()) unlink(path.c_str());
  return file;
} catch (...) { return {}; }

}  // namespace velmoria
