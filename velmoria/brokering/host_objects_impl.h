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

/// The face by which a host's object is spoken to: one that was made without it fails like a call of a member that is
/// not there.
template <class Face>
Ref<Face> FaceOf(const Ref<Object>& component) {
  auto* face = dynamic_cast<Face*>(component.get());
  if (!face) Fail(RuntimeFailure::NoSuchMember);
  return Ref<Face>(face);
}

}  // namespace velmoria
