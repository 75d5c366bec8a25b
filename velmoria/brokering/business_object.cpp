#include "velmoria/brokering/business_object.h"

#include "velmoria/brokering/ibusiness_objects.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/brokering/model.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"

namespace velmoria {

BusinessObject::BusinessObject() = default;
BusinessObject::~BusinessObject() = default;

std::string_view BusinessObject::ReportedType() const noexcept { return "BusinessObject"; }

Model& BusinessObject::Held() const { return *Present(model_); }

zObjectTypes BusinessObject::ObjectType() const { return otBusiness; }
IBusinessObjectsPtr BusinessObject::BusinessObjects(const Variant& index) { return Held().BusinessObjects(index); }
std::int32_t BusinessObject::BusinessObjectsCount() { return Held().BusinessObjectsCount(); }
PropertyPtr BusinessObject::FindProperty(const Variant& index, PropertyPtr parameter) {
  return Held().FindProperty(index, std::move(parameter));
}
PropertiesPtr BusinessObject::Properties(const Variant& index) { return Held().Properties(index); }
std::int32_t BusinessObject::PropertyCount() { return Held().PropertyCount(); }
std::int32_t BusinessObject::PropertiesCount() { return Held().PropertiesCount(); }
IdentifierPtr BusinessObject::Identifier() { return Held().Identifier(); }
IdentifierPtr BusinessObject::ParentIdentifier() { return Held().ParentIdentifier(); }
std::string BusinessObject::Key(KeyFormatPtr keyFormat) { return Held().Key(std::move(keyFormat)); }
bool BusinessObject::Dirty() { return Held().Dirty(); }
bool BusinessObject::Modifiable() { return Held().Modifiable(); }
zEditFlags BusinessObject::EditFlags() { return Held().EditFlags(); }
std::string BusinessObject::EditFlagsDisplay() { return Held().EditFlagsDisplay(); }
zStateFlags BusinessObject::StateFlags() { return Held().StateFlags(); }
std::string BusinessObject::StateFlagsDisplay() { return Held().StateFlagsDisplay(); }
std::string BusinessObject::Details() { return Held().Details(); }
void BusinessObject::Update() { Held().Update(); }
void BusinessObject::Delete() { Held().Delete(); }
void BusinessObject::Undo() { Held().Undo(); }
ModelPtr BusinessObject::GetModel() { return model_; }
void BusinessObject::SetModel(ModelPtr model) { model_ = std::move(model); }

}  // namespace velmoria
