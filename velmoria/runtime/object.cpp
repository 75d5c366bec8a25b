#include "velmoria/runtime/object.h"

#include <atomic>

namespace velmoria {

std::uint32_t ThisApartmentNumber() noexcept {
  static constinit std::atomic<std::uint32_t> last{0};
  // A few bytes are little enough for the quick model also where the library is loaded late.
  [[gnu::tls_model("initial-exec")]] static constinit thread_local std::uint32_t number = 0;
  if (number == 0) number = ++last;
  return number;
}

Object::~Object() = default;

std::string_view Object::ReportedType() const noexcept { return "Object"; }

}  // namespace velmoria
