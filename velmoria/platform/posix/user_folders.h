#pragma once

#include <string>

namespace velmoria {

// The user's own folders by the XDG rules: a variable that names no absolute path counts as not set. "" when not even a
// home folder is known, neither by HOME nor by the user data base.

/// "velmoria" under XDG_CONFIG_HOME, else under ~/.config.
std::string ConfigurationFolder();
/// "velmoria" under XDG_STATE_HOME, else under ~/.local/state.
std::string StateFolder();

/// Makes a folder and those above it that are missing, for the user alone. Raises 61, 70, 75 or 76; 76 also for "".
void MakeFolder(const std::string& folder);

}  // namespace velmoria
