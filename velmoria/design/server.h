#pragma once

#include <string>

#include "velmoria/design/design_object.h"
#include "velmoria/design/server_kind.h"

namespace velmoria {

extern template class VELMORIA_API DesignObject<ServerKind>;

/// One component of business classes and what is known about them. Locked is stored, but no setter consults it.
class VELMORIA_API Server final : public DesignObject<ServerKind> {
 public:
  Server();
  ~Server() override;

  /// The collection of registered servers keeps the name under which it took this Server in.
  void SetName(std::string value);
  /// The full path of the definition file; empty until it has a place.
  std::string FileName() const;
  void SetFileName(std::string value);
  /// The component's name, the first half of every class identifier.
  std::string ActiveXComponent() const;
  void SetActiveXComponent(std::string value);
  /// Whether a registered Server is read as a whole at the start.
  bool LoadOnStartup() const;
  void SetLoadOnStartup(bool value);
  /// Whether the columns of Actions are kept and used to create business objects; a setting of the run, never stored.
  bool UseMetaData() const;
  void SetUseMetaData(bool value);
  ClassesPtr Classes();

  /// Reads the columns of every Action of Classes and keeps them beside it, where UseMetaData finds them. It empties
  /// Messages and sets UseMetaData. An Action that cannot be read leaves its errors there, and a warning 15089.
  void ActionMetaDataLoad();
  /// Drops what ActionMetaDataLoad keeps.
  void ActionMetaDataClear();

  // Inside the library.

  /// Keeps a copy of an Action's columns beside it, while UseMetaData is set. Raises 15065 and 15061.
  void KeepSchema(const std::string& className, const std::string& actionName, const PropertiesPtr& columns);

 private:
  void PassOn(const ParentChange& change) override;
  void LoadSchema(const Class& owner, Action& action);

  ClassesPtr classes_;
};

}  // namespace velmoria
