#pragma once

#include <array>
#include <string>
#include <string_view>

#include "velmoria/platform/posix/file_descriptor.h"

namespace velmoria {

/// Which state of which file; all 0 for none.
using FileIdentity = std::array<long long, 7>;

/// What lies at the path of a settings file.
struct FoundSettings {
  FileDescriptor File{};  // held, so that its identity is not given to another file
  FileIdentity Identity{};
  std::string Text{};
  std::string Obstacle{};  // why it cannot be read; "" when it can, or when nothing is there
};

FileIdentity IdentityAt(const std::string& path);

/// Raises 70 or 75 when the system fails on the way. What stands in the way, such as a folder or a file without
/// permission, is an Obstacle.
FoundSettings ReadSettingsFile(const std::string& path);

/// Waits until no other thread or process has the lock of this file; it ends with the result.
FileDescriptor LockSettingsFile(const std::string& path);

/// Puts a text in the place of what was found, in one step. A link is followed and stays. A file that the user may not
/// write is not replaced. If `isDamaged`, what was found is first kept under "<path>.damaged", or with a number behind
/// it when that is taken; an obstacle, be it a link, is moved there as it is. Raises 53, 61, 70, 75 or 76, and then
/// leaves everything as it was.
void ReplaceSettingsFile(const std::string& path, const FoundSettings& found, std::string_view text, bool isDamaged);

}  // namespace velmoria
