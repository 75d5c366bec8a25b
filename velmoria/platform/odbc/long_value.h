#pragma once

#include "velmoria/platform/odbc/statement.h"
#include "velmoria/runtime/variant.h"

namespace velmoria::odbc {

/// The value of a column that is not bound, in the row that the driver's cursor stands on, whatever its length: a byte
/// array, or Null. A text is read as UTF-8. The driver writes into the array that is handed out.
Variant ReadLongValue(Statement& statement, Word column, bool isText);

}  // namespace velmoria::odbc
