#pragma once

#include <string_view>

#include "velmoria/platform/components/component_source_impl.h"

namespace velmoria {

/// The components of shared libraries: "Sales.Order" is the class Order of libSales.so. A library is loaded when one of
/// its classes is first asked for, in a folder of Components::AddFolder in any case, else as the system finds it under
/// the name as it is spelled or in lower case. Raises 429, with the loader's text, for one that lies in such a folder
/// but cannot be loaded; a library that defines no offers has none.
class LibraryComponents final : public ComponentSource {
 public:
  Ref<Object> Create(std::string_view name) override;

  static void AddFolder(std::string_view folder);
};

}  // namespace velmoria
