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

namespace {

std::size_t PlaceIn(const KeyedList<PropertyPtr>& list, const PropertyPtr& item) {
  std::size_t place = 1;
  while (place <= list.Count() && list.At(place) != item) ++place;
  return place;
}

// What the collection would refuse is refused before the definition takes the item. With both positions given the
// definition takes it all the same, ahead of the refusal.
void RefuseAhead(const KeyedList<PropertyPtr>& list, const PropertyPtr& item, const Position& position) {
  if (position.IsBoth()) return;
  static_cast<void>(PlaceOf(list, position));
  if (list.FindKey(item->Data()->Name())) Fail(RuntimeFailure::KeyInUse);
}

// An item that the definition refuses keeps the style that it had and none of the parents.
void Join(PropertiesData& definitions, const PropertyPtr& item, zPropertyStyles style, const Parents& parents,
          const Position& position) {
  const auto former = item->Data()->Style();
  // A member of a row shares its definition with all rows; it stays what it is.
  item->SetParents(item->IsBound() ? psNone : style, parents);
  try {
    definitions.Add(item->Data(), position);
  } catch (...) {
    item->ClearParents(psNone, parents.Filled());
    item->Data()->SetStyle(former);
    throw;
  }
}

}  // namespace

void Properties::Insert(const PropertyPtr& item, const Position& position, const char* routine) {
  if (position.IsBoth()) { Raise(errAdd_Property, routine, AddTexts(item->Name(), position), BothPositionsText); }
  auto& list = OwnItems().List;
  list.Insert(PlaceOf(list, position), item, item->Data()->Name());
}

void Properties::Add(const PropertyPtr& item, const Position& position) try {
  if (noAdd_) Raise(errNotSupported_Add, "Add");
  if (!item) Fail(RuntimeFailure::ObjectNotSet);
  const auto& list = OwnItems().List;
  if (BeforeAdd.Raise(*item)) return;
  if (data_) {
    RefuseAhead(list, item, position);
    Join(*data_, item, style_, HeldParents(), position);
  }
  Insert(item, position, "Add");
  if (!item->IsBound()) item->Data()->SetStyle(style_);
  AfterAdd.Raise(*item);
} catch (...) { Failed("Add"); }

void Properties::AddShared(const PropertyPtr& item) try { Insert(item, {}, "Add"); } catch (...) {
  Failed("Add");
}

PropertyPtr Properties::MakeMember(const PropertyFields& fields, const Position& position) {
  const auto& parents = HeldParents();
  auto own = fields;
  if (parents.Source) {
    own.Engine = parents.Source->Engine();
  } else if (own.Engine == engUnknown) {
    own.Engine = Engine();
  }
  PropertyDataPtr definition;
  if (data_) {
    definition = data_->SetupItem(style_, own, position);
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
  auto member = MakeMember(fields, position);
  try {
    if (BeforeAdd.Raise(*member)) {
      // The definition, if there is one, keeps the cancelled member; without one there is nothing to answer with.
      if (!data_) Fail(RuntimeFailure::ObjectNotSet);
      return {};
    }
    Insert(member, position, "SetupItem");
    AfterAdd.Raise(*member);
    return member;
  } catch (...) {
    DropHalfMade(member, fields.Name);
    throw;
  }
} catch (...) { Failed("SetupItem"); }

void Properties::DropHalfMade(const PropertyPtr& member, const std::string& key) {
  auto& list = OwnItems().List;
  if (const auto place = PlaceIn(list, member); place <= list.Count()) list.RemoveAt(place);
  if (data_ && data_->Find(key) == member->Data()) data_->Remove(key);
}

void Properties::Remove(const Variant& index) { Remove(PropertyKey{.Index = index}); }

void Properties::Remove(const PropertyKey& key) try {
  if (noRemove_) Raise(errNotSupported_Remove, "Remove");
  OwnItems();
  const auto item = Item(key);
  if (!item) Fail(RuntimeFailure::ObjectNotSet);
  if (BeforeRemove.Raise(*item)) return;
  RemoveMember(item);
  AfterRemove.Raise(*item);
} catch (...) {
  if (noRemove_) Failed("Remove");
  Failed("Remove", errRemove_Property, PropertyKeyTexts(key));
}

void Properties::RemoveMember(const PropertyPtr& item) {
  auto& list = OwnItems().List;
  const auto place = PlaceIn(list, item);
  if (place > list.Count()) Fail(RuntimeFailure::InvalidArgument);  // supplied by a listener
  if (data_) {
    data_->Remove(std::string(list.KeyAt(place)));
    item->ClearParents(psNonPersistent, ParentSlots::All());
  }
  list.RemoveAt(place);
}

void Properties::RenameItem(const std::string& name, const std::string& newName) try {
  auto& list = OwnItems().List;
  if (!data_) Raise(errNotSupported_Rename, "RenameItem");
  // What the collection or a Locked member would refuse is refused before the definition changes.
  if (data_->PositionOf(newName) == 0) {
    if (list.FindKey(newName)) Raise(errRename_Property, "RenameItem", {name, newName});
    const auto* item = list.FindKey(name);
    if (!item) Raise(errItem_Property, "RenameItem", PropertyKeyTexts({.Index = name}));
    if ((*item)->Locked()) (*item)->SetName(newName);
  }
  data_->RenameItem(name, newName);
  list.Rename(list.PositionOf(std::string_view(name)), newName);
} catch (...) { Failed("RenameItem"); }

}  // namespace velmoria
