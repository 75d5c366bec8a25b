#include "velmoria/platform/posix/file_settings_store.h"

#include <cstdlib>
#include <filesystem>
#include <utility>

#include "velmoria/platform/posix/user_folders.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

std::string SettingsFolder() {
  const char* own = std::getenv("VELMORIA_SETTINGS_DIR");
  return own && *own ? own : ConfigurationFolder();
}

// A later change of the working folder moves no settings.
std::string Absolute(const std::string& folder) {
  std::error_code error;
  return folder.empty() ? folder : std::filesystem::absolute(folder, error).string();
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
  return (name.empty() ? "%" : name) + ".settings";
}

bool IsDamaged(const FoundSettings& found, const SettingsText& text) {
  return !found.Obstacle.empty() || !text.DamagedLines().empty();
}

std::string LinesText(const std::vector<std::size_t>& lines) {
  constexpr std::size_t most = 10;
  std::string text;
  for (std::size_t at = 0; at < lines.size() && at < most; ++at) {
    text += (at == 0 ? "" : ", ") + NumberText(static_cast<long long>(lines[at]));
  }
  return lines.size() > most ? text + " and others" : text;
}

std::string DamageOf(const std::string& path, const FoundSettings& found, const SettingsText& text) {
  if (!IsDamaged(found, text)) return {};
  const auto what = found.Obstacle.empty() ? "has damaged lines: " + LinesText(text.DamagedLines())
                                           : "cannot be read: " + found.Obstacle;
  return "The settings file " + Quoted(path) + " " + what + ". It will be kept beside the next one saved.";
}

}  // namespace

FileSettingsStore::FileSettingsStore() : FileSettingsStore(SettingsFolder()) {}

FileSettingsStore::FileSettingsStore(const std::string& folder) : folder_(Absolute(folder)) {}

std::string FileSettingsStore::PathOf(std::string_view application) const {
  return folder_.empty() ? folder_ : folder_ + "/" + FileName(application);
}

FileSettingsStore::Cached& FileSettingsStore::Read(std::string_view application) {
  const auto path = PathOf(application);
  auto& cached = cache_[path];
  const auto identity = IdentityAt(path);
  if (identity != FileIdentity{} && identity == cached.Found.Identity) return cached;
  cached.Found = ReadSettingsFile(path);
  cached.Text = SettingsText(std::exchange(cached.Found.Text, {}));
  cached.Damage = DamageOf(path, cached.Found, cached.Text);
  return cached;
}

template <class Change>
void FileSettingsStore::Modify(std::string_view application, Change change) {
  MakeFolder(folder_);
  const auto path = PathOf(application);
  const auto lock = LockSettingsFile(path);
  const auto found = ReadSettingsFile(path);
  SettingsText text(found.Text);
  const bool isDamaged = IsDamaged(found, text);
  const auto before = text.Print();
  change(text);
  if (const auto after = text.Print(); isDamaged || after != before) {
    ReplaceSettingsFile(path, found, after, isDamaged);
  }
}

std::string FileSettingsStore::GetSetting(std::string_view application, std::string_view section, std::string_view key,
                                          std::string_view missing) {
  const auto* value = Read(application).Text.Find(section, key);
  return value ? *value : std::string(missing);
}

void FileSettingsStore::SaveSettings(std::string_view application, std::string_view section, const Entries& entries) {
  Modify(application, [&](SettingsText& text) {
    for (const auto& [key, value] : entries) text.Set(section, key, value);
  });
}

void FileSettingsStore::DeleteSetting(std::string_view application, std::string_view section) {
  Modify(application, [&](SettingsText& text) { text.Delete(section); });
}

void FileSettingsStore::ReplaceSection(std::string_view application, std::string_view section, const Entries& entries) {
  Modify(application, [&](SettingsText& text) { text.Replace(section, entries); });
}

std::string FileSettingsStore::TakeDamage(std::string_view application) {
  auto& cached = Read(application);
  return std::exchange(cached.ToldDamage, cached.Damage) == cached.Damage ? std::string() : cached.Damage;
}

}  // namespace velmoria
