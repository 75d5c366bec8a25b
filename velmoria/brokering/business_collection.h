#pragma once

#include "velmoria/brokering/ibusiness_objects.h"

namespace velmoria {

/// The convenience base of a host's collection class: it holds the BusinessObjects and forwards every operation to it,
/// so that a class adds only what is its own. Until Setup has given the BusinessObjects every operation raises 91,
/// object not set.
///
///   class Orders : public BusinessCollection {
///    public:
///     Ref<Order> At(const Variant& index) { return dynamic_pointer_cast<Order>(Item(index)); }
///   };
///   Components::Register<Orders>("Sales.Orders");
class VELMORIA_API BusinessCollection : public IBusinessObjects {
 public:
  BusinessCollection();
  ~BusinessCollection() override;

  std::string_view ReportedType() const noexcept override;

  std::string Name() override;
  void SetName(std::string value) override;
  std::int32_t Count() override;
  IBusinessObjectPtr Item(const Variant& index) override;
  std::vector<IBusinessObjectPtr> NewEnum() override;
  void Add(IBusinessObjectPtr item, const Position& position = {}) override;
  void Remove(const Variant& index) override;
  IBusinessObjectPtr SetupItem() override;
  void Update() override;
  void Delete() override;
  void Undo() override;
  bool Dirty() override;
  bool Modifiable(bool all = true) override;
  zEditFlags EditFlags() override;
  zStateFlags StateFlags() override;
  std::string Details() override;
  zCollectionTypes CollectionType() override;
  void SetCollectionType(zCollectionTypes value) override;
  zObjectTypes ObjectType() override;
  KeyFormatPtr KeyFormat() override;
  void SetKeyFormat(KeyFormatPtr value) override;
  StatisticsPtr Statistics() override;
  bool Locked() override;
  void SetLocked(bool value) override;
  bool SupportsAdd() override;
  void SetSupportsAdd(bool value) override;
  bool SupportsRemove() override;
  void SetSupportsRemove(bool value) override;
  void Setup(BusinessObjectsPtr businessObjects) override;

  /// What Setup gave, with the events of the collection; none before.
  BusinessObjectsPtr GetBusinessObjects() const;

 private:
  BusinessObjects& Held() const;

  BusinessObjectsPtr businessObjects_;
};

}  // namespace velmoria
