#include "velmoria/platform/posix/user_folders.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include <sys/stat.h>

#include "velmoria/platform/posix/file_descriptor.h"
#include "velmoria/platform/posix/user_account.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

namespace {

// "" for a variable that names no absolute path.
std::string FolderVariable(const char* name) {
  const char* value = std::getenv(name);
  return value && *value == '/' ? value : "";
}

std::string HomeFolder() {
  if (auto home = FolderVariable("HOME"); !home.empty()) return home;
  const auto user = EffectiveUser();
  return user ? user->HomeFolder : std::string();
}

std::string FolderUnder(const char* variable, const char* underHome) {
  if (const auto base = FolderVariable(variable); !base.empty()) return base + "/velmoria";
  const auto home = HomeFolder();
  return home.empty() ? home : home + underHome + "/velmoria";
}

}  // namespace

std::string ConfigurationFolder() { return FolderUnder("XDG_CONFIG_HOME", "/.config"); }

std::string StateFolder() { return FolderUnder("XDG_STATE_HOME", "/.local/state"); }

void MakeFolder(const std::string& folder) {
  if (folder.empty()) Fail(RuntimeFailure::PathNotFound);
  std::error_code error;
  if (std::filesystem::is_directory(folder, error)) return;
  if (const auto above = std::filesystem::path(folder).parent_path(); !above.empty()) MakeFolder(above.string());
  if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) FailPath(errno, folder);
}

}  // namespace velmoria
