#include "velmoria/platform/posix/log_file_path.h"

#include <filesystem>

#include "velmoria/platform/posix/user_folders.h"

namespace velmoria {

namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool StartsWithDrive(std::string_view name) { return name.size() > 1 && name[1] == ':' && IsLetter(name[0]); }

bool IsOfAnotherSystem(std::string_view name) {
  return StartsWithDrive(name) || name.find('\\') != std::string_view::npos;
}

}  // namespace

std::string LogFilePath(std::string_view name) {
  const bool isForeign = IsOfAnotherSystem(name);
  const auto last = name.substr(name.find_last_of(isForeign ? "/\\:" : "/") + 1);
  if (last.empty() || name.find('\0') != std::string_view::npos) return {};
  if (isForeign) {
    const auto folder = StateFolder();
    return folder.empty() ? folder : folder + "/" + std::string(last);
  }
  std::error_code error;
  return std::filesystem::absolute(name, error).string();
}

}  // namespace velmoria
