#pragma once

#include <string_view>
#include <utility>

#include <unistd.h>

namespace velmoria {

/// Owns an open file of the operating system; locks taken through it end with it.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) noexcept : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~FileDescriptor() {
    if (number_ >= 0) close(number_);
  }

  int Number() const noexcept { return number_; }
  bool IsOpen() const noexcept { return number_ >= 0; }

 private:
  int number_ = -1;
};

/// Writes a text to an open file. The result is what is left of it when no more can be written, with `errno` saying
/// why;
/// "" when all is written.
std::string_view WriteAll(int file, std::string_view text);

/// Raises what the operating system's `errno` value means for a path: 53, 61, 70, 76 or 75.
[[noreturn, gnu::cold]] void FailPath(int error, std::string_view path);

}  // namespace velmoria
