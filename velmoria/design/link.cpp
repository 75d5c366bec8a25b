#include "velmoria/design/link.h"

#include "velmoria/design/class_data.h"
#include "velmoria/design/design_object_impl.h"
#include "velmoria/design/link_data.h"
#include "velmoria/design/relationship_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria {

template class DesignObject<LinkKind>;

Link::Link() = default;
Link::~Link() = default;

PropertyPtr Link::Property() try {
  if (!property_) property_ = End(Data()->PropertyData());
  return property_;
} catch (...) { Failed("Property (Get)"); }

PropertyPtr Link::Parameter() try {
  if (!parameter_) parameter_ = End(Data()->ParameterData());
  return parameter_;
} catch (...) { Failed("Parameter (Get)"); }

PropertyPtr Link::End(const PropertyDataPtr& definition) const {
  auto end = Make<velmoria::Property>();
  end->Bind(definition, HeldParents());
  return end;
}

std::string Link::ServerName() const { return NameOf(HeldParents().Server); }
std::string Link::ClassName() const { return NameOf(HeldParents().Class); }
std::string Link::RelationshipName() const { return NameOf(HeldParents().Relationship); }

zLinkTypes Link::LinkType() const { return Data()->LinkType(); }

void Link::PassOn(const ParentChange& change) {
  change.To(property_);
  change.To(parameter_);
  DesignObject::PassOn(change);
}

}  // namespace velmoria
