#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmoria {

/// The per-user settings: texts addressed by application, section and key. Sections and keys are compared without
/// regard to case, the application as it stands. Any text is a legal name or value, the empty one too.
class SettingsStore {
 public:
  using Entries = std::vector<std::pair<std::string, std::string>>;

  virtual ~SettingsStore() = default;

  /// The stored text, or `missing` when nothing is stored under the key.
  virtual std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                                 std::string_view missing) = 0;
  /// Writes these entries, as one step: a failure leaves what was there, and so do other keys of the section.
  virtual void SaveSettings(std::string_view application, std::string_view section, const Entries& entries) = 0;
  void SaveSetting(std::string_view application, std::string_view section, std::string_view key,
                   std::string_view value) {
    SaveSettings(application, section, {{std::string(key), std::string(value)}});
  }
  /// Removes a section with all its keys; one that is not there is no failure.
  virtual void DeleteSetting(std::string_view application, std::string_view section) = 0;
  /// Deletes the section and writes these entries, as one step: a failure leaves what was there.
  virtual void ReplaceSection(std::string_view application, std::string_view section, const Entries& entries) = 0;
  /// What of the application's settings is damaged and was passed over, for the user to read: told once, to the first
  /// who asks; "" when nothing is. What was passed over is kept, also when the settings are written.
  virtual std::string TakeDamage(std::string_view application) = 0;

 protected:
  SettingsStore() = default;
  SettingsStore(const SettingsStore&) = default;
  SettingsStore& operator=(const SettingsStore&) = default;
};

}  // namespace velmoria
