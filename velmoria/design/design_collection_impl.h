#pragma once

#include <type_traits>
#include <utility>

#include "velmoria/core/details_text_impl.h"
#include "velmoria/core/index_text_impl.h"
#include "velmoria/core/insert_at_impl.h"
#include "velmoria/design/design_collection.h"
#include "velmoria/design/parent_change_impl.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

template <class Kind>
DesignCollection<Kind>::DesignCollection() : parents_(std::make_unique<velmoria::Parents>()) {}

template <class Kind>
DesignCollection<Kind>::~DesignCollection() = default;

template <class Kind>
auto DesignCollection<Kind>::Item(const Index& index) const -> Member try {
  const auto resolved = Resolved(index, true);
  auto item = FindResolved(resolved);
  if (!item) Raise(Kind::Numbers.Finding, "Item", Kind::KeyPolicy::Shown(resolved, index));
  return item;
} catch (...) { Failed("Item"); }

template <class Kind>
auto DesignCollection<Kind>::Find(const Index& index) const -> Member {
  return FindResolved(Resolved(index, false));
}

template <class Kind>
auto DesignCollection<Kind>::FindResolved(const Index& resolved) const -> Member {
  return Members().Get(Kind::KeyPolicy::ListIndex(resolved));
}

template <class Kind>
void DesignCollection<Kind>::Add(const Member& item, const Position& position) try {
  if (noAdd_) Raise(errNotSupported_Add, "Add");
  if (!item) Raise(Kind::Numbers.Adding, "Add", AddTexts({}, position));
  static_cast<void>(Members());
  if (data_) JoinDefinitions(item, position);
  Insert("Add", item, position);
} catch (...) { Failed("Add"); }

template <class Kind>
void DesignCollection<Kind>::JoinDefinitions(const Member& item, const Position& position) try {
  item->SetParents(*parents_);
  data_->Add(item->Data(), position);
} catch (...) { Failed("Add", Kind::Numbers.Adding, AddTexts(item->Data()->KeyText(), position)); }

template <class Kind>
auto DesignCollection<Kind>::SetupItem(const typename Kind::Fields& fields, const Position& position) -> Member try {
  if (noAdd_) Raise(errNotSupported_Add, "SetupItem");
  static_cast<void>(Members());
  Ref<typename Kind::Data> definition;
  if (data_) {
    definition = data_->SetupItem(fields, position);
  } else {
    definition = Make<typename Kind::Data>();
    definition->Setup(fields);
  }
  auto item = Make<typename Kind::Facade>();
  item->Bind(definition, *parents_);
  Insert("SetupItem", item, position);
  return item;
} catch (...) { Failed("SetupItem"); }

template <class Kind>
void DesignCollection<Kind>::Insert(std::string_view routine, const Member& item, const Position& position) {
  const auto key = item->Data()->KeyText();
  try {
    if (position.IsBoth()) { Raise(Kind::Numbers.Adding, routine, AddTexts(key, position), BothPositionsText); }
    InsertAt(*members_, item, key, Kind::KeyPolicy::ListPosition(position));
  } catch (...) { Failed(routine, Kind::Numbers.Adding, AddTexts(key, position)); }
}

template <class Kind>
void DesignCollection<Kind>::Remove(const Index& index) try {
  if (noRemove_) Raise(errNotSupported_Remove, "Remove");
  Take(index);
} catch (...) { Failed("Remove"); }

template <class Kind>
void DesignCollection<Kind>::Take(const Index& index) {
  auto resolved = index;
  try {
    const auto item = Item(index);
    resolved = Resolved(index, true);
    const auto place = members_->PositionOf(Kind::KeyPolicy::ListIndex(resolved));
    if (data_) {
      if (Kind::LoadsDetailToRemove) item->Data()->LoadAllDetail();
      data_->Remove(members_->KeyAt(place));
      item->ClearParents(parents_->Filled());
    }
    members_->RemoveAt(place);
  } catch (...) { Failed("Remove", Kind::Numbers.Removing, Kind::KeyPolicy::Shown(resolved, index)); }
}

template <class Kind>
void DesignCollection<Kind>::Rekey(const Key& key, const Key& newKey) try {
  static_cast<void>(Members());
  if (!data_) Raise(Kind::KeyPolicy::TransientRefusal, Kind::KeyPolicy::RekeyRoutine);
  data_->Rekey(key, newKey);
  const auto old = Kind::KeyPolicy::Text(key);
  const auto given = Kind::KeyPolicy::Text(newKey);
  try {
    members_->Rename(members_->PositionOf(old), given);
  } catch (...) { Failed(Kind::KeyPolicy::RekeyRoutine, Kind::Numbers.Rekeying, {old, given}); }
} catch (...) { Failed(Kind::KeyPolicy::RekeyRoutine); }

template <class Kind>
void DesignCollection<Kind>::SetSupportsAdd(bool value) {
  RefuseLocked("SupportsAdd (Let)");
  noAdd_ = !value;
}

template <class Kind>
void DesignCollection<Kind>::SetSupportsRemove(bool value) {
  RefuseLocked("SupportsRemove (Let)");
  noRemove_ = !value;
}

template <class Kind>
void DesignCollection<Kind>::RefuseLocked(std::string_view routine) const {
  if (locked_) Raise(errVelmoria_Locked, routine);
}

template <class Kind>
std::string DesignCollection<Kind>::Details() const {
  const auto& members = Members();
  std::string heading(data_ ? Kind::Counted.Bound : Kind::Counted.Transient);
  heading += NumberText(static_cast<long long>(members.Count()));
  if (data_ && !parents_->IsEmpty()) heading += ParentClause();
  return DetailsOf(std::move(heading), members);
}

// A report builds nothing: the list would stand still from then on.
template <class Kind>
std::string DesignCollection<Kind>::StateDetails() const {
  return members_ ? Details() : std::string();
}

template <class Kind>
void DesignCollection<Kind>::Setup(bool locked, bool supportsAdd, bool supportsRemove) {
  if (members_ || data_ || locked_) Raise(errVelmoria_Locked, "Setup");
  locked_ = locked;
  noAdd_ = !supportsAdd;
  noRemove_ = !supportsRemove;
}

template <class Kind>
void DesignCollection<Kind>::Bind(const Parents& parents) {
  *parents_ = parents;
}

template <class Kind>
void DesignCollection<Kind>::Bind(const Ref<Definitions>& data) {
  data_ = data;
}

template <class Kind>
auto DesignCollection<Kind>::Data() const -> Ref<Definitions> {
  return data_;
}

template <class Kind>
void DesignCollection<Kind>::SetParents(const Parents& given) try {
  if (const auto conflict = parents_->TakeInTurn(given)) {
    Raise(conflict->Number, Kind::SetParentsRoutine, {conflict->Name});
  }
  if (!members_) return;
  for (const auto& member : *members_) member->SetParents(given);
} catch (...) { Failed(Kind::SetParentsRoutine); }

template <class Kind>
void DesignCollection<Kind>::ClearParents(const ParentSlots& slots) {
  parents_->Clear(slots);
  if (!members_) return;
  for (const auto& member : *members_) member->ClearParents(slots);
}

template <class Kind>
auto DesignCollection<Kind>::BuildMembers() const -> const KeyedList<Member>& {
  KeyedList<Member> members;
  if (auto definitions = DefinitionsOfParent()) data_ = definitions;
  const std::size_t count = data_ ? data_->Count() : 0;
  for (std::size_t position = 1; position <= count; ++position) {
    auto member = Make<typename Kind::Facade>();
    member->Bind(data_->At(position), *parents_);
    members.Add(std::move(member), data_->KeyAt(position));
  }
  return members_.emplace(std::move(members));
}

template <class Kind>
auto DesignCollection<Kind>::DefinitionsOfParent() const -> Ref<Definitions> {
  if constexpr (!std::is_void_v<typename Kind::Parent>) {
    if (const auto& parent = HeldParents().*SlotOf<typename Kind::Parent::Data>) {
      return parent->template Child<Definitions>();
    }
  }
  return {};
}

template <class Kind>
std::string DesignCollection<Kind>::ParentClause() const {
  if constexpr (!std::is_void_v<typename Kind::Parent> && Kind::CountNamesParent) {
    using Parent = typename Kind::Parent;
    const auto name = NameOf(HeldParents().*SlotOf<typename Parent::Data>);
    return " for " + std::string(Parent::Names.Facade) + " " + Quoted(name);
  }
  return {};
}

template <class Kind>
auto DesignCollection<Kind>::Resolved(const Index& index, bool) const -> Index {
  return index;
}

}  // namespace velmoria
