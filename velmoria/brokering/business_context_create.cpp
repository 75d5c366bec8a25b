#include "velmoria/brokering/business_context_impl.h"
#include "velmoria/brokering/host_objects_impl.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/brokering/model.h"
#include "velmoria/core/display.h"
#include "velmoria/core/errors_ignored_impl.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/actions.h"
#include "velmoria/design/class.h"
#include "velmoria/design/classes.h"
#include "velmoria/design/server.h"
#include "velmoria/design/servers.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_context.h"

namespace velmoria {

namespace {

// What the Action of that Server keeps, not the one selected: each is an object of its own.
PropertiesPtr KeptColumns(Server& server, const Class& owner, const Action& action) {
  PropertiesPtr kept;
  WithErrorsIgnored([&] {
    if (const auto classObject = server.Classes()->Find(owner.Name()))
      if (const auto found = classObject->Actions()->Find(action.Name())) kept = found->SchemaCache();
  });
  return kept && kept->Count() != 0 ? kept : PropertiesPtr{};
}

PropertiesPtr CleanCopy(Properties& columns, const std::string& name) {
  PropertiesPtr copy = columns.Copy(name);
  for (const auto& property : *copy) property->ClearDirty();
  return copy;
}

}  // namespace

void BusinessContext::RequireInsert(std::string_view routine) const {
  if (!action_) Fail(RuntimeFailure::ObjectNotSet);
  const zEditFlags flags = action_->EditFlags();
  if (!has(flags, efInsert)) Raise(errNotSupported_Insert, routine, {action_->Name(), EditFlagsDisplay(flags)});
}

IBusinessObjectPtr BusinessContext::CreateBusinessObject(const CreateBusinessObjectArguments& arguments) try {
  if (arguments.ClassName.empty() && arguments.ActionName.empty() && arguments.ServerName.empty()) {
    SelectDefaultAction();
  } else {
    SetupSelection({.ServerName = arguments.ServerName,
                    .ClassName = arguments.ClassName,
                    .ActionName = arguments.ActionName,
                    .NewFlag = true});
  }
  RequireInsert("CreateBusinessObject");
  const PropertiesPtr properties = CreateProperties();
  properties->SetIdentifier(class_->CreateIdentifier(properties));
  auto context = Make<PropertyContext>();
  context->SetupWith(properties);
  auto model = Make<Model>();
  model->Setup(std::move(context), {});
  // Unlike the operations that get, this one leaves the type that decided in the context.
  objectType_ = ResolvedObjectType(arguments.ObjectType);
  return objectType_ == otBusiness ? WrapInHostObject(model) : IBusinessObjectPtr(model);
} catch (...) { Failed("CreateBusinessObject"); }

PropertiesPtr BusinessContext::CreateProperties() {
  const ServerPtr server = Present(Apartment().Servers)->Item(serverName_);
  if (!server->UseMetaData()) return OpenRecordset()->CreatePersistentProperties({});
  const PropertiesPtr kept = KeptColumns(*server, SelectedClass(), *action_);
  const PropertiesPtr properties = kept ? CleanCopy(*kept, action_->Name()) : DescribeColumns();
  if (!kept) server->KeepSchema(class_->Name(), action_->Name(), properties);
  properties->SetStyle(psCached);
  properties->SetStateFlags(sfNew);
  return properties;
}

PropertiesPtr BusinessContext::DescribeColumns() {
  Parents parents;
  parents.Action = action_->Data();
  auto properties = Make<velmoria::Properties>();
  properties->Bind({.Style = psCached,
                    .PropertiesData = OpenAgent()->PropertiesData(),
                    .Parents = std::move(parents),
                    .Name = action_->Name()});
  return properties;
}

IBusinessObjectPtr BusinessContext::WrapInHostObject(const ModelPtr& model) const {
  const std::string component = class_->ActiveXProgId();
  const auto object = CreateHostObject<IBusinessObject>(component, "BusinessContext.CreateBusinessObject");
  if (!object) RaiseWithState({}, errBusinessObject_Create, "CreateBusinessObject", {component, model->Key()});
  try {
    object->SetModel(model);
  } catch (...) { Failed("CreateBusinessObject", errBusinessObject_Initialize, {model->Key()}); }
  return object;
}

PropertiesPtr BusinessContext::GetNewProperties(const IdentifierPtr& identifier, const std::string& actionName,
                                                const std::string& name) try {
  if (actionName.empty() && !identifier) {
    SelectDefaultAction();
  } else {
    SetupSelection({.Identifier = identifier, .ActionName = actionName});
  }
  RequireUsage(ufProperties, errNotSupported_Properties, "GetNewProperties");
  RequireInsert("GetNewProperties");
  return OpenRecordset()->CreatePersistentProperties(name);
} catch (...) { Failed("GetNewProperties"); }

}  // namespace velmoria
