#include "velmoria/platform/posix/file_settings_store.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>

#include "velmoria/platform/posix/file_descriptor.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::string HomeFolder() {
  if (auto home = Variable("HOME"); !home.empty()) return home;
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found) return found->pw_dir;
  return "/";
}

std::string UserFolder() {
  if (auto folder = Variable("VELMORIA_SETTINGS_DIR"); !folder.empty()) return folder;
  // A relative XDG_CONFIG_HOME counts as not set, as the XDG rules want it.
  if (auto config = Variable("XDG_CONFIG_HOME"); config.starts_with('/')) return config + "/velmoria";
  return HomeFolder() + "/.config/velmoria";
}

// A file name for any application name: what a name cannot hold goes as %HH, and no name starts with a dot.
std::string FileName(std::string_view application) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string name;
  for (const char letter : application) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte < 32 || letter == '/' || letter == '%' || (letter == '.' && name.empty())) {
      name += '%';
      name += digits[byte / 16];
      name += digits[byte % 16];
    } else {
      name += letter;
    }
  }
  return name + ".settings";
}

std::string IdentityOf(const struct stat& file) {
  std::string identity;
  for (const auto part :
       {static_cast<long long>(file.st_dev), static_cast<long long>(file.st_ino), static_cast<long long>(file.st_size),
        static_cast<long long>(file.st_mtim.tv_sec), static_cast<long long>(file.st_mtim.tv_nsec),
        static_cast<long long>(file.st_ctim.tv_sec), static_cast<long long>(file.st_ctim.tv_nsec)}) {
    identity += NumberText(part) + ' ';
  }
  return identity;
}

// The whole file, and which state of it that was; both empty for a file that is not there.
std::string ReadWhole(const std::string& path, std::string& identity) {
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.IsOpen()) {
    if (errno != ENOENT && errno != ENOTDIR) FailPath(errno, path);
    identity.clear();
    return {};
  }
  struct stat status{};
  if (fstat(file.Number(), &status) != 0) FailPath(errno, path);
  identity = IdentityOf(status);
  std::string text;
  char block[16384];
  for (;;) {
    const auto got = read(file.Number(), block, sizeof block);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) FailPath(errno, path);
    if (got == 0) return text;
    text.append(block, static_cast<std::size_t>(got));
  }
}

void WriteWhole(int file, std::string_view text, const std::string& path) {
  while (!text.empty()) {
    const auto put = write(file, text.data(), text.size());
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) FailPath(errno, path);
    text.remove_prefix(static_cast<std::size_t>(put));
  }
  if (fsync(file) != 0) FailPath(errno, path);
}

void ReplaceFile(const std::string& path, std::string_view text) {
  std::string temporary = path + ".XXXXXX";
  const FileDescriptor file(mkostemp(temporary.data(), O_CLOEXEC));
  if (!file.IsOpen()) FailPath(errno, path);
  try {
    WriteWhole(file.Number(), text, path);
    if (rename(temporary.c_str(), path.c_str()) != 0) FailPath(errno, path);
  } catch (...) {
    unlink(temporary.c_str());
    throw;
  }
}

void MakeFolder(const std::string& folder) {
  std::error_code error;
  if (std::filesystem::is_directory(folder, error)) return;
  std::filesystem::create_directories(std::filesystem::path(folder).parent_path(), error);
  if (!error && mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) FailPath(errno, folder);
  if (error) FailPath(error.value(), folder);
}

// Locked on a file beside the settings, since the settings file itself is replaced by another.
FileDescriptor LockBeside(const std::string& path) {
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

}  // namespace

FileSettingsStore::FileSettingsStore() : FileSettingsStore(UserFolder()) {}

FileSettingsStore::FileSettingsStore(std::string folder) : folder_(std::move(folder)) {}

std::string FileSettingsStore::PathOf(std::string_view application) const {
  return folder_ + "/" + FileName(application);
}

const SettingsText& FileSettingsStore::Read(std::string_view application) {
  const auto path = PathOf(application);
  auto& cached = cache_[path];
  struct stat status{};
  const bool isThere = stat(path.c_str(), &status) == 0;
  if (isThere && IdentityOf(status) == cached.Identity) return cached.Text;
  cached.Text = SettingsText(ReadWhole(path, cached.Identity));
  return cached.Text;
}

template <class Change>
void FileSettingsStore::Modify(std::string_view application, Change change) {
  const auto path = PathOf(application);
  MakeFolder(folder_);
  const auto lock = LockBeside(path);
  std::string identity;
  const auto before = ReadWhole(path, identity);
  SettingsText text(before);
  change(text);
  if (auto after = text.Print(); after != before) ReplaceFile(path, after);
}

std::string FileSettingsStore::GetSetting(std::string_view application, std::string_view section, std::string_view key,
                                          std::string_view missing) {
  const auto* value = Read(application).Find(section, key);
  return value ? *value : std::string(missing);
}

void FileSettingsStore::SaveSetting(std::string_view application, std::string_view section, std::string_view key,
                                    std::string_view value) {
  Modify(application, [&](SettingsText& text) { text.Set(section, key, value); });
}

void FileSettingsStore::DeleteSetting(std::string_view application, std::string_view section) {
  Modify(application, [&](SettingsText& text) { text.Delete(section); });
}

void FileSettingsStore::ReplaceSection(std::string_view application, std::string_view section, const Entries& entries) {
  Modify(application, [&](SettingsText& text) { text.Replace(section, entries); });
}

}  // namespace velmoria
