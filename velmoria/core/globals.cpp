#include "velmoria/core/globals.h"

#include <algorithm>

namespace velmoria {

bool VariantsEqual(const Variant& value1, const Variant& value2) { return value1 == value2; }

std::string StripNameDelimiters(std::string_view text) {
  std::string stripped(text);
  std::erase_if(stripped, [](char each) { return each == '[' || each == ']' || each == '@'; });
  return stripped;
}

}  // namespace velmoria
