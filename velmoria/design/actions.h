#pragma once

#include <string>

#include "velmoria/design/action_kind.h"
#include "velmoria/design/design_collection.h"

namespace velmoria {

extern template class VELMORIA_API DesignCollection<ActionKind>;

/// The Actions of one Class, by name.
class VELMORIA_API Actions final : public DesignCollection<ActionKind> {
 public:
  Actions();
  ~Actions() override;

  // Of the parents; empty without them.
  std::string ServerName() const;
  std::string ClassName() const;
};

}  // namespace velmoria
