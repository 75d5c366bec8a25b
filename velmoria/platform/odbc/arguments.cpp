#include "velmoria/platform/odbc/arguments.h"

#include <limits>

#include "velmoria/runtime/error.h"

namespace velmoria::odbc {

Char* MutableText(const std::string& text) noexcept { return reinterpret_cast<Char*>(const_cast<char*>(text.c_str())); }

Number CheckedNumber(std::size_t value) {
  if (value > static_cast<std::size_t>(std::numeric_limits<Number>::max())) Fail(RuntimeFailure::Overflow);
  return static_cast<Number>(value);
}

Number LengthOfStatement(const std::string& text) {
  if (text.find('\0') != std::string::npos)
    Fail(RuntimeFailure::InvalidArgument, "The text of a statement holds a character 0.");
  return CheckedNumber(text.size());
}

}  // namespace velmoria::odbc
