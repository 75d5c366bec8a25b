#include "velmoria/brokering/model.h"

#include "velmoria/brokering/business_context.h"
#include "velmoria/brokering/ibusiness_objects.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/index_text_impl.h"
#include "velmoria/core/quietly_impl.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_context.h"
#include "velmoria/properties/property_texts_impl.h"
#include "velmoria/runtime/error.h"

namespace velmoria {

Model::Model() = default;
Model::~Model() = default;

std::string_view Model::ReportedType() const noexcept { return "Model"; }
std::string Model::StateDetails() const { return const_cast<velmoria::Model*>(this)->Details(); }

void Model::Setup(PropertyContextPtr propertyContext, IdentifierPtr parentIdentifier) {
  propertyContext_ = std::move(propertyContext);
  parentIdentifier_ = std::move(parentIdentifier);
}

PropertyContextPtr Model::PropertyContext() const { return propertyContext_; }

velmoria::PropertyContext& Model::Held() const {
  if (!propertyContext_) Fail(RuntimeFailure::ObjectNotSet);
  return *propertyContext_;
}

BusinessContextPtr Model::BusinessContext() {
  if (!businessContext_) {
    businessContext_ = Make<velmoria::BusinessContext>();
    businessContext_->SetPropertyContext(propertyContext_);
  }
  return businessContext_;
}

zObjectTypes Model::ObjectType() const { return otModel; }
ModelPtr Model::GetModel() { return this; }
void Model::SetModel(ModelPtr) {}

std::int32_t Model::BusinessObjectsCount() { return businessContext_ ? businessContext_->Count() : 0; }

IBusinessObjectsPtr Model::BusinessObjects(const Variant& index) try {
  IBusinessObjectsPtr found = Quietly("Model.BusinessObjects", [&] { return BusinessContext()->FindOrAsk(index); });
  if (!found && index.IsText()) {
    found = Quietly("Model.BusinessObjects",
                    [&] { return BusinessContext()->LoadBusinessObjects({.RelationshipName = index.AsText()}); });
  }
  if (!found) BusinessObjectsNotFound.Raise(index, found);
  if (!found) Raise(errItem_BusinessObjects, "BusinessObjects", {IndexText(index)});
  return found;
} catch (...) { Failed("BusinessObjects"); }

PropertiesPtr Model::Properties(const Variant& index) try {
  auto& context = Held();
  PropertiesPtr found = Quietly("Model.Properties", [&] { return context.FindOrAsk(index); });
  if (!found && index.IsText()) {
    found = Quietly("Model.Properties", [&] { return context.LoadProperties({.ActionName = index.AsText()}); });
  }
  if (!found) PropertiesNotFound.Raise(index, found);
  if (!found) Raise(errItem_Properties, "Properties", {IndexText(index)});
  return found;
} catch (...) { Failed("Properties"); }

PropertyPtr Model::FindProperty(const Variant& index, PropertyPtr parameter) try {
  auto& context = Held();
  if (!parameter) {
    if (const auto* held = context.FindHeld(index)) return *held;
  }
  const PropertyKey key{.Index = index, .Parameter = parameter};
  PropertyPtr found =
      QuietlyWhenHeard(context.PropertyNotFound, "Model.FindProperty", [&] { return context.FindOrAsk(key); });
  if (!found) PropertyNotFound.Raise(index, parameter, found);
  if (!found) Raise(errItem_Property, "FindProperty", PropertyKeyTexts(key));
  return found;
} catch (...) { Failed("FindProperty"); }

std::int32_t Model::PropertyCount() { return Held().PropertyCount(); }
std::int32_t Model::PropertiesCount() { return Held().Count(); }
IdentifierPtr Model::Identifier() { return Held().Identifier(); }
IdentifierPtr Model::ParentIdentifier() { return parentIdentifier_; }

std::string Model::Key(KeyFormatPtr keyFormat) try { return Held().Key(std::move(keyFormat)); } catch (...) {
  Failed("Key");
}

bool Model::Dirty() { return Held().DirtyValues(); }
bool Model::Modifiable() { return Held().Modifiable(); }
zEditFlags Model::EditFlags() { return Held().EditFlags(); }
std::string Model::EditFlagsDisplay() { return Held().EditFlagsDisplay(); }
zStateFlags Model::StateFlags() { return Held().StateFlags(); }
std::string Model::StateFlagsDisplay() { return Held().StateFlagsDisplay(); }

std::string Model::Details() {
  const IdentifierPtr identifier = Identifier();
  return "Model for Server: '" + (identifier ? identifier->ServerName() : "") + "'  Class: '" +
         (identifier ? identifier->ClassName() : "") + "'\r\n    Identifier Key: '" +
         (identifier ? identifier->Key() : "") + "'\r\n    Property Count " + NumberText(PropertyCount()) +
         "\r\n    Business Objects Count " + NumberText(BusinessObjectsCount());
}

void Model::Update(bool recursive) try {
  if (BeforeUpdate.Raise()) return;
  Held().Update();
  if (recursive && businessContext_) businessContext_->Update();
  AfterUpdate.Raise();
} catch (...) { Failed("Update"); }

void Model::Delete(bool recursive) try {
  if (BeforePendingDelete.Raise()) return;
  Held().Delete();
  if (recursive && businessContext_) businessContext_->Delete();
  AfterPendingDelete.Raise();
} catch (...) { Failed("Delete"); }

void Model::Undo() try { Held().Undo(); } catch (...) {
  Failed("Undo");
}

}  // namespace velmoria
