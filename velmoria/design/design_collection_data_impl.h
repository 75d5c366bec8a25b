#pragma once

#include "velmoria/core/details_text_impl.h"
#include "velmoria/core/index_text_impl.h"
#include "velmoria/core/insert_at_impl.h"
#include "velmoria/core/now.h"
#include "velmoria/design/design_collection_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

template <class Kind>
DesignCollectionData<Kind>::DesignCollectionData() = default;

template <class Kind>
DesignCollectionData<Kind>::~DesignCollectionData() = default;

template <class Kind>
auto DesignCollectionData<Kind>::Find(const Index& index) const -> Member {
  return members_.Get(Kind::KeyPolicy::ListIndex(index));
}

template <class Kind>
void DesignCollectionData<Kind>::Add(const Member& item, const Position& position) {
  Insert("Add", item, position);
}

template <class Kind>
auto DesignCollectionData<Kind>::SetupItem(const typename Kind::Fields& fields, const Position& position) -> Member
    try {
  auto item = Make<typename Kind::Data>();
  item->Setup(fields);
  Insert("SetupItem", item, position);
  return item;
} catch (...) { Failed("SetupItem"); }

template <class Kind>
void DesignCollectionData<Kind>::Insert(std::string_view routine, const Member& item, const Position& position) {
  const auto key = item->KeyText();
  try {
    if (position.IsBoth()) { Raise(Kind::Numbers.Adding, routine, AddTexts(key, position), BothPositionsText); }
    InsertAt(members_, item, key, Kind::KeyPolicy::ListPosition(position));
    Stamp();
  } catch (...) { Failed(routine, Kind::Numbers.Adding, AddTexts(key, position)); }
}

template <class Kind>
void DesignCollectionData<Kind>::Remove(std::string_view key) {
  const Variant index(key);
  static_cast<void>(members_.At(index));
  members_.RemoveAt(members_.PositionOf(index));
  Stamp();
}

template <class Kind>
void DesignCollectionData<Kind>::Rekey(const Key& key, const Key& newKey) {
  const auto old = Kind::KeyPolicy::Text(key);
  const auto given = Kind::KeyPolicy::Text(newKey);
  try {
    if (members_.FindKey(given)) Raise(Kind::Numbers.Rekeying, Kind::KeyPolicy::RekeyRoutine, {old, given});
    members_.At(Variant(old))->SetKey(newKey);
    members_.Rename(members_.PositionOf(Variant(old)), given);
  } catch (...) { Failed(Kind::KeyPolicy::RekeyRoutine, Kind::Numbers.Rekeying, {old, given}); }
}

template <class Kind>
void DesignCollectionData<Kind>::LoadCollection() const {
  for (const auto& member : members_) member->LoadAllDetail();
}

template <class Kind>
Ref<DesignCollectionData<Kind>> DesignCollectionData<Kind>::Copy(bool recursive) const {
  auto copy = Make<DesignCollectionData>();
  for (const auto& member : members_) copy->Add(member->Copy({}, recursive));
  return copy;
}

template <class Kind>
bool DesignCollectionData<Kind>::Dirty() const {
  if (!dirty_.IsEmpty()) return true;
  for (const auto& member : members_) {
    if (member->Dirty()) return true;
  }
  return false;
}

template <class Kind>
std::string DesignCollectionData<Kind>::Details() const {
  return DetailsOf(std::string(Kind::Counted.Data) + NumberText(static_cast<long long>(Count())), members_);
}

template <class Kind>
void DesignCollectionData<Kind>::Stamp() {
  if (Kind::CollectionIsStamped) dirty_ = Now();
}

}  // namespace velmoria
