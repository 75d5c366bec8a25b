#pragma once

#include <cstdint>
#include <string>

#include "velmoria/design/connector_kind.h"
#include "velmoria/design/design_collection_data.h"
#include "velmoria/design/design_data.h"

namespace velmoria {

extern template class DesignData<ConnectorKind>;
extern template class DesignCollectionData<ConnectorKind>;

class ConnectorData final : public DesignData<ConnectorKind> {
 public:
  ConnectorData();
  ~ConnectorData() override;

  /// Fills what is 0 or empty from the machine's defaults. Raises 15054 for an engine outside 1 to 5.
  void Setup(ConnectorFields fields) override;
  /// Without the password, also where the connection string holds one.
  std::string Details() const override;
  std::string ConnectionTypeName() const;
  const std::string& Password() const noexcept { return Fields().Password; }
  /// A number in text form, 0 for a new Connector. Setting raises 6 or 13 for what is no such number.
  std::string ConnectionsName() const;
  void SetConnectionsName(const std::string& value);
  /// What the driver manager gets. Raises 15055 without a ConnectionType.
  std::string ODBCConnectionString() const;

 private:
  std::int32_t connectionsName_ = 0;
};

}  // namespace velmoria
