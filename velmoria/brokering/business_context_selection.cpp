#include "velmoria/brokering/business_context_impl.h"
#include "velmoria/brokering/ibusiness_objects.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/core/globals.h"
#include "velmoria/data/connection.h"
#include "velmoria/design/action.h"
#include "velmoria/design/actions.h"
#include "velmoria/design/class_search_impl.h"
#include "velmoria/design/relationship.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_context.h"

namespace velmoria {

void BusinessContext::RefusePinned(std::string_view routine, std::string_view name, std::string_view kind) const {
  std::string extra;
  if (!name.empty())
    extra.append("This BusinessContext is set up to only use the '").append(name).append("' ").append(kind);
  Raise(errVelmoria_Locked, routine, {}, extra);
}

void BusinessContext::SetServerName(std::string value) try {
  // The lock is tested before equality: the present name raises too on a locked context.
  if (serverLocked_) RefusePinned("ServerName (Let)", serverName_, "Server");
  if (value == serverName_) return;
  serverName_ = std::move(value);
  ChangeClass({});
} catch (...) { Failed("ServerName (Let)"); }

void BusinessContext::ChangeClass(ClassPtr newClass) {
  if (classLocked_) RefusePinned("ChangeClass", ClassName(), "Class");
  if (!newClass && !class_) return;
  class_ = std::move(newClass);
  if (!actionLocked_) ChangeAction({});
}

std::string BusinessContext::ClassName() const { return class_ ? class_->Name() : std::string{}; }

void BusinessContext::SetClassName(const std::string& value) try {
  ChangeClass({});
  const auto servers = Present(Apartment().Servers);
  if (!serverName_.empty()) return ChangeClass(servers->Item(serverName_)->Classes()->Item(value));
  const ClassPtr found = FirstClassNamed(value, *servers, "BusinessContext.ClassName (Let)");
  if (!found) Raise(errItem_Class, "ClassName (Let)", {Quoted(value)}, NoClassText);
  ChangeClass(found);
  serverName_ = found->ServerName();
} catch (...) { Failed("ClassName (Let)"); }

const Class& BusinessContext::SelectedClass() const {
  if (!class_) Fail(RuntimeFailure::ObjectNotSet);
  return *class_;
}

void BusinessContext::ClearKeyValues() { keyValues_.fill(Variant{}); }

void BusinessContext::ChangeAction(ActionPtr newAction) {
  if (actionLocked_) RefusePinned("ChangeAction", ActionName(), "Action");
  if (!newAction && !action_) return;
  action_ = std::move(newAction);
  identifier_.reset();
  parameters_.reset();
  relationship_.reset();
  ClearKeyValues();
}

std::string BusinessContext::ActionName() const { return action_ ? action_->Name() : std::string{}; }

void BusinessContext::ChangeActionName(const std::string& value) {
  if (!class_) Raise(errRequires_Class, "ChangeActionName", {"Changing Action in BusinessContext"});
  ChangeAction(class_->Actions()->Item(value));
}

void BusinessContext::SetActionName(const std::string& value) try {
  if (actionLocked_) RefusePinned("ActionName (Let)", ActionName(), "Action");
  ChangeActionName(value);
} catch (...) { Failed("ActionName (Let)"); }

IdentifierPtr BusinessContext::Identifier() const { return identifier_; }

void BusinessContext::SetIdentifier(IdentifierPtr value) try {
  if (!value) Fail(RuntimeFailure::ObjectNotSet);
  if (value->ServerName() != serverName_) SetServerName(value->ServerName());
  if (value->ClassName() != ClassName()) SetClassName(value->ClassName());
  if (!action_ && !actionLocked_) SetActionName(SelectedClass().SingleActionName());
  identifier_ = std::move(value);
  ClearKeyValues();
  parameters_.reset();
  PrepareParameters();
} catch (...) { Failed("Identifier (Set)"); }

PropertiesPtr BusinessContext::Parameters() try {
  if (!parameters_) PrepareParameters();
  return parameters_;
} catch (...) { Failed("Parameters (Get)"); }

void BusinessContext::SetParameters(PropertiesPtr value) try {
  parameters_ = std::move(value);
  identifier_.reset();
  ClearKeyValues();
} catch (...) { Failed("Parmaeters (Set)"); }

void BusinessContext::SetKeyValue(std::size_t index, const Variant& value) {
  if (VariantsEqual(keyValues_[index], value)) return;
  keyValues_[index] = value;
  identifier_.reset();
  parameters_.reset();
}

void BusinessContext::SelectDefaultAction() {
  if (action_) return;
  const velmoria::Class& selected = SelectedClass();
  const bool single = identifier_ || !keyValues_[0].IsEmpty();
  // The Action is stored directly, so Identifier, Parameters and key values stay.
  action_ = class_->Actions()->Item(single ? selected.SingleActionName() : selected.DefaultActionName());
}

void BusinessContext::SetupSelection(const BusinessContextSelection& selection) {
  if (selection.Parameters || !selection.Identifier) {
    SelectByNames(selection);
  } else {
    SelectByIdentifier(selection);
  }
}

void BusinessContext::SelectByNames(const BusinessContextSelection& selection) {
  if (!selection.RelationshipName.empty()) {
    SetRelationshipName(selection.RelationshipName);
  } else {
    SelectNamed(selection);
  }
  if (selection.Parameters) SetParameters(selection.Parameters);
}

void BusinessContext::SelectNamed(const BusinessContextSelection& selection) {
  const bool hasKey = !selection.KeyValues[0].IsMissing();
  if (!serverLocked_ && !selection.ServerName.empty()) SetServerName(selection.ServerName);
  if (!classLocked_ && !selection.ClassName.empty()) SetClassName(selection.ClassName);
  if (!actionLocked_) {
    if (!selection.ActionName.empty()) {
      SetActionName(selection.ActionName);
    } else if (selection.NewFlag) {
      SetActionName(SelectedClass().NewActionName());
    } else {
      SetActionName(hasKey ? SelectedClass().SingleActionName() : SelectedClass().DefaultActionName());
    }
  }
  for (std::size_t part = 0; part < selection.KeyValues.size() && !selection.KeyValues[part].IsMissing(); ++part) {
    SetKeyValue(part, selection.KeyValues[part]);
  }
}

void BusinessContext::SelectByIdentifier(const BusinessContextSelection& selection) {
  if (!serverLocked_) SetServerName(selection.Identifier->ServerName());
  if (!classLocked_) SetClassName(selection.Identifier->ClassName());
  if (!actionLocked_) {
    SetActionName(selection.ActionName.empty() ? SelectedClass().SingleActionName() : selection.ActionName);
  }
  identifier_ = selection.Identifier;
  ClearKeyValues();
  parameters_.reset();
  PrepareParameters();
}

void BusinessContext::PrepareIdentifier() {
  if (keyValues_[0].IsEmpty()) return;
  if (!identifier_) identifier_ = class_->CreateIdentifier();
  const PropertiesPtr parts = identifier_->Properties();
  for (std::size_t part = 0; part < keyValues_.size(); ++part) {
    const auto position = static_cast<std::int32_t>(part) + 1;
    if (keyValues_[part].IsEmpty() || parts->Count() < position) return;
    parts->Item(position)->SetValue(keyValues_[part]);
  }
}

void BusinessContext::PrepareParameters() try {
  if (!class_) {
    Raise(errRequires_Class, "PrepareParameters", {"Processing BusinessObjects or Properties"},
          "Can't find ClassName: '" + ClassName() + "' in registered Servers.");
  }
  if (!action_) SetActionName(class_->DefaultActionName());
  if (!action_) Raise(errRequires_Action, "PrepareParameters", {"Processing BusinessObjects or Properties"});
  action_->Connection()->Engine();
  PrepareIdentifier();
  parameters_ = action_->CreateParameters(identifier_);
  if (relationship_) PrepareRelationshipParameters();
} catch (...) { Failed("PrepareParameters"); }

}  // namespace velmoria
