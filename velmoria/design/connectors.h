#pragma once

#include "velmoria/design/connector_kind.h"
#include "velmoria/design/design_collection.h"

namespace velmoria {

extern template class VELMORIA_API DesignCollection<ConnectorKind>;

/// The Connectors of one Database, at most one an engine. Engine 0 means the Database's Engine.
class VELMORIA_API Connectors final : public DesignCollection<ConnectorKind> {
 public:
  Connectors();
  ~Connectors() override;

  // Engine numbers in an array from 0, or Empty for none.

  /// That of every member, in order.
  Variant ValidEngines() const;
  /// Those of them that this machine supports.
  Variant AvailableEngines() const;
  /// Those that this machine supports and that have no member, in ascending order.
  Variant MissingEngines() const;

 private:
  zEngines Resolved(const zEngines& engine, bool raising) const override;
};

}  // namespace velmoria
