#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "velmoria/core/position.h"
#include "velmoria/core/reporting.h"
#include "velmoria/design/design_kind.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/object.h"

namespace velmoria {

struct ParentSlots;

/// What all collections of design objects have in common. The member list is built when it is first needed and stays:
/// it does not follow changes made through another collection over the same definitions. A collection made on its own
/// is transient: it holds its members alone and has no definitions behind it. Nothing that fails is rolled back.
template <class Kind>
class VELMORIA_API DesignCollection : public Object, public Reporting {
 public:
  using Member = Ref<typename Kind::Facade>;
  using Definitions = DesignCollectionData<Kind>;
  using Index = typename Kind::KeyPolicy::Index;
  using Key = typename Kind::KeyPolicy::Key;
  using Iterator = typename KeyedList<Member>::Iterator;

  ~DesignCollection() override;
  std::string_view ReportedType() const noexcept final { return Kind::Names.Collection; }

  std::int32_t Count() const { return static_cast<std::int32_t>(Members().Count()); }
  /// By 1-based position or name; Sources and Connectors by engine, where 0 is the engine in force. Raises the kind's
  /// "Problem finding" error.
  Member Item(const Index& index) const;
  Member Item() const
    requires EngineKind<Kind>
  {
    return Item(Index{});
  }
  Iterator begin() const { return Members().begin(); }
  Iterator end() const { return Members().end(); }

  /// Takes an object in under its key. Raises 15082 when adding is not supported, 15100 to 15108 when the object
  /// belongs elsewhere, which "Problem adding" is recorded beside, and the kind's "Problem adding" error for both
  /// positions at once and for anything else.
  void Add(const Member& item, const Position& position = {});
  /// Makes an object of these fields and adds it. Raises as Add, and what the fields are refused with.
  Member SetupItem(const typename Kind::Fields& fields, const Position& position = {});
  /// The object stays whole and may be added elsewhere. Raises 15083 when removing is not supported, else the error of
  /// Item or the kind's "Problem removing" error.
  void Remove(const Index& index);
  void Remove()
    requires EngineKind<Kind>
  {
    Remove(Index{});
  }
  /// The position stays. Raises 15085 in a transient collection, and the kind's "Problem renaming" error when newName
  /// is in use, even by the same member in another case.
  void RenameItem(const std::string& name, const std::string& newName)
    requires NamedKind<Kind>
  {
    Rekey(name, newName);
  }
  /// The position stays and nothing but the engine changes. Raises 15086 in a transient collection, and 15150 or 15156
  /// when newEngine is in use.
  void ChangeItemEngine(zEngines engine, zEngines newEngine)
    requires EngineKind<Kind>
  {
    Rekey(engine, newEngine);
  }

  /// It guards SupportsAdd, SupportsRemove and Setup of this collection; it forbids neither Add nor Remove and does not
  /// reach the members.
  bool Locked() const { return locked_; }
  void SetLocked(bool value) { locked_ = value; }
  /// Setting these raises 15002 while Locked.
  bool SupportsAdd() const { return !noAdd_; }
  void SetSupportsAdd(bool value);
  bool SupportsRemove() const { return !noRemove_; }
  void SetSupportsRemove(bool value);
  std::string Details() const;

  // Inside the library.

  /// Once, before first use: raises 15002 when locked, built or bound.
  void Setup(bool locked, bool supportsAdd, bool supportsRemove);
  void Bind(const Parents& parents);
  void Bind(const Ref<Definitions>& data);
  /// None for a transient collection, and before the member list is built.
  Ref<Definitions> Data() const;
  const velmoria::Parents& HeldParents() const { return *parents_; }
  /// As Item, but none on a miss; records nothing.
  Member Find(const Index& index) const;
  void SetParents(const Parents& given);
  void ClearParents(const ParentSlots& slots);

 protected:
  DesignCollection();

  const KeyedList<Member>& Members() const { return members_ ? *members_ : BuildMembers(); }
  /// What an index stands for. A failure to find that out is raised, or without `raising` answered by the index itself.
  virtual Index Resolved(const Index& index, bool raising) const;
  std::string StateDetails() const override;

 private:
  const KeyedList<Member>& BuildMembers() const;
  Ref<Definitions> DefinitionsOfParent() const;
  std::string ParentClause() const;
  Member FindResolved(const Index& resolved) const;
  void JoinDefinitions(const Member& item, const Position& position);
  void Insert(std::string_view routine, const Member& item, const Position& position);
  void Take(const Index& index);
  void Rekey(const Key& key, const Key& newKey);
  void RefuseLocked(std::string_view routine) const;

  mutable std::optional<KeyedList<Member>> members_;
  mutable Ref<Definitions> data_;
  std::unique_ptr<velmoria::Parents> parents_;
  bool locked_ = false;
  bool noAdd_ = false;
  bool noRemove_ = false;
};

}  // namespace velmoria
