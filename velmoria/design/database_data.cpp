#include "velmoria/design/database_data.h"

#include "velmoria/core/access_method_impl.h"
#include "velmoria/design/connector_data.h"
#include "velmoria/design/design_collection_data_impl.h"
#include "velmoria/design/root_data_impl.h"

namespace velmoria {

template class DesignData<DatabaseKind>;
template class DesignCollectionData<DatabaseKind>;
template class RootData<DatabaseKind>;

DatabaseData::DatabaseData() = default;
DatabaseData::~DatabaseData() = default;

void DatabaseData::NameFile(DataFile& file, const std::string& name) const { file.SetDatabaseName(name); }

std::string DatabaseData::Details() const {
  return "Database: " + Quoted(Name()) + "  AutoConnect: " + Variant(Fields().AutoConnect).AsText() + FileDetails();
}

ConnectorsDataPtr DatabaseData::ConnectorsData() { return Child<velmoria::ConnectorsData>(); }

std::int32_t DatabaseData::AccessMethod() const noexcept { return Fields().Engine == engAccess ? kDao : kRdo; }

std::string DatabaseData::AccessMethodDisplay() const { return AccessMethodName(AccessMethod()); }

std::string DatabaseData::EngineName() const { return velmoria::EngineName(Fields().Engine); }

std::string DatabaseData::SupportedEnginesDisplay() const {
  const auto& connectors = Existing<velmoria::ConnectorsData>();
  if (!connectors || connectors->Count() == 0) return "(None)";
  std::string text;
  for (const auto& connector : *connectors) {
    if (!text.empty()) text += "; ";
    text += connector->EngineName();
  }
  return text;
}

}  // namespace velmoria
