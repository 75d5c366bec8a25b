#pragma once

#include <string>

#include "velmoria/design/class_kind.h"
#include "velmoria/design/design_collection.h"

namespace velmoria {

extern template class VELMORIA_API DesignCollection<ClassKind>;

/// The Classes of one Server, by name.
class VELMORIA_API Classes final : public DesignCollection<ClassKind> {
 public:
  Classes();
  ~Classes() override;

  /// Empty without a Server.
  std::string ServerName() const;
};

}  // namespace velmoria
