#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/source_data.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_parts_impl.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/property_texts_impl.h"

namespace velmoria {

namespace {

/// Those of the row whose definition is still there, by its position now; not those that another row has left.
std::vector<PropertyPtr> MembersFor(const PropertiesData& definitions, const std::vector<PropertyPtr>& members) {
  std::vector<PropertyPtr> moved(static_cast<std::size_t>(definitions.Count()));
  for (const auto& member : members) {
    if (!member || !member->IsBound()) continue;
    const auto position = definitions.PositionOf(member->Data()->Name());
    if (position != 0 && definitions.At(position) == member->Data())
      moved[static_cast<std::size_t>(position - 1)] = member;
  }
  return moved;
}

}  // namespace

// A plain row keeps its members by position beside the shared definitions; it gets a list of its own, as every other
// collection has, when a member is added, removed or renamed through it.

void Properties::LoadItems() const {
  if (items_) return;
  if (recordset_) {
    if (generation_ != data_->Generation()) FollowDefinitions();
  } else {
    FillItems();
  }
}

void Properties::FillItems() const {
  auto definitions = DefinitionOfStyle();
  if (!definitions) definitions = data_;
  auto items = std::make_unique<Items>();
  if (definitions) {
    for (const auto& definition : *definitions) {
      auto item = Make<Property>();
      item->Bind(definition, HeldParents());
      items->List.Add(std::move(item), definition->Name());
    }
  }
  data_ = std::move(definitions);
  items_ = std::move(items);
}

PropertiesDataPtr Properties::DefinitionOfStyle() const {
  const auto& parents = HeldParents();
  if (style_ == psIdentifier && parents.Class) return parents.Class->PropertiesData();
  if (style_ == psParameter && parents.Source) return parents.Source->ParametersData();
  return {};
}

void Properties::FollowDefinitions() const {
  // Members of another row fit any place: each is bound to the definition of its place when it is asked for.
  members_ = members_.empty() ? recordset_->TakeMembers() : MembersFor(*data_, members_);
  members_.resize(static_cast<std::size_t>(data_->Count()));
  generation_ = data_->Generation();
}

const PropertyPtr& Properties::MemberAt(std::int32_t position) const {
  if (items_) return items_->List.At(static_cast<std::size_t>(position));
  auto& member = members_[static_cast<std::size_t>(position - 1)];
  if (!member) member = Make<Property>();
  if (!member->IsBound()) member->Bind(data_->At(position), recordset_, row_);
  return member;
}

Properties::Items& Properties::OwnItems() const {
  LoadItems();
  if (items_) return *items_;
  auto items = std::make_unique<Items>();
  for (std::int32_t position = 1; position <= data_->Count(); ++position) {
    const auto& member = MemberAt(position);
    items->List.Add(member, member->Data()->Name());
  }
  members_.clear();
  items_ = std::move(items);
  return *items_;
}

std::int32_t Properties::Count() const try {
  LoadItems();
  return items_ ? static_cast<std::int32_t>(items_->List.Count()) : data_->Count();
} catch (...) { Failed("Count (Get)"); }

Properties::Iterator Properties::begin() const try {
  LoadItems();
  return {this, 1};
} catch (...) { Failed("NewEnum"); }

Properties::Iterator Properties::end() const { return {this, Count() + 1}; }

const PropertyPtr& Properties::Iterator::operator*() const { return owner_->MemberAt(position_); }

std::int32_t Properties::PositionOf(const Variant& index) const {
  LoadItems();
  if (items_) return static_cast<std::int32_t>(items_->List.PositionOf(index));
  // Columns are mostly asked for in their order.
  const auto position = data_->PositionOf(index, lastFound_ + 1);
  if (position != 0) lastFound_ = position;
  return position;
}

const PropertyPtr* Properties::FindHeld(const Variant& index) const {
  const auto position = PositionOf(index);
  return position == 0 ? nullptr : &MemberAt(position);
}

PropertyPtr Properties::FindByNames(const PropertyKey& key) const {
  if (const auto* held = FindHeld(key.Index)) return *held;
  if (key.SourceName.empty() && key.SourceKey.empty()) return {};
  for (std::int32_t position = 1; position <= Count(); ++position) {
    const auto& definition = items_ ? MemberAt(position)->Data() : data_->At(position);
    if ((!key.SourceName.empty() && definition->SourceName() == key.SourceName) ||
        definition->HasSourceKey(key.SourceKey)) {
      return MemberAt(position);
    }
  }
  return {};
}

PropertyPtr Properties::FindByParameter(const Property& parameter, bool& missed) const {
  if (const auto position = PositionOf(parameter.Data()->Name())) return MemberAt(position);
  // The source's name decides only whether the search goes on; what it found is not the answer.
  if (PositionOf(parameter.Data()->SourceName()) == 0) {
    missed = true;
    return {};
  }
  const auto sourceKey = parameter.SourceKey();
  for (const auto& item : *this) {
    if (item->SourceKey() == sourceKey) return item;
  }
  return {};
}

PropertyPtr Properties::Find(const PropertyKey& key) const {
  bool missed = false;
  return key.Parameter ? FindByParameter(*key.Parameter, missed) : FindByNames(key);
}

PropertyPtr Properties::Search(const PropertyKey& key, bool& missed) {
  auto item = key.Parameter ? FindByParameter(*key.Parameter, missed) : FindByNames(key);
  if (!item && !missed) ItemNotFound.Raise(key, item);
  return item;
}

PropertyPtr Properties::FindOrAsk(const PropertyKey& key) {
  bool missed = false;
  return Search(key, missed);
}

PropertyPtr Properties::FindOrRaise(const PropertyKey& key) {
  bool missed = false;
  auto item = Search(key, missed);
  if (!item && !missed) Raise(errItem_Property, "Item", PropertyKeyTexts(key));
  return item;
}

PropertyPtr Properties::Item(const Variant& index) try {
  const auto* held = FindHeld(index);
  return held ? *held : FindOrRaise(PropertyKey{.Index = index});
} catch (...) { Failed("Item"); }

PropertyPtr Properties::Item(const PropertyKey& key) try { return FindOrRaise(key); } catch (...) {
  Failed("Item");
}

}  // namespace velmoria
