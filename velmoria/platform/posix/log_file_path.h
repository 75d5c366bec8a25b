#pragma once

#include <string>
#include <string_view>

namespace velmoria {

/// Where the log file of a stored name lies. A name that starts with a drive letter and a colon, or has a backslash, is
/// a path of another system and cannot be one here: the file then lies in the user's state folder (see StateFolder),
/// under the last component of the name. Every other name is a path as it stands, a relative one from the present
/// working folder. "" for a name that names no file: one without a last component, with a NUL, or without a folder to
/// lie in.
std::string LogFilePath(std::string_view name);

}  // namespace velmoria
