#pragma once

#include <string>

#include "velmoria/design/connector_kind.h"
#include "velmoria/design/design_object.h"

namespace velmoria {

extern template class VELMORIA_API DesignObject<ConnectorKind>;

/// How to log on to a Database on one engine. Every setter but that of Locked raises 15002 while Locked.
class VELMORIA_API Connector final : public DesignObject<ConnectorKind> {
 public:
  Connector();
  ~Connector() override;

  zConnectionTypes ConnectionType() const;
  void SetConnectionType(zConnectionTypes value);
  /// A DSN, a connect string or a file, as ConnectionType says.
  std::string ConnectionString() const;
  void SetConnectionString(std::string value);
  zCursorDrivers CursorDriver() const;
  void SetCursorDriver(zCursorDrivers value);
  std::string CursorDriverName() const;
  zCursorTypes CursorType() const;
  void SetCursorType(zCursorTypes value);
  std::string CursorTypeName() const;
  std::string UserName() const;
  void SetUserName(std::string value);
  /// In clear. No Details text and no message shows it.
  std::string Password() const;
  void SetPassword(std::string value);
  /// Whether design work reads entities and metadata through this Connector.
  bool DefinitionValidation() const;
  void SetDefinitionValidation(bool value);

  /// Of the Database that holds it; empty without one.
  std::string DatabaseName() const;
};

}  // namespace velmoria
