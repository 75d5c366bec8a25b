#include "velmoria/design/action_data.h"

#include <algorithm>
#include <iterator>

#include "velmoria/brokering/key_format_data.h"
#include "velmoria/core/apartment_impl.h"
#include "velmoria/design/database.h"
#include "velmoria/design/databases.h"
#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/design_data_impl.h"
#include "velmoria/design/source_data.h"
#include "velmoria/runtime/text.h"

namespace velmoria {

template class DesignData<ActionKind>;
template class DesignCollectionData<ActionKind>;

namespace {

constexpr std::int32_t kTable = 1;
constexpr std::int32_t kDynaset = 2;
constexpr std::int32_t kSnapshot = 4;

struct RecordSetRow {
  zSourceTypes SourceType;
  std::int32_t Editable;
  std::int32_t ReadOnly;
};
constexpr RecordSetRow kRecordSetTypes[] = {
    {stTable, kTable, kTable},
    {stQueryDef, kDynaset, kSnapshot},
    {stSQL, kDynaset, kSnapshot},
};

}  // namespace

ActionData::ActionData() = default;
ActionData::~ActionData() = default;

std::string ActionData::Details() const {
  return "Action: " + Quoted(Name()) + "  Database: " + Quoted(Fields().DatabaseName) +
         "  EditFlags: " + Quoted(EditFlagsDisplay(Fields().EditFlags)) +
         "  CollectionType: " + Quoted(CollectionTypeName(Fields().CollectionType));
}

SourcesDataPtr ActionData::SourcesData() { return Child<velmoria::SourcesData>(); }

KeyFormatDataPtr ActionData::KeyFormatData() { return Made(keyFormatData_); }

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

std::int32_t ActionData::RecordSetType() try {
  const auto source = SourcesData()->Find(engAccess);
  if (!source) Raise(errItem_Source, "RecordSetType (Get)", KeyedByEngine::Shown(engAccess, engAccess));
  const auto* row = std::ranges::find(kRecordSetTypes, source->Fields().SourceType, &RecordSetRow::SourceType);
  if (row == std::end(kRecordSetTypes)) return 0;
  return Fields().EditFlags == efNone ? row->ReadOnly : row->Editable;
} catch (...) { Failed("RecordSetType (Get)"); }

// The KeyFormat is a child that is copied and nothing else: a change in it alone does not make the Action dirty.
void ActionData::CopyChildren(const ActionData& source) {
  SetChild(keyFormatData_, CopyOf(source.keyFormatData_));
  DesignData::CopyChildren(source);
}

}  // namespace velmoria
