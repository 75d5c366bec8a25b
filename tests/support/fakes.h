#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "velmoria/platform/platform.h"

namespace velmoria::test {

/// Settings in memory; shared between apartments when it is passed on.
class FakeSettingsStore final : public SettingsStore {
 public:
  std::string GetSetting(std::string_view application, std::string_view section, std::string_view key,
                         std::string_view missing) override;
  void SaveSettings(std::string_view application, std::string_view section, const Entries& entries) override;
  void DeleteSetting(std::string_view application, std::string_view section) override;
  void ReplaceSection(std::string_view application, std::string_view section, const Entries& entries) override;
  std::string TakeDamage(std::string_view) override { return std::exchange(Damage, {}); }

  /// All keys of a section, in order of saving.
  std::vector<std::string> Keys(std::string_view application, std::string_view section) const;

  bool FailReads = false;
  bool FailWrites = false;
  int Writes = 0;  // steps by which something was written
  std::string Damage;

 private:
  struct Setting {
    std::string Application;
    std::string Section;
    std::string Key;
    std::string Value;
  };

  void CountWrite();
  void Erase(std::string_view application, std::string_view section);
  void Put(std::string_view application, std::string_view section, const Entries& entries);

  std::vector<Setting> settings_;
};

/// Records what is logged while it is not off, and how often the log was started.
class FakeLogService final : public LogService {
 public:
  struct Line {
    std::string Text;
    LogEventType Type;
  };

  void Start(std::string_view fileName, LogServiceMode mode) override;
  void Write(std::string_view text, LogEventType type) override;

  std::vector<Line> Lines;
  int Starts = 0;
  std::string FileName;
  LogServiceMode Mode = LogServiceMode::Off;
  bool FailStarts = false;
  bool FailWrites = false;
};

/// A clock that stands at 1 June 1998, 9:14:02, until it is set or somebody sleeps.
class FakeClock final : public Clock {
 public:
  Date Now() override { return Time; }
  void Sleep(std::int32_t milliseconds) override;
  void Advance(double seconds) { Time.Days += seconds / 86400.0; }

  Date Time = Date::From(1998, 6, 1, 9, 14, 2);
  std::int32_t SleptMilliseconds = 0;
};

/// "TestHost" 1.2.3, run by "tester".
class FakeHostApplication final : public HostApplication {
 public:
  std::string Name() override { return HostName; }
  std::int32_t Major() override { return 1; }
  std::int32_t Minor() override { return 2; }
  std::int32_t Revision() override { return 3; }
  std::string UserName() override { return User; }

  std::string HostName = "TestHost";
  std::string User = "tester";
};

}  // namespace velmoria::test
