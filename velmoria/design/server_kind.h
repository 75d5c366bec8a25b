#pragma once

#include <string>
#include <tuple>

#include "velmoria/design/design_kind.h"

namespace velmoria {

/// What a Server is made from.
struct ServerFields {
  std::string Name{};  // empty for an existing file, which decides everything else
  std::string FileName{};
  std::string ActiveXComponent{};
  std::string Description{};
  bool LoadOnStartup = false;
  bool Locked = false;
  bool UseMetaData = true;
};

struct VELMORIA_API ServerKind : DesignKind {
  using Facade = Server;
  using Data = ServerData;
  using Fields = ServerFields;
  using Children = std::tuple<ClassesDataPtr>;

  static constexpr auto KeyField = &ServerFields::Name;
  static constexpr bool CollectionIsStamped = false;
  static constexpr bool LoadsDetailToRemove = false;
  static constexpr DesignNames Names{"Server", "ServerData", "Servers", "ServersData"};
  static constexpr DesignNumbers Numbers{errAdd_Server, errItem_Server, errRemove_Server, errRename_Server};
  static constexpr RootNumbers RootRaises{errMissing_ServerInfo, errFile_ReadServer};
  static constexpr CountTexts Counted{"Servers Count ", "Registered Servers Count ", "Registered Servers Count: "};
};

}  // namespace velmoria
