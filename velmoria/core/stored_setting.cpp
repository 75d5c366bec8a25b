#include "velmoria/core/product.h"
#include "velmoria/core/stored_setting_impl.h"
#include "velmoria/platform/posix/settings_store.h"

namespace velmoria {

std::optional<std::string> StoredSetting(SettingsStore& store, std::string_view section, std::string_view key) {
  constexpr std::string_view none = ".NotFound.";
  auto text = store.GetSetting(ProductVersionLabel, section, key, none);
  if (text == none) return std::nullopt;
  return text;
}

}  // namespace velmoria
