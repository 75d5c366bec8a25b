#include "velmoria/design/class.h"

#include "velmoria/brokering/identifier.h"
#include "velmoria/core/quietly_impl.h"
#include "velmoria/design/actions.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/design_object_impl.h"
#include "velmoria/design/relationships.h"
#include "velmoria/design/server_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria {

template class DesignObject<ClassKind>;

namespace {

PropertyPtr FindKeyPart(const PropertyData& definition, Properties& given) {
  if (const auto* held = given.FindHeld(definition.Name())) return *held;
  const PropertyKey key{definition.Name(), definition.SourceName(), definition.SourceKey(), PropertyPtr()};
  return QuietlyWhenHeard(given.ItemNotFound, "Class.CreateIdentifier", [&] { return given.FindOrAsk(key); });
}

}  // namespace

Class::Class() = default;
Class::~Class() = default;

std::string Class::ActiveXClass() const { return Get(&ClassFields::ActiveXClass); }
void Class::SetActiveXClass(std::string value) {
  Let("ActiveXClass (Let)", &ClassFields::ActiveXClass, std::move(value));
}

std::string Class::ActiveXCollection() const { return Get(&ClassFields::ActiveXCollection); }
void Class::SetActiveXCollection(std::string value) {
  Let("ActiveXCollection (Let)", &ClassFields::ActiveXCollection, std::move(value));
}

std::string Class::SingleActionName() const { return Get(&ClassFields::SingleActionName); }
void Class::SetSingleActionName(std::string value) {
  Let("SingleActionName (Let)", &ClassFields::SingleActionName, std::move(value));
}

std::string Class::NewActionName() const { return Get(&ClassFields::NewActionName); }
void Class::SetNewActionName(std::string value) {
  Let("NewActionName (Let)", &ClassFields::NewActionName, std::move(value));
}

std::string Class::DefaultActionName() const { return Get(&ClassFields::DefaultActionName); }
void Class::SetDefaultActionName(std::string value) {
  Let("DefaultActionName (Let)", &ClassFields::DefaultActionName, std::move(value));
}

std::string Class::ServerName() const { return NameOf(HeldParents().Server); }

PropertiesPtr Class::Properties() try {
  if (!properties_) properties_ = BoundProperties(psIdentifier, Data()->PropertiesData(), ParentsForChildren());
  return properties_;
} catch (...) { Failed("Properties (Get)"); }

ActionsPtr Class::Actions() { return Child(actions_); }

RelationshipsPtr Class::Relationships() { return Child(relationships_); }

IdentifierPtr Class::CreateIdentifier(const PropertiesPtr& properties) try {
  if (Properties()->Count() == 0) Raise(errRequires_Identifier, "CreateIdentifier", {Name()});
  auto identifier = Make<velmoria::Identifier>();
  const auto& server = HeldParents().Server;
  const auto& definitions = *Data()->PropertiesData();
  if (!properties) {
    identifier->Setup(server, Data(), Properties()->Copy());
  } else if (definitions.Count() == 1) {
    identifier->Setup(server, Data(), KeyPart(*definitions.At(1), *properties));
  } else {
    identifier->Setup(server, Data(), KeyParts(*properties));
  }
  return identifier;
} catch (...) { Failed("CreateIdentifier"); }

PropertyPtr Class::KeyPart(const PropertyData& definition, velmoria::Properties& given) const {
  const auto found = FindKeyPart(definition, given);
  if (!found) Raise(errIdentifier_Property, "CreateIdentifier", {definition.Details(), Name()});
  found->Data()->SetFlags(found->Flags() | definition.Flags());
  return found;
}

PropertiesPtr Class::KeyParts(velmoria::Properties& given) const {
  auto shared = Make<velmoria::Properties>();
  for (const auto& definition : *Data()->PropertiesData()) shared->AddShared(KeyPart(*definition, given));
  return shared;
}

std::string Class::ActiveXProgId() const { return ProgId(ActiveXClass()); }
std::string Class::ActiveXCollectionProgId() const { return ProgId(ActiveXCollection()); }

std::string Class::ProgId(const std::string& name) const {
  const auto& server = HeldParents().Server;
  if (name.empty() || !server) return {};
  const auto& component = server->Fields().ActiveXComponent;
  return component.empty() ? name : component + "." + name;
}

void Class::PassOn(const ParentChange& change) {
  change.To(properties_);
  change.To(actions_);
  change.To(relationships_);
  DesignObject::PassOn(change);
}

}  // namespace velmoria
