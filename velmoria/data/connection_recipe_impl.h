#pragma once

#include <string>

#include "velmoria/core/enumerations.h"

namespace velmoria {

/// What Connection::Setup takes. Zero and empty members mean the default of the profile.
struct ConnectionRecipe {
  std::string DatabaseName{};
  zEngines Engine{};
  zConnectionTypes ConnectionType{};
  std::string ConnectionString{};
  zCursorDrivers CursorDriver{};
  zCursorTypes CursorType{};
  std::string ConnectionsName{};
  std::string Password{};
  std::string UserName{};
};

/// What stands for the log-on of a connect string.
struct LogOn {
  const std::string& UserName;
  const std::string& Password;
};

/// The text that the driver manager gets for a type of connection; types without a rule give the text unchanged.
std::string ComposeConnectString(zConnectionTypes connectionType, const std::string& given, const LogOn& logOn);

/// What a failed log-on should point at: a text when the password is empty, else "".
const char* PasswordHint(const std::string& password) noexcept;

/// The engines whose connections are opened here: 2 to 5.
constexpr bool IsServerEngine(zEngines engine) noexcept { return engine >= engODBC && engine <= engOracle; }

}  // namespace velmoria
