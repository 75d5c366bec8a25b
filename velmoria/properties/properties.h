#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "velmoria/core/enumerations.h"
#include "velmoria/core/position.h"
#include "velmoria/core/reporting.h"
#include "velmoria/fwd.h"
#include "velmoria/properties/property_fields.h"
#include "velmoria/properties/property_key.h"
#include "velmoria/runtime/event.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/pooled.h"

namespace velmoria {

struct ParentSlots;
struct PropertiesBinding;

/// The arguments of Properties.PrepareValues.
struct PrepareValuesArguments {
  PropertiesPtr Properties;               // required: where the values come from
  bool DirtyOnly = false;                 // only those whose DirtyValue is True
  zPropertyFlags PropertyFlags = pfNone;  // only into members that have all of these
  bool UseOldValue = false;
};

/// The ordered collection of Property: the columns of one row (bound), an identifier, parameters, a user's own. Members
/// are keyed by Name without regard to case and are made when first asked for. A collection without definitions behind
/// it is transient and refuses RenameItem.
class VELMORIA_API Properties final : public Object, public Reporting, public Pooled {
 public:
  Properties();
  ~Properties() override;
  std::string_view ReportedType() const noexcept override { return "Properties"; }

  // A listener that cancels ends the operation silently and the event that follows is left out.
  CancelEvent<Properties, Property&> BeforeAdd;
  Event<Properties, Property&> AfterAdd;
  CancelEvent<Properties, Property&> BeforeRemove;
  Event<Properties, Property&> AfterRemove;
  /// A listener may supply what was not found; then no error follows.
  Event<Properties, const PropertyKey&, PropertyPtr&> ItemNotFound;
  CancelEvent<Properties> BeforeUpdate;
  Event<Properties> AfterUpdate;
  CancelEvent<Properties> BeforePendingDelete;
  /// Also after a Delete that failed.
  Event<Properties> AfterPendingDelete;

  /// By 1-based position or name; raises 15072 when there is none and no listener supplies one.
  PropertyPtr Item(const Variant& index);
  /// The same by any key; SourceName and SourceKey are compared exactly. A Parameter is found by its Name. If that is
  /// no key but its SourceName is, by its SourceKey; if neither is, the answer is none, without event and error.
  PropertyPtr Item(const PropertyKey& key);
  std::int32_t Count() const;
  class Iterator;
  Iterator begin() const;
  Iterator end() const;

  /// The item's definition joins that of the collection, the item gets its style and parents. Raises 15082 when adding
  /// is not supported, 15100 to 15109 for a parent that the item already has, 15014 when both positions are given (the
  /// definition has the item by then, and keeps it), 15000 for a name in use and a position that is not there.
  void Add(const PropertyPtr& item, const Position& position = {});
  /// Makes a member. Its engine is that of the Source; where there is none, the one given or else the collection's.
  /// Cancelled by a listener it gives none, and the definition stays behind; on a transient collection it then raises
  /// 15000. A failure leaves nothing behind. Raises like Add, and like Property.SetDefaultValue for the DefaultValue.
  PropertyPtr SetupItem(const PropertyFields& fields, const Position& position = {});
  /// The member leaves the definition, too, and its parents. Raises 15083 when removing is not supported, 15072 for an
  /// unknown member, 15142 when a step fails.
  void Remove(const Variant& index);
  void Remove(const PropertyKey& key);
  /// The position stays. Raises 15085 on a transient collection, 15153 when the new name is taken, even by the same
  /// member, 15072 for an unknown name, 15002 when the member is Locked.
  void RenameItem(const std::string& name, const std::string& newName);
  /// An unbound, transient collection of copies; an empty name keeps the name.
  PropertiesPtr Copy(const std::string& name = {}, bool recursive = true);

  /// Raises 15002 when bound or Locked.
  std::string Name() const;
  void SetName(const std::string& value);
  /// Guards the collection, not its members. Refused with 15002 under psPersistent and psCached, whatever the value.
  bool Locked() const { return locked_; }
  void SetLocked(bool value);
  zPropertyStyles Style() const { return style_; }
  /// Raise 15002 when Locked.
  bool SupportsAdd() const { return !noAdd_; }
  void SetSupportsAdd(bool value);
  bool SupportsRemove() const { return !noRemove_; }
  void SetSupportsRemove(bool value);

  /// All: every member is modifiable. Not all: at least one is. An empty collection answers `all` itself.
  bool Modifiable(bool all = true) const;
  /// Bound: whether the row has changed values. Otherwise whether a member's definition was changed.
  bool Dirty() const;
  /// Bound: the same as Dirty. Otherwise whether a member's value was changed.
  bool DirtyValues() const;
  /// Whether every member's value is Empty; True without members. And whether a member RequiresValue.
  bool EmptyValues() const;
  bool RequiresValues() const;
  /// What the row's Action permits, or else the parent Action; without one, what any member permits.
  zEditFlags EditFlags() const;
  std::string EditFlagsDisplay() const;
  /// Bound: of the row. Otherwise those of all members together.
  zStateFlags StateFlags() const;
  /// Bound: flags can be cleared, but sfdeleted, and never set. psCached: every member gets them. Otherwise 15177.
  void SetStateFlags(zStateFlags flags);
  std::string StateFlagsDisplay() const;

  /// Writes the row: inserts, updates, or deletes what Delete flagged. Raises 15113 on a deleted row, 15116 when there
  /// is nothing to find the row by, and what the database refuses.
  void Update();
  /// Flags for deletion; the next Update deletes. Nothing happens when flagged already. 15117 when not persistent.
  void Delete();
  /// Cancels a deletion not yet written. Members take old values back, a row forgets them; 15113 on a deleted row.
  void Undo();

  /// Carries values into the members that answer to the given ones; a member that refuses its value keeps what it has.
  /// Ends with Messages.Clear.
  void PrepareValues(const PrepareValuesArguments& arguments);
  /// Whether the candidate meets every member that has a value, compared with its Operator. OrFlag is not used. Raises
  /// 15096 for an Operator that the type does not know.
  bool PropertiesMatch(const PropertiesPtr& properties);

  /// Of the row; made on first read. None on an unbound collection that was given none.
  IdentifierPtr Identifier();
  /// The first member with pfReturnValue; none when bound.
  PropertyPtr ReturnValueParameter() const;
  std::string Details() const;
  /// Made on first read.
  StatisticsPtr Statistics();

  // Of the parents, or of the row's Action; empty where there is none.
  std::string ServerName() const;
  std::string ClassName() const;
  std::string ActionName() const;
  std::string LinkName() const;
  std::string RelationshipName() const;
  std::string DatabaseName() const;
  zEngines Engine() const;
  std::string EngineName() const;

  // Inside the library.
  void Bind(const PropertiesBinding& binding);
  /// As psPersistent to one row of a Recordset and its columns.
  void BindRow(RecordsetPtr recordset, std::int32_t row, std::string name);
  /// Raises 15002 when Locked or once the members were asked for.
  void Setup(const std::string& name, bool locked, bool supportsAdd, bool supportsRemove, zEngines engine = engUnknown);
  void SetStyle(zPropertyStyles value) { style_ = value; }
  void SetIdentifier(IdentifierPtr value);
  void SetActionName(std::string value);
  bool IsBound() const { return static_cast<bool>(recordset_); }
  RecordsetPtr Recordset() const;
  std::int32_t Row() const { return row_; }
  PropertiesDataPtr Data() const;  // none on a transient collection
  /// A member, or none: no event and no error.
  PropertyPtr Find(const PropertyKey& key) const;
  const PropertyPtr* FindHeld(const Variant& index) const;  // the same by position or name, or null
  /// A member, or what a listener of ItemNotFound supplies, or none: no error.
  PropertyPtr FindOrAsk(const PropertyKey& key);
  /// A member that lives elsewhere, too: it joins under its Name, without events, and its definition is left alone.
  void AddShared(const PropertyPtr& item);
  void LoadItems() const;
  void SetParents(zPropertyStyles style, const Parents& parents);
  void ClearParents(zPropertyStyles style, const ParentSlots& slots);
  void ClearDirty();

  // Inside the library: the pieces of a statement.
  std::string NamesClause(zSourceTypes sourceType, bool dirtyOnly) const;
  std::string ValuesClause(zEngines engine, bool dirtyOnly) const;
  std::string SetClause(zSourceTypes sourceType, zEngines engine, const std::string& sourceTable, bool dirtyOnly) const;
  std::string WhereClause(zSourceTypes sourceType, const PropertiesPtr& values, zEngines engine) const;
  std::string ReturnIdentityClause(zSourceTypes sourceType) const;

 private:
  struct Rare;   // what few have: parents, statistics, a kept action name
  struct Items;  // the members of a collection that is not a plain row

  std::string StateDetails() const override { return Details(); }
  const PropertyPtr& MemberAt(std::int32_t position) const;
  void FollowDefinitions() const;
  std::int32_t PositionOf(const Variant& index) const;
  PropertyPtr FindByNames(const PropertyKey& key) const;
  PropertyPtr FindByParameter(const velmoria::Property& parameter, bool& missed) const;
  PropertyPtr Search(const PropertyKey& key, bool& missed);
  PropertyPtr FindOrRaise(const PropertyKey& key);
  Items& OwnItems() const;
  void FillItems() const;
  PropertiesDataPtr DefinitionOfStyle() const;
  void Insert(const PropertyPtr& item, const Position& position, const char* routine);
  PropertyPtr MakeMember(const PropertyFields& fields, const Position& position);
  void DropHalfMade(const PropertyPtr& member, const std::string& key);
  void RemoveMember(const PropertyPtr& item);
  const Parents& HeldParents() const;
  Rare& MakeRare() const;
  void UpdateRow();
  void UpdateByIdentifier();
  void FlagPendingDelete();

  zPropertyStyles style_ = psNone;
  std::int32_t row_ = -1;
  RecordsetPtr recordset_;
  mutable PropertiesDataPtr data_;
  mutable std::vector<PropertyPtr> members_;  // of a plain row, by position; made, or bound, when asked for
  mutable std::unique_ptr<Items> items_;
  mutable std::unique_ptr<Rare> rare_;
  IdentifierPtr identifier_;
  std::string name_;
  zEngines engine_ = engUnknown;
  mutable std::uint32_t generation_ = 0;  // of data_ when members_ was laid out
  mutable std::int32_t lastFound_ = 0;    // in a plain row; a name is compared with the next one first
  bool locked_ = false;
  bool noAdd_ = false;
  bool noRemove_ = false;
};

/// Walks the members in order, making those of a row on the way.
class VELMORIA_API Properties::Iterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using difference_type = std::ptrdiff_t;
  using value_type = PropertyPtr;

  Iterator() = default;
  Iterator(const Properties* owner, std::int32_t position) : owner_(owner), position_(position) {}
  const PropertyPtr& operator*() const;
  Iterator& operator++() { return ++position_, *this; }
  Iterator operator++(int) { return Iterator(owner_, position_++); }
  bool operator==(const Iterator&) const = default;

 private:
  const Properties* owner_ = nullptr;
  std::int32_t position_ = 0;
};

}  // namespace velmoria
