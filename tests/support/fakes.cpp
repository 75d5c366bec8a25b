#include "tests/support/fakes.h"

#include <algorithm>

#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria::test {

namespace {

auto FindSetting(auto& settings, std::string_view application, std::string_view section, std::string_view key) {
  return std::ranges::find_if(settings, [&](const auto& setting) {
    return setting.Application == application && EqualFolded(setting.Section, section) && EqualFolded(setting.Key, key);
  });
}

}  // namespace

std::string FakeSettingsStore::GetSetting(std::string_view application, std::string_view section, std::string_view key,
                                          std::string_view missing) {
  if (FailReads) Fail(RuntimeFailure::PermissionDenied);
  const auto found = FindSetting(settings_, application, section, key);
  return found == settings_.end() ? std::string(missing) : found->Value;
}

void FakeSettingsStore::SaveSettings(std::string_view application, std::string_view section, const Entries& entries) {
  CountWrite();
  Put(application, section, entries);
}

void FakeSettingsStore::DeleteSetting(std::string_view application, std::string_view section) {
  CountWrite();
  Erase(application, section);
}

void FakeSettingsStore::ReplaceSection(std::string_view application, std::string_view section, const Entries& entries) {
  CountWrite();
  Erase(application, section);
  Put(application, section, entries);
}

void FakeSettingsStore::CountWrite() {
  if (FailWrites) Fail(RuntimeFailure::DiskFull);
  ++Writes;
}

void FakeSettingsStore::Erase(std::string_view application, std::string_view section) {
  std::erase_if(settings_, [&](const Setting& setting) {
    return setting.Application == application && EqualFolded(setting.Section, section);
  });
}

void FakeSettingsStore::Put(std::string_view application, std::string_view section, const Entries& entries) {
  for (const auto& [key, value] : entries) {
    const auto found = FindSetting(settings_, application, section, key);
    if (found != settings_.end()) {
      found->Value = value;
    } else {
      settings_.push_back({std::string(application), std::string(section), key, value});
    }
  }
}

std::vector<std::string> FakeSettingsStore::Keys(std::string_view application, std::string_view section) const {
  std::vector<std::string> keys;
  for (const auto& setting : settings_) {
    if (setting.Application == application && setting.Section == section) keys.push_back(setting.Key);
  }
  return keys;
}

void FakeLogService::Start(std::string_view fileName, LogServiceMode mode) {
  ++Starts;
  if (FailStarts) Fail(RuntimeFailure::PathNotFound);
  FileName = fileName;
  Mode = mode;
}

void FakeLogService::Write(std::string_view text, LogEventType type) {
  if (FailWrites) Fail(RuntimeFailure::DiskFull);
  if (Mode != LogServiceMode::Off) Lines.push_back({std::string(text), type});
}

void FakeClock::Sleep(std::int32_t milliseconds) {
  SleptMilliseconds += milliseconds;
  Advance(milliseconds / 1000.0);
}

}  // namespace velmoria::test
