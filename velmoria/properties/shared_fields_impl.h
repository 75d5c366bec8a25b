#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include "velmoria/properties/property_fields.h"
#include "velmoria/runtime/pooled.h"

namespace velmoria {

/// The fields of a definition, which copies of it share until one of them is to be changed: the columns of a result are
/// like those of the result before. Of one apartment, as definitions are.
class SharedFields {
 public:
  const PropertyFields& operator*() const noexcept { return held_->Fields; }
  const PropertyFields* operator->() const noexcept { return &held_->Fields; }
  /// Those of this copy alone; the reference holds until this is copied.
  PropertyFields& Own() {
    if (held_->use_count() > 1) held_ = new Held(*held_);
    return held_->Fields;
  }

 private:
  struct Held : boost::intrusive_ref_counter<Held, boost::thread_unsafe_counter>, Pooled {
    PropertyFields Fields{.Name = {}};
  };

  boost::intrusive_ptr<Held> held_{new Held};
};

}  // namespace velmoria
