#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "velmoria/brokering/ibusiness_object.h"
#include "velmoria/brokering/key_map_impl.h"
#include "velmoria/fwd.h"

namespace velmoria {

/// What a bound collection is set up with. Without a Recordset it is that of the DatabaseAgent, awaited where it is
/// needed first.
struct BusinessObjectsBinding {
  std::string Name{};
  RecordsetPtr Recordset{};
  DatabaseAgentPtr DatabaseAgent{};
  IdentifierPtr ParentIdentifier{};
  zObjectTypes ObjectType = otDefault;
  zCollectionTypes CollectionType = cltDefault;
  KeyFormatPtr KeyFormat{};
};

/// The objects of a bound collection: by row of the whole result, and the key map. Objects are visited by row; those
/// of rows made by SetupItem stand behind the rows of the database because their row numbers are the highest.
class RowObjects {
 public:
  /// The object of a row, or null.
  const IBusinessObjectPtr* Find(std::int64_t row) const noexcept {
    const auto place = static_cast<std::size_t>(row);
    return row >= 0 && place < byRow_.size() && byRow_[place] ? &byRow_[place] : nullptr;
  }
  /// Keeps the object unless the row has one.
  void Add(std::int64_t row, IBusinessObjectPtr object) {
    const auto place = static_cast<std::size_t>(row);
    if (place >= byRow_.size()) byRow_.resize(place + 1);
    if (byRow_[place]) return;
    byRow_[place] = std::move(object);
    ++count_;
  }
  /// A row behind all that have an object, and not before `row`.
  std::int64_t FreeFrom(std::int64_t row) const noexcept {
    return std::max(row, static_cast<std::int64_t>(byRow_.size()));
  }
  std::size_t Count() const noexcept { return count_; }
  std::vector<IBusinessObjectPtr> InOrder() const {
    std::vector<IBusinessObjectPtr> objects;
    objects.reserve(count_);
    for (const auto& object : byRow_)
      if (object) objects.push_back(object);
    return objects;
  }

  /// The first row seen under a key stays.
  void MapKey(std::string_view key, std::int64_t row) { keys_.Add(key, row); }
  /// The row under a key, or -1.
  std::int64_t RowOf(std::string_view key) const { return keys_.RowOf(key); }
  bool HasKeys() const noexcept { return !keys_.IsEmpty(); }

  std::vector<IBusinessObjectPtr> NewObjects;

 private:
  std::vector<IBusinessObjectPtr> byRow_;
  std::size_t count_ = 0;
  KeyMap keys_;
};

}  // namespace velmoria
