#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmoria {

class SettingsStore;

/// What is stored under a key of the library's own settings; none when nothing is. Raises what the store raises.
std::optional<std::string> StoredSetting(SettingsStore& store, std::string_view section, std::string_view key);

}  // namespace velmoria
