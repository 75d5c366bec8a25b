#include "velmoria/core/display.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/connector_data.h"
#include "velmoria/design/database_data.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/source.h"
#include "velmoria/design/source_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/properties/property_impl.h"
#include "velmoria/properties/row_origin_impl.h"

namespace velmoria {

namespace {

SourcePtr SourceOf(const RecordsetPtr& recordset) {
  return recordset && recordset->DatabaseAgent() ? recordset->DatabaseAgent()->Source() : SourcePtr();
}

}  // namespace

std::string Property::ServerName() const {
  if (recordset_) return ServerNameOf(*recordset_);
  const auto* parents = ParentsOrNone();
  return parents && parents->Server ? parents->Server->Name() : std::string();
}

std::string Property::ClassName() const {
  if (recordset_) return ClassNameOf(*recordset_);
  const auto* parents = ParentsOrNone();
  return parents && parents->Class ? parents->Class->Name() : std::string();
}

std::string Property::ActionName() const {
  if (recordset_) return ActionNameOf(*recordset_);
  const auto* parents = ParentsOrNone();
  return parents && parents->Action ? parents->Action->Name() : std::string();
}

std::string Property::DatabaseName() const {
  if (recordset_) {
    const auto action = ActionOf(*recordset_);
    return action ? action->DatabaseName() : std::string();
  }
  const auto* parents = ParentsOrNone();
  return parents && parents->Database ? parents->Database->Name() : std::string();
}

zEngines Property::Engine() const {
  if (recordset_) return recordset_->Engine();
  const auto* parents = ParentsOrNone();
  if (parents && parents->Source) return parents->Source->Engine();
  if (parents && parents->Connector) return parents->Connector->Engine();
  return data_->Engine();
}

zSourceTypes Property::SourceType() const {
  if (data_->Style() == psParameter) {
    const auto* parents = ParentsOrNone();
    return parents && parents->Source ? parents->Source->Fields().SourceType : stNone;
  }
  if (data_->Style() == psPersistent) {
    if (const auto source = SourceOf(recordset_)) return source->SourceType();
  }
  return data_->SourceTable().empty() ? stNone : stTable;
}

std::string Property::SourceTypeName() const { return velmoria::SourceTypeName(SourceType()); }

std::string Property::SourceText() const {
  if (const auto source = SourceOf(recordset_)) return source->SourceText();
  const auto* parents = ParentsOrNone();
  return parents && parents->Source ? parents->Source->Fields().SourceText : std::string();
}

}  // namespace velmoria
