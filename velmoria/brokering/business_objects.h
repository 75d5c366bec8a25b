#pragma once

#include <vector>

#include "velmoria/brokering/ibusiness_objects.h"
#include "velmoria/core/lockable.h"
#include "velmoria/core/persistent_members.h"
#include "velmoria/runtime/event.h"
#include "velmoria/runtime/keyed_list.h"

namespace velmoria {

struct BusinessObjectsBinding;
class RowObjects;

/// The framework's own collection of business objects. Bound, it stands over a database result, and rows become objects
/// as CollectionType says: cltOptimized when one is asked for, cltInitialized all at once, cltDispatcher anew at each
/// request without keeping them. Transient, it is filled by hand and always cltInitialized.
/// A bound collection keeps its result, and with it the connection's rows, alive; its members keep their rows alive.
/// A result that is still being opened is awaited, without limit, by whatever needs its rows; the thread sleeps.
class VELMORIA_API BusinessObjects final : public IBusinessObjects,
                                           public Lockable,
                                           public PersistentMembers<IBusinessObject> {
 public:
  BusinessObjects();
  ~BusinessObjects() override;

  std::string_view ReportedType() const noexcept override;

  CancelEvent<BusinessObjects> BeforeSetupItem;
  Event<BusinessObjects> AfterSetupItem;
  CancelEvent<BusinessObjects, IBusinessObject&> BeforeAdd;
  Event<BusinessObjects> AfterAdd;
  CancelEvent<BusinessObjects, IBusinessObject&> BeforeRemove;
  Event<BusinessObjects> AfterRemove;
  /// Raised by a transient collection; a listener may supply the object, and then no error follows.
  Event<BusinessObjects, const Variant&, IBusinessObjectPtr&> ItemNotFound;

  std::string Name() override;
  /// Raises 15002 when locked.
  void SetName(std::string value) override;
  /// Transient: the members held. Bound: the rows of the whole result.
  std::int32_t Count() override;
  /// By 1-based position, key or Identifier. A key raises 15095 under a format without string keys and 15064 when no
  /// object has it. A position without a row raises 15112 when bound (6 beyond 32 bits), 15064 when transient. Building
  /// an object may raise 15023 or 15024 (host class), 15052 (a key column that the result lacks). Bound and of any
  /// other type: none.
  IBusinessObjectPtr Item(const Variant& index) override;
  /// Bound: builds every object first; raises 15098 for cltDispatcher.
  std::vector<IBusinessObjectPtr> NewEnum() override;

  /// Transient only, else 15082; 15006 when both positions are given.
  void Add(IBusinessObjectPtr item, const Position& position = {}) override;
  /// Transient only, else 15083. By the key under which the object was added, else 5; 15134 for an index that only a
  /// listener of ItemNotFound understands.
  void Remove(const Variant& index) override;
  /// Bound only, else 15094; 15027 unless the last page of the result has been reached.
  IBusinessObjectPtr SetupItem() override;

  /// The four persistence operations raise 15098 for cltDispatcher.
  void Update() override;
  void Delete() override;
  void Undo() override;
  bool Dirty() override;
  bool Modifiable(bool all = true) override;
  zEditFlags EditFlags() override;
  zStateFlags StateFlags() override;
  std::string Details() override;

  zCollectionTypes CollectionType() override;
  /// Raises 15002 when transient or when objects have been retrieved; cltInitialized builds all.
  void SetCollectionType(zCollectionTypes value) override;
  zObjectTypes ObjectType() override;
  /// Reading the format of a collection that holds objects locks it: it has been used.
  KeyFormatPtr KeyFormat() override;
  /// Raises 15002 when locked or when objects are held, 91 for none.
  void SetKeyFormat(KeyFormatPtr value) override;
  StatisticsPtr Statistics() override;
  bool Locked() override;
  /// Raises 15002 on a bound collection.
  void SetLocked(bool value) override;
  bool SupportsAdd() override;
  void SetSupportsAdd(bool value) override;
  bool SupportsRemove() override;
  void SetSupportsRemove(bool value) override;
  /// Stored and returned, consulted by nothing.
  bool DetailedSearches() const;
  void SetDetailedSearches(bool value);

  /// Always raises 15002: this is no host collection.
  void Setup(BusinessObjectsPtr businessObjects) override;

  // Inside the library.
  /// A hand-filled collection.
  void SetupTransient(std::string name, KeyFormatPtr keyFormat, bool supportsAdd, bool locked, StatisticsPtr statistics,
                      bool supportsRemove);
  /// A collection over a result; raises 91 without one.
  void SetupBound(BusinessObjectsBinding binding);

 protected:
  std::string StateDetails() const override;

 private:
  [[noreturn, gnu::cold]] void RaiseNotFound(const Variant& index, std::string_view routine);
  void RefuseDispatcher(std::string_view routine) const;
  IBusinessObjectPtr DeletionCandidate(std::int32_t position);
  bool HasItems() const noexcept;
  bool KeepsObjects() const noexcept;
  std::vector<IBusinessObjectPtr> HeldItems() const;
  std::string KeyOf(const Variant& index);

  IBusinessObjectPtr ItemTransient(const Variant& index);
  IBusinessObjectPtr FindTransient(const Variant& index);
  IBusinessObjectPtr FindTransientKey(const std::string& key);
  bool RecordsetReady();
  Recordset& Awaited();
  IBusinessObjectPtr ItemBound(const Variant& index);
  IBusinessObjectPtr ItemAt(std::int64_t row);
  IBusinessObjectPtr FindAt(std::int64_t row);
  IBusinessObjectPtr BuildAt(std::int64_t row);
  void MoveBuffer(std::int64_t row);
  bool HoldsRow(std::int64_t row) const;
  bool ReachesRow(std::int64_t row);
  bool HasKey(IBusinessObject& object, const std::string& key) const;
  IBusinessObjectPtr FindByKey(const std::string& key);
  IBusinessObjectPtr ScanForKey(const std::string& key);
  IBusinessObjectPtr SearchHeld(const std::string& key);
  void BuildAll();

  ModelPtr BuildModel(const PropertiesPtr& properties);
  IBusinessObjectPtr BuildObject(const ModelPtr& model, std::string_view routine);
  void Keep(std::int64_t row, const ModelPtr& model, const IBusinessObjectPtr& object);
  IBusinessObjectPtr BuildNewRow();

  std::string name_;
  KeyedList<IBusinessObjectPtr> members_;  // transient
  std::unique_ptr<RowObjects> rows_;       // bound: the objects by row, the key map, the new objects
  StatisticsPtr statistics_;
  KeyFormatPtr keyFormat_;
  DatabaseAgentPtr databaseAgent_;
  RecordsetPtr recordset_;  // none while it is awaited
  IdentifierPtr parentIdentifier_;
  std::int64_t firstRow_ = 0;      // of the page held, counted in the whole result
  std::int64_t scanPosition_ = 0;  // the last position that FindByKey examined
  zCollectionTypes collectionType_ = cltInitialized;
  zObjectTypes objectType_ = otModel;
  bool transient_ = true;
  bool noAdd_ = false;
  bool noRemove_ = false;
  bool locked_ = false;
  bool detailedSearches_ = false;
};

}  // namespace velmoria
