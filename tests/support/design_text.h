#pragma once

#include <string>

#include "velmoria/fwd.h"

namespace velmoria::test {

/// Every field of a Server, or of a Database, and of everything below it, a line for each object: designs of the same
/// text are equal. What a copy has of its own is left out: dates, the file, and the user properties of a Class.
std::string DesignText(ServerData& server);
std::string DesignText(DatabaseData& database);

}  // namespace velmoria::test
