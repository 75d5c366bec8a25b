#pragma once

#include "velmoria/design/database_kind.h"
#include "velmoria/design/design_collection.h"

namespace velmoria {

extern template class VELMORIA_API DesignCollection<DatabaseKind>;

/// Databases by name. Framework's is the one of the registered databases, which a host fills at run time: what is added
/// lives as long as the apartment and is not written down. Any other is transient.
class VELMORIA_API Databases final : public DesignCollection<DatabaseKind> {
 public:
  Databases();
  ~Databases() override;

  /// Whether this is Framework's.
  bool Registered() const;
};

}  // namespace velmoria
