#include "velmoria/brokering/business_objects.h"

#include <algorithm>

#include "velmoria/brokering/business_objects_impl.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/brokering/model.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/asking_state_impl.h"
#include "velmoria/core/display.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/properties/properties_data.h"

namespace velmoria {

BusinessObjects::BusinessObjects() : rows_(std::make_unique<RowObjects>()) {}
BusinessObjects::~BusinessObjects() = default;

std::string_view BusinessObjects::ReportedType() const noexcept { return "BusinessObjects"; }
std::string BusinessObjects::StateDetails() const { return const_cast<BusinessObjects*>(this)->Details(); }

void BusinessObjects::SetupTransient(std::string name, KeyFormatPtr keyFormat, bool supportsAdd, bool locked,
                                     StatisticsPtr statistics, bool supportsRemove) try {
  transient_ = true;
  collectionType_ = cltInitialized;
  name_ = std::move(name);
  noAdd_ = !supportsAdd;
  noRemove_ = !supportsRemove;
  keyFormat_ = keyFormat ? std::move(keyFormat) : Present(Apartment().DefaultKeyFormat)->Copy(false);
  statistics_ = statistics ? std::move(statistics) : Make<velmoria::Statistics>();
  locked_ = locked;
} catch (...) { Failed("SetupTransient"); }

void BusinessObjects::SetupBound(BusinessObjectsBinding binding) try {
  transient_ = false;
  noAdd_ = true;
  noRemove_ = true;
  name_ = std::move(binding.Name);
  objectType_ = binding.ObjectType;
  parentIdentifier_ = std::move(binding.ParentIdentifier);
  recordset_ = std::move(binding.Recordset);
  databaseAgent_ = recordset_ ? recordset_->DatabaseAgent() : binding.DatabaseAgent;
  if (!databaseAgent_) Fail(RuntimeFailure::ObjectNotSet);
  const ActionPtr action = databaseAgent_->Action();
  collectionType_ = binding.CollectionType != cltDefault ? binding.CollectionType : action->CollectionType();
  keyFormat_ = binding.KeyFormat ? std::move(binding.KeyFormat) : action->KeyFormat()->Copy(true);
  locked_ = true;
  if (RecordsetReady()) statistics_ = recordset_->Statistics();
  if (collectionType_ == cltInitialized) BuildAll();
} catch (...) { Failed("SetupBound"); }

std::string BusinessObjects::Name() { return name_; }

void BusinessObjects::SetName(std::string value) try {
  if (locked_) Raise(errVelmoria_Locked, "IBusinessObjects_Name (Let)");
  name_ = std::move(value);
} catch (...) { Failed("IBusinessObjects_Name (Let)"); }

std::int32_t BusinessObjects::Count() try {
  if (transient_) return static_cast<std::int32_t>(members_.Count());
  // A report waits for no result and reads none to its end.
  if (IsAskingState() && (!recordset_ || recordset_->VirtualFirstNumber() != -1)) return -1;
  auto& rows = Awaited();
  return rows.VirtualFirstNumber() != -1 ? rows.VirtualCount() : rows.Count();
} catch (...) { Failed("IBusinessObjects_Count (Get)"); }

bool BusinessObjects::HasItems() const noexcept { return !members_.IsEmpty() || rows_->Count() != 0; }

bool BusinessObjects::KeepsObjects() const noexcept {
  return collectionType_ == cltOptimized || collectionType_ == cltInitialized;
}

std::vector<IBusinessObjectPtr> BusinessObjects::HeldItems() const {
  return transient_ ? std::vector<IBusinessObjectPtr>(members_.begin(), members_.end()) : rows_->InOrder();
}

void BusinessObjects::RefuseDispatcher(std::string_view routine) const {
  if (collectionType_ != cltDispatcher) return;
  Raise(errNotSupported_CollectionType, routine, {CollectionTypeName(collectionType_)});
}

std::vector<IBusinessObjectPtr> BusinessObjects::NewEnum() try {
  if (!transient_) {
    RefuseDispatcher("IBusinessObjects_NewEnum (Get)");
    BuildAll();
  }
  return HeldItems();
} catch (...) { Failed("IBusinessObjects_NewEnum (Get)"); }

void BusinessObjects::Update() try {
  RefuseDispatcher("IBusinessObjects_Update");
  UpdateEach(HeldItems());
} catch (...) { Failed("IBusinessObjects_Update"); }

void BusinessObjects::Delete() try {
  RefuseDispatcher("IBusinessObjects_Delete");
  std::int32_t position = 0;
  // The walk goes through Item, so it builds a cltOptimized collection fully; any failure of Item ends it.
  DeleteEach([&] { return DeletionCandidate(++position); });
} catch (...) { Failed("IBusinessObjects_Delete"); }

IBusinessObjectPtr BusinessObjects::DeletionCandidate(std::int32_t position) {
  Suspension quiet{"BusinessObjects.IBusinessObjects_Delete"};
  try {
    if (transient_) return members_.Get(position);
    return FindAt(position - 1);
  } catch (const Error&) { return {}; }
}

void BusinessObjects::Undo() try {
  RefuseDispatcher("IBusinessObjects_Undo");
  for (const auto& member : HeldItems()) member->Undo();
} catch (...) { Failed("IBusinessObjects_Undo"); }

bool BusinessObjects::Dirty() try {
  RefuseDispatcher("IBusinessObjects_Dirty (Get)");
  const auto held = HeldItems();
  return std::any_of(held.begin(), held.end(), [](const auto& member) { return member->Dirty(); });
} catch (...) { Failed("IBusinessObjects_Dirty (Get)"); }

bool BusinessObjects::Modifiable(bool all) try {
  if (!HasItems()) return transient_ ? all : Awaited().Columns()->Modifiable(all);
  const auto held = HeldItems();
  const auto modifiable = [](const auto& member) { return member->Modifiable(); };
  return all ? std::all_of(held.begin(), held.end(), modifiable) : std::any_of(held.begin(), held.end(), modifiable);
} catch (...) { Failed("IBusinessObjects_Modifiable (Get)"); }

zEditFlags BusinessObjects::EditFlags() try {
  if (!transient_) return databaseAgent_->Action()->EditFlags();
  zEditFlags flags = efNone;
  for (const auto& member : members_) flags = flags | member->EditFlags();
  return flags;
} catch (...) { Failed("IBusinessObjects_EditFlags (Get)"); }

zStateFlags BusinessObjects::StateFlags() try {
  if (!transient_ && (!HasItems() || collectionType_ == cltDispatcher)) return Awaited().StateFlags(-1);
  zStateFlags flags{};
  for (const auto& member : HeldItems()) flags = flags | member->StateFlags();
  return flags;
} catch (...) { Failed("IBusinessObjects_StateFlags (Get)"); }

/// Never waits, for reports of failures ask it: a count that is not known yet reads -1.
std::string BusinessObjects::Details() {
  if (transient_) return "BusinessObjects Count " + NumberText(Count()) + "  Name: '" + name_ + "'";
  const std::int32_t count = recordset_ ? Count() : -1;
  const std::string rows = databaseAgent_ ? "\r\n" + databaseAgent_->Details() : std::string();
  return "Business Object Count " + NumberText(count) + rows;
}

zCollectionTypes BusinessObjects::CollectionType() { return collectionType_; }

void BusinessObjects::SetCollectionType(zCollectionTypes value) try {
  if (transient_ || (HasItems() && rows_->HasKeys())) {
    Raise(errVelmoria_Locked, "IBusinessObjects_CollectionType (Let)", {},
          "CollectionType must be set before objects are retrieved from the collection");
  }
  collectionType_ = value;
  if (collectionType_ == cltInitialized) BuildAll();
} catch (...) { Failed("IBusinessObjects_CollectionType (Let)"); }

zObjectTypes BusinessObjects::ObjectType() { return objectType_; }

KeyFormatPtr BusinessObjects::KeyFormat() {
  if (HasItems()) keyFormat_->SetLocked(true);
  return keyFormat_;
}

void BusinessObjects::SetKeyFormat(KeyFormatPtr value) try {
  if (HasItems() || locked_) Raise(errVelmoria_Locked, "IBusinessObjects_KeyFormat (Set)");
  if (!value) Fail(RuntimeFailure::ObjectNotSet);
  keyFormat_ = std::move(value);
} catch (...) { Failed("IBusinessObjects_KeyFormat (Set)"); }

StatisticsPtr BusinessObjects::Statistics() try {
  if (!statistics_) statistics_ = Awaited().Statistics();
  return statistics_;
} catch (...) { Failed("IBusinessObjects_Statistics (Get)"); }

bool BusinessObjects::Locked() { return locked_; }
bool BusinessObjects::SupportsAdd() { return !noAdd_; }
bool BusinessObjects::SupportsRemove() { return !noRemove_; }
bool BusinessObjects::DetailedSearches() const { return detailedSearches_; }
void BusinessObjects::SetDetailedSearches(bool value) { detailedSearches_ = value; }

void BusinessObjects::SetLocked(bool value) try {
  if (!transient_) Raise(errVelmoria_Locked, "IBusinessObjects_Locked (Let)");
  locked_ = value;
} catch (...) { Failed("IBusinessObjects_Locked (Let)"); }

void BusinessObjects::SetSupportsAdd(bool value) {
  LetUnlocked(locked_ || !transient_, noAdd_, !value, "IBusinessObjects_SupportsAdd (Let)");
}

void BusinessObjects::SetSupportsRemove(bool value) {
  LetUnlocked(locked_ || !transient_, noRemove_, !value, "IBusinessObjects_SupportsRemove (Let)");
}

void BusinessObjects::Setup(BusinessObjectsPtr) try {
  Raise(errVelmoria_Locked, "IBusinessObjects_Setup");
} catch (...) { Failed("IBusinessObjects_Setup"); }

}  // namespace velmoria
