#include <algorithm>
#include <limits>

#include "velmoria/brokering/business_objects.h"
#include "velmoria/brokering/business_objects_impl.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/index_text_impl.h"
#include "velmoria/core/insert_at_impl.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"

namespace velmoria {

namespace {

constexpr std::initializer_list<VarType> kPositionTypes = {VarType::Integer, VarType::Long, VarType::Double,
                                                           VarType::Decimal, VarType::Byte};

bool IsPosition(const Variant& index) {
  return std::find(kPositionTypes.begin(), kPositionTypes.end(), index.Type()) != kPositionTypes.end();
}

/// Whether a position fits 32 bits; what is no number is no position either.
bool IsLong(const Variant& position) {
  const double asked = position.AsDouble();
  return asked >= std::numeric_limits<std::int32_t>::min() && asked <= std::numeric_limits<std::int32_t>::max();
}

}  // namespace

void BusinessObjects::RaiseNotFound(const Variant& index, std::string_view routine) {
  Raise(errItem_BusinessObject, routine, {IndexText(index, kPositionTypes)});
}

std::string BusinessObjects::KeyOf(const Variant& index) {
  const IdentifierPtr identifier = index.AsObject<Identifier>();
  std::string key = identifier ? identifier->Key(keyFormat_) : index.AsText();
  if (keyFormat_->EmptyKey()) Raise(errNotSupported_Key, "IBusinessObjects_Item", {key});
  return key;
}

IBusinessObjectPtr BusinessObjects::Item(const Variant& index) try {
  return transient_ ? ItemTransient(index) : ItemBound(index);
} catch (...) { Failed("IBusinessObjects_Item"); }

IBusinessObjectPtr BusinessObjects::ItemTransient(const Variant& index) {
  IBusinessObjectPtr found = FindTransient(index);
  if (!found) ItemNotFound.Raise(index, found);
  if (!found) RaiseNotFound(index, "IBusinessObjects_Item");
  return found;
}

IBusinessObjectPtr BusinessObjects::FindTransient(const Variant& index) {
  if (index.IsText() || index.AsObject<Identifier>()) return FindTransientKey(KeyOf(index));
  return IsPosition(index) && IsLong(index) ? members_.Get(index.AsLong()) : IBusinessObjectPtr{};
}

IBusinessObjectPtr BusinessObjects::FindTransientKey(const std::string& key) {
  if (const IBusinessObjectPtr* found = members_.FindKey(key)) return *found;
  Suspension quiet{"BusinessObjects.IBusinessObjects_Item"};
  for (const auto& member : members_)
    if (HasKey(*member, key)) return member;
  return {};
}

IBusinessObjectPtr BusinessObjects::ItemBound(const Variant& index) {
  if (index.IsText() || index.AsObject<Identifier>()) return FindByKey(KeyOf(index));
  if (!IsPosition(index)) return {};
  const std::int32_t position = index.AsLong();
  if (position == std::numeric_limits<std::int32_t>::min()) Fail(RuntimeFailure::Overflow);
  return FindAt(std::int64_t{position} - 1);
}

void BusinessObjects::Add(IBusinessObjectPtr item, const Position& position) try {
  if (noAdd_ || !transient_) Raise(errNotSupported_Add, "IBusinessObjects_Add");
  if (!item) Fail(RuntimeFailure::ObjectNotSet);
  if (BeforeAdd.Raise(*item)) return;
  const std::string key = keyFormat_->EmptyKey() ? std::string{} : item->Key(keyFormat_);
  if (position.IsBoth()) {
    Raise(errAdd_BusinessObject, "IBusinessObjects_Add", AddTexts(key, position), BothPositionsText);
  }
  const std::size_t place = PlaceOf(members_, position);
  if (key.empty()) {
    members_.Insert(place, std::move(item));
  } else {
    members_.Insert(place, std::move(item), key);
  }
  AfterAdd.Raise();
} catch (...) { Failed("IBusinessObjects_Add"); }

void BusinessObjects::Remove(const Variant& index) try {
  if (noRemove_ || !transient_) Raise(errNotSupported_Remove, "IBusinessObjects_Remove");
  const IBusinessObjectPtr item = ItemTransient(index);
  if (BeforeRemove.Raise(*item)) return;
  if (IsPosition(index)) {
    members_.RemoveAt(static_cast<std::size_t>(index.AsLong()));
  } else if (index.IsText() || index.AsObject<Identifier>()) {
    if (!members_.RemoveKey(KeyOf(index))) Fail(RuntimeFailure::InvalidArgument);
  } else {
    Raise(errRemove_BusinessObject, "IBusinessObjects_Remove", {IndexText(index, kPositionTypes)});
  }
  AfterRemove.Raise();
} catch (...) { Failed("IBusinessObjects_Remove"); }

}  // namespace velmoria
