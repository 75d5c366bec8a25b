#pragma once

#include <string>

#include "velmoria/design/class_kind.h"
#include "velmoria/design/design_object.h"

namespace velmoria {

extern template class VELMORIA_API DesignObject<ClassKind>;

/// One kind of business object: a class of the Server's component, or, with an empty ActiveXClass, the Model. Every
/// setter but that of Locked raises 15002 while Locked.
class VELMORIA_API Class final : public DesignObject<ClassKind> {
 public:
  Class();
  ~Class() override;

  /// The host's class and the host's collection, each by the last part of its component name; empty for none.
  std::string ActiveXClass() const;
  void SetActiveXClass(std::string value);
  std::string ActiveXCollection() const;
  void SetActiveXCollection(std::string value);
  /// The Action that fetches one business object when none is named.
  std::string SingleActionName() const;
  void SetSingleActionName(std::string value);
  /// The Action for new business objects.
  std::string NewActionName() const;
  void SetNewActionName(std::string value);
  /// The Action for everything else when none is named.
  std::string DefaultActionName() const;
  void SetDefaultActionName(std::string value);

  /// Of the Server that holds it; empty without one.
  std::string ServerName() const;
  /// What identifies one business object, in the order of key values.
  PropertiesPtr Properties();
  ActionsPtr Actions();
  /// How it is associated with other classes.
  RelationshipsPtr Relationships();
  /// The identity of one business object. Without properties it gets a copy of Properties, without values; else it
  /// shares those members of `properties` that Properties names, which get its Flags, too. Raises 15160 when Properties
  /// has no members and 15052 when one is missing in `properties`.
  IdentifierPtr CreateIdentifier(const PropertiesPtr& properties = {});

  // Inside the library.

  /// The name to create the class or collection by: with the Server's component in front if it has one. Empty without
  /// a Server or a class.
  std::string ActiveXProgId() const;
  std::string ActiveXCollectionProgId() const;

 private:
  void PassOn(const ParentChange& change) override;
  std::string ProgId(const std::string& name) const;
  PropertyPtr KeyPart(const PropertyData& definition, velmoria::Properties& given) const;
  PropertiesPtr KeyParts(velmoria::Properties& given) const;

  PropertiesPtr properties_;
  ActionsPtr actions_;
  RelationshipsPtr relationships_;
};

}  // namespace velmoria
