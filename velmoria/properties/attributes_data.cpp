#include "velmoria/properties/attributes_data.h"

#include <algorithm>

#include "velmoria/core/details_text_impl.h"
#include "velmoria/core/index_text_impl.h"
#include "velmoria/core/insert_at_impl.h"
#include "velmoria/core/now.h"
#include "velmoria/properties/attribute_data.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

AttributesData::AttributesData() = default;

AttributesData::~AttributesData() = default;

AttributeDataPtr AttributesData::Item(const Variant& index) const {
  const auto* found = items_.Find(index);
  if (!found) Raise(errItem_Attribute, "Item", {QuotingIndexText(index, AnyNumberOrBoolean)});
  return *found;
}

void AttributesData::Add(const AttributeDataPtr& item, const Position& position) {
  const auto name = item ? item->Name() : std::string();
  if (position.IsBoth()) Raise(errAdd_Attribute, "Add", AddTexts(name, position), BothPositionsText);
  try {
    if (!item) Fail(RuntimeFailure::ObjectNotSet);
    InsertAt(items_, item, name, position);
    Stamp();
  } catch (...) { Failed("Add", errAdd_Attribute, AddTexts(name, position)); }
}

AttributeDataPtr AttributesData::SetupItem(const AttributeFields& fields, const Position& position, bool clean) {
  if (position.IsBoth()) { Raise(errAdd_Attribute, "SetupItem", AddTexts(fields.Name, position), BothPositionsText); }
  auto item = Make<AttributeData>();
  item->Setup(fields, clean);
  try {
    InsertAt(items_, item, fields.Name, position);
    if (!clean) Stamp();
  } catch (...) { Failed("SetupItem", errAdd_Attribute, AddTexts(fields.Name, position)); }
  return item;
}

void AttributesData::Remove(const Variant& index) try {
  const auto name = Item(index)->Name();
  items_.RemoveKey(name);
  Stamp();
} catch (...) { Failed("Remove", errRemove_Attribute, {QuotingIndexText(index, AnyNumberOrBoolean)}); }

void AttributesData::RenameItem(const std::string& name, const std::string& newName) try {
  if (items_.FindKey(newName)) Raise(errRename_Attribute, "RenameItem", {name, newName});
  Item(name)->SetName(newName);
  items_.Rename(items_.PositionOf(std::string_view(name)), newName);
  Stamp();
} catch (...) { Failed("RenameItem"); }

AttributesDataPtr AttributesData::Copy() const {
  auto copy = Make<AttributesData>();
  for (const auto& item : items_) copy->items_.Add(item->Copy(), item->Name());
  return copy;
}

bool AttributesData::Dirty() const {
  return !modified_.IsEmpty() || std::ranges::any_of(begin(), end(), [](const auto& item) { return item->Dirty(); });
}

void AttributesData::ClearDirty() {
  modified_ = Variant();
  for (const auto& item : items_) item->ClearDirty();
}

void AttributesData::Stamp() { modified_ = Now(); }

std::string AttributesData::Details() const { return DetailsOf("Attributes Count " + NumberText(Count()), items_); }

}  // namespace velmoria
