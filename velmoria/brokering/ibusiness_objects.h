#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "velmoria/brokering/ibusiness_object.h"
#include "velmoria/core/enumerations.h"
#include "velmoria/core/position.h"
#include "velmoria/fwd.h"
#include "velmoria/runtime/object.h"
#include "velmoria/runtime/variant.h"

namespace velmoria {

/// What brokering hands out as a collection of business objects: a BusinessObjects, or a class of the host that stands
/// around one; such a class usually derives from BusinessCollection, which forwards every operation to it.
/// `for (const auto& order : orders)` visits every member in order, those that NewEnum gives.
class VELMORIA_API IBusinessObjects : public virtual Object {
 public:
  virtual std::string Name() = 0;
  virtual void SetName(std::string value) = 0;
  virtual std::int32_t Count() = 0;
  /// A member by 1-based position, by key or by Identifier.
  virtual IBusinessObjectPtr Item(const Variant& index) = 0;
  /// All members at the time of the call, in order.
  virtual std::vector<IBusinessObjectPtr> NewEnum() = 0;

  virtual void Add(IBusinessObjectPtr item, const Position& position = {}) = 0;
  virtual void Remove(const Variant& index) = 0;
  /// A new business object, which the next Update inserts; none when a listener cancels.
  virtual IBusinessObjectPtr SetupItem() = 0;

  virtual void Update() = 0;
  virtual void Delete() = 0;
  virtual void Undo() = 0;
  virtual bool Dirty() = 0;
  /// All True: every member is modifiable; All False: at least one is. An empty collection answers All itself.
  virtual bool Modifiable(bool all = true) = 0;
  virtual zEditFlags EditFlags() = 0;
  virtual zStateFlags StateFlags() = 0;
  virtual std::string Details() = 0;

  virtual zCollectionTypes CollectionType() = 0;
  virtual void SetCollectionType(zCollectionTypes value) = 0;
  virtual zObjectTypes ObjectType() = 0;
  virtual KeyFormatPtr KeyFormat() = 0;
  virtual void SetKeyFormat(KeyFormatPtr value) = 0;
  virtual StatisticsPtr Statistics() = 0;
  virtual bool Locked() = 0;
  virtual void SetLocked(bool value) = 0;
  virtual bool SupportsAdd() = 0;
  virtual void SetSupportsAdd(bool value) = 0;
  virtual bool SupportsRemove() = 0;
  virtual void SetSupportsRemove(bool value) = 0;

  /// The handshake: brokering gives a host collection the BusinessObjects that holds its members, once.
  virtual void Setup(BusinessObjectsPtr businessObjects) = 0;

  class Iterator {
   public:
    using difference_type = std::ptrdiff_t;
    using value_type = IBusinessObjectPtr;
    explicit Iterator(std::shared_ptr<const std::vector<IBusinessObjectPtr>> members) : members_(std::move(members)) {}
    const IBusinessObjectPtr& operator*() const { return (*members_)[at_]; }
    Iterator& operator++() { return ++at_, *this; }
    void operator++(int) { ++at_; }
    bool operator==(std::default_sentinel_t) const { return at_ == members_->size(); }

   private:
    std::shared_ptr<const std::vector<IBusinessObjectPtr>> members_;
    std::size_t at_ = 0;
  };
  Iterator begin() { return Iterator(std::make_shared<const std::vector<IBusinessObjectPtr>>(NewEnum())); }
  std::default_sentinel_t end() const noexcept { return {}; }
};

}  // namespace velmoria
