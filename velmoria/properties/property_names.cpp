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
  return recordset_ ? ServerNameOf(*recordset_) : NameOf(HeldParents().Server);
}

std::string Property::ClassName() const { return recordset_ ? ClassNameOf(*recordset_) : NameOf(HeldParents().Class); }

std::string Property::ActionName() const {
  return recordset_ ? ActionNameOf(*recordset_) : NameOf(HeldParents().Action);
}

std::string Property::DatabaseName() const {
  if (!recordset_) return NameOf(HeldParents().Database);
  const auto action = ActionOf(*recordset_);
  return action ? action->DatabaseName() : std::string();
}

zEngines Property::Engine() const {
  if (recordset_) return recordset_->Engine();
  const auto& parents = HeldParents();
  if (parents.Source) return parents.Source->Engine();
  if (parents.Connector) return parents.Connector->Engine();
  if (parents.Database) return parents.Database->Fields().Engine;
  return Data()->Engine();
}

zSourceTypes Property::SourceType() const {
  if (Data()->Style() == psParameter) {
    const auto& source = HeldParents().Source;
    return source ? source->Fields().SourceType : stNone;
  }
  if (Data()->Style() == psPersistent) {
    if (const auto source = SourceOf(recordset_)) return source->SourceType();
  }
  return Data()->SourceTable().empty() ? stNone : stTable;
}

std::string Property::SourceTypeName() const { return velmoria::SourceTypeName(SourceType()); }

std::string Property::SourceText() const {
  if (const auto source = SourceOf(recordset_)) return source->SourceText();
  const auto& parent = HeldParents().Source;
  return parent ? parent->Fields().SourceText : std::string();
}

}  // namespace velmoria
