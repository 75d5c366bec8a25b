#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

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

inline std::string ReadText(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteText(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace velmoria::test
