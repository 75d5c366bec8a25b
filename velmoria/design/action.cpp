#include "velmoria/design/action.h"

#include "velmoria/brokering/key_format.h"
#include "velmoria/brokering/key_format_data.h"
#include "velmoria/core/display.h"
#include "velmoria/data/connection.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class_data.h"
#include "velmoria/design/design_object_impl.h"
#include "velmoria/design/server_data.h"
#include "velmoria/design/sources.h"

namespace velmoria {

template class DesignObject<ActionKind>;

Action::Action() = default;
Action::~Action() = default;

std::string Action::DatabaseName() const { return Get(&ActionFields::DatabaseName); }
void Action::SetDatabaseName(std::string value) {
  Let("DatabaseName (Let)", &ActionFields::DatabaseName, std::move(value));
}

std::string Action::ConnectionsName() const { return Get(&ActionFields::ConnectionsName); }
void Action::SetConnectionsName(std::string value) {
  Let("ConnectionsName (Let)", &ActionFields::ConnectionsName, std::move(value));
}

zUsageFlags Action::UsageFlags() const { return Get(&ActionFields::UsageFlags); }
void Action::SetUsageFlags(zUsageFlags value) { Let("UsageFlags (Let)", &ActionFields::UsageFlags, value); }
std::string Action::UsageFlagsDisplay() const { return velmoria::UsageFlagsDisplay(UsageFlags()); }

zEditFlags Action::EditFlags() const { return Get(&ActionFields::EditFlags); }
void Action::SetEditFlags(zEditFlags value) { Let("EditFlags (Let)", &ActionFields::EditFlags, value); }
std::string Action::EditFlagsDisplay() const { return velmoria::EditFlagsDisplay(EditFlags()); }

zCollectionTypes Action::CollectionType() const { return Get(&ActionFields::CollectionType); }
void Action::SetCollectionType(zCollectionTypes value) {
  Let("CollectionType (Let)", &ActionFields::CollectionType, value);
}

zObjectTypes Action::ObjectType() const { return Get(&ActionFields::ObjectType); }
void Action::SetObjectType(zObjectTypes value) { Let("ObjectType (Let)", &ActionFields::ObjectType, value); }

std::int32_t Action::ObjectBuffer() const { return Get(&ActionFields::ObjectBuffer); }
void Action::SetObjectBuffer(std::int32_t value) { Let("ObjectBuffer (Let)", &ActionFields::ObjectBuffer, value); }

std::string Action::BusinessObjectsName() const { return Get(&ActionFields::BusinessObjectsName); }
void Action::SetBusinessObjectsName(std::string value) {
  Let("BusinessObjectsName (Let)", &ActionFields::BusinessObjectsName, std::move(value));
}

std::string Action::PropertiesName() const { return Get(&ActionFields::PropertiesName); }
void Action::SetPropertiesName(std::string value) {
  Let("PropertiesName (Let)", &ActionFields::PropertiesName, std::move(value));
}

std::string Action::ServerName() const { return NameOf(HeldParents().Server); }
std::string Action::ClassName() const { return NameOf(HeldParents().Class); }

SourcesPtr Action::Sources() { return Child(sources_); }

KeyFormatPtr Action::KeyFormat() {
  if (!keyFormat_) {
    auto keyFormat = Make<velmoria::KeyFormat>();
    keyFormat->Bind(Data()->KeyFormatData(), ParentsForChildren());
    keyFormat_ = std::move(keyFormat);
  }
  return keyFormat_;
}

PropertiesPtr Action::SchemaCache() const { return schemaCache_; }
void Action::SetSchemaCache(const PropertiesPtr& value) { schemaCache_ = value; }

void Action::PassOn(const ParentChange& change) {
  change.To(sources_);
  change.To(keyFormat_);
  DesignObject::PassOn(change);
}

}  // namespace velmoria
