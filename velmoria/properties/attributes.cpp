#include "velmoria/properties/attributes.h"

#include <algorithm>
#include <utility>

#include "velmoria/core/details_text_impl.h"
#include "velmoria/core/index_text_impl.h"
#include "velmoria/core/insert_at_impl.h"
#include "velmoria/properties/attribute_data.h"
#include "velmoria/properties/attributes_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/runtime/error.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

Attributes::Attributes() = default;

Attributes::~Attributes() = default;

void Attributes::Setup(bool locked, bool supportsAdd, bool supportsRemove) {
  if (locked_ || built_ || definition_) Raise(errVelmoria_Locked, "Setup");
  locked_ = locked;
  noAdd_ = !supportsAdd;
  noRemove_ = !supportsRemove;
}

void Attributes::Bind(PropertyDataPtr definition) { definition_ = std::move(definition); }

const KeyedList<AttributePtr>& Attributes::Members() const {
  if (built_) return items_;
  built_ = true;
  if (!definition_) return items_;
  data_ = definition_->AttributesData();
  for (const auto& item : *data_) items_.Add(Make<Attribute>(item), item->Name());
  return items_;
}

void Attributes::CheckAdd(std::string_view routine, const std::string& name, const Position& position) const {
  if (noAdd_) Raise(errNotSupported_Add, routine);
  if (position.IsBoth()) Raise(errAdd_Attribute, routine, AddTexts(name, position), BothPositionsText);
}

void Attributes::Add(const AttributePtr& item, const Position& position) {
  const auto name = item ? item->Name() : std::string();
  CheckAdd("Add", name, position);
  Insert("Add", item, name, position);
}

AttributePtr Attributes::SetupItem(const AttributeFields& fields, const Position& position) {
  CheckAdd("SetupItem", fields.Name, position);
  auto item = NewItem(fields);
  Insert("SetupItem", item, fields.Name, position);
  return item;
}

AttributePtr Attributes::NewItem(const AttributeFields& fields) const try {
  auto data = Make<AttributeData>();
  data->Setup(fields);
  return Make<Attribute>(std::move(data));
} catch (...) { Failed("SetupItem"); }

// Another collection may stand on the same definition, so both this list and the definition's must take the item.
void Attributes::Insert(std::string_view routine, const AttributePtr& item, const std::string& name,
                        const Position& position) try {
  if (!item) Fail(RuntimeFailure::ObjectNotSet);
  const auto place = PlaceOf(Members(), position);
  if (items_.FindKey(name)) Fail(RuntimeFailure::KeyInUse);
  if (data_) data_->Add(item->Data(), position);
  items_.Insert(place, item, name);
} catch (...) { Failed(routine, errAdd_Attribute, AddTexts(name, position)); }

AttributePtr Attributes::Find(const Variant& index) const {
  const auto* found = Members().Find(index);
  return found ? *found : AttributePtr();
}

AttributePtr Attributes::Item(const Variant& index) const try {
  auto found = Find(index);
  if (!found) Raise(errItem_Attribute, "Item", {QuotingIndexText(index, AnyNumberOrBoolean)});
  return found;
} catch (...) { Failed("Item"); }

void Attributes::Remove(const Variant& index) {
  if (noRemove_) Raise(errNotSupported_Remove, "Remove");
  try {
    const auto name = Item(index)->Name();
    if (data_) data_->Remove(name);
    items_.RemoveAt(items_.PositionOf(index));
  } catch (...) { Failed("Remove", errRemove_Attribute, {QuotingIndexText(index, AnyNumberOrBoolean)}); }
}

void Attributes::RenameItem(const std::string& name, const std::string& newName) try {
  const auto place = Members().PositionOf(name);
  if (!data_) Raise(errNotSupported_Rename, "RenameItem");
  if (items_.FindKey(newName)) Raise(errRename_Attribute, "RenameItem", {name, newName});
  Item(name);
  data_->RenameItem(name, newName);
  items_.Rename(place, newName);
} catch (...) { Failed("RenameItem"); }

std::int32_t Attributes::Count() const { return static_cast<std::int32_t>(Members().Count()); }

Attributes::Iterator Attributes::begin() const { return Members().begin(); }

Attributes::Iterator Attributes::end() const { return Members().end(); }

void Attributes::SetSupportsAdd(bool value) {
  if (locked_) Raise(errVelmoria_Locked, "SupportsAdd (Let)");
  noAdd_ = !value;
}

void Attributes::SetSupportsRemove(bool value) {
  if (locked_) Raise(errVelmoria_Locked, "SupportsRemove (Let)");
  noRemove_ = !value;
}

bool Attributes::Modifiable() const {
  return std::ranges::any_of(begin(), end(), [](const auto& item) { return item->Modifiable(); });
}

std::string Attributes::Details() const { return DetailsOf("Attributes Count " + NumberText(Count()), Members()); }

}  // namespace velmoria
