#include <array>
#include <utility>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/product.h"

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

template <class Enumeration>
std::string NumberTextOf(Enumeration value) {
  return Variant(static_cast<std::int32_t>(value)).AsText();
}

// Gives what is stored under a key to `take`; a setting that is not there or cannot be read leaves the default.
template <class Take>
void ReadSetting(SettingsStore& store, std::string_view key, Take take) noexcept {
  constexpr std::string_view none = ".NotFound.";
  WithErrorsIgnored([&] {
    const auto text = store.GetSetting(ProductVersionLabel, kSection, key, none);
    if (text != none) take(Variant(text));
  });
}

template <class Enumeration>
void ReadNumber(SettingsStore& store, std::string_view key, Enumeration& field) noexcept {
  ReadSetting(store, key, [&](const Variant& text) { field = Enumeration{text.AsLong()}; });
}

}  // namespace

Messages::~Messages() { SaveLogSettings(Apartment()); }

void Messages::ReadLogSettings(ApartmentState& apartment) {
  auto& store = *apartment.Platform.Settings;
  ReadNumber(store, "LogSeverityFlags", log_.LogSeverityFlags);
  ReadNumber(store, "LogTypeFlags", log_.LogTypeFlags);
  ReadNumber(store, "LogMode", log_.LogMode);
  ReadSetting(store, "LogFileName", [&](const Variant& text) { log_.LogFileName = text.AsText(); });
  ReadSetting(store, "LogOverwrite", [&](const Variant& text) { log_.LogOverwrite = text.AsBoolean(); });
}

void Messages::SaveLogSettings(ApartmentState& apartment) const {
  WithErrorsIgnored([&] {
    apartment.Platform.Settings->ReplaceSection(ProductVersionLabel, kSection,
                                                {{"LogSeverityFlags", NumberTextOf(log_.LogSeverityFlags)},
                                                 {"LogTypeFlags", NumberTextOf(log_.LogTypeFlags)},
                                                 {"LogMode", NumberTextOf(log_.LogMode)},
                                                 {"LogFileName", log_.LogFileName},
                                                 {"LogOverwrite", Variant(log_.LogOverwrite).AsText()}});
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
