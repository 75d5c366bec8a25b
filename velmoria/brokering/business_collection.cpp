#include "velmoria/brokering/business_collection.h"

#include "velmoria/brokering/business_objects.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/statistics.h"

namespace velmoria {

BusinessCollection::BusinessCollection() = default;
BusinessCollection::~BusinessCollection() = default;

std::string_view BusinessCollection::ReportedType() const noexcept { return "BusinessCollection"; }

BusinessObjects& BusinessCollection::Held() const { return *Present(businessObjects_); }

std::string BusinessCollection::Name() { return Held().Name(); }
void BusinessCollection::SetName(std::string value) { Held().SetName(std::move(value)); }
std::int32_t BusinessCollection::Count() { return Held().Count(); }
IBusinessObjectPtr BusinessCollection::Item(const Variant& index) { return Held().Item(index); }
std::vector<IBusinessObjectPtr> BusinessCollection::NewEnum() { return Held().NewEnum(); }
void BusinessCollection::Add(IBusinessObjectPtr item, const Position& position) {
  Held().Add(std::move(item), position);
}
void BusinessCollection::Remove(const Variant& index) { Held().Remove(index); }
IBusinessObjectPtr BusinessCollection::SetupItem() { return Held().SetupItem(); }
void BusinessCollection::Update() { Held().Update(); }
void BusinessCollection::Delete() { Held().Delete(); }
void BusinessCollection::Undo() { Held().Undo(); }
bool BusinessCollection::Dirty() { return Held().Dirty(); }
bool BusinessCollection::Modifiable(bool all) { return Held().Modifiable(all); }
zEditFlags BusinessCollection::EditFlags() { return Held().EditFlags(); }
zStateFlags BusinessCollection::StateFlags() { return Held().StateFlags(); }
std::string BusinessCollection::Details() { return Held().Details(); }
zCollectionTypes BusinessCollection::CollectionType() { return Held().CollectionType(); }
void BusinessCollection::SetCollectionType(zCollectionTypes value) { Held().SetCollectionType(value); }
zObjectTypes BusinessCollection::ObjectType() { return Held().ObjectType(); }
KeyFormatPtr BusinessCollection::KeyFormat() { return Held().KeyFormat(); }
void BusinessCollection::SetKeyFormat(KeyFormatPtr value) { Held().SetKeyFormat(std::move(value)); }
StatisticsPtr BusinessCollection::Statistics() { return Held().Statistics(); }
bool BusinessCollection::Locked() { return Held().Locked(); }
void BusinessCollection::SetLocked(bool value) { Held().SetLocked(value); }
bool BusinessCollection::SupportsAdd() { return Held().SupportsAdd(); }
void BusinessCollection::SetSupportsAdd(bool value) { Held().SetSupportsAdd(value); }
bool BusinessCollection::SupportsRemove() { return Held().SupportsRemove(); }
void BusinessCollection::SetSupportsRemove(bool value) { Held().SetSupportsRemove(value); }
void BusinessCollection::Setup(BusinessObjectsPtr businessObjects) { businessObjects_ = std::move(businessObjects); }
BusinessObjectsPtr BusinessCollection::GetBusinessObjects() const { return businessObjects_; }

}  // namespace velmoria
