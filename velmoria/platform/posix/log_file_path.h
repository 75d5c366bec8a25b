#pragma once

#include <string>
#include <string_view>

namespace velmoria {

/// Where the log file of a stored name lies. A name that starts with a drive letter and a colon, or has a backslash, is
/// a path of another system and cannot be one here, nor can an empty name or one with a NUL: the file then lies in the
/// user's state folder (see StateFolder), under the last component of the name, or as "VelmoriaMessages.log" when that
/// is none. Every other name is a path as it stands, a relative one from the present working folder. "" for a name that
/// ends in a slash, and for one without a folder to lie in.
std::string LogFilePath(std::string_view name);

}  // namespace velmoria
