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
  /// The component's name, the first half of every class identifier.
  std::string ActiveXComponent() const;
  void SetActiveXComponent(std::string value);
  /// Whether the columns of Actions are kept and used to create business objects; a setting of the run, never stored.
  bool UseMetaData() const;
  void SetUseMetaData(bool value);
  ClassesPtr Classes();

 private:
  void PassOn(const ParentChange& change) override;

  ClassesPtr classes_;
};

}  // namespace velmoria
