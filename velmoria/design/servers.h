#pragma once

#include "velmoria/design/design_collection.h"
#include "velmoria/design/server_kind.h"

namespace velmoria {

extern template class VELMORIA_API DesignCollection<ServerKind>;

/// Servers by name. Framework's is the one of the registered servers, which a host fills at run time: what is added
/// lives as long as the apartment and is not written down. Any other is transient.
class VELMORIA_API Servers final : public DesignCollection<ServerKind> {
 public:
  Servers();
  ~Servers() override;

  /// Whether this is Framework's.
  bool Registered() const;
};

}  // namespace velmoria
