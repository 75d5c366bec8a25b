#pragma once

#include <string>

#include "velmoria/design/design_collection.h"
#include "velmoria/design/link_kind.h"

namespace velmoria {

extern template class VELMORIA_API DesignCollection<LinkKind>;

/// The Links of one Relationship, by name.
class VELMORIA_API Links final : public DesignCollection<LinkKind> {
 public:
  Links();
  ~Links() override;
};

}  // namespace velmoria
