#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "velmoria/core/position.h"
#include "velmoria/core/reporting.h"
#include "velmoria/design/design_kind.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

/// The ordered definitions of one kind below one parent, shared by all collections that stand on them. Each kind has
/// its own name for it: ActionsData, ClassesData, ...
template <class Kind>
class DesignCollectionData final : public Object, public Reporting {
 public:
  using Member = Ref<typename Kind::Data>;
  using Index = typename Kind::KeyPolicy::Index;
  using Key = typename Kind::KeyPolicy::Key;
  using Iterator = typename KeyedList<Member>::Iterator;

  DesignCollectionData();
  ~DesignCollectionData() override;
  std::string_view ReportedType() const noexcept override { return Kind::Names.CollectionData; }

  std::size_t Count() const noexcept { return members_.Count(); }
  /// None on a miss.
  Member Find(const Index& index) const;
  /// By 1-based position; raises 9 outside.
  const Member& At(std::size_t position) const { return members_.At(position); }
  /// The key under which a member was taken in, by 1-based position.
  std::string_view KeyAt(std::size_t position) const { return members_.KeyAt(position); }
  Iterator begin() const noexcept { return members_.begin(); }
  Iterator end() const noexcept { return members_.end(); }

  /// Raises the kind's "Problem adding" error for whatever fails.
  void Add(const Member& item, const Position& position = {});
  Member SetupItem(const typename Kind::Fields& fields, const Position& position = {});
  /// A key that is not there is the list's failure; the collection above words it.
  void Remove(std::string_view key);
  /// Gives a member another key and leaves its position. Raises the kind's "Problem renaming" error.
  void Rekey(const Key& key, const Key& newKey);

  /// Brings everything below every member into memory.
  void LoadCollection() const;
  Ref<DesignCollectionData> Copy(bool recursive = true) const;
  /// Whether members came or went, or one is dirty.
  bool Dirty() const;
  std::string Details() const;

 private:
  std::string StateDetails() const override { return Details(); }
  void Insert(std::string_view routine, const Member& item, const Position& position);
  void Stamp();

  KeyedList<Member> members_;
  Variant dirty_;  // date of the last change, Empty while clean
};

}  // namespace velmoria
