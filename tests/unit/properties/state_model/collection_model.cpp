#include "tests/unit/properties/state_model/collection_model.h"

#include <algorithm>
#include <cstddef>

namespace velmoria::test {

namespace {

using Members = std::vector<CollectionModel::Member>;

std::string Folded(std::string text) {
  std::ranges::transform(text, text.begin(), [](char each) { return each >= 'A' && each <= 'Z' ? each + 32 : each; });
  return text;
}

// The place counts from 0; the count of members when there is none.
std::size_t PlaceOf(const Members& members, const Variant& index) {
  if (!index.IsText()) {
    const auto position = index.AsLong();
    return position < 1 ? members.size() : std::min(members.size(), static_cast<std::size_t>(position - 1));
  }
  const auto found =
      std::ranges::find_if(members, [&](const auto& member) { return Folded(member->Name) == Folded(index.AsText()); });
  return static_cast<std::size_t>(found - members.begin());
}

// Where a new member goes. Refuses a name in use and a position that is not there.
std::size_t PlaceFor(const Members& members, const std::string& name, const Position& position) {
  if (PlaceOf(members, name) != members.size()) throw Refused{};
  if (!position.IsGiven()) return members.size();
  const bool before = position.Before.IsGiven();
  const auto place = PlaceOf(members, before ? position.Before : position.After);
  if (place == members.size()) throw Refused{};
  return before ? place : place + 1;
}

void Insert(Members& members, const CollectionModel::Member& item, const Position& position) {
  const auto place = PlaceFor(members, item->Name, position);
  members.insert(members.begin() + static_cast<std::ptrdiff_t>(place), item);
}

template <class Ask>
bool AnyOf(const Members& members, Ask ask) {
  return std::ranges::any_of(members, [&](const auto& member) { return ask(*member); });
}

}  // namespace

CollectionModel CollectionModel::Copied() const {
  CollectionModel copy;
  for (const auto& member : Members) {
    copy.Members.push_back(std::make_shared<PropertyModel>(member->Copied({})));
    copy.Members.back()->Style = psNone;
  }
  return copy;
}

CollectionModel CollectionModel::Clone() const {
  auto clone = *this;
  for (auto& definition : clone.Definitions) {
    const auto member = std::ranges::find(clone.Members, definition);
    definition = std::make_shared<PropertyModel>(*definition);
    if (member != clone.Members.end()) *member = definition;
  }
  if (Defined) return clone;
  for (auto& member : clone.Members) member = std::make_shared<PropertyModel>(*member);
  return clone;
}

zStateFlags CollectionModel::StateFlags() const {
  zStateFlags flags{};
  for (const auto& member : Members) flags = flags | member->StateFlags();
  return flags;
}

bool CollectionModel::Modifiable(bool all) const {
  if (Members.empty()) return all;
  if (!all) return AnyOf(Members, [](const auto& member) { return member.Modifiable; });
  return !AnyOf(Members, [](const auto& member) { return !member.Modifiable; });
}

bool CollectionModel::Dirty() const {
  return AnyOf(Members, [](const auto& member) { return member.Dirty(); });
}

bool CollectionModel::DirtyValues() const {
  return AnyOf(Members, [](const auto& member) { return member.DirtyValue(); });
}

bool CollectionModel::EmptyValues() const {
  return !AnyOf(Members, [](const auto& member) { return !member.EmptyValue(); });
}

bool CollectionModel::RequiresValues() const {
  return AnyOf(Members, [](const auto& member) { return member.RequiresValue(); });
}

const PropertyModel& CollectionModel::Item(const Variant& index, Scene& scene) const {
  const auto place = PlaceOf(Members, index);
  if (place != Members.size()) return *Members[place];
  scene.Told += "not found; ";
  throw Refused{errItem_Property};
}

void CollectionModel::Add(const PropertyFields& fields, const Position& position, Scene& scene) {
  const auto item = std::make_shared<PropertyModel>(PropertyModel::Made(psNonPersistent, fields, scene.Now));
  if (!SupportsAdd) throw Refused{errNotSupported_Add};
  scene.Told += "before add; ";
  if (scene.Veto) return;
  // With both positions the definition takes the item ahead of the refusal.
  if (!position.IsBoth()) PlaceFor(Members, item->Name, position);
  const bool joins = !position.IsBoth() || scene.Wrong != Mistake::RefusedPositionLeavesTheDefinition;
  if (Defined && joins) Insert(Definitions, item, position.IsBoth() ? Position{} : position);
  if (position.IsBoth()) throw Refused{errAdd_Property};
  Insert(Members, item, position);
  item->Style = Style;
  scene.Told += "after add; ";
}

void CollectionModel::SetupItem(const PropertyFields& fields, const Position& position, Scene& scene) {
  if (!SupportsAdd) throw Refused{errNotSupported_Add};
  const auto item = std::make_shared<PropertyModel>(PropertyModel::Made(Style, fields, scene.Now));
  if (Defined) Insert(Definitions, item, position.IsBoth() ? Position{} : position);
  scene.Told += "before add; ";
  if (scene.Veto) {
    // Only a definition outlives the veto; without one there is nothing to answer with.
    if (!Defined) throw Refused{};
    return;
  }
  try {
    if (position.IsBoth()) throw Refused{errAdd_Property};
    Insert(Members, item, position);
  } catch (const Refused&) {
    std::erase(Definitions, item);
    throw;
  }
  scene.Told += "after add; ";
}

void CollectionModel::Remove(const Variant& index, Scene& scene) {
  if (!SupportsRemove) throw Refused{errNotSupported_Remove};
  Item(index, scene);
  scene.Told += "before remove; ";
  if (scene.Veto) return;
  const auto item = Members[PlaceOf(Members, index)];
  std::erase(Definitions, item);
  std::erase(Members, item);
  scene.Told += "after remove; ";
}

void CollectionModel::RenameItem(const std::string& name, const std::string& newName, const Scene& scene) {
  if (!Defined) throw Refused{errNotSupported_Rename};
  if (PlaceOf(Definitions, newName) != Definitions.size()) throw Refused{errRename_Property};
  const auto place = PlaceOf(Members, name);
  if (place == Members.size()) throw Refused{errItem_Property};
  auto& item = *Members[place];
  if (item.Locked) throw Refused{errVelmoria_Locked};
  item.Name = newName;
  item.Stamp = scene.Now;
  const auto member = Members.begin() + static_cast<std::ptrdiff_t>(place);
  if (scene.Wrong == Mistake::RenamedMemberMovesToTheEnd) std::rotate(member, member + 1, Members.end());
}

void CollectionModel::Undo(Scene& scene) {
  for (const auto& member : Members) {
    member->Undo(scene);
    member->MarkUndone(scene);
  }
}

void CollectionModel::Delete(Scene& scene) {
  if (Style != psPersistent && Style != psCached) throw Refused{errProperties_Delete};
  const bool done = has(StateFlags(), sfpendingdelete) || has(StateFlags(), sfdeleted);
  if (done && scene.Wrong != Mistake::DeleteAsksAgain) return;
  scene.Told += "before pending delete; ";
  if (scene.Veto) return;
  for (const auto& member : Members) member->LetState(member->StateFlags() | sfpendingdelete | sfdirty, scene);
  scene.Told += "after pending delete; ";
}

void CollectionModel::LetStateFlags(zStateFlags flags, const Scene& scene) {
  if (Style != psCached) throw Refused{errProperties_Transient};
  for (const auto& member : Members) member->LetState(flags, scene);
}

void CollectionModel::Update(Scene& scene) {
  if (!Routed) throw Refused{errProperties_Update};
  scene.Told += "before update; ";
  if (scene.Veto) return;
  const auto state = StateFlags();
  if (has(state, sfNew) && !has(EditFlags, efInsert)) throw Refused{errNotSupported_Insert};
  if (!has(state, sfNew) && !has(EditFlags, efUpdate)) throw Refused{errNotSupported_Update};
  if (has(state, sfdeleted)) throw Refused{errPersistence_Deleted};
  if (Write(state, scene)) {
    for (const auto& member : Members) member->MarkUpdated(scene);
  }
  scene.Told += "after update; ";
}

bool CollectionModel::Write(zStateFlags state, Scene& scene) const {
  const bool isNew = has(state, sfNew);
  if (has(state, sfpendingdelete)) {
    if (!isNew) scene.Written += "DELETE";
    return true;
  }
  if (!DirtyValues()) return false;
  scene.Written += isNew ? "INSERT" : "UPDATE";
  return true;
}

void CollectionModel::ClearDirty() {
  for (const auto& member : Members) member->ClearDirty();
}

void CollectionModel::LetLocked(bool value) {
  if (Style == psPersistent || Style == psCached) throw Refused{errVelmoria_Locked};
  Locked = value;
}

void CollectionModel::LetSupports(bool CollectionModel::* which, bool value) {
  if (Locked) throw Refused{errVelmoria_Locked};
  this->*which = value;
}

}  // namespace velmoria::test
