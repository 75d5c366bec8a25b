#include <array>
#include <type_traits>
#include <utility>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/product.h"
#include "velmoria/core/stored_setting_impl.h"

namespace velmoria {

namespace {

constexpr std::string_view kSection = "Exceptions";

struct ServiceMode {
  zLogModes LogMode;
  LogServiceMode Mode;
};

constexpr std::array kServiceModes{
    ServiceMode{lmAutomatic, LogServiceMode::Automatic},
    ServiceMode{lmWindows, LogServiceMode::File},
    ServiceMode{lmWinNT, LogServiceMode::System},
};

LogServiceMode ServiceModeOf(zLogModes mode) noexcept {
  for (const auto& row : kServiceModes) {
    if (row.LogMode == mode) return row.Mode;
  }
  return LogServiceMode::Off;
}

LogEventType EventTypeOf(zSeverityFlags severity) noexcept {
  if (severity == svfWarning) return LogEventType::Warning;
  if (severity == svfInfo) return LogEventType::Information;
  return LogEventType::Error;
}

template <class Flags>
bool Selects(Flags selection, Flags value) noexcept {
  return static_cast<std::int32_t>(value) == 0 || has(selection, value);
}

using Logging = SetupLoggingArguments;

// A setting as it is stored.
struct LogSetting {
  std::string_view Key;
  Variant (*Get)(const Logging& log);
  void (*Set)(Logging& log, const Variant& stored);  // raises for a text that is no value of the setting
};

template <auto Member>
constexpr LogSetting NumberSetting(std::string_view key) {
  return {key, [](const Logging& log) { return Variant(static_cast<std::int32_t>(log.*Member)); },
          [](Logging& log, const Variant& stored) {
            log.*Member = std::remove_reference_t<decltype(log.*Member)>{stored.AsLong()};
          }};
}

constexpr std::array kLogSettings{
    NumberSetting<&Logging::LogSeverityFlags>("LogSeverityFlags"),
    NumberSetting<&Logging::LogTypeFlags>("LogTypeFlags"),
    NumberSetting<&Logging::LogMode>("LogMode"),
    LogSetting{"LogFileName", [](const Logging& log) { return Variant(log.LogFileName); },
               [](Logging& log, const Variant& stored) { log.LogFileName = stored.AsText(); }},
    LogSetting{"LogOverwrite", [](const Logging& log) { return Variant(log.LogOverwrite); },
               [](Logging& log, const Variant& stored) { log.LogOverwrite = stored.AsBoolean(); }},
};

// Empty when nothing is stored.
Variant Stored(SettingsStore& store, std::string_view key) {
  const auto text = StoredSetting(store, kSection, key);
  return text ? Variant(*text) : Variant();
}

// What is not stored, and what is no value of the setting, leaves the setting as it is.
bool Take(const LogSetting& setting, Logging& log, const Variant& stored) noexcept {
  bool isTaken = false;
  WithErrorsIgnored([&] {
    if (stored.IsEmpty()) return;
    setting.Set(log, stored);
    isTaken = true;
  });
  return isTaken;
}

bool IsNoValue(const LogSetting& setting, Logging log, const Variant& stored) {
  return !stored.IsEmpty() && !Take(setting, log, stored);
}

// What has its default leaves a stored text that is no value of it.
SettingsStore::Entries EntriesOf(const Logging& log, const Logging& defaults, SettingsStore& store) {
  SettingsStore::Entries entries;
  for (const auto& setting : kLogSettings) {
    auto text = setting.Get(log).AsText();
    const bool isDefault = text == setting.Get(defaults).AsText();
    if (isDefault && IsNoValue(setting, defaults, Stored(store, setting.Key))) continue;
    entries.emplace_back(setting.Key, std::move(text));
  }
  return entries;
}

}  // namespace

SetupLoggingArguments Messages::DefaultLogging() { return {lmOff, svfAll, tfAll, "c:\\VelmoriaMessages.log", true}; }

Messages::~Messages() { SaveLogSettings(Apartment()); }

void Messages::ReadLogSettings(ApartmentState& apartment) {
  auto& store = *apartment.Platform.Settings;
  for (const auto& setting : kLogSettings) Take(setting, log_, Stored(store, setting.Key));
  isLogRead_ = true;
}

void Messages::SaveLogSettings(ApartmentState& apartment) const {
  if (!isLogRead_) return;
  WithErrorsIgnored([&] {
    auto& store = *apartment.Platform.Settings;
    store.SaveSettings(ProductVersionLabel, kSection, EntriesOf(log_, DefaultLogging(), store));
  });
}

// LogOverwrite is not passed on: an existing file is always continued.
void Messages::StartLog() {
  WithErrorsIgnored([&] { Apartment().Platform.Log->Start(log_.LogFileName, ServiceModeOf(log_.LogMode)); });
}

void Messages::WriteToLog(const Message& message) {
  if (log_.LogMode == lmOff) return;
  if (!Selects(log_.LogTypeFlags, message.TypeFlags())) return;
  if (!Selects(log_.LogSeverityFlags, message.SeverityFlags())) return;
  WithErrorsIgnored([&] { Apartment().Platform.Log->Write(message.Details(), EventTypeOf(message.SeverityFlags())); });
}

void Messages::SetLogSeverityFlags(zSeverityFlags value) {
  if (std::exchange(log_.LogSeverityFlags, value) != value) StartLog();
}

void Messages::SetLogTypeFlags(zTypeFlags value) {
  if (std::exchange(log_.LogTypeFlags, value) != value) StartLog();
}

void Messages::SetLogMode(zLogModes value) {
  if (std::exchange(log_.LogMode, value) != value) StartLog();
}

void Messages::SetLogFileName(const std::string& value) {
  if (std::exchange(log_.LogFileName, value) != value) StartLog();
}

void Messages::SetLogOverwrite(bool value) {
  if (std::exchange(log_.LogOverwrite, value) != value) StartLog();
}

void Messages::SetupLogging(const SetupLoggingArguments& arguments) {
  auto fileName = arguments.LogFileName.empty() ? log_.LogFileName : arguments.LogFileName;
  log_ = arguments;
  log_.LogFileName = std::move(fileName);
  StartLog();
}

}  // namespace velmoria
