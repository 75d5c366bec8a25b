#include "velmoria/brokering/identifier.h"
#include "velmoria/core/display.h"
#include "velmoria/data/agents/sql_agent_impl.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/rdo_engine_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/source.h"
#include "velmoria/design/sources.h"
#include "velmoria/platform/rdo/rdo_query.h"
#include "velmoria/platform/rdo/rdo_resultset.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

SQLAgent::SQLAgent() = default;

SQLAgent::~SQLAgent() { CloseResultset(); }

ClassPtr SQLAgent::Class() const { return class_; }
ActionPtr SQLAgent::Action() const { return action_; }
SourcePtr SQLAgent::Source() const { return source_; }

std::string SQLAgent::Details() const {
  std::string text;
  if (class_) text += class_->Details() + "\r\n";
  if (action_) text += action_->Details() + "\r\n";
  if (source_) text += source_->Details() + "\r\n";
  if (action_) text += action_->Connection()->Details();
  if (parameters_) text += "\r\nParameters " + parameters_->Details();
  return text;
}

void SQLAgent::Initialize(const ClassPtr& classObject, const ActionPtr& action, const PropertiesPtr& parameters,
                          std::int32_t objectBuffer) try {
  class_ = classObject;
  action_ = action;
  objectBuffer_ = objectBuffer == -1 ? action->ObjectBuffer() : objectBuffer;
  identifier_ = class_->CreateIdentifier();
  parameters_ = parameters;
  source_ = action->Sources()->Item();
  CheckSourceType("Initialize");
  TakeMarkedKeys();
  SortParameters();
} catch (...) { Failed("Initialize"); }

void SQLAgent::TakeMarkedKeys() {
  if (!parameters_) return;
  for (const auto& parameter : *parameters_) {
    if (!parameter->CopyMark()) continue;
    if (!keyParameters_) keyParameters_ = Make<Properties>();
    keyParameters_->Add(parameter->Copy());
  }
}

/// The marked parameters are the key; without them the Identifier's Properties, which nobody else has.
const PropertiesPtr& SQLAgent::KeyParameters() {
  if (!keyParameters_) keyParameters_ = identifier_->Properties();
  return keyParameters_;
}

bool SQLAgent::IsProcedure() const { return source_->SourceType() == stStoredProcedure; }
bool SQLAgent::IsFiltered() const { return filterParameters_->Count() != 0; }

void SQLAgent::SortParameters() {
  statementParameters_ = Make<Properties>();
  filterParameters_ = Make<Properties>();
  if (!parameters_) return;
  const bool declares = source_->SourceType() == stSQL || IsProcedure();
  const auto declared = declares ? source_->Parameters() : PropertiesPtr();
  for (const auto& parameter : *parameters_) {
    const Suspension quiet{"SQLAgent.Initialize"};
    if (!declares || declared->FindOrAsk({.Parameter = parameter}))
      statementParameters_->Add(parameter->Copy({}, false));
    else
      SortUndeclared(parameter);
  }
}

void SQLAgent::SortUndeclared(const PropertyPtr& parameter) {
  if (!parameter->EmptyValue() || has(parameter->Flags(), pfRequired))
    filterParameters_->Add(parameter->Copy({}, false));
}

void SQLAgent::CloseResultset() noexcept {
  CloseQuietly(resultset_);
  resultset_ = nullptr;
  query_ = nullptr;
  asyncFlag_ = false;
}

PropertiesDataPtr SQLAgent::PropertiesData() try {
  if (!propertiesData_ && !resultset_) CreateResultset();
  DescribeResultset();
  return propertiesData_;
} catch (...) { Failed("PropertiesData (Get)"); }

std::int32_t SQLAgent::RowCount() try {
  if (!resultset_) CreateResultset();
  if (resultset_->StillExecuting()) return -1;
  resultset_->MoveLast();
  TakeOutputsOfResultset();
  return static_cast<std::int32_t>(resultset_->RowCount());
} catch (...) { ReadFailed("RowCount (Get)"); }

}  // namespace velmoria
