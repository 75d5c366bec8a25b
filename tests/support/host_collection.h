#pragma once

#include <utility>

#include "velmoria/velmoria.h"

namespace velmoria::test {

/// A host's own collection: it hands everything on to the BusinessObjects that Setup gives it.
class HostCollection : public IBusinessObjects {
 public:
  void Setup(BusinessObjectsPtr businessObjects) override { inner_ = std::move(businessObjects); }
  const BusinessObjectsPtr& Inner() const { return inner_; }

  std::string Name() override { return inner_->Name(); }
  void SetName(std::string value) override { inner_->SetName(std::move(value)); }
  std::int32_t Count() override { return inner_->Count(); }
  IBusinessObjectPtr Item(const Variant& index) override { return inner_->Item(index); }
  std::vector<IBusinessObjectPtr> NewEnum() override { return inner_->NewEnum(); }
  void Add(IBusinessObjectPtr item, const Position& position = {}) override { inner_->Add(std::move(item), position); }
  void Remove(const Variant& index) override { inner_->Remove(index); }
  IBusinessObjectPtr SetupItem() override { return inner_->SetupItem(); }
  void Update() override { inner_->Update(); }
  void Delete() override { inner_->Delete(); }
  void Undo() override { inner_->Undo(); }
  bool Dirty() override { return inner_->Dirty(); }
  bool Modifiable(bool all = true) override { return inner_->Modifiable(all); }
  zEditFlags EditFlags() override { return inner_->EditFlags(); }
  zStateFlags StateFlags() override { return inner_->StateFlags(); }
  std::string Details() override { return inner_->Details(); }
  zCollectionTypes CollectionType() override { return inner_->CollectionType(); }
  void SetCollectionType(zCollectionTypes value) override { inner_->SetCollectionType(value); }
  zObjectTypes ObjectType() override { return inner_->ObjectType(); }
  KeyFormatPtr KeyFormat() override { return inner_->KeyFormat(); }
  void SetKeyFormat(KeyFormatPtr value) override { inner_->SetKeyFormat(std::move(value)); }
  StatisticsPtr Statistics() override { return inner_->Statistics(); }
  bool Locked() override { return inner_->Locked(); }
  void SetLocked(bool value) override { inner_->SetLocked(value); }
  bool SupportsAdd() override { return inner_->SupportsAdd(); }
  void SetSupportsAdd(bool value) override { inner_->SetSupportsAdd(value); }
  bool SupportsRemove() override { return inner_->SupportsRemove(); }
  void SetSupportsRemove(bool value) override { inner_->SetSupportsRemove(value); }

 private:
  BusinessObjectsPtr inner_;
};

/// One that does not take part.
class RefusingCollection final : public HostCollection {
 public:
  void Setup(BusinessObjectsPtr) override { Fail(RuntimeFailure::InvalidArgument, "no thanks"); }
};

}  // namespace velmoria::test
