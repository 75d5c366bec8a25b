#include "velmoria/brokering/business_context_impl.h"
#include "velmoria/brokering/business_objects.h"
#include "velmoria/brokering/business_objects_impl.h"
#include "velmoria/brokering/host_objects_impl.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/display.h"
#include "velmoria/core/quietly_impl.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/relationship.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property_context.h"

namespace velmoria {

void BusinessContext::RequireUsage(zUsageFlags flag, zErrors number, std::string_view routine) const {
  if (!action_) Fail(RuntimeFailure::ObjectNotSet);
  const zUsageFlags usage = action_->UsageFlags();
  if (!has(usage, flag)) Raise(number, routine, {action_->Name(), UsageFlagsDisplay(usage)});
}

DatabaseAgentPtr BusinessContext::OpenAgent() {
  const PropertiesPtr parameters = Parameters();
  auto agent = Make<DatabaseAgent>();
  // A locked Action and its Parameters outlive a class that could not be changed.
  agent->Initialize(Present(class_), action_, parameters, -1);
  return agent;
}

BusinessObjectsBinding Opened(const DatabaseAgentPtr& agent, bool asyncFlag) {
  if (asyncFlag) agent->LoadPersistentProperties();
  return {.Recordset = agent->GetRecordset(0, {}, false), .DatabaseAgent = agent};
}

// A Source of an unknown engine has no rows at all, not even none.
RecordsetPtr BusinessContext::OpenRecordset() { return Present(OpenAgent()->GetRecordset(0, {}, false)); }

zObjectTypes BusinessContext::ResolvedObjectType(zObjectTypes argument) const {
  if (argument != otDefault) return argument;
  return objectType_ != otDefault ? objectType_ : action_->ObjectType();
}

std::string BusinessContext::CollectionName(const std::string& argument) const {
  if (!argument.empty()) return argument;
  return relationship_ ? relationship_->Name() : action_->BusinessObjectsName();
}

IBusinessObjectPtr BusinessContext::GetBusinessObject(const GetBusinessObjectArguments& arguments) try {
  const bool nothingNamed = arguments.ClassName.empty() && arguments.ActionName.empty() &&
                            arguments.ServerName.empty() && !arguments.Identifier && arguments.KeyValue1.IsMissing();
  if (nothingNamed) {
    SelectDefaultAction();
  } else {
    SetupSelection({.Identifier = arguments.Identifier,
                    .ServerName = arguments.ServerName,
                    .ClassName = arguments.ClassName,
                    .ActionName = arguments.ActionName,
                    .Parameters = arguments.Parameters,
                    .KeyValues = {arguments.KeyValue1, arguments.KeyValue2, arguments.KeyValue3, arguments.KeyValue4}});
  }
  RequireUsage(ufObjects, errNotSupported_BusinessObjects, "GetBusinessObject");
  const RecordsetPtr recordset = OpenRecordset();
  auto found = Make<BusinessObjects>();
  found->SetupBound({.Recordset = recordset,
                     .ParentIdentifier = ParentIdentifier(),
                     .ObjectType = ResolvedObjectType(arguments.ObjectType),
                     .CollectionType = cltOptimized});
  const std::int32_t count = found->Count();
  if (count == 0) RaiseWithState(parameters_->Details(), errBusinessObject_Get, "GetBusinessObject");
  if (count != 1) Raise(errMismatch_Count, "GetBusinessObject", {"1", NumberText(count)});
  return found->Item(1);
} catch (...) { Failed("GetBusinessObject"); }

IBusinessObjectsPtr BusinessContext::GetBusinessObjects(const GetBusinessObjectsArguments& arguments) try {
  const bool nothingNamed = arguments.ClassName.empty() && arguments.ActionName.empty() &&
                            arguments.RelationshipName.empty() && arguments.ServerName.empty() && !arguments.Parameters;
  if (nothingNamed) {
    SelectDefaultAction();
  } else {
    SetupSelection({.ServerName = arguments.ServerName,
                    .ClassName = arguments.ClassName,
                    .ActionName = arguments.ActionName,
                    .RelationshipName = arguments.RelationshipName,
                    .Parameters = arguments.Parameters});
  }
  RequireUsage(ufObjects, errNotSupported_BusinessObjects, "GetBusinessObjects");
  // Objects made on the way are the host's: they may ask this context for something else and leave that selected.
  const ClassPtr owner = class_;
  const zObjectTypes objectType = ResolvedObjectType(arguments.ObjectType);
  BusinessObjectsBinding binding = Opened(OpenAgent(), arguments.AsyncFlag);
  binding.Name = CollectionName(arguments.Name);
  binding.ParentIdentifier = ParentIdentifier();
  binding.ObjectType = objectType;
  binding.CollectionType = arguments.CollectionType != cltDefault ? arguments.CollectionType : collectionType_;
  binding.KeyFormat = arguments.KeyFormat || !keyFormat_ ? arguments.KeyFormat : keyFormat_->Copy(true);
  auto found = Make<BusinessObjects>();
  found->SetupBound(std::move(binding));
  const std::string component = objectType == otBusiness ? owner->ActiveXCollectionProgId() : std::string{};
  return component.empty() ? IBusinessObjectsPtr(found) : WrapInHostCollection(found, component);
} catch (...) { Failed("GetBusinessObjects"); }

IBusinessObjectsPtr BusinessContext::WrapInHostCollection(BusinessObjectsPtr businessObjects,
                                                          const std::string& component) const {
  const auto host = CreateHostObject<Object>(component, "BusinessContext.GetBusinessObjects");
  if (!host) Raise(errBusinessCollection_Create, "GetBusinessObjects", {component});
  try {
    auto collection = FaceOf<IBusinessObjects>(host);
    collection->Setup(std::move(businessObjects));
    return collection;
  } catch (...) { Failed("GetBusinessObjects", errBusinessCollection_Setup, {component}); }
}

IBusinessObjectsPtr BusinessContext::FindHeld(const GetBusinessObjectsArguments& arguments) {
  const auto look = [this](const std::string& name) {
    if (name.empty()) return IBusinessObjectsPtr{};
    return Quietly("BusinessContext.LoadBusinessObjects", [&] { return FindOrAsk(name); });
  };
  IBusinessObjectsPtr held = look(arguments.Name);
  // The relationship is asked for in any case, and its collection goes first.
  if (IBusinessObjectsPtr related = look(arguments.RelationshipName)) held = related;
  return held ? held : look(arguments.ActionName);
}

IBusinessObjectsPtr BusinessContext::LoadBusinessObjects(const GetBusinessObjectsArguments& arguments,
                                                         const Position& position) try {
  if (noLoad_) Raise(errBusinessObjects_Load, "LoadBusinessObjects");
  if (IBusinessObjectsPtr held = FindHeld(arguments)) return held;
  GetBusinessObjectsArguments fresh = arguments;
  fresh.KeyFormat = keyFormat_;
  IBusinessObjectsPtr loaded = GetBusinessObjects(fresh);
  Add(loaded, position);
  return loaded;
} catch (...) { Failed("LoadBusinessObjects"); }

PropertiesPtr BusinessContext::GetProperties(const GetPropertiesArguments& arguments) try {
  // Parameters alone are no selection: like GetBusinessObject this then repeats what the context holds.
  if (arguments.ActionName.empty() && !arguments.Identifier) {
    SelectDefaultAction();
  } else {
    SetupSelection(
        {.Identifier = arguments.Identifier, .ActionName = arguments.ActionName, .Parameters = arguments.Parameters});
  }
  RequireUsage(ufProperties, errNotSupported_Properties, "GetProperties");
  const RecordsetPtr recordset = OpenRecordset();
  const std::int32_t count = recordset->Count();
  if (count == 0) RaiseWithState(parameters_->Details(), errPersistence_Get, "GetProperties");
  if (count != 1) Raise(errMismatch_Count, "GetProperties", {"1", NumberText(count)});
  return recordset->GetPersistentProperties(0, arguments.Name);
} catch (...) { Failed("GetProperties"); }

void BusinessContext::Execute(const ExecuteArguments& arguments) try {
  const bool nothingNamed = !relationship_ && arguments.ClassName.empty() && arguments.ActionName.empty() &&
                            arguments.ServerName.empty() && !arguments.Parameters;
  if (nothingNamed) {
    SelectDefaultAction();
  } else {
    SetupSelection({.Identifier = identifier_,
                    .ServerName = arguments.ServerName,
                    .ClassName = arguments.ClassName,
                    .ActionName = arguments.ActionName,
                    .RelationshipName = RelationshipName(),
                    .Parameters = arguments.Parameters});
  }
  RequireUsage(ufExecute, errNotSupported_Execute, "Execute");
  OpenAgent()->Execute();
} catch (...) { Failed("Execute"); }

}  // namespace velmoria
