#include "velmoria/brokering/business_context.h"

#include <algorithm>
#include <utility>

#include "velmoria/brokering/ibusiness_objects.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/display.h"
#include "velmoria/core/index_text_impl.h"
#include "velmoria/core/insert_at_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/relationship.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property_context.h"

namespace velmoria {

BusinessContext::BusinessContext() = default;
BusinessContext::~BusinessContext() = default;

std::string_view BusinessContext::ReportedType() const noexcept { return "BusinessContext"; }
std::string BusinessContext::StateDetails() const { return Details(); }

void BusinessContext::Setup(const BusinessContextFields& fields) try {
  if (locked_) Raise(errVelmoria_Locked, "Setup");
  if (!fields.ServerName.empty()) SetServerName(fields.ServerName);
  if (!fields.ClassName.empty()) SetClassName(fields.ClassName);
  if (!fields.ActionName.empty()) SetActionName(fields.ActionName);
  if (!fields.RelationshipName.empty()) SetRelationshipName(fields.RelationshipName);
  serverLocked_ = fields.ServerLocked;
  classLocked_ = fields.ClassLocked;
  actionLocked_ = fields.ActionLocked;
  relationshipLocked_ = fields.RelationshipLocked;
  collectionType_ = fields.CollectionType;
  objectType_ = fields.ObjectType;
  noAdd_ = !fields.SupportsAdd;
  noRemove_ = !fields.SupportsRemove;
  noLoad_ = !fields.SupportsLoad;
  locked_ = fields.Locked;
} catch (...) { Failed("Setup"); }

void BusinessContext::SetPropertyContext(PropertyContextPtr value) {
  propertyContext_ = std::move(value);
  objectType_ = otDefault;
}

IdentifierPtr BusinessContext::ParentIdentifier() const {
  return propertyContext_ ? propertyContext_->Identifier() : IdentifierPtr{};
}

KeyFormatPtr BusinessContext::KeyFormat() const { return keyFormat_; }
void BusinessContext::SetKeyFormat(KeyFormatPtr value) { keyFormat_ = std::move(value); }

void BusinessContext::SetCollectionType(zCollectionTypes value) try {
  if (locked_) Raise(errVelmoria_Locked, "CollectionType (Let)");
  collectionType_ = value;
} catch (...) { Failed("CollectionType (Let)"); }

void BusinessContext::SetObjectType(zObjectTypes value) try {
  if (locked_) Raise(errVelmoria_Locked, "ObjectType (Let)");
  objectType_ = value;
} catch (...) { Failed("ObjectType (Let)"); }

void BusinessContext::SetServerLocked(bool value) { LetUnlocked(locked_, serverLocked_, value, "ServerLocked (Let)"); }
void BusinessContext::SetClassLocked(bool value) { LetUnlocked(locked_, classLocked_, value, "ClassLocked (Let)"); }
void BusinessContext::SetActionLocked(bool value) { LetUnlocked(locked_, actionLocked_, value, "ActionLocked (Let)"); }
void BusinessContext::SetRelationshipLocked(bool value) {
  LetUnlocked(locked_, relationshipLocked_, value, "RelationshipLocked (Let)");
}
void BusinessContext::SetSupportsAdd(bool value) { LetUnlocked(locked_, noAdd_, !value, "SupportsAdd (Let)"); }
void BusinessContext::SetSupportsRemove(bool value) { LetUnlocked(locked_, noRemove_, !value, "SupportsRemove (Let)"); }
void BusinessContext::SetSupportsLoad(bool value) { LetUnlocked(locked_, noLoad_, !value, "SupportsLoad (Let)"); }

IBusinessObjectsPtr BusinessContext::FindOrAsk(const Variant& index) {
  if (const IBusinessObjectsPtr* held = items_.Find(index)) return *held;
  IBusinessObjectsPtr supplied;
  ItemNotFound.Raise(index, supplied);
  return supplied;
}

IBusinessObjectsPtr BusinessContext::Item(const Variant& index) try {
  IBusinessObjectsPtr found = FindOrAsk(index);
  if (!found) {
    Raise(errItem_BusinessObjects, "Item",
          {IndexText(index, {VarType::Integer, VarType::Long, VarType::Single, VarType::Decimal, VarType::Byte})});
  }
  return found;
} catch (...) { Failed("Item"); }

std::int32_t BusinessContext::Count() const { return static_cast<std::int32_t>(items_.Count()); }

void BusinessContext::Add(IBusinessObjectsPtr item, const Position& position) try {
  if (noAdd_) Raise(errNotSupported_Add, "Add");
  if (!item) Fail(RuntimeFailure::ObjectNotSet);
  // A listener may let go of the caller's own.
  const IBusinessObjectsPtr held = std::move(item);
  if (BeforeAdd.Raise(*held)) return;
  const std::string name = held->Name();
  if (position.IsBoth()) {
    Raise(errAdd_BusinessObjects, "Add", {name, PlaceText(position.Before), PlaceText(position.After)},
          BothPositionsText);
  }
  InsertAt(items_, held, name, position);
  AfterAdd.Raise(*held);
} catch (...) { Failed("Add"); }

void BusinessContext::Remove(const Variant& index) try {
  if (noRemove_) Raise(errNotSupported_Remove, "Remove");
  const IBusinessObjectsPtr item = Item(index);
  if (BeforeRemove.Raise(*item)) return;
  // Found again, for a listener may have moved it; and not by its name, which may be another than when it was added.
  const auto held = std::find(begin(), end(), item);
  if (held == end()) Fail(RuntimeFailure::InvalidArgument);
  items_.RemoveAt(static_cast<std::size_t>(std::distance(begin(), held)) + 1);
  AfterRemove.Raise(*item);
} catch (...) { Failed("Remove"); }

std::vector<IBusinessObjectsPtr> BusinessContext::Members() const { return {items_.begin(), items_.end()}; }

void BusinessContext::Update() try { UpdateEach(Members()); } catch (...) {
  Failed("Update");
}

void BusinessContext::Delete() try {
  const auto members = Members();
  auto next = members.begin();
  DeleteEach([&] { return next == members.end() ? IBusinessObjectsPtr{} : *next++; });
} catch (...) { Failed("Delete"); }

void BusinessContext::Undo() try {
  for (const auto& member : Members()) member->Undo();
} catch (...) { Failed("Undo"); }

bool BusinessContext::Modifiable(bool all) const {
  const auto members = Members();
  const auto modifiable = [all](const auto& member) { return member->Modifiable(all); };
  return all ? std::all_of(members.begin(), members.end(), modifiable)
             : std::any_of(members.begin(), members.end(), modifiable);
}

namespace {

void AppendSelected(std::string& text, std::string_view label, const std::string& name, bool locked) {
  text.append(label).append(name).append("'");
  if (locked) text += " (Locked)";
}

// A value without a text form shows its type.
std::string KeyValueText(const Variant& value) {
  if (value.IsNull()) return {};
  return value.IsArray() || value.IsObject() || value.IsMissing() ? "(" + value.TypeName() + ")" : value.AsText();
}

}  // namespace

std::string BusinessContext::Details() const {
  std::string text;
  AppendSelected(text, "  Server: '", serverName_, serverLocked_);
  if (class_) AppendSelected(text, "  Class: '", ClassName(), classLocked_);
  if (action_) AppendSelected(text, "  Action: '", ActionName(), actionLocked_);
  if (relationship_) AppendSelected(text, "  Relationship: '", RelationshipName(), relationshipLocked_);
  text += "  ObjectTypes: '" + ObjectTypeName(objectType_) + "'  CollectionType: '" +
          CollectionTypeName(collectionType_) + "'";
  if (parameters_) text += "\r\n" + parameters_->Details();
  if (identifier_) text += "\r\n" + identifier_->Details();
  for (std::size_t part = 0; part < keyValues_.size() && !keyValues_[part].IsEmpty(); ++part) {
    text += (part == 0 ? "\r\nKeyValue" : "  KeyValue") + NumberText(static_cast<long long>(part) + 1) + ": '";
    text += KeyValueText(keyValues_[part]) + "'";
  }
  for (const auto& held : Members()) {
    text += "    Business Object Count " + NumberText(held->Count()) + " for Business Objects '" + held->Name() + "'";
  }
  return text;
}

}  // namespace velmoria
