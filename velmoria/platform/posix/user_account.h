#pragma once

#include <optional>
#include <string>

namespace velmoria {

/// What the user data base tells about a user.
struct UserAccount {
  std::string Name;
  std::string HomeFolder;
};

/// The effective user of the process; none when the user data base does not know one.
std::optional<UserAccount> EffectiveUser();

}  // namespace velmoria
