#include "velmoria/platform/components/component_library.h"

#include <algorithm>

#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

ComponentLibrary::ComponentLibrary() = default;
ComponentLibrary::~ComponentLibrary() = default;

void ComponentLibrary::Offer(std::string_view className, Components::Factory factory) {
  if (className.empty() || !factory) Fail(RuntimeFailure::InvalidArgument);
  std::erase_if(offers_, [&](const auto& offer) { return EqualFolded(offer.first, className); });
  offers_.emplace_back(className, factory);
}

Components::Factory ComponentLibrary::Find(std::string_view className) const noexcept {
  const auto found = std::find_if(offers_.begin(), offers_.end(),
                                  [&](const auto& offer) { return EqualFolded(offer.first, className); });
  return found == offers_.end() ? nullptr : found->second;
}

}  // namespace velmoria
