#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "velmoria/core/enumerations.h"
#include "velmoria/core/lockable.h"
#include "velmoria/core/persistent_members.h"
#include "velmoria/core/position.h"
#include "velmoria/fwd.h"
#include "velmoria/properties/property_key.h"
#include "velmoria/runtime/event.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/pooled.h"

namespace velmoria {

/// What PropertyContext.LoadProperties asks for. An empty Name is that of the Action.
struct LoadPropertiesArguments {
  std::string ActionName{};
  PropertiesPtr Parameters{};  // none: the object's Identifier finds the row
  bool AsyncFlag = false;      // accepted, and without effect: one row is fetched at once
  std::string Name{};
};

struct LoadNewPropertiesArguments {
  std::string ActionName{};
  bool AsyncFlag = false;  // as above
  std::string Name{};
};

/// The Properties collections that together are one business object: the first comes from the row that made it, others
/// are loaded through other Actions on demand. A transient one, Framework.CreatePropertyContext, only holds what is
/// added to it and raises 15166 where it would need a broker.
class VELMORIA_API PropertyContext final : public Object,
                                           public Lockable,
                                           public Pooled,
                                           public PersistentMembers<Properties> {
 public:
  PropertyContext();
  ~PropertyContext() override;

  std::string_view ReportedType() const noexcept override;

  CancelEvent<PropertyContext, Properties&> BeforeAdd;
  Event<PropertyContext, Properties&> AfterAdd;
  CancelEvent<PropertyContext, Properties&> BeforeRemove;
  Event<PropertyContext, Properties&> AfterRemove;
  /// A listener may supply what was not found; then no error follows.
  Event<PropertyContext, const Variant&, PropertiesPtr&> ItemNotFound;
  Event<PropertyContext, const PropertyKey&, PropertyPtr&> PropertyNotFound;

  /// A held collection by 1-based position or name; raises 15071.
  PropertiesPtr Item(const Variant& index);
  std::int32_t Count() const;
  /// The members of all collections together.
  std::int32_t PropertyCount() const;
  KeyedList<PropertiesPtr>::Iterator begin() const { return items_.begin(); }
  KeyedList<PropertiesPtr>::Iterator end() const { return items_.end(); }

  /// A name is looked up in each collection in order; a number counts, from 1, over all collections as one list.
  /// Raises 15072.
  PropertyPtr FindProperty(const Variant& index);
  PropertyPtr FindProperty(const PropertyKey& key);

  /// Raises 15082 when adding is not supported, 15013 when both positions are given.
  void Add(PropertiesPtr item, const Position& position = {});
  void SetupItem(PropertiesPtr item, const Position& position = {});
  /// Raises 15083 when removing is not supported, 15071 for an unknown index, 15141 when a step fails.
  void Remove(const Variant& index);

  /// The Properties that an Action finds for this object, not added here; Parameters go before the Identifier. Raises
  /// 15166 on a transient context, 15089 when the Action builds no Properties, 15115 for no row and 15077 for several.
  PropertiesPtr GetProperties(const std::string& actionName, PropertiesPtr parameters = {},
                              const std::string& name = {});
  /// The Properties of a new row, which its Update inserts, not added here. Raises 15166, 15089, and 15090 when the
  /// Action does not insert.
  PropertiesPtr GetNewProperties(const std::string& actionName, const std::string& name = {});
  /// The same two, and the result joins this context, without events and whatever SupportsAdd says; a collection that
  /// is held under Name or ActionName is returned as it is. Raise 15118 when loading is not supported, 15013 when both
  /// positions are given.
  PropertiesPtr LoadProperties(const LoadPropertiesArguments& arguments, const Position& position = {});
  PropertiesPtr LoadNewProperties(const LoadNewPropertiesArguments& arguments, const Position& position = {});
  /// The Action and Parameters of the context's broker; 15166 on a transient context.
  std::string ActionName();
  void SetActionName(const std::string& value);
  PropertiesPtr Parameters();
  void SetParameters(PropertiesPtr value);

  /// Of the first collection; none on a transient context.
  IdentifierPtr Identifier() const;
  /// The key under a format, none meaning the default one; 15095 with the key when the format has no string keys.
  std::string Key(KeyFormatPtr keyFormat = {});

  /// The same on each collection that has something to write or may be deleted, in order; see PersistentMembers.
  void Update();
  void Delete();
  /// Of every collection.
  void Undo();
  bool Dirty() const;
  bool DirtyValues() const;
  /// All: every collection is modifiable, each as a whole. Not all: at least one is. Without any it answers `all`.
  bool Modifiable(bool all = true) const;
  // Those of all collections together.
  zEditFlags EditFlags() const;
  std::string EditFlagsDisplay() const;
  zStateFlags StateFlags() const;
  std::string StateFlagsDisplay() const;
  std::string Details() const;

  bool Locked() const { return locked_; }
  void SetLocked(bool value) { locked_ = value; }
  /// The three setters raise 15002 when locked.
  bool SupportsAdd() const { return !noAdd_; }
  void SetSupportsAdd(bool value);
  bool SupportsRemove() const { return !noRemove_; }
  void SetSupportsRemove(bool value);
  bool SupportsLoad() const { return !noLoad_; }
  void SetSupportsLoad(bool value);

  // Inside the library.
  /// A transient context. Raises 15002 when locked.
  void Setup(bool locked, bool supportsAdd, bool supportsRemove);
  /// The context of an object, from the collection that made it.
  void SetupWith(const PropertiesPtr& properties);
  /// The first collection's member of a name, which nothing goes before; null where there is none.
  const PropertyPtr* FindHeld(const Variant& name) const;
  /// As Item and FindProperty, their events included, but none instead of an error.
  PropertiesPtr FindOrAsk(const Variant& index);
  PropertyPtr FindOrAsk(const PropertyKey& key);

 protected:
  std::string StateDetails() const override;

 private:
  PropertyPtr FindByNumber(const Variant& index) const;
  PropertyPtr FindByName(const PropertyKey& key) const;
  std::string PropertiesKey(velmoria::KeyFormat& format);
  void Insert(PropertiesPtr item, const Position& position, std::string_view routine);
  /// What is held already; none when it is to be loaded.
  PropertiesPtr FindLoaded(const std::string& actionName, const std::string& name, std::string_view routine);
  BusinessContext& Broker(std::string_view routine);
  const velmoria::Identifier& Identity() const;

  KeyedList<PropertiesPtr> items_;
  IdentifierPtr identifier_;
  BusinessContextPtr businessContext_;  // made on first need
  bool transient_ = true;
  bool locked_ = false;
  bool noAdd_ = false;
  bool noRemove_ = false;
  bool noLoad_ = false;
};

}  // namespace velmoria
