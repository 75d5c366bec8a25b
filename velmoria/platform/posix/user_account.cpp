#include "velmoria/platform/posix/user_account.h"

#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace velmoria {

std::optional<UserAccount> EffectiveUser() {
  std::vector<char> buffer(16384);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found) return std::nullopt;
  return UserAccount{.Name = found->pw_name, .HomeFolder = found->pw_dir};
}

}  // namespace velmoria
