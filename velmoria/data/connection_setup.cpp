#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/display.h"
#include "velmoria/core/profile.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/connection_recipe_impl.h"
#include "velmoria/properties/attribute.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

namespace {

AttributePtr Setting(const char* name, zEngines engine, const Variant& standard, zDataTypes type) {
  const auto key = name + NumberText(static_cast<std::int32_t>(engine));
  return Apartment().Profile->Item({.Index = key, .DefaultValue = standard, .DefaultDataType = type});
}

/// A value that is given wins over the profile's.
template <class E>
E GivenOrDefault(E given, const char* name, zEngines engine) {
  if (given != E{}) return given;
  return static_cast<E>(Setting(name, engine, std::int32_t{1}, dtLongInteger)->Value().AsLong());
}

}  // namespace

void Connection::SetupServerEngine(const ConnectionRecipe& recipe) {
  if (!IsServerEngine(recipe.Engine))
    Raise(errInvalid_Engine, "Setup", {NumberText(static_cast<std::int32_t>(recipe.Engine))});
  engine_ = recipe.Engine;
  connectionType_ = GivenOrDefault(recipe.ConnectionType, "Default ConnectionType for Engine ", engine_);
  cursorDriver_ = GivenOrDefault(recipe.CursorDriver, "Default CursorDriver for Engine ", engine_);
  cursorType_ = GivenOrDefault(recipe.CursorType, "Default CursorType for Engine ", engine_);
}

void Connection::Setup(const ConnectionRecipe& recipe) try {
  connectionsName_ = recipe.ConnectionsName;
  databaseName_ = recipe.DatabaseName;
  // The key names the engine held so far, so on a new Connection it always ends in 0.
  userName_ = recipe.UserName.empty() ? Setting("Default Username for Engine ", engine_, "", dtString)->Value().AsText()
                                      : recipe.UserName;
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
