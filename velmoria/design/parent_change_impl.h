#pragma once

#include "velmoria/core/enumerations.h"
#include "velmoria/fwd.h"
#include "velmoria/properties/parents_data.h"

namespace velmoria {

/// Parents given or cleared, on its way down to children.
class ParentChange {
 public:
  explicit ParentChange(const Parents& given) noexcept : given_(&given) {}
  explicit ParentChange(const ParentSlots& cleared) noexcept : cleared_(&cleared) {}

  /// A child that has not been made is passed over: it gets its parents when it is.
  template <class Child>
  void To(const Ref<Child>& child) const {
    if (!child) return;
    if (given_) child->SetParents(*given_);
    if (cleared_) child->ClearParents(*cleared_);
  }
  void To(const PropertiesPtr& child) const;
  void To(const PropertyPtr& child) const;

 private:
  const Parents* given_ = nullptr;
  const ParentSlots* cleared_ = nullptr;
};

/// A collection of properties over a definition, below these parents.
PropertiesPtr BoundProperties(zPropertyStyles style, const PropertiesDataPtr& data, const Parents& parents);

}  // namespace velmoria
