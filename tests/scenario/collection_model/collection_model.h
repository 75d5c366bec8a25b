#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/scenario/row_model/row_model.h"

namespace velmoria::test {

/// A mistake that a model makes on purpose, to show that it would be found.
enum class CollectionMistake { None, ObjectIsBuiltAgain, SearchStartsAnew, KeyFollowsTheValue, FailureIsPassedOver };

struct CollectionKind {
  zCollectionTypes CollectionType;
  zObjectTypes ObjectType;
  std::int32_t Buffer;  // rows of a page, 0 for all in one
};

/// A business object: a row of the page that it was read with.
struct ObjectModel {
  std::shared_ptr<PageModel> Page;
  std::size_t Row;

  zStateFlags StateFlags() const { return Page->StateFlags(Row); }
  bool IsDirty() const { return Page->IsDirty(Row); }
  bool WantsUpdate() const { return IsDirty() || has(StateFlags(), sfpendingdelete); }
  std::string Key() const;
  bool HasKey(const std::string& key) const { return !Page->IsDeleted(Row) && Key() == key; }
  void Let(std::size_t column, const Variant& value) const { Page->Let(Row, column, value); }
  void Update() const;
  void Delete() const;
  void Undo() const { Page->Undo(Row); }
};
using ObjectModelPtr = std::shared_ptr<const ObjectModel>;
using ObjectModels = std::vector<ObjectModelPtr>;

/// An event that a listener heard; of one around the whole there is no object.
struct HeardModel {
  std::string Event;
  ObjectModelPtr Item;
};

/// What the two kinds of collection have in common: the walks over the objects in memory.
class MembersModel {
 public:
  explicit MembersModel(CollectionMistake wrong) : wrong_(wrong) {}

  std::vector<HeardModel> Told;

 protected:
  void UpdateEach(const ObjectModels& members);
  void DeleteOne(const ObjectModelPtr& member);
  static void UndoEach(const ObjectModels& members);

  CollectionMistake wrong_;

 private:
  void UpdateOne(const ObjectModelPtr& member);
};

/// A collection over the rows of a table.
class BoundModel : public MembersModel {
 public:
  BoundModel(TableModel& table, const CollectionKind& kind, CollectionMistake wrong);

  std::int32_t Count() const;
  zStateFlags StateFlags() const;
  bool IsDirty() const;
  ObjectModelPtr Item(std::int32_t position) { return At(position - 1); }
  ObjectModelPtr Item(const std::string& key);
  ObjectModels Enumerated();
  ObjectModelPtr SetupItem();
  void Update();
  void Delete();
  void Undo();

 private:
  bool Keeps() const { return kind_.CollectionType != cltDispatcher; }
  void RefuseDispatcher() const;
  ObjectModels Held() const;
  void Open(std::int32_t first);
  void Turn(std::int32_t row);
  bool IsOnPage(std::int32_t row) const;
  ObjectModelPtr At(std::int32_t row);
  ObjectModelPtr Build(std::int32_t row);
  ObjectModelPtr Scan(const std::string& key);

  TableModel* table_;
  CollectionKind kind_;
  std::vector<RowModel> result_;  // the rows as they were when the result was opened
  std::shared_ptr<PageModel> page_;
  std::int32_t first_ = 0;  // the row of the result that the page begins with
  std::map<std::int32_t, ObjectModelPtr> objects_;
  std::map<std::string, std::int32_t> rowOfKey_;
  ObjectModels new_;
  std::int32_t scanned_ = 0;  // the rows before it have been searched
};

/// A collection filled by hand.
class TransientModel : public MembersModel {
 public:
  using MembersModel::MembersModel;

  std::int32_t Count() const { return static_cast<std::int32_t>(members_.size()); }
  zStateFlags StateFlags() const;
  bool IsDirty() const;
  ObjectModelPtr Item(std::int32_t position) const;
  ObjectModelPtr Item(const std::string& key) const;
  ObjectModels Enumerated() const;
  void Add(const ObjectModelPtr& object, std::optional<std::int32_t> before, std::optional<std::int32_t> after);
  void Remove(std::int32_t position);
  void Remove(const std::string& key);
  void Update() { UpdateEach(Enumerated()); }
  void Delete();
  void Undo() const { UndoEach(Enumerated()); }

 private:
  struct Member {
    std::string Key;  // as it was when the object was added
    ObjectModelPtr Object;
  };

  std::vector<Member>::const_iterator Under(const std::string& key) const;
  void RefuseOutside(std::int32_t position, zErrors number) const;

  std::vector<Member> members_;
};

}  // namespace velmoria::test
