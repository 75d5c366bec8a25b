#include "velmoria/platform/odbc/whole_value.h"

#include <charconv>
#include <string>

#include "velmoria/runtime/error.h"

namespace velmoria::odbc {

std::int64_t WholeOf(const Variant& value) {
  const std::string text = value.AsDecimal().AsText();
  std::int64_t number = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (failure != std::errc() || end != text.data() + text.size()) Fail(RuntimeFailure::Overflow);
  return number;
}

}  // namespace velmoria::odbc
