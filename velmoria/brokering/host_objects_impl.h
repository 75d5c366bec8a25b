#pragma once

#include <string>
#include <string_view>

#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/reporting.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

/// A host's object by its component name, or null when nobody offers the name, its making fails, or it has another face
/// than the one wanted. Messaging is suspended under the routine while it is made.
template <class Face>
Ref<Face> CreateHostObject(const std::string& component, std::string_view routine) {
  Suspension quiet{routine};
  try {
    return Ref<Face>(dynamic_cast<Face*>(Apartment().Platform.Components->Create(component).get()));
  } catch (...) {
    return {};  // a host class that fails while it is made counts as not created: the caller raises its own number
  }
}

}  // namespace velmoria
