#include "velmoria/design/action_data.h"

#include "velmoria/brokering/key_format_data.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/design/database.h"
#include "velmoria/design/databases.h"
#include "velmoria/design/design_data_impl.h"
#include "velmoria/design/sources_data.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

template class DesignData<ActionKind>;

ActionData::ActionData() = default;
ActionData::~ActionData() = default;

std::string ActionData::Details() const {
  return "Action: " + Quoted(Name()) + "  Database: " + Quoted(Fields().DatabaseName) +
         "  EditFlags: " + Quoted(EditFlagsDisplay(Fields().EditFlags)) +
         "  CollectionType: " + Quoted(CollectionTypeName(Fields().CollectionType));
}

void ActionData::Enter(Parents& parents) { parents.Action = this; }

SourcesDataPtr ActionData::SourcesData() {
  if (!sourcesData_) sourcesData_ = Make<velmoria::SourcesData>();
  return sourcesData_;
}

KeyFormatDataPtr ActionData::KeyFormatData() {
  if (!keyFormatData_) keyFormatData_ = Make<velmoria::KeyFormatData>();
  return keyFormatData_;
}

DatabasePtr ActionData::Database() const {
  const auto databases = Apartment().Databases;
  return databases ? databases->Item(Fields().DatabaseName) : DatabasePtr();
}

DatabasePtr ActionData::FindDatabase() const {
  const auto databases = Apartment().Databases;
  return databases ? databases->Find(Fields().DatabaseName) : DatabasePtr();
}

zEngines ActionData::DatabaseEngine() const {
  const auto database = Database();
  return database ? database->Engine() : engUnknown;
}

std::string ActionData::DatabaseEngineName() const {
  const auto database = Database();
  return database ? database->EngineName() : std::string();
}

void ActionData::CopyChildren(const ActionData& source) {
  keyFormatData_ = CopyOf(source.keyFormatData_);
  sourcesData_ = CopyOf(source.sourcesData_);
  DesignData::CopyChildren(source);
}

// A changed KeyFormat alone does not make the Action dirty.
bool ActionData::ChildrenDirty() const { return IsDirty(sourcesData_) || DesignData::ChildrenDirty(); }

}  // namespace velmoria
