#pragma once

#include <string>

#include "velmoria/core/enumerations.h"
#include "velmoria/design/design_kind.h"

namespace velmoria {

/// What a Connector is made from; what is 0 or an empty UserName stands for the machine's default of the engine.
struct ConnectorFields {
  zEngines Engine;
  zConnectionTypes ConnectionType = ctNone;
  std::string ConnectionString{};
  zCursorDrivers CursorDriver = crdNone;
  zCursorTypes CursorType = crtNone;
  std::string UserName{};
  std::string Password{};
  bool DefinitionValidation = false;
  std::string Description{};
  bool Locked = false;
};

struct VELMORIA_API ConnectorKind : DesignKind {
  using KeyPolicy = KeyedByEngine;
  using Facade = Connector;
  using Data = ConnectorData;
  using Fields = ConnectorFields;
  using Parent = DatabaseKind;

  static constexpr auto KeyField = &ConnectorFields::Engine;
  static constexpr bool SettersObeyLocked = true;
  static constexpr std::string_view SetParentsRoutine = "SetParent";
  static constexpr bool CountNamesParent = false;
  static constexpr DesignNames Names{"Connector", "ConnectorData", "Connectors", "ConnectorsData"};
  static constexpr DesignNumbers Numbers{errAdd_Connector, errItem_Connector, errRemove_Connector, errRename_Connector};
  static constexpr CountTexts Counted{"Connectors Count "};
};

}  // namespace velmoria
