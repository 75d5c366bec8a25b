#pragma once

#include <string_view>

namespace velmoria {

/// The application name under which settings are stored.
inline constexpr std::string_view ProductVersionLabel = "Velmoria v1.0-0";
/// What Framework.Version returns.
inline constexpr std::string_view ProductVersion = "v1.0-0h";

}  // namespace velmoria
