#include <utility>

#include "velmoria/core/index_text_impl.h"
#include "velmoria/core/insert_at_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/source_data.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_parts_impl.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/property_texts_impl.h"

namespace velmoria {

void Properties::Insert(const PropertyPtr& item, const Position& position, const char* routine) {
  if (position.IsBoth()) { Raise(errAdd_Property, routine, AddTexts(item->Name(), position), BothPositionsText); }
  auto& list = OwnItems().List;
  list.Insert(PlaceOf(list, position), item, item->Data()->Name());
}

void Properties::Add(const PropertyPtr& item, const Position& position) try {
  if (noAdd_) Raise(errNotSupported_Add, "Add");
  if (!item) Fail(RuntimeFailure::ObjectNotSet);
  OwnItems();
  if (BeforeAdd.Raise(*item)) return;
  if (data_) {
    if (rare_) item->SetParents(style_, rare_->Family);
    // With both positions given the definition takes the item all the same, ahead of the refusal.
    data_->Add(item->Data(), position);
  }
  Insert(item, position, "Add");
  // A member of a row shares its definition with all rows; it stays what it is.
  if (!item->IsBound()) item->Data()->SetStyle(style_);
  AfterAdd.Raise(*item);
} catch (...) { Failed("Add"); }

void Properties::AddShared(const PropertyPtr& item) try { Insert(item, {}, "Add"); } catch (...) {
  Failed("Add");
}

PropertyPtr Properties::MakeMember(const PropertyFields& fields, const Position& position, bool& joined) {
  const auto& parents = HeldParents();
  auto own = fields;
  if (parents.Source) {
    own.Engine = parents.Source->Engine();
  } else if (own.Engine == engUnknown) {
    own.Engine = engine_;
  }
  PropertyDataPtr definition;
  if (data_) {
    definition = data_->SetupItem(style_, own, position);
    joined = true;
  } else {
    definition = Make<PropertyData>();
    definition->Setup(style_, own);
  }
  auto member = Make<Property>();
  member->Bind(std::move(definition), parents);
  return member;
}

PropertyPtr Properties::SetupItem(const PropertyFields& fields, const Position& position) try {
  if (noAdd_) Raise(errNotSupported_Add, "SetupItem");
  OwnItems();
  bool joined = false;
  try {
    auto member = MakeMember(fields, position, joined);
    if (BeforeAdd.Raise(*member)) {
      // The definition, if there is one, keeps the cancelled member; without one there is nothing to answer with.
      if (!data_) Fail(RuntimeFailure::ObjectNotSet);
      return {};
    }
    Insert(member, position, "SetupItem");
    AfterAdd.Raise(*member);
    return member;
  } catch (...) {
    if (joined) data_->Remove(fields.Name);
    throw;
  }
} catch (...) { Failed("SetupItem"); }

void Properties::Remove(const Variant& index) { Remove(PropertyKey{.Index = index}); }

void Properties::Remove(const PropertyKey& key) try {
  if (noRemove_) Raise(errNotSupported_Remove, "Remove");
  OwnItems();
  const auto item = Item(key);
  if (!item) Fail(RuntimeFailure::ObjectNotSet);
  if (BeforeRemove.Raise(*item)) return;
  RemoveMember(item);
  AfterRemove.Raise(*item);
} catch (...) { Failed("Remove", errRemove_Property, PropertyKeyTexts(key)); }

void Properties::RemoveMember(const PropertyPtr& item) {
  if (data_) {
    data_->Remove(item->Name());
    item->ClearParents(psNonPersistent, ParentSlots::All());
  }
  auto& list = OwnItems().List;
  for (std::size_t place = 1; place <= list.Count(); ++place) {
    if (list.At(place) == item) return list.RemoveAt(place);
  }
  Fail(RuntimeFailure::InvalidArgument);
}

void Properties::RenameItem(const std::string& name, const std::string& newName) try {
  auto& list = OwnItems().List;
  if (!data_) Raise(errNotSupported_Rename, "RenameItem");
  // A taken or unknown name is the definition's to refuse; a Locked member is refused before anything changes.
  const auto item = Find({.Index = name});
  if (item && item->Locked() && data_->PositionOf(newName) == 0) item->SetName(newName);
  data_->RenameItem(name, newName);
  list.Rename(list.PositionOf(std::string_view(name)), newName);
} catch (...) { Failed("RenameItem"); }

}  // namespace velmoria
