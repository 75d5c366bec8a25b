#pragma once

#include <map>

#include "velmoria/platform/posix/settings_file.h"
#include "velmoria/platform/posix/settings_store.h"
#include "velmoria/platform/posix/settings_text.h"

namespace velmoria {

/// The settings of each application in a text file of its own, "<application>.settings". The folder is the value of the
/// environment variable VELMORIA_SETTINGS_DIR if it is set, else ConfigurationFolder; it is made, for the user alone,
/// at the first saving. A file is replaced as a whole, under an advisory lock between processes and threads, so a
/// reader sees it before or after a change and never between; a saving that changes nothing writes nothing. A damaged
/// file is read as far as it can be, and so is one that cannot be read at all: it reads as empty. The first saving,
/// one that changes nothing too, keeps it beside the new one, as "<application>.settings.damaged", "....damaged-2" and
/// so on.
class FileSettingsStore final : public SettingsStore {
 public:
  FileSettingsStore();
  /// With "" nothing is read, and writing raises 76.
  explicit FileSettingsStore(const std::string& folder);

  /// Reading raises 70 or 75 when the system fails; writing raises 53, 61, 70, 75 or 76.
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view missing) override;
  void SaveSettings(std::string_view application, std::string_view section, const Entries& entries) override;
  void DeleteSetting(std::string_view application, std::string_view section) override;
  void ReplaceSection(std::string_view application, std::string_view section, const Entries& entries) override;
  std::string TakeDamage(std::string_view application) override;

  /// Where the settings of an application lie; "" when there is no folder.
  std::string PathOf(std::string_view application) const;

 private:
  struct Cached {
    FoundSettings Found{};
    SettingsText Text{};
    std::string Damage{};
    std::string ToldDamage{};
  };

  Cached& Read(std::string_view application);
  template <class Change>
  void Modify(std::string_view application, Change change);

  std::string folder_;
  std::map<std::string, Cached> cache_;
};

}  // namespace velmoria
