#pragma once

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include "velmoria/runtime/date.h"

namespace velmoria::test {

/// A folder of its own for one test, removed with everything in it at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    auto name = (std::filesystem::temp_directory_path() / "velmoria-test-XXXXXX").string();
    if (const char* made = mkdtemp(name.data())) path_ = made;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string Path() const { return path_.string(); }
  std::string Path(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

/// The names in a folder, in alphabetical order.
inline std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}

inline std::string ReadText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteText(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

/// Makes a file look as if it was last changed at a local time.
inline void SetFileTime(const std::string& path, Date time) {
  const auto parts = time.Parts();
  tm local{};
  local.tm_year = parts.Year - 1900;
  local.tm_mon = parts.Month - 1;
  local.tm_mday = parts.Day;
  local.tm_hour = parts.Hour;
  local.tm_min = parts.Minute;
  local.tm_sec = parts.Second;
  local.tm_isdst = -1;
  const timespec times[2] = {{mktime(&local), 0}, {mktime(&local), 0}};
  utimensat(AT_FDCWD, path.c_str(), times, 0);
}

}  // namespace velmoria::test
