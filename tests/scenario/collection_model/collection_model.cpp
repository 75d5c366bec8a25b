#include "tests/scenario/collection_model/collection_model.h"

#include <algorithm>

namespace velmoria::test {

std::string ObjectModel::Key() const {
  if (Page->IsDeleted(Row)) throw RowRefused{errPersistence_Deleted};
  const auto& id = Page->Rows[Row].Now[0];
  return id.IsEmpty() ? "0" : id.AsText();
}

void ObjectModel::Update() const {
  if (WantsUpdate()) Page->Update(Row);
}

void ObjectModel::Delete() const {
  if (!has(StateFlags(), sfdeleted)) Page->Delete(Row);
}

void MembersModel::UpdateOne(const ObjectModelPtr& member) {
  if (!member->WantsUpdate()) return;
  Told.push_back({"bi", member});
  member->Update();
  Told.push_back({"ai", member});
}

void MembersModel::UpdateEach(const ObjectModels& members) {
  Told.push_back({"bu", {}});
  for (const auto& member : members) try {
      UpdateOne(member);
    } catch (const RowRefused&) {
      if (wrong_ != CollectionMistake::FailureIsPassedOver) throw;
    }
  Told.push_back({"au", {}});
}

void MembersModel::DeleteOne(const ObjectModelPtr& member) {
  const auto state = member->StateFlags();
  if (has(state, sfpendingdelete) || has(state, sfdeleted)) return;
  Told.push_back({"bd", member});
  member->Delete();
  Told.push_back({"ad", member});
}

void MembersModel::UndoEach(const ObjectModels& members) {
  for (const auto& member : members) member->Undo();
}

BoundModel::BoundModel(TableModel& table, const CollectionKind& kind, CollectionMistake wrong)
    : MembersModel(wrong), table_(&table), kind_(kind) {
  for (const auto& [id, cells] : table.Rows) result_.push_back({.Now = cells, .Old = {}});
  Open(0);
  if (kind.CollectionType == cltInitialized) Enumerated();
}

std::int32_t BoundModel::Count() const {
  return static_cast<std::int32_t>(kind_.Buffer == 0 ? page_->Rows.size() : result_.size());
}

ObjectModels BoundModel::Held() const {
  ObjectModels held;
  for (const auto& [row, object] : objects_) held.push_back(object);
  return held;
}

zStateFlags BoundModel::StateFlags() const {
  zStateFlags flags{};
  if (Keeps() && !objects_.empty()) {
    for (const auto& object : Held()) flags = flags | object->StateFlags();
    return flags;
  }
  for (std::size_t row = 0; row < page_->Rows.size(); ++row) {
    const auto state = page_->StateFlags(row);
    if (has(state, sfNew)) flags = flags | sfNew;
    if (has(state, sfpendingdelete)) flags = flags | sfpendingdelete | sfpersistent;
    if (has(state, sfdeleted)) flags = flags | sfdeleted;
  }
  return flags == zStateFlags{} ? sfpersistent : flags;
}

bool BoundModel::IsDirty() const {
  return std::any_of(objects_.begin(), objects_.end(), [](const auto& each) { return each.second->IsDirty(); });
}

void BoundModel::Open(std::int32_t first) {
  const auto from = static_cast<std::size_t>(first);
  const auto left = result_.size() - from;
  const auto count = kind_.Buffer == 0 ? left : std::min(static_cast<std::size_t>(kind_.Buffer), left);
  page_ = std::make_shared<PageModel>(*table_, RowMistake::None);
  page_->Rows.assign(result_.begin() + first, result_.begin() + first + static_cast<std::ptrdiff_t>(count));
  page_->IsLast = count == left;
  first_ = first;
}

bool BoundModel::IsOnPage(std::int32_t row) const {
  return row >= first_ && row < first_ + static_cast<std::int32_t>(page_->Rows.size());
}

// A page ahead is read behind the present one; one that lies behind needs the result from its beginning.
void BoundModel::Turn(std::int32_t row) {
  if (row < 0 || kind_.Buffer == 0) return;
  if (row < first_) Open(0);
  while (!IsOnPage(row) && !page_->IsLast) Open(first_ + kind_.Buffer);
}

// An object in memory is given as it is; the page follows it forwards only.
ObjectModelPtr BoundModel::At(std::int32_t row) {
  const auto held = objects_.find(row);
  if (!Keeps() || held == objects_.end() || wrong_ == CollectionMistake::ObjectIsBuiltAgain) {
    Turn(row);
    return Build(row);
  }
  if (row > first_) Turn(row);
  return held->second;
}

// A Model is in memory before its key is asked for, whatever the collection keeps; the first one there stays.
ObjectModelPtr BoundModel::Build(std::int32_t row) {
  if (!IsOnPage(row)) throw RowRefused{errPersistence_Row};
  const auto object = std::make_shared<const ObjectModel>(ObjectModel{page_, static_cast<std::size_t>(row - first_)});
  if (kind_.ObjectType == otModel) objects_.try_emplace(row, object);
  rowOfKey_.try_emplace(object->Key(), row);
  if (Keeps()) objects_.try_emplace(row, object);
  return object;
}

// Where the key was seen first, then the rows not searched yet, then the new objects, then all in memory.
ObjectModelPtr BoundModel::Item(const std::string& key) {
  const auto known = rowOfKey_.find(key);
  if (known != rowOfKey_.end() && wrong_ != CollectionMistake::KeyFollowsTheValue) return At(known->second);
  if (const auto found = Scan(key)) return found;
  auto candidates = new_;
  for (const auto& object : Held()) candidates.push_back(object);
  for (const auto& object : candidates) {
    if (object->HasKey(key)) return object;
  }
  throw RowRefused{errItem_BusinessObject};
}

ObjectModelPtr BoundModel::Scan(const std::string& key) try {
  if (wrong_ == CollectionMistake::SearchStartsAnew) scanned_ = 0;
  for (;; ++scanned_) {
    Turn(scanned_);
    if (!IsOnPage(scanned_) && !objects_.contains(scanned_)) return {};
    auto object = At(scanned_);
    if (object->HasKey(key)) return object;
  }
} catch (const RowRefused&) { return {}; }

void BoundModel::RefuseDispatcher() const {
  if (!Keeps()) throw RowRefused{errNotSupported_CollectionType};
}

ObjectModels BoundModel::Enumerated() {
  RefuseDispatcher();
  const auto count = Count();
  for (std::int32_t row = 0; row < count; ++row) At(row);
  return Held();
}

ObjectModelPtr BoundModel::SetupItem() {
  const auto pageRow = page_->NewRow();
  const auto object = std::make_shared<const ObjectModel>(ObjectModel{page_, pageRow});
  const auto row = first_ + static_cast<std::int32_t>(pageRow);
  objects_[objects_.empty() ? row : std::max(row, objects_.rbegin()->first + 1)] = object;
  new_.push_back(object);
  return object;
}

void BoundModel::Update() {
  RefuseDispatcher();
  UpdateEach(Held());
}

// The first row that gives no object ends the walk.
void BoundModel::Delete() {
  RefuseDispatcher();
  Told.push_back({"bd", {}});
  for (std::int32_t row = 0;; ++row) {
    ObjectModelPtr member;
    try {
      member = At(row);
    } catch (const RowRefused&) { break; }
    DeleteOne(member);
  }
  Told.push_back({"ad", {}});
}

void BoundModel::Undo() {
  RefuseDispatcher();
  UndoEach(Held());
}

zStateFlags TransientModel::StateFlags() const {
  zStateFlags flags{};
  for (const auto& member : members_) flags = flags | member.Object->StateFlags();
  return flags;
}

bool TransientModel::IsDirty() const {
  return std::any_of(members_.begin(), members_.end(), [](const auto& each) { return each.Object->IsDirty(); });
}

void TransientModel::RefuseOutside(std::int32_t position, zErrors number) const {
  if (position < 1 || position > Count()) throw RowRefused{number};
}

std::vector<TransientModel::Member>::const_iterator TransientModel::Under(const std::string& key) const {
  return std::find_if(members_.begin(), members_.end(), [&](const auto& each) { return each.Key == key; });
}

ObjectModelPtr TransientModel::Item(std::int32_t position) const {
  RefuseOutside(position, errItem_BusinessObject);
  return members_[static_cast<std::size_t>(position - 1)].Object;
}

ObjectModelPtr TransientModel::Item(const std::string& key) const {
  if (const auto member = Under(key); member != members_.end()) return member->Object;
  for (const auto& member : members_) {
    if (member.Object->HasKey(key)) return member.Object;
  }
  throw RowRefused{errItem_BusinessObject};
}

ObjectModels TransientModel::Enumerated() const {
  ObjectModels objects;
  for (const auto& member : members_) objects.push_back(member.Object);
  return objects;
}

void TransientModel::Add(const ObjectModelPtr& object, std::optional<std::int32_t> before,
                         std::optional<std::int32_t> after) {
  const auto key = object->Key();
  if (before && after) throw RowRefused{errAdd_BusinessObject};
  if (before || after) RefuseOutside(before ? *before : *after, errVelmoria_Unknown);
  if (Under(key) != members_.end()) throw RowRefused{errVelmoria_Unknown};
  const auto place = before ? *before - 1 : after.value_or(Count());
  members_.insert(members_.begin() + place, {key, object});
}

void TransientModel::Remove(std::int32_t position) {
  RefuseOutside(position, errItem_BusinessObject);
  members_.erase(members_.begin() + position - 1);
}

// Taken out by the key of old, though one of now finds it too.
void TransientModel::Remove(const std::string& key) {
  Item(key);
  if (Under(key) == members_.end()) throw RowRefused{errVelmoria_Unknown};
  members_.erase(Under(key));
}

void TransientModel::Delete() {
  Told.push_back({"bd", {}});
  for (const auto& member : Enumerated()) DeleteOne(member);
  Told.push_back({"ad", {}});
}

}  // namespace velmoria::test
