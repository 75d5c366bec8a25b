#pragma once

#include <optional>
#include <string>

#include "velmoria/platform/odbc/statement.h"

namespace velmoria::odbc {

/// The value of a column that is not bound, in the row that the driver's cursor stands on, whatever its length; none
/// for a Null. A text is read as UTF-8, anything else as bytes.
std::optional<std::string> ReadLongValue(Statement& statement, Word column, bool isText);

}  // namespace velmoria::odbc
