#pragma once

#include <string_view>

#include "velmoria/runtime/object.h"

namespace velmoria {

/// Makes an object by its component name, "Sales.Order".
class ComponentSource {
 public:
  virtual ~ComponentSource() = default;

  /// A new object, or null when nobody offers the name; what the component's own making throws passes through.
  virtual Ref<Object> Create(std::string_view name) = 0;

 protected:
  ComponentSource() = default;
  ComponentSource(const ComponentSource&) = default;
  ComponentSource& operator=(const ComponentSource&) = default;
};

}  // namespace velmoria
