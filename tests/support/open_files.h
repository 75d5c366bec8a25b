#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmoria::test {

/// The files without a name that this process has open in a folder, as paths under which they can be opened again.
inline std::vector<std::string> NamelessFilesIn(const std::string& folder) {
  std::vector<std::string> paths;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    const auto target = std::filesystem::read_symlink(entry.path(), gone).string();
    if (target.starts_with(folder + "/") && target.ends_with("(deleted)")) paths.push_back(entry.path().string());
  }
  return paths;
}

}  // namespace velmoria::test
