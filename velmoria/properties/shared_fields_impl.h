#pragma once

#include <cstdint>

#include "velmoria/properties/property_fields.h"
#include "velmoria/runtime/pooled.h"
#include "velmoria/runtime/ref.h"

namespace velmoria {

/// The fields of a definition, which copies of it share until one of them is to be changed: the columns of a result are
/// like those of the result before. Of one apartment, as definitions are.
class SharedFields {
 public:
  const PropertyFields& operator*() const noexcept { return held_->Fields; }
  const PropertyFields* operator->() const noexcept { return &held_->Fields; }
  /// Those of this copy alone; the reference holds until this is copied.
  PropertyFields& Own() {
    if (held_->Holders > 1) held_ = new Held(held_->Fields);
    return held_->Fields;
  }

 private:
  struct Held : Pooled {
    Held() = default;
    explicit Held(const PropertyFields& fields) : Fields(fields) {}
    friend void intrusive_ptr_add_ref(Held* held) noexcept { ++held->Holders; }
    friend void intrusive_ptr_release(Held* held) noexcept {
      if (--held->Holders == 0) delete held;
    }

    PropertyFields Fields{.Name = {}};
    std::uint32_t Holders = 0;
  };

  Ref<Held> held_{new Held};
};

}  // namespace velmoria
