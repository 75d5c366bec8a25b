#include "velmoria/platform/posix/log_file_path.h"

#include <filesystem>

#include "velmoria/platform/posix/user_folders.h"

namespace velmoria {

namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool StartsWithDrive(std::string_view name) { return name.size() > 1 && name[1] == ':' && IsLetter(name[0]); }

bool HasNul(std::string_view name) { return name.find('\0') != std::string_view::npos; }

bool CanBeAPath(std::string_view name) {
  return !name.empty() && !StartsWithDrive(name) && name.find('\\') == std::string_view::npos && !HasNul(name);
}

std::string_view LastComponent(std::string_view name) {
  const auto last = name.substr(name.find_last_of("/\\:") + 1);
  return last.empty() || HasNul(last) ? "VelmoriaMessages.log" : last;
}

}  // namespace

std::string LogFilePath(std::string_view name) {
  if (!CanBeAPath(name)) {
    const auto folder = StateFolder();
    return folder.empty() ? folder : folder + "/" + std::string(LastComponent(name));
  }
  if (name.ends_with('/')) return {};
  std::error_code error;
  return std::filesystem::absolute(name, error).string();
}

}  // namespace velmoria
