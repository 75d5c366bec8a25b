#pragma once

#include <string>

#include "velmoria/design/database_kind.h"
#include "velmoria/design/design_object.h"

namespace velmoria {

extern template class VELMORIA_API DesignObject<DatabaseKind>;

/// The logical data store of an application. Engine says which of its Connectors is in force. Every setter but those
/// of Locked and LoadOnStartup raises 15002 while Locked.
class VELMORIA_API Database final : public DesignObject<DatabaseKind> {
 public:
  Database();
  ~Database() override;

  /// The collection of registered databases keeps the name under which it took this Database in.
  void SetName(std::string value);
  /// The full path of the definition file; empty until it has a place.
  std::string FileName() const;
  void SetFileName(std::string value);
  /// Switches every Action over this Database; whether there is a Connector for it shows when that is used.
  zEngines Engine() const;
  void SetEngine(zEngines value);
  std::string EngineName() const;
  /// Whether connections are set up from the Connector, or by the application alone.
  bool AutoConnect() const;
  void SetAutoConnect(bool value);
  /// Whether a registered Database is read as a whole at the start.
  bool LoadOnStartup() const;
  void SetLoadOnStartup(bool value);
  ConnectorsPtr Connectors();

 private:
  void PassOn(const ParentChange& change) override;

  ConnectorsPtr connectors_;
};

}  // namespace velmoria
