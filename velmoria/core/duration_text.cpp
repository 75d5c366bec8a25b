#include <string_view>

#include "velmoria/core/duration_text_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

std::string Counted(std::int64_t count, std::string_view unit) {
  return NumberText(count) + " " + std::string(unit) + (count == 1 ? "" : "s");
}

}  // namespace

std::string DurationText(std::int64_t seconds) {
  if (seconds < 0) return {};
  auto rest = Counted(seconds % 60, "second");
  if (seconds < 60) return rest;
  return Counted(seconds / 60, "minute") + " and " + rest;
}

}  // namespace velmoria
