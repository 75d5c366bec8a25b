#include "velmoria/core/display.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/connection_recipe_impl.h"
#include "velmoria/design/machine_default_impl.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

void Connection::SetupServerEngine(const ConnectionRecipe& recipe) {
  if (!IsServerEngine(recipe.Engine))
    Raise(errInvalid_Engine, "Setup", {NumberText(static_cast<std::int32_t>(recipe.Engine))});
  engine_ = recipe.Engine;
  connectionType_ = GivenOrMachineDefault(recipe.ConnectionType, "ConnectionType", engine_);
  cursorDriver_ = GivenOrMachineDefault(recipe.CursorDriver, "CursorDriver", engine_);
  cursorType_ = GivenOrMachineDefault(recipe.CursorType, "CursorType", engine_);
}

void Connection::Setup(const ConnectionRecipe& recipe) try {
  connectionsName_ = recipe.ConnectionsName;
  databaseName_ = recipe.DatabaseName;
  // The key names the engine held so far, so on a new Connection it always ends in 0.
  userName_ = recipe.UserName;
  if (userName_.empty()) userName_ = MachineDefault("Username", engine_, "", dtString).AsText();
  password_ = recipe.Password;
  if (recipe.Engine == engAccess) {
    engine_ = engAccess;
    connectionType_ = ctFile;
  } else {
    SetupServerEngine(recipe);
    if (connectionType_ != ctDSN && connectionType_ != ctText && connectionType_ != ctPrompt)
      Raise(ErrInvalid_ConnectionType, "Setup",
            {NumberText(static_cast<std::int32_t>(connectionType_)) + " = '" + ConnectionTypeName(connectionType_),
             EngineName()});
  }
  connectionString_ = recipe.ConnectionString;
  connectString_ = ComposeConnectString(connectionType_, connectionString_, {userName_, password_});
} catch (...) { Failed("Setup"); }

}  // namespace velmoria
