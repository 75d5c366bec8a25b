#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "velmoria/platform/posix/file_descriptor.h"

namespace velmoria {

/// A file for this process alone: no name leads to it, so nobody else can open it, and it ends with this object.
class TemporaryFile {
 public:
  /// In the folder that TMPDIR names, else in /tmp. A file that could not be made is not open, and nothing is written
  /// to it.
  TemporaryFile() noexcept;
  explicit TemporaryFile(FileDescriptor file) noexcept;

  bool IsOpen() const noexcept { return file_.IsOpen(); }
  /// Writes the pieces one behind the other, from an offset on. False when not all of them could be written, be it for
  /// lack of space; what lies there is then unknown.
  bool Write(const std::vector<std::span<const std::byte>>& pieces, std::int64_t offset) noexcept;
  /// Fills the bytes with what lies from an offset on. False when it cannot be had, or not all of it.
  bool Read(std::span<std::byte> bytes, std::int64_t offset) const noexcept;

 private:
  FileDescriptor file_;
  std::uint64_t largest_ = 0;  // beyond it the operating system ends the process
};

/// A file that never had a name; not open where the file system has no such files.
FileDescriptor OpenWithoutName(const std::string& folder) noexcept;
/// A file whose name is taken away at once.
FileDescriptor OpenAndUnlink(const std::string& folder) noexcept;

}  // namespace velmoria
