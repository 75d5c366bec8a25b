#pragma once

#include <string>
#include <tuple>

#include "velmoria/core/enumerations.h"
#include "velmoria/design/design_kind.h"

namespace velmoria {

/// What a Database is made from.
struct DatabaseFields {
  std::string Name{};  // empty for an existing file, which decides everything else
  std::string FileName{};
  zEngines Engine = engUnknown;
  std::string Description{};
  bool AutoConnect = false;
  bool LoadOnStartup = false;
  bool Locked = false;
};

struct VELMORIA_API DatabaseKind : DesignKind {
  using Facade = Database;
  using Data = DatabaseData;
  using Fields = DatabaseFields;
  using Children = std::tuple<ConnectorsDataPtr>;

  static constexpr auto KeyField = &DatabaseFields::Name;
  static constexpr bool SettersObeyLocked = true;
  static constexpr std::tuple SetWhileLocked{&DatabaseFields::LoadOnStartup};
  static constexpr bool CollectionIsStamped = false;
  static constexpr bool LoadsDetailToRemove = false;
  static constexpr DesignNames Names{"Database", "DatabaseData", "Databases", "DatabasesData"};
  static constexpr DesignNumbers Numbers{errAdd_Database, errItem_Database, errRemove_Database, errRename_Database};
  static constexpr RootNumbers RootRaises{errMissing_DatabaseInfo, errFile_ReadDatabase};
  static constexpr CountTexts Counted{"Databases Count ", "Registered Databases Count ", "Registered Databases Count "};
};

}  // namespace velmoria
