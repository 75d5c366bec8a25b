#include "velmoria/brokering/business_objects.h"
#include "velmoria/brokering/business_objects_impl.h"
#include "velmoria/brokering/host_objects_impl.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/brokering/model.h"
#include "velmoria/core/display.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/now.h"
#include "velmoria/core/statistic.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/class.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property_context.h"

namespace velmoria {

/// An opening that failed is told to whoever waited for it. After that nothing is being opened any more, and the next
/// use asks for the first page anew.
bool BusinessObjects::RecordsetReady() {
  if (recordset_) return true;
  if (databaseAgent_->StillExecuting()) return false;
  recordset_ = databaseAgent_->Recordset();
  if (!recordset_) recordset_ = databaseAgent_->GetRecordset(0, {}, false);
  if (!recordset_) Fail(RuntimeFailure::ObjectNotSet);
  return true;
}

/// The result, awaited if need be: the thread sleeps between two looks, and there is no limit.
Recordset& BusinessObjects::Awaited() {
  constexpr std::int32_t kPause = 100;
  while (!RecordsetReady()) Apartment().Platform.Clock->Sleep(kPause);
  return *recordset_;
}

void BusinessObjects::BuildAll() {
  if (const auto messages = Apartment().Messages) messages->Clear();
  const std::int32_t count = Count();
  if (count == 0) return;
  const StatisticPtr statistic =
      Statistics()->SetupItem({.Name = "Build " + CollectionTypeName(collectionType_) + " Collection",
                               .SubjectLabel = "BusinessObject",
                               .StartTime = Now()});
  std::int32_t built = 0;
  // A count of -1 is one that the engine has not told yet: the walk ends at the first row that is not there.
  for (; count < 0 ? ReachesRow(built) : built < count; ++built) FindAt(built);
  statistic->SetEndTime(Now());
  statistic->SetSubjectCount(built);
}

bool BusinessObjects::HoldsRow(std::int64_t row) const {
  return row >= firstRow_ && row < firstRow_ + recordset_->Count();
}

/// Reads on until the page holds the row, or from the first page again when the row lies before the page held. A row
/// that no page holds is left to the caller, who meets 15112.
void BusinessObjects::MoveBuffer(std::int64_t row) {
  const std::int32_t buffer = databaseAgent_->ObjectBuffer();
  if (buffer <= 0 || recordset_->VirtualFirstNumber() == -1 || row < 0) return;
  if (row < firstRow_) {
    recordset_ = databaseAgent_->GetRecordset(-buffer, {}, false);
    firstRow_ = 0;
  }
  while (row >= firstRow_ + recordset_->Count() && !recordset_->NextBookmark().IsEmpty()) {
    const RecordsetPtr next = databaseAgent_->GetRecordset(buffer, recordset_, false);
    if (!next || next->Count() == 0) return;
    firstRow_ += recordset_->Count();
    recordset_ = next;
  }
}

bool BusinessObjects::ReachesRow(std::int64_t row) {
  MoveBuffer(row);
  return HoldsRow(row);
}

/// An object in memory is not read again when its page has been left behind; ahead the page follows it, because asking
/// for the last object is how a caller gets to the end of the result.
IBusinessObjectPtr BusinessObjects::FindAt(std::int64_t row) {
  Awaited();
  const IBusinessObjectPtr* held = KeepsObjects() ? rows_->Find(row) : nullptr;
  if (!held || row > firstRow_) MoveBuffer(row);
  return held ? *held : BuildAt(row);
}

IBusinessObjectPtr BusinessObjects::BuildAt(std::int64_t row) {
  const auto pageRow = static_cast<std::int32_t>(row < 0 ? row : row - firstRow_);
  const ModelPtr model = BuildModel(recordset_->GetPersistentProperties(pageRow, {}));
  IBusinessObjectPtr object = BuildObject(model, "IBusinessObjects_Item");
  Keep(row, model, object);
  return object;
}

ModelPtr BusinessObjects::BuildModel(const PropertiesPtr& properties) {
  auto context = Make<PropertyContext>();
  context->SetupWith(properties);
  auto model = Make<Model>();
  model->Setup(std::move(context), parentIdentifier_);
  return model;
}

IBusinessObjectPtr BusinessObjects::BuildObject(const ModelPtr& model, std::string_view routine) {
  if (objectType_ == otModel) return model;
  const std::string component = databaseAgent_->Class()->ActiveXProgId();
  auto object = component.empty()
                    ? IBusinessObjectPtr{}
                    : CreateHostObject<IBusinessObject>(component, "BusinessObjects.IBusinessObjects_Item");
  if (!object) {
    // Without an object type of its own the collection serves the Model itself.
    if (objectType_ != otBusiness) return model;
    Raise(errBusinessObject_Create, routine, {component, model->Key()});
  }
  try {
    object->SetModel(model);
  } catch (...) { Failed(routine, errBusinessObject_Initialize, {model->Key()}); }
  return object;
}

/// A dispatcher keeps only the key map, but a Model goes to the objects in memory under any type, and before its key is
/// asked for; the first one there stays, and the fresh one is what the caller gets.
void BusinessObjects::Keep(std::int64_t row, const ModelPtr& model, const IBusinessObjectPtr& object) {
  if (objectType_ == otModel) rows_->Add(row, object);
  // A collection type that is none of the three keeps no other object, nor its key.
  if (objectType_ != otModel && collectionType_ != cltDispatcher && !KeepsObjects()) return;
  if (!keyFormat_->EmptyKey()) rows_->MapKey(model->Key(keyFormat_), row);
  if (KeepsObjects()) rows_->Add(row, object);
}

IBusinessObjectPtr BusinessObjects::FindByKey(const std::string& key) {
  if (const std::int64_t row = rows_->RowOf(key); row >= 0) return FindAt(row);
  Awaited();
  IBusinessObjectPtr found;
  {
    Suspension quiet{"BusinessObjects.FindByKey"};
    found = ScanForKey(key);
    if (!found) found = SearchHeld(key);
  }
  if (!found) Raise(errItem_BusinessObject, "FindByKey", {Quoted(key)});
  return found;
}

IBusinessObjectPtr BusinessObjects::ScanForKey(const std::string& key) try {
  for (;; ++scanPosition_) {
    if (!ReachesRow(scanPosition_) && !rows_->Find(scanPosition_)) return {};
    IBusinessObjectPtr object = FindAt(scanPosition_);
    if (HasKey(*object, key)) return object;
  }
} catch (const Error&) {
  return {};  // the first object that cannot be built ends the scan
}

/// An object whose key cannot be told, because its row has been deleted, answers to none.
bool BusinessObjects::HasKey(IBusinessObject& object, const std::string& key) const try {
  return EqualFolded(object.Key(keyFormat_), key);
} catch (...) {
  return false;  // whatever a host's class fails with
}

IBusinessObjectPtr BusinessObjects::SearchHeld(const std::string& key) {
  for (const auto& object : rows_->NewObjects)
    if (HasKey(*object, key)) return object;
  for (const auto& object : rows_->InOrder())
    if (HasKey(*object, key)) return object;
  return {};
}

IBusinessObjectPtr BusinessObjects::SetupItem() try {
  if (transient_) Raise(errNotSupported_SetupBusinessObject, "IBusinessObjects_SetupItem");
  if (BeforeSetupItem.Raise()) return {};
  IBusinessObjectPtr object = BuildNewRow();
  AfterSetupItem.Raise();
  return object;
} catch (...) { Failed("IBusinessObjects_SetupItem"); }

IBusinessObjectPtr BusinessObjects::BuildNewRow() {
  const PropertiesPtr properties = Awaited().CreatePersistentProperties({});
  // A last page that was read again does not know the objects made on it before.
  const std::int64_t row = rows_->FreeFrom(firstRow_ + properties->Row());
  const ModelPtr model = BuildModel(properties);
  // Unlike Item, only a collection of host objects makes one here; any other object type is served by the Model.
  IBusinessObjectPtr object =
      objectType_ == otBusiness ? BuildObject(model, "IBusinessObjects_SetupItem") : IBusinessObjectPtr(model);
  rows_->Add(row, object);
  rows_->NewObjects.push_back(object);
  return object;
}

}  // namespace velmoria
